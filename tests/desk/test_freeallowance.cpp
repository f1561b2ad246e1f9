#include "desk/FreeAllowance.h"
#include "frame/datadir/DataDir.h"
#include "metering/ConnectionRecord.h"
#include "support/RecordingPrompter.h"
#include "support/TempDataDir.h"

#include <QDir>
#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;

namespace {

const QString kMinutes = u"Mobil - Frei.tel"_s;
const QString kTransfer = u"Netz - Volumen.tel"_s;

// Saves a record of the tariff that started at ten on `tag`.
void AddRecord(const test::TempDataDir& data, const char* tag, const char* duration, const QString& tariff,
               const char* bytes = "unbekannt") {
  RecordLabels l;
  l.startTag = QString::fromLatin1(tag);
  l.startTime = u"10:00:00"_s;
  l.dauer = QString::fromLatin1(duration);
  l.kosten = u"0 (0,100 €)"_s;
  l.einheiten = u"1"_s;
  l.bytesIn = l.bytesOut = u"0 Bytes"_s;
  l.bytesInOut = QString::fromLatin1(bytes);
  l.connectionName = u"Stick"_s;
  l.tarif = tariff;
  l.benutzer = u"Supervisor"_s;
  test::RecordingPrompter prompter;
  QCOMPARE(SaveConnection(data.dir(), l, prompter), SaveResult::Saved);
}

FreeAllowance InMarch(const test::TempDataDir& data, const QString& tariff) {
  return ComputeFreeAllowance(data.dir(), tariff, QDate(2026, 3, 10));
}

}  // namespace

// German locale: the free-minutes text carries a decimal comma.
class TestFreeAllowance : public QObject {
  Q_OBJECT

 private slots:
  void noAllowance() {
    test::TempDataDir data;
    data.write(u"Tarife/A - B.tel"_s, "Freiminuten:0\r\nVolumengrenze:0\r\n");
    for (const QString& file : {u"A - B.tel"_s, u"fehlt.tel"_s, QString()}) {
      const FreeAllowance a = InMarch(data, file);
      QCOMPARE(a.caption + ' ' + a.text + ' ' + a.restfrei, u"Verbleibende kostenfreie Zeit: Keine -"_s);
      QCOMPARE(a.colour, FreeAllowance::Colour::DarkRed);
      QVERIFY(!a.barVisible);
    }
  }

  void freeMinutesCountTheMonthsRecordsOfTheTariff() {
    test::TempDataDir data;
    data.write(u"Tarife/"_s + kMinutes, "Freiminuten:120\r\n");
    FreeAllowance a = InMarch(data, kMinutes);
    QCOMPARE(a.restfrei + ' ' + a.text + ' ' + a.percentText, u"2:0:00 02:00:00 100,0%"_s);
    QCOMPARE(a.colour, FreeAllowance::Colour::DarkGreen);
    QVERIFY(a.barVisible);

    AddRecord(data, "01032026", "00:30:00", kMinutes);
    // The year isn't compared on this path: March of last year counts too.
    AddRecord(data, "02032025", "00:30:00", kMinutes);
    AddRecord(data, "03032026", "05:00:00", u"Andere - X.tel"_s);
    AddRecord(data, "28022026", "05:00:00", kMinutes);
    a = InMarch(data, kMinutes);
    QCOMPARE(a.restfrei + ' ' + a.percentText, u"01:00:00 50,0%"_s);

    AddRecord(data, "04032026", "01:00:00", kMinutes);
    a = InMarch(data, kMinutes);
    QCOMPARE(a.restfrei + ' ' + a.percentText, u"00:00:00 0,0%"_s);  // used up exactly: still green
    QCOMPARE(a.colour, FreeAllowance::Colour::DarkGreen);

    AddRecord(data, "05032026", "00:10:05", kMinutes);
    a = InMarch(data, kMinutes);
    QCOMPARE(a.restfrei + ' ' + a.text, u"-00:10:05 0 (überschritten um 00:10:05)"_s);
    QCOMPARE(a.colour, FreeAllowance::Colour::DarkRed);
    QVERIFY(!a.barVisible);

    // Half an hour is cut off by the comma.
    data.write(u"Tarife/"_s + kMinutes, "Freiminuten:90\r\n");
    QVERIFY(QDir(data.path(u"Verbindungen"_s)).removeRecursively());
    QCOMPARE(InMarch(data, kMinutes).restfrei, u"1:0,5:00"_s);
    AddRecord(data, "01032026", "00:00:01", kMinutes);
    QCOMPARE(InMarch(data, kMinutes).restfrei, u"00:59:59"_s);
  }

  void freeTransferCountsEveryRecordOfTheMonthAndYear() {
    test::TempDataDir data;
    data.write(u"Tarife/"_s + kTransfer, "Volumenabrechnung:Ja\r\nVolumengrenze:500\r\n");
    FreeAllowance a = InMarch(data, kTransfer);
    QCOMPARE(a.caption + ' ' + a.text + ' ' + a.percentText,
             u"Verbleibender kostenfreier Transfer: 500MB 100,0%"_s);

    AddRecord(data, "01032026", "00:10:00", u"Andere - X.tel"_s, "100.000.000 Bytes");
    AddRecord(data, "02032025", "00:10:00", kTransfer, "300.000.000 Bytes");
    AddRecord(data, "03032026", "00:10:00", kTransfer, "unbekannt");
    a = InMarch(data, kTransfer);
    QCOMPARE(a.text + ' ' + a.percentText + ' ' + a.restfrei, u"400MB 80,0% 400"_s);

    AddRecord(data, "04032026", "00:10:00", kTransfer, "450.600.000 Bytes");
    a = InMarch(data, kTransfer);
    QCOMPARE(a.text, u"0 (überschritten um 51MB)"_s);
    QCOMPARE(a.colour, FreeAllowance::Colour::DarkRed);
    QVERIFY(!a.barVisible);
  }
};

QTEST_APPLESS_MAIN(TestFreeAllowance)
#include "test_freeallowance.moc"
