#include "history/ChartValues.h"
#include "history/ReportRun.h"
#include "support/RecordFiles.h"
#include "support/TempDataDir.h"

#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;
using test::RecordLines;
using test::WriteRecord;

namespace {

const QByteArray kFlat = "Mobil - Flat.atl";

// February 2023 with its neighbours: other months, other years, a year of
// another century, a record without its user line and a stray file.
void WriteHistory(const test::TempDataDir& data) {
  WriteRecord(data, "01021923-100000.con", RecordLines("01.02.1923", "10:00:00", "00:01:00", "0,10"));
  WriteRecord(data, "01022023-100000.con",
              RecordLines("01.02.2023", "10:00:00", "01:00:00", "1,50", "Funkwelle - Tag und Nacht.tel",
                          "Anna", "2000000"));
  WriteRecord(
      data, "01022023-200000.con",
      RecordLines("01.02.2023", "20:00:00", "00:10:30", "0,25", "Funkwelle - Tag und Nacht.tel", "anna"));
  WriteRecord(data, "15022023-080000.con",
              RecordLines("15.02.2023", "08:00:00", "00:00:10", "2,00", kFlat, "Bert"));
  QList<QByteArray> noUser = RecordLines("28.02.2023", "08:00:00", "00:05:00", "9,00");
  noUser.resize(10);
  WriteRecord(data, "28022023-080000.con", noUser);
  WriteRecord(data, "01032023-100000.con", RecordLines("01.03.2023", "10:00:00", "00:05:00", "5,00"));
  WriteRecord(data, "01022024-100000.con", RecordLines("01.02.2024", "10:00:00", "00:02:00", "0,50"));
  data.write(u"Verbindungen/notes.con"_s, "kein Datensatz");
}

}  // namespace

class TestHistoryFigures : public QObject {
  Q_OBJECT

 private slots:
  void dayChartsSumTheRecordsThatPass() {
    test::TempDataDir data;
    WriteHistory(data);
    const std::tuple<ChartMeasure, const char*, const char*, const char*, float, float> cases[] = {
        // An hour weighs 360 seconds; the user is compared without case.
        {ChartMeasure::Dauer, "ANNA", "[Alle]", "[Alle]", 360 + 630, 0},
        {ChartMeasure::Kosten, "[Alle]", "[Alle]", "[Alle]", 1.75f, 2},
        {ChartMeasure::Transfer, "[Alle]", "[Alle]", "[Alle]", 2.002f, 0.002f},
        {ChartMeasure::Kosten, "[Alle]", "Mobil", "A - Flat", 0, 2},
        {ChartMeasure::Kosten, "[Alle]", "Mobil", "M - Flat", 0, 0},
    };
    for (const auto& [measure, user, provider, tariff, day1, day15] : cases) {
      ChartQuery query;
      query.month = 2;
      query.year = 2023;
      query.filter.user = QString::fromUtf8(user);
      query.filter.provider = QString::fromUtf8(provider);
      query.filter.tariff = QString::fromUtf8(tariff);
      const ChartData chart = GatherChartData(data.dir(), query, measure);
      QCOMPARE(chart.days[0], day1);
      QCOMPARE(chart.days[14], day15);
      // The record of the 28th has no user; the 29th to 31st don't exist.
      QCOMPARE(chart.days[27] + chart.days[28] + chart.days[29] + chart.days[30], 0.0f);
    }

    // Reports select by period and user.
    const std::tuple<const char*, const char*, const char*, std::size_t, const char*> reports[] = {
        // This month of every year; the record without a user is passed over.
        {"Dieser Monat", "[Alle]", "01:13:40", 9, "Der aktivste Benutzer ist: Anna (3 Verbindungen)"},
        {"Gesamt", "Bert", "00:00:10", 8,
         "Der meistgenutzte Tarif lautet: Mobil - Flat.atl (1 Verbindungen)"},
        {"Dieses Jahr", "[Alle]", "01:15:40", 1,
         "Die durchschnittliche Verbindungsdauer liegt bei 19 Minuten."},
        {"Letztes Jahr", "[Alle]", "00:00:00", 0,
         "Eine Auswertung ist aufgrund unzureichender Daten nicht möglich."},
    };
    for (const auto& [period, user, dauer, sentence, text] : reports) {
      const ReportTexts texts = BuildReport(data.dir(), QString::fromUtf8(period), QString::fromUtf8(user),
                                            QDate(2023, 2, 20), u"€"_s);
      QCOMPARE(texts.dauer, QString::fromUtf8(dauer));
      QCOMPARE(texts.sentences[sentence], QString::fromUtf8(text));
    }
  }

  void piesCountEveryRecordOfTheMonth() {
    test::TempDataDir data;
    WriteHistory(data);
    ChartQuery query;
    query.month = 2;
    query.year = 2023;
    query.filter.user = u"Bert"_s;  // not asked by pies
    ChartData pie = GatherChartData(data.dir(), query, ChartMeasure::Benutzer);
    QCOMPARE(pie.total, 5.0);
    QCOMPARE(pie.pie.size(), 3);
    QCOMPARE(pie.pie[0].name, u"Anna"_s);
    QCOMPARE(pie.pie[0].count, 3.0f);  // 1923 ends in the same two digits
    QCOMPARE(pie.pie[2].name, QString());

    pie = GatherChartData(data.dir(), query, ChartMeasure::Anbieter);
    QCOMPARE(pie.pie.size(), 2);
    QCOMPARE(pie.pie[0].name, u"M - Funkwelle - Tag und Nacht"_s);
    QCOMPARE(pie.pie[0].count, 4.0f);
    QCOMPARE(pie.pie[1].name, u"A - Mobil - Flat"_s);

    for (int user = 1; user <= 22; ++user) {
      WriteRecord(data, u"05062023-%1.con"_s.arg(100000 + user),
                  RecordLines("05.06.2023", "10:00:00", "00:01:00", "0,10", "Funkwelle - Tag und Nacht.tel",
                              QByteArray::number(user)));
    }
    query.month = 6;
    pie = GatherChartData(data.dir(), query, ChartMeasure::Benutzer);
    QCOMPARE(pie.pie.size(), 21);
    QCOMPARE(pie.pie.last().name, u"Defekte Aufzeichnungen"_s);
    QCOMPARE(pie.pie.last().count, 2.0f);
  }
};

QTEST_APPLESS_MAIN(TestHistoryFigures)
#include "test_history_figures.moc"
