#include "history/ManualCost.h"
#include "history/ManualRecord.h"
#include "history/RecordWalk.h"
#include "support/RecordFiles.h"
#include "support/TempDataDir.h"
#include "tariffs/TariffText.h"

#include <QTest>

using namespace minutor;

namespace {

const QString kDay = QStringLiteral("Test - Tag.tel");         // one zone per day kind
const QString kSplit = QStringLiteral("Test - Geteilt.tel");   // 0-8 and 8-24 on weekdays
const QString kSecond = QStringLiteral("Test - Sekunde.tel");  // one-second steps

void WriteTariffs(const test::TempDataDir& data) {
  using test::Zone;
  data.write(QStringLiteral("Tarife/") + kDay,
             test::Crlf(test::TimeHead() + Zone(0, 24, "6", false) + Zone(0, 24, "1,2", true)));
  data.write(QStringLiteral("Tarife/") + kSplit,
             test::Crlf(test::TimeHead("1/60") + Zone(0, 8, "1", false) + Zone(8, 24, "9", false)));
  data.write(QStringLiteral("Tarife/") + kSecond,
             test::Crlf(test::TimeHead("1/1") + Zone(0, 24, "6", false)));
}

ManualRecord Sample() {
  ManualRecord r;
  r.date = QStringLiteral("20.05.2026");
  r.start = QStringLiteral("09:00:00");
  r.duration = QStringLiteral("00:10:00");
  r.cost = QStringLiteral("0,60");
  r.units = QStringLiteral("10");
  r.bytesIn = r.bytesOut = r.bytesTotal = QStringLiteral("0");
  r.provider = QStringLiteral("Test");
  r.tariff = QStringLiteral("M - Tag");
  r.user = QStringLiteral("Anna");
  return r;
}

}  // namespace

class TestManualEntry : public QObject {
  Q_OBJECT

 private slots:
  void estimate() {
    test::TempDataDir data;
    WriteTariffs(data);
    struct Case {
      QString tariff;
      const char* date;
      const char* start;
      const char* duration;
      double cost;
      int units;  // -1: left alone
    };
    // 20.05.2026 is a Wednesday, 01.01.2028 a Saturday.
    const Case cases[] = {
        {kDay, "20.05.2026", "14:00:00", "0:10:00", 60.0, 10},    // whole steps
        {kDay, "20.05.2026", "14:00:00", "0:01:01", 12.0, 2},     // the last step charged whole
        {kDay, "20.05.2026", "14:00:00", "0:00:00", 0.0, 0},      // no duration, no step
        {kDay, "31.12.2027", "23:59:30", "0:01:00", 6.0, 1},      // priced where the step begins
        {kDay, "31.12.2027", "23:59:30", "0:01:01", 7.2, 2},      // the next step on the weekend
        {kSplit, "20.05.2026", "12:00:00", "0:02:00", 2.0, 2},    // later zones starting after 0 never match
        {kSplit, "02.01.2028", "12:00:00", "0:02:00", 0.0, 2},    // a weekend without a weekend zone
        {kSecond, "20.05.2026", "12:00:00", "0:00:30", 3.0, -1},  // one-second steps leave the units
        {kDay, "18.05.2026", "00:00:00", "90:00:00", 32400.0, 5400},  // ninety hours from a Monday
        {QStringLiteral("Test - Weg.tel"), "20.05.2026", "12:00:00", "0:02:00", 0.0, -1},
    };
    for (const Case& c : cases) {
      const auto estimate =
          ComputeManualCost(data.dir(), c.tariff, QString::fromLatin1(c.date), QString::fromLatin1(c.start),
                            DurationToSeconds(QString::fromLatin1(c.duration)));
      QVERIFY2(estimate, c.duration);
      QCOMPARE(qRound64(double(estimate->cost) * 1000), qRound64(c.cost * 1000));
      QCOMPARE(estimate->units.value_or(-1), qint64(c.units));
    }
  }

  void unreadableInputs() {
    test::TempDataDir data;
    WriteTariffs(data);
    QVERIFY(!ComputeManualCost(data.dir(), kDay, QStringLiteral("gestern"), QStringLiteral("12:00:00"), 60));
    QVERIFY(!ComputeManualCost(data.dir(), kDay, QStringLiteral("20.05.2026"), QString(), 60));
    QVERIFY(!ComputeManualCost(data.dir(), kSecond, QStringLiteral("20.05.2026"), QStringLiteral("1:00:00"),
                               qint64(1) << 40));
    QCOMPARE(DurationToSeconds(u"90"), 324000);
    QCOMPARE(DurationToSeconds(u"1:2"), 3720);
    QVERIFY(!DurationAsTimeOfDay(QStringLiteral("90:00:00")));
    QCOMPARE(DurationAsTimeOfDay(QStringLiteral("01:02:03")).value_or(-1), 3723);
    QCOMPARE(NormaliseEntryField(0, QStringLiteral("5.3.2026")), QStringLiteral("05.03.2026"));
    QCOMPARE(NormaliseEntryField(0, QStringLiteral("morgen")), QString());
    QCOMPARE(NormaliseEntryField(2, QStringLiteral("90")), QStringLiteral("90:00:00"));
    QCOMPARE(NormaliseEntryField(3, QStringLiteral("1.5")), QStringLiteral("1,50"));
    QCOMPARE(NormaliseEntryField(5, QStringLiteral("12 Bytes")), QStringLiteral("12"));
  }

  void checksInOrder() {
    ManualRecord r = Sample();
    QVERIFY(!CheckManualRecord(r));
    r.user.clear();
    QCOMPARE(CheckManualRecord(r).value_or(QString()), QStringLiteral("Sie müssen einen Benutzer angeben."));
    r.tariff.clear();
    QCOMPARE(CheckManualRecord(r).value_or(QString()), QStringLiteral("Sie müssen einen Tarif angeben."));
    r.date.clear();
    QCOMPARE(CheckManualRecord(r).value_or(QString()), QStringLiteral("Sie müssen ein Datum eingeben."));
  }

  void saveReadAndChange() {
    test::TempDataDir data;
    ManualRecord r = Sample();
    r.comment = QStringLiteral("nachgetragen");
    const ManualSaveResult saved = SaveManualRecord(data.dir(), r);
    QCOMPARE(saved.fileName, QStringLiteral("20052026-090000.con"));
    QList<QByteArray> lines;
    WalkRecords(
        data.dir(), [](const QString&, const QDate&) { return true; },
        [&](const RecordFile& record) { lines = record.fields; });
    QCOMPARE(lines, (QList<QByteArray>{"S20.05.2026", "09:00:00", "00:10:00", "S0,60", "10", "0", "0", "0",
                                       "Keine DF\xDC Verbindung", "Test - Tag.tel", "Anna", "nachgetragen"}));

    auto back = ReadManualRecord(data.dir(), saved.fileName);
    QVERIFY(back);
    QCOMPARE(back->provider, QStringLiteral("Test"));
    QCOMPARE(back->tariff, QStringLiteral("M - Tag"));
    QCOMPARE(back->dfue, QStringLiteral("Keine DFÜ Verbindung"));

    // A new date renames the file; the old one goes once the new one stands.
    back->date = QStringLiteral("21.05.2026");
    QCOMPARE(SaveManualRecord(data.dir(), *back, saved.fileName).fileName,
             QStringLiteral("21052026-090000.con"));
    QCOMPARE(data.dir().ListFiles(QStringLiteral("Verbindungen")), QStringList{"21052026-090000.con"});

    // A label of neither kind writes no tariff line: the record is a line short.
    r.tariff = QStringLiteral("M Net - Tag");
    const QString shortName = SaveManualRecord(data.dir(), r).fileName;
    QCOMPARE(ReadManualRecord(data.dir(), shortName)->user, QStringLiteral("nachgetragen"));

    r.start = QStringLiteral("25:00:00");
    QVERIFY(!SaveManualRecord(data.dir(), r).error.isEmpty());
  }
};

QTEST_GUILESS_MAIN(TestManualEntry)
#include "test_manual_entry.moc"
