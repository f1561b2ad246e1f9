#include "desk/FreeAllowance.h"
#include "frame/datadir/DataDir.h"
#include "metering/ConnectionRecord.h"
#include "support/RecordingPrompter.h"
#include "support/TempDataDir.h"

#include <QTest>

using namespace minutor;

namespace {

void AddRecord(const test::TempDataDir& data, const QString& tag, const QString& time,
               const QString& duration, const QString& tariff,
               const QString& bytes = QStringLiteral("unbekannt")) {
  RecordLabels l;
  l.startTag = tag;
  l.startTime = time;
  l.dauer = duration;
  l.kosten = QStringLiteral("0 (0,100 €)");
  l.einheiten = QStringLiteral("1");
  l.bytesIn = l.bytesOut = QStringLiteral("0 Bytes");
  l.bytesInOut = bytes;
  l.connectionName = QStringLiteral("Stick");
  l.tarif = tariff;
  l.benutzer = QStringLiteral("Supervisor");
  test::RecordingPrompter prompter;
  QCOMPARE(SaveConnection(data.dir(), l, prompter), SaveResult::Saved);
}

const QString kMinutes = QStringLiteral("Mobil - Frei.tel");
const QString kTransfer = QStringLiteral("Netz - Volumen.tel");

}  // namespace

// German locale: the free-minutes text carries a decimal comma.
class TestFreeAllowance : public QObject {
  Q_OBJECT

 private slots:
  void noAllowance() {
    test::TempDataDir data;
    data.write(QStringLiteral("Tarife/A - B.tel"), "Freiminuten:0\r\nVolumengrenze:0\r\n");
    for (const QString& file : {QStringLiteral("A - B.tel"), QStringLiteral("fehlt.tel"), QString()}) {
      const FreeAllowance a = ComputeFreeAllowance(data.dir(), file, QDate(2026, 3, 10));
      QCOMPARE(a.caption, QStringLiteral("Verbleibende kostenfreie Zeit:"));
      QCOMPARE(a.text, QStringLiteral("Keine"));
      QCOMPARE(a.colour, FreeAllowance::Colour::DarkRed);
      QVERIFY(!a.barVisible);
      QCOMPARE(a.restfrei, QStringLiteral("-"));
    }
  }

  void freeMinutesCountTheMonthsRecordsOfTheTariff() {
    test::TempDataDir data;
    data.write(QStringLiteral("Tarife/") + kMinutes, "Freiminuten:120\r\n");
    FreeAllowance a = ComputeFreeAllowance(data.dir(), kMinutes, QDate(2026, 3, 10));
    QCOMPARE(a.restfrei, QStringLiteral("2:0:00"));
    QCOMPARE(a.text, QStringLiteral("02:00:00"));
    QCOMPARE(a.colour, FreeAllowance::Colour::DarkGreen);
    QVERIFY(a.barVisible);
    QCOMPARE(a.percentText, QStringLiteral("100,0%"));

    AddRecord(data, QStringLiteral("01032026"), QStringLiteral("10:00:00"), QStringLiteral("00:30:00"),
              kMinutes);
    // The year isn't compared on this path: March of last year counts too.
    AddRecord(data, QStringLiteral("02032025"), QStringLiteral("10:00:00"), QStringLiteral("00:30:00"),
              kMinutes);
    AddRecord(data, QStringLiteral("03032026"), QStringLiteral("10:00:00"), QStringLiteral("05:00:00"),
              QStringLiteral("Andere - X.tel"));
    AddRecord(data, QStringLiteral("28022026"), QStringLiteral("10:00:00"), QStringLiteral("05:00:00"),
              kMinutes);
    a = ComputeFreeAllowance(data.dir(), kMinutes, QDate(2026, 3, 10));
    QCOMPARE(a.restfrei, QStringLiteral("01:00:00"));
    QCOMPARE(a.percentText, QStringLiteral("50,0%"));

    AddRecord(data, QStringLiteral("04032026"), QStringLiteral("10:00:00"), QStringLiteral("01:00:00"),
              kMinutes);
    a = ComputeFreeAllowance(data.dir(), kMinutes, QDate(2026, 3, 10));
    QCOMPARE(a.restfrei, QStringLiteral("00:00:00"));  // used up exactly: still green
    QCOMPARE(a.colour, FreeAllowance::Colour::DarkGreen);
    QCOMPARE(a.percentText, QStringLiteral("0,0%"));

    AddRecord(data, QStringLiteral("05032026"), QStringLiteral("10:00:00"), QStringLiteral("00:10:05"),
              kMinutes);
    a = ComputeFreeAllowance(data.dir(), kMinutes, QDate(2026, 3, 10));
    QCOMPARE(a.restfrei, QStringLiteral("-00:10:05"));
    QCOMPARE(a.text, QStringLiteral("0 (überschritten um 00:10:05)"));
    QCOMPARE(a.colour, FreeAllowance::Colour::DarkRed);
    QVERIFY(!a.barVisible);
  }

  void halfHoursAreCutOffByTheComma() {
    test::TempDataDir data;
    data.write(QStringLiteral("Tarife/") + kMinutes, "Freiminuten:90\r\n");
    const FreeAllowance a = ComputeFreeAllowance(data.dir(), kMinutes, QDate(2026, 3, 10));
    QCOMPARE(a.restfrei, QStringLiteral("1:0,5:00"));
    AddRecord(data, QStringLiteral("01032026"), QStringLiteral("10:00:00"), QStringLiteral("00:00:01"),
              kMinutes);
    QCOMPARE(ComputeFreeAllowance(data.dir(), kMinutes, QDate(2026, 3, 10)).restfrei,
             QStringLiteral("00:59:59"));
  }

  void freeTransferCountsEveryRecordOfTheMonthAndYear() {
    test::TempDataDir data;
    data.write(QStringLiteral("Tarife/") + kTransfer, "Volumenabrechnung:Ja\r\nVolumengrenze:500\r\n");
    FreeAllowance a = ComputeFreeAllowance(data.dir(), kTransfer, QDate(2026, 3, 10));
    QCOMPARE(a.caption, QStringLiteral("Verbleibender kostenfreier Transfer:"));
    QCOMPARE(a.text, QStringLiteral("500MB"));
    QCOMPARE(a.percentText, QStringLiteral("100,0%"));

    AddRecord(data, QStringLiteral("01032026"), QStringLiteral("10:00:00"), QStringLiteral("00:10:00"),
              QStringLiteral("Andere - X.tel"), QStringLiteral("100.000.000 Bytes"));
    AddRecord(data, QStringLiteral("02032025"), QStringLiteral("10:00:00"), QStringLiteral("00:10:00"),
              kTransfer, QStringLiteral("300.000.000 Bytes"));
    AddRecord(data, QStringLiteral("03032026"), QStringLiteral("10:00:00"), QStringLiteral("00:10:00"),
              kTransfer, QStringLiteral("unbekannt"));
    a = ComputeFreeAllowance(data.dir(), kTransfer, QDate(2026, 3, 10));
    QCOMPARE(a.text, QStringLiteral("400MB"));
    QCOMPARE(a.percentText, QStringLiteral("80,0%"));
    QCOMPARE(a.restfrei, QStringLiteral("400"));

    AddRecord(data, QStringLiteral("04032026"), QStringLiteral("10:00:00"), QStringLiteral("00:10:00"),
              kTransfer, QStringLiteral("450.600.000 Bytes"));
    a = ComputeFreeAllowance(data.dir(), kTransfer, QDate(2026, 3, 10));
    QCOMPARE(a.text, QStringLiteral("0 (überschritten um 51MB)"));
    QCOMPARE(a.colour, FreeAllowance::Colour::DarkRed);
    QVERIFY(!a.barVisible);
  }
};

QTEST_APPLESS_MAIN(TestFreeAllowance)
#include "test_freeallowance.moc"
