#include "frame/datadir/AnsiText.h"
#include "history/ConnectionList.h"
#include "history/ListExport.h"
#include "history/ListSort.h"
#include "history/ListTitle.h"
#include "support/RecordFiles.h"
#include "support/TempDataDir.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;

namespace {

const QDate kToday(2026, 5, 20);

// Three connections of May and April: a second row for the grey lines, a
// comment longer than any column, a tariff name the text table must cut,
// and umlauts that stay Windows-1252.
QList<ListRow> FixedRows(const test::TempDataDir& data) {
  using test::RecordLines;
  test::WriteRecord(data, "20052026-090000.con", RecordLines("20.05.2026", "09:00:00", "1:30:45", "1,25"));
  QList<QByteArray> long_ =
      RecordLines("20.05.2026", "18:00:00", "0:40:30", "10",
                  ToAnsi(u"Funkwelle - Tag und Nacht mit Überlänge im Namen.atl"_s), "Bert", "2500000");
  long_[11] = ToAnsi(u"Urlaub in Köln, ein Kommentar, der länger ist als jede Spalte der Tabelle"_s);
  test::WriteRecord(data, "20052026-180000.con", long_);
  test::WriteRecord(data, "03042026-120000.con",
                    RecordLines("03.04.2026", "12:00:00", "0:00:15", "9,5", "Netzwerk - Flat.tel"));
  ListQuery query;
  query.period = MakeListPeriod(data.dir(), u"Gesamt"_s, kToday);
  query.waehrung = u"€"_s;
  ListResult result = GetConnections(data.dir(), query);
  SortRows(result.rows, SortByHeader(kColumnDatum));
  return result.rows;
}

QByteArray Expected(const QString& name) {
  QFile file(qEnvironmentVariable("MINUTOR_SOURCE_DIR") + u"/tests/history/expected/"_s + name);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray Joined(const QList<QByteArray>& lines) {
  QByteArray bytes;
  for (const QByteArray& line : lines) {
    bytes += line + "\r\n";
  }
  return bytes;
}

}  // namespace

class TestListExport : public QObject {
  Q_OBJECT

 private slots:
  void htmlAndTextFilesOfAFixedHistory() {
    test::TempDataDir data;
    const QList<ListRow> rows = FixedRows(data);
    RecordFilter filter;
    filter.provider = u"Funkwelle"_s;
    const QString html = data.path(u"liste.htm"_s);
    QVERIFY(
        WriteExportFile(html, ExportHtmlLines(rows, BuildListTitle(data.dir(), "Dieser Monat", kToday),
                                              filter, {ExportChartPath(html, 1), ExportChartPath(html, 2)})));
    QCOMPARE(data.read(u"liste.htm"_s), Expected(u"liste.htm"_s));
    QVERIFY(WriteExportFile(data.path(u"liste.txt"_s), ExportTextLines(rows)));
    QCOMPARE(data.read(u"liste.txt"_s), Expected(u"liste.txt"_s));

    // Without charts and with every provider, the tariff is left out of the
    // filter line; 500 rows still make twelve body cells.
    const QList<ListRow> many(500, rows.first());
    const QByteArray plain = Joined(ExportHtmlLines(many, u"x"_s, RecordFilter{}, {}));
    QVERIFY(!plain.contains("<IMG"));
    QVERIFY(plain.contains("\r\nBenutzer: [Alle], Anbieter: [Alle]\r\n"));
    QCOMPARE(plain.count("<TD bgcolor=#FFFFFF valign=top nowrap>"), 12);
    QCOMPARE(plain.count("<FONT color=#555555 size=2>"), 250 * 12);
  }

  void titlesAndChartMonths() {
    test::TempDataDir data;
    data.write(u"Config/Period.cfg"_s, "01.02.2026\r\n15.03.2026\r\n");
    const std::tuple<const char*, const char*> cases[] = {
        {"Heute", "Verbindungen am Mittwoch, den 20.05.2026"},
        {"Vorgestern", "Verbindungen am Montag, den 18.05.2026"},
        {"Letzter Monat", "Verbindungen im April 2026"},
        {"Letztes Jahr", "Verbindungen im Jahr 2025"},
        {"Definiert", "Verbindungen vom 01.02.2026 bis zum 15.03.2026"},
        {"Gesamt", "Alle aufgezeichneten Verbindungen"},
    };
    for (const auto& [item, title] : cases) {
      QCOMPARE(BuildListTitle(data.dir(), QString::fromUtf8(item), kToday), QString::fromUtf8(title));
    }
    // The day is kept, so on the 31st "Letzter Monat" of a 30-day month
    // rolls over into this one.
    QCOMPARE(ListChartMonth(2, kToday), QDate(2026, 4, 20));
    QCOMPARE(ListChartMonth(2, QDate(2026, 5, 31)).month(), 5);
    QVERIFY(!ListChartMonth(0, kToday).isValid());
    QVERIFY(!ListChartMonth(4, kToday).isValid());
    QCOMPARE(ExportChartPath(u"/a/liste.HTM"_s, 2), u"/a/liste2.bmp"_s);
    QCOMPARE(ExportChartPath(u"/a/liste"_s, 1), u"/a/liste1.bmp"_s);
  }

  void csvAndJsonForScripts() {
    test::TempDataDir data;
    const QList<ListRow> rows = FixedRows(data);
    const QList<QByteArray> csv = ExportCsv(rows).split('\n');
    QCOMPARE(csv.at(0),
             QByteArray("Datum,Startzeit,Dauer,Kosten,Einheiten,Empfangen,Gesendet,Gesamt,DFÜ,Tarif,"
                        "Benutzer,Kommentar\r"));
    QCOMPARE(csv.at(1), QByteArray("2026-05-20,18:00:00,00:40:30,10,3,1500,500,2500000,Mobilfunk-Stick,"
                                   "Funkwelle - Tag und Nacht mit Überlänge im Namen,Bert,"
                                   "\"Urlaub in Köln, ein Kommentar, der länger ist als jede Spalte der "
                                   "Tabelle\"\r"));
    const QJsonArray json = QJsonDocument::fromJson(ExportJson(rows)).array();
    QCOMPARE(json.size(), 3);
    const QJsonObject last = json.at(2).toObject();
    QCOMPARE(last.value("date").toString(), u"2026-04-03"_s);
    QCOMPARE(last.value("cost").toDouble(), 9.5);
    QCOMPARE(last.value("seconds").toDouble(), 15.0);
    QCOMPARE(last.value("total").toDouble(), 2000.0);
  }

  void writesWholeFilesOrNothing() {
    test::TempDataDir data;
    data.write(u"alt.txt"_s, "alt");
    QVERIFY(WriteExportFile(data.path(u"alt.txt"_s), QList<QByteArray>{"neu"}));
    QCOMPARE(data.read(u"alt.txt"_s), QByteArray("neu\r\n"));
    // A folder that can't be written to (here a file in its way) leaves
    // nothing behind.
    QVERIFY(!WriteExportFile(data.path(u"alt.txt/neu.txt"_s), QByteArray("x")));
    QCOMPARE(QDir(data.path()).entryList(QDir::Files), QStringList{"alt.txt"});
  }
};

QTEST_APPLESS_MAIN(TestListExport)
#include "test_list_export.moc"
