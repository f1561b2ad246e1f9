#include "desk/FreeAllowance.h"
#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Services.h"
#include "frame/datadir/NumberText.h"
#include "history/TariffRepricer.h"
#include "metering/Meter.h"
#include "metering/MeterHooks.h"
#include "metering/TrafficSource.h"
#include "support/RecordingPrompter.h"
#include "support/TempDataDir.h"

#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;

namespace {

const QString kFile = u"Test - Form.tel"_s;

QByteArray Zone(int von, int bis, const char* pfennig, bool wochenende) {
  return QByteArray("Zone:Form\r\nVon:") + QByteArray::number(von) + "\r\nBis:" + QByteArray::number(bis) +
         "\r\nPfennig:" + pfennig + "\r\nEinheit:60\r\nWochenende:" + (wochenende ? "Ja" : "Nein") + "\r\n";
}

// A tariff file of the head lines given (Windows-1252) and the zones.
QByteArray Tariff(const QByteArray& head, const QByteArray& zones = Zone(0, 24, "0", false)) {
  return "[Providerdaten]\r\nName:Test - Form\r\n" + head + "\r\n[Tarifzonen]\r\n" + zones;
}

const QByteArray kFee =
    "Gespr\xe4"
    "chsgrundgeb\xfc"
    "hr:";

// The byte counters of a connection whose bytes are all there from its
// first second, as the record's total is taken.
class BytesFromStart final : public TrafficSource {
 public:
  explicit BytesFromStart(double bytes) : bytes_(bytes) {}
  std::optional<TrafficCount> Read(qint32) override { return TrafficCount{bytes_, 0}; }

 private:
  double bytes_;
};

// A recording as minutorctl simulate makes it, the record and the carry-over
// saved, the free allowance taken from the records already saved.
RepricedConnection Record(const DataDir& dir, const PastConnection& connection) {
  AppState state;
  state.AktuellerTarif = kFile;
  state.ActiveUser = u"Anna"_s;
  state.Restfrei = ComputeFreeAllowance(dir, kFile, connection.start.date()).restfrei;
  FixedClock clock(connection.start);
  test::RecordingPrompter prompter;
  Services services{state, dir, clock, prompter};
  BytesFromStart traffic(connection.bytes);
  MeterHooks hooks;
  Meter meter(services, traffic, hooks);
  meter.Counter_Start();
  for (meter.TimerStarterTick(); meter.TickCount() < connection.seconds; meter.Tick()) {
    clock.Advance(1);
  }
  meter.Counter_Stop();
  return {meter.Fields().Kosten, ParseBetrag(RecordPlainLines(meter.Labels().Record()).at(3).mid(1))};
}

PastConnection At(const char* start, qint64 seconds, double bytes = 0) {
  return {QDateTime::fromString(QString::fromLatin1(start), u"yyyy-MM-dd HH:mm:ss"_s), seconds, bytes};
}

}  // namespace

class TestTariffRepricing : public QObject {
  Q_OBJECT

 private slots:
  // Unit by unit, the repricing ends where the meter, ticking each second,
  // ends: the same single-precision cost and the same amount in the record,
  // over a month's run of connections of every tariff shape.
  void repricingEqualsTheTickingMeter() {
    // On the stroke of 18 the later zone, 8 to 18, decides; after it the
    // earlier one.
    const QByteArray zones = Zone(18, 24, "2,9", false) + Zone(8, 18, "3,9", false) +
                             Zone(0, 8, "0,7", false) + Zone(0, 3, "1.5", true) + Zone(3, 24, "2,5", true);
    const std::tuple<const char*, QByteArray, QList<PastConnection>> cases[] = {
        {"zones across midnight, the weekend, the full hour, hour 0, the change to summer time",
         Tariff("Volumenabrechnung:Nein\r\nTakt:60/60\r\n", zones),
         {At("2026-03-27 23:10:30", 7200), At("2026-03-29 01:30:00", 7200), At("2026-03-30 17:59:30", 200),
          At("2026-03-30 18:20:00", 61), At("2026-03-31 00:20:00", 5000), At("2026-03-31 07:59:59", 1),
          At("2026-03-31 00:00:00", 61)}},
        {"every second, fee per connection",
         Tariff("Takt:1/1\r\n" + kFee + "9,9\r\n", Zone(0, 24, "2,37", false)),
         {At("2026-11-24 10:00:00", 4000), At("2026-11-24 21:59:58", 3)}},
        {"first unit longer than the rest",
         Tariff("Takt:60 / 1\r\n", Zone(9, 17, "4", false) + Zone(17, 24, "2", false)),
         {At("2026-11-24 16:59:30", 600), At("2026-11-24 12:00:00", 59)}},
        {"no first unit, rest rounded",
         Tariff("Takt:0/30,4\r\n", Zone(0, 24, "7", false)),
         {At("2026-11-24 09:00:00", 95)}},
        {"free minutes running out within a connection",
         Tariff("Freiminuten:90\r\nTakt:60/60\r\n", Zone(0, 24, "3", false) + Zone(0, 24, "3", true)),
         {At("2026-11-02 10:00:00", 2399), At("2026-11-03 10:00:00", 1800), At("2026-11-04 10:00:00", 2100)}},
        {"volume, fee, carry-over, more than a unit a second, no traffic",
         Tariff("Volumenabrechnung:Ja\r\nVolumenkosten:9\r\nVolumeneinheit:1\r\n" + kFee + "5\r\n"),
         {At("2026-11-02 10:00:00", 120, 2500000), At("2026-11-02 11:00:00", 60, 700000),
          At("2026-11-02 12:00:00", 3, 10000000), At("2026-11-02 13:00:00", 30, 0),
          At("2026-11-02 14:00:00", 30, 400000)}},
        {"volume with free transfer",
         Tariff("Volumenabrechnung:Ja\r\nVolumenkosten:12\r\nVolumeneinheit:0,5\r\nVolumengrenze:5\r\n"),
         {At("2026-11-02 10:00:00", 600, 3000000), At("2026-11-03 10:00:00", 600, 3000000),
          At("2026-11-04 10:00:00", 600, 1000000)}},
        {"volume without unit size",
         Tariff("Volumenabrechnung:Ja\r\nVolumenkosten:12\r\nVolumeneinheit:0\r\n"),
         {At("2026-11-02 10:00:00", 60, 3000000)}},
    };
    for (const auto& [shape, file, connections] : cases) {
      test::TempDataDir data;
      data.write(u"Tarife/"_s + kFile, file);
      QList<RepricedConnection> metered;
      for (const PastConnection& connection : connections) {
        metered.append(Record(data.dir(), connection));
      }
      TariffRepricer repricer(data.dir(), kFile);
      for (qsizetype i = 0; i < connections.size(); ++i) {
        const RepricedConnection priced = repricer.Next(connections[i]);
        const QString where = u"%1, connection %2: %3 against %4"_s.arg(QString::fromLatin1(shape))
                                  .arg(i + 1)
                                  .arg(double(priced.kosten), 0, 'g', 9)
                                  .arg(double(metered[i].kosten), 0, 'g', 9);
        QVERIFY2(priced.kosten == metered[i].kosten, qPrintable(where));
        QVERIFY2(priced.amount == metered[i].amount, qPrintable(where));
      }
    }
  }
};

QTEST_GUILESS_MAIN(TestTariffRepricing)
#include "test_tariff_repricing.moc"
