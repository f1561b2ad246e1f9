#include "history/ManualCost.h"
#include "history/ManualRecord.h"
#include "history/RecordWalk.h"
#include "support/RecordFiles.h"
#include "support/TempDataDir.h"
#include "tariffs/TariffText.h"

#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;

namespace {

const QString kDay = u"Test - Tag.tel"_s;         // one zone per day kind
const QString kSplit = u"Test - Geteilt.tel"_s;   // 0-8 and 8-24 on weekdays
const QString kSecond = u"Test - Sekunde.tel"_s;  // one-second steps

void WriteTariffs(const test::TempDataDir& data) {
  using test::Zone;
  data.write(u"Tarife/"_s + kDay,
             test::Crlf(test::TimeHead() + Zone(0, 24, "6", false) + Zone(0, 24, "1,2", true)));
  data.write(u"Tarife/"_s + kSplit,
             test::Crlf(test::TimeHead("1/60") + Zone(0, 8, "1", false) + Zone(8, 24, "9", false)));
  data.write(u"Tarife/"_s + kSecond, test::Crlf(test::TimeHead("1/1") + Zone(0, 24, "6", false)));
}

ManualRecord Sample() {
  ManualRecord r;
  r.date = u"20.05.2026"_s;
  r.start = u"09:00:00"_s;
  r.duration = u"00:10:00"_s;
  r.cost = u"0,60"_s;
  r.units = u"10"_s;
  r.bytesIn = r.bytesOut = r.bytesTotal = u"0"_s;
  r.provider = u"Test"_s;
  r.tariff = u"M - Tag"_s;
  r.user = u"Anna"_s;
  return r;
}

}  // namespace

class TestManualEntry : public QObject {
  Q_OBJECT

 private slots:
  void estimate() {
    test::TempDataDir data;
    WriteTariffs(data);
    // units: -1: left alone
    // 20.05.2026 is a Wednesday, 01.01.2028 a Saturday.
    const std::tuple<QString, const char*, const char*, const char*, double, int> cases[] = {
        {kDay, "20.05.2026", "14:00:00", "0:10:00", 60.0, 10},    // whole steps
        {kDay, "20.05.2026", "14:00:00", "0:01:01", 12.0, 2},     // the last step charged whole
        {kDay, "20.05.2026", "14:00:00", "0:00:00", 0.0, 0},      // no duration, no step
        {kDay, "31.12.2027", "23:59:30", "0:01:00", 6.0, 1},      // priced where the step begins
        {kDay, "31.12.2027", "23:59:30", "0:01:01", 7.2, 2},      // the next step on the weekend
        {kSplit, "20.05.2026", "12:00:00", "0:02:00", 2.0, 2},    // later zones starting after 0 never match
        {kSplit, "02.01.2028", "12:00:00", "0:02:00", 0.0, 2},    // a weekend without a weekend zone
        {kSecond, "20.05.2026", "12:00:00", "0:00:30", 3.0, -1},  // one-second steps leave the units
        {kDay, "18.05.2026", "00:00:00", "90:00:00", 32400.0, 5400},  // ninety hours from a Monday
        {u"Test - Weg.tel"_s, "20.05.2026", "12:00:00", "0:02:00", 0.0, -1},
    };
    for (const auto& [tariff, date, start, duration, cost, units] : cases) {
      const auto estimate =
          ComputeManualCost(data.dir(), tariff, QString::fromLatin1(date), QString::fromLatin1(start),
                            DurationToSeconds(QString::fromLatin1(duration)));
      QVERIFY2(estimate, duration);
      QCOMPARE(qRound64(double(estimate->cost) * 1000), qRound64(cost * 1000));
      QCOMPARE(estimate->units.value_or(-1), qint64(units));
    }
  }

  void unreadableInputs() {
    test::TempDataDir data;
    WriteTariffs(data);
    QVERIFY(!ComputeManualCost(data.dir(), kDay, u"gestern"_s, u"12:00:00"_s, 60));
    QVERIFY(!ComputeManualCost(data.dir(), kDay, u"20.05.2026"_s, QString(), 60));
    QVERIFY(!ComputeManualCost(data.dir(), kSecond, u"20.05.2026"_s, u"1:00:00"_s, qint64(1) << 40));
    QCOMPARE(DurationToSeconds(u"90"), 324000);
    QCOMPARE(DurationToSeconds(u"1:2"), 3720);
    QVERIFY(!DurationAsTimeOfDay(u"90:00:00"_s));
    QCOMPARE(DurationAsTimeOfDay(u"01:02:03"_s).value_or(-1), 3723);
    QCOMPARE(NormaliseEntryField(0, u"5.3.2026"_s), u"05.03.2026"_s);
    QCOMPARE(NormaliseEntryField(0, u"morgen"_s), QString());
    QCOMPARE(NormaliseEntryField(2, u"90"_s), u"90:00:00"_s);
    QCOMPARE(NormaliseEntryField(3, u"1.5"_s), u"1,50"_s);
    QCOMPARE(NormaliseEntryField(5, u"12 Bytes"_s), u"12"_s);
  }

  void checksInOrder() {
    ManualRecord r = Sample();
    QVERIFY(!CheckManualRecord(r));
    r.user.clear();
    QCOMPARE(CheckManualRecord(r).value_or(QString()), u"Sie müssen einen Benutzer angeben."_s);
    r.tariff.clear();
    QCOMPARE(CheckManualRecord(r).value_or(QString()), u"Sie müssen einen Tarif angeben."_s);
    r.date.clear();
    QCOMPARE(CheckManualRecord(r).value_or(QString()), u"Sie müssen ein Datum eingeben."_s);
  }

  void saveReadAndChange() {
    test::TempDataDir data;
    ManualRecord r = Sample();
    r.comment = u"nachgetragen"_s;
    const ManualSaveResult saved = SaveManualRecord(data.dir(), r);
    QCOMPARE(saved.fileName, u"20052026-090000.con"_s);
    QList<QByteArray> lines;
    WalkRecords(
        data.dir(), [](const QString&, const QDate&) { return true; },
        [&](const RecordFile& record) { lines = record.fields; });
    QCOMPARE(lines, (QList<QByteArray>{"S20.05.2026", "09:00:00", "00:10:00", "S0,60", "10", "0", "0", "0",
                                       "Keine DF\xDC Verbindung", "Test - Tag.tel", "Anna", "nachgetragen"}));

    auto back = ReadManualRecord(data.dir(), saved.fileName);
    QVERIFY(back);
    QCOMPARE(back->provider, u"Test"_s);
    QCOMPARE(back->tariff, u"M - Tag"_s);
    QCOMPARE(back->dfue, u"Keine DFÜ Verbindung"_s);

    // A new date renames the file; the old one goes once the new one stands.
    back->date = u"21.05.2026"_s;
    QCOMPARE(SaveManualRecord(data.dir(), *back, saved.fileName).fileName, u"21052026-090000.con"_s);
    QCOMPARE(data.dir().ListFiles(u"Verbindungen"_s), QStringList{"21052026-090000.con"});

    // A label of neither kind writes no tariff line: the record is a line short.
    r.tariff = u"M Net - Tag"_s;
    const QString shortName = SaveManualRecord(data.dir(), r).fileName;
    QCOMPARE(ReadManualRecord(data.dir(), shortName)->user, u"nachgetragen"_s);

    r.start = u"25:00:00"_s;
    QVERIFY(!SaveManualRecord(data.dir(), r).error.isEmpty());
  }
};

QTEST_GUILESS_MAIN(TestManualEntry)
#include "test_manual_entry.moc"
