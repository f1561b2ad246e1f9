#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Services.h"
#include "frame/datadir/ClockText.h"
#include "metering/ConnectionRecord.h"
#include "metering/Meter.h"
#include "metering/MeterHooks.h"
#include "metering/Prerun.h"
#include "metering/RecordingCheckpoint.h"
#include "metering/TrafficSource.h"
#include "support/RecordingPrompter.h"
#include "support/TempDataDir.h"
#include "tariffs/TariffText.h"

#include <QDir>
#include <QTest>

#include <functional>

using namespace minutor;
using namespace Qt::StringLiterals;
using test::At;
using test::Local;

namespace {

// Notes every call out of the meter.
class Hooks final : public MeterHooks {
 public:
  QStringList calls;
  QString caption;
  std::function<void(DetectedConnection&)> detect;
  std::function<void()> connectionEnd;

  void DetectConnection(DetectedConnection& connection) override {
    calls << u"DetectConnection"_s;
    if (detect) {
      detect(connection);
    }
  }
  void GetTimeLimit() override { calls << u"GetTimeLimit"_s; }
  void LaunchPrograms() override { calls << u"LaunchPrograms"_s; }
  void GetBudget() override { calls << u"GetBudget"_s; }
  void StartServices() override { calls << u"StartServices"_s; }
  void ShowSmallWindow() override { calls << u"ShowSmallWindow"_s; }
  void StartTimerStarter() override { calls << u"StartTimerStarter"_s; }
  void GetNewBudget(bool monthChanged) override {
    calls << (monthChanged ? u"GetNewBudget month"_s : u"GetNewBudget"_s);
  }
  void CheckBudget() override { calls << u"CheckBudget"_s; }
  void UpdateSmallWindow() override { calls << u"UpdateSmallWindow"_s; }
  void ShowCaption(const QString& text) override { caption = text; }
  void CheckConnectionEnd() override {
    if (connectionEnd) {
      connectionEnd();
    }
  }
  void CheckDayLimit() override { calls << u"CheckDayLimit"_s; }
  void CheckMonthLimit() override { calls << u"CheckMonthLimit"_s; }
  void ConnectionSaved() override { calls << u"ConnectionSaved"_s; }
  void RecordingStopped() override { calls << u"RecordingStopped"_s; }

  int count(const char* call) const { return static_cast<int>(calls.count(QString::fromLatin1(call))); }
};

// Counters that the test sets; nothing until it does.
class Traffic final : public TrafficSource {
 public:
  std::optional<TrafficCount> now;
  std::optional<TrafficCount> Read(qint32) override { return now; }
  void set(double received, double sent) { now = TrafficCount{received, sent}; }
};

// One recording on its own state and clock.
struct Recording {
  AppState state;
  FixedClock clock;
  test::RecordingPrompter prompter;
  Services services;
  Hooks hooks;
  Traffic traffic;
  Meter meter;

  Recording(const test::TempDataDir& data, const QString& tariff, const QDateTime& start)
      : clock(start), services{state, data.dir(), clock, prompter}, meter(services, traffic, hooks) {
    state.AktuellerTarif = tariff;
    state.RestfreiTarif = tariff;
    state.ActiveUser = u"Supervisor"_s;
  }

  // Counter_Start and the first tick, at the same moment.
  void start() {
    meter.Counter_Start();
    meter.TimerStarterTick();
  }
  // Ticks a second apart until `tick` ticks have run.
  void tickTo(int tick) {
    while (meter.TickCount() < tick && meter.IsTimerEnabled()) {
      clock.Advance(1);
      meter.Tick();
    }
  }
  QString operator[](const char* label) const { return meter.Labels().Text(QString::fromLatin1(label)); }

  // Ticks on to each step's tick and compares the label there.
  struct Step {
    int tick;
    const char* label;
    QString text;
  };
  void expect(const QList<Step>& steps) {
    for (const Step& step : steps) {
      tickTo(step.tick);
      QVERIFY2((*this)[step.label] == step.text,
               qPrintable(u"tick %1, %2: %3"_s.arg(step.tick).arg(step.label, (*this)[step.label])));
    }
  }
};

QString Euro(const char* amount) { return Local(QString::fromLatin1(amount)) + u" €"_s; }
QString Bracket(const char* amount) { return u"0 ("_s + Euro(amount) + QLatin1Char(')'); }
QString Bytes(double count) { return QLocale().toString(count, 'f', 0) + u" Bytes"_s; }

}  // namespace

// Runs under a German and an English locale.
class TestMeter : public QObject {
  Q_OBJECT

  test::TempDataDir data;

  // A time tariff; without zones 6 cents a minute all day.
  QString timeTariff(const QString& name, const QByteArray& takt = "60/60", const QByteArray& fee = "0",
                     const QList<QByteArray>& zones = test::Zone(0, 24, "6", false)) {
    data.write(u"Tarife/"_s + name, test::Crlf(test::TimeHead(takt, fee) + zones));
    return name;
  }

  // A volume tariff at 10 cents a unit with a fee of 5 cents.
  QString volumeTariff(const QString& name, const QByteArray& unitMB) {
    data.write(u"Tarife/"_s + name, test::Crlf({"[Providerdaten]", "Volumenabrechnung:Ja", "Volumenkosten:10",
                                                "Volumeneinheit:" + unitMB, "Gespr\344chsgrundgeb\374hr:5"}));
    return name;
  }

  QList<QByteArray> record(const QString& name) {
    return ReadRecordFields(data.path(u"Verbindungen/"_s + name)).value_or(QList<QByteArray>());
  }

 private slots:
  void theWorkedExampleOfATimeTariff() {
    Recording r(data, timeTariff(u"Takt - Minute.tel"_s), At(1, 10, 0, 0));
    r.hooks.detect = [](DetectedConnection& c) { c.name = u"Modem"_s; };
    r.start();
    QCOMPARE(r.hooks.caption, Euro("0.060") + u" | 00:00:01 | 0.0 | unbekannt"_s);
    r.expect({{1, "lblKosten", Euro("0.060")},
              {1, "lblEinheiten", "1 (59s)"},
              {1, "lblRestFrei", "keine"},
              {60, "lblKosten", Euro("0.060")},
              {60, "lblEinheiten", "2 (60s)"},
              {61, "lblKosten", Euro("0.120")},
              {121, "lblKosten", Euro("0.180")},
              {121, "lblEinheiten", "3 (59s)"}});
    // The first tick asks for the budget, and so does every real charge.
    QCOMPARE(r.hooks.count("CheckBudget"), 3);

    r.meter.Counter_Stop();
    QVERIFY(!r.state.RecordingActive);
    QVERIFY(!r.meter.IsTimerEnabled());
    QCOMPARE(r.hooks.calls.mid(r.hooks.calls.size() - 2),
             (QStringList{u"ConnectionSaved"_s, u"RecordingStopped"_s}));
    QCOMPARE(record(u"01012024-100000.con"_s),
             (QList<QByteArray>{"S01.01.2024", LongTimeText(QTime(10, 0)).toLatin1(), "00:02:01",
                                "S" + Local("0.18").toLatin1(), "3", "0", "0", "0", "Modem",
                                "Takt - Minute.tel", "Supervisor"}));
    QVERIFY(!data.dir().DirExists(u"Prerun"_s));

    // Stopped is stopped: no tick, no second record.
    r.meter.Tick();
    r.meter.Counter_Stop();
    QCOMPARE(r.meter.TickCount(), 121);
    QCOMPARE(r.hooks.count("RecordingStopped"), 1);
  }

  void freeTimeShowsAndLosesTheShadowCost() {
    // Two free minutes: the fee and the opening unit show in brackets, the
    // unit of the second minute goes to the shadow cost and is lost, and the
    // first unit after the free time is real.
    Recording r(data, timeTariff(u"Takt - Frei.tel"_s, "60/60", "5"), At(2, 10));
    r.state.Restfrei = u"00:02:00"_s;
    r.start();
    r.expect({{1, "lblRestFrei", "00:01:59"},
              {1, "lblKosten", Bracket("0.110")},
              {61, "lblKosten", Bracket("0.170")},
              {120, "lblRestFrei", "00:00:00"},
              {120, "lblKosten", Bracket("0.170")}});
    QCOMPARE(r.hooks.count("CheckBudget"), 1);
    // Without the free time it would be 0.230.
    r.expect({{121, "lblRestFrei", "-00:00:01"}, {121, "lblKosten", Euro("0.170")}});
  }

  void shortUnits() {
    // A first unit of a minute costs one second's price and shows as units
    // until it has run out; then every second is charged.
    Recording r(data, timeTariff(u"Takt - Erste Minute.tel"_s, "60/1"), At(3, 11));
    r.start();
    r.expect({{1, "lblKosten", Euro("0.001")},
              {1, "lblEinheiten", "1 (59s)"},
              {60, "lblEinheiten", "2 (1s)"},
              {61, "lblEinheiten", "sek.genau"},
              {71, "lblKosten", Euro("0.012")}});
  }

  void theNewHourBringsTheNewPrice() {
    const QString file = timeTariff(u"Takt - Abend.tel"_s, "60/60", "0",
                                    test::Zone(0, 18, "6", false) + test::Zone(18, 24, "12", false));
    Recording r(data, file, At(1, 17, 59, 59));
    r.start();
    // An edit counts from the next hour on, as the file is read then.
    timeTariff(file, "60/60", "0", test::Zone(0, 18, "6", false) + test::Zone(18, 24, "18", false));
    r.expect({{61, "lblKosten", Euro("0.240")}, {61, "lblEuroProMinute", Euro("0.060")}});

    // A connection into a new day and month: the day change runs once, the
    // record keeps the start date.
    Recording night(data, file, QDateTime(QDate(2024, 1, 31), QTime(23, 59, 58)));
    night.state.DayLimitOn = true;
    night.start();
    night.tickTo(5);
    QCOMPARE(night.hooks.count("GetNewBudget month"), 1);
    QCOMPARE(night.hooks.count("GetNewBudget"), 0);
    night.meter.Counter_Stop();
    QCOMPARE(record(u"31012024-235958.con"_s).value(0), QByteArray("S31.01.2024"));
  }

  void missingOrDamagedTariffs() {
    Recording missing(data, u"Weg - Nie da.tel"_s, At(4, 10));
    missing.start();
    missing.expect({{90, "lblEinheiten", "sek.genau"}, {90, "lblKosten", Euro("0.000")}});

    // Deleted during the recording: the next hour's price is 0, time goes on.
    const QString file = timeTariff(u"Weg - Bald.tel"_s);
    Recording r(data, file, At(4, 10, 59, 30));
    r.start();
    QVERIFY(data.dir().Remove(u"Tarife/"_s + file));
    r.expect(
        {{181, "lblKosten", Euro("0.060")}, {181, "lblEinheiten", "4 (59s)"}, {181, "lblDauer", "00:03:01"}});

    // Values no tariff should have: the meter runs on with whatever the peeks
    // make of them.
    const QByteArray digits(100000, '9');
    const QList<QByteArray> damaged = {
        test::Crlf({"Takt:" + digits + "/" + digits, "Gespr\344chsgrundgeb\374hr:" + digits, "[Tarifzonen]",
                    "Zone:x", "Von:0", "Bis:24", "Pfennig:" + digits, "Einheit:60", "Wochenende:Nein"}),
        test::Crlf({"Takt:-60/-0,5", "[Tarifzonen]", "Zone:x", "Von:0", "Bis:24", "Pfennig:-6", "Einheit:60",
                    "Wochenende:Nein"}),
        test::Crlf({"Volumenabrechnung:Ja", "Volumenkosten:" + digits, "Volumeneinheit:" + digits})};
    for (const QByteArray& content : damaged) {
      data.write(u"Tarife/Kaputt - Datei.tel"_s, content);
      Recording k(data, u"Kaputt - Datei.tel"_s, At(4, 11, 59, 58));
      k.traffic.set(1e12, 1e12);
      k.start();
      k.tickTo(4);
      QCOMPARE(k["lblDauer"], u"00:00:04"_s);
      k.meter.Counter_Stop();
      QVERIFY(data.dir().FileExists(u"Verbindungen/04012024-115958.con"_s));
    }
  }

  void volumeUnitsFollowTheTraffic() {
    // No unit size: a flat rate, whatever the traffic; the cost label keeps
    // the text it had.
    Recording flat(data, volumeTariff(u"Volumen - Flat.tel"_s, "0"), At(5, 10));
    flat.traffic.set(2000000, 1000000);
    flat.start();
    flat.tickTo(3);
    QCOMPARE(flat["lblEinheiten"], u"Flatrate"_s);
    QCOMPARE(flat["lblKosten"], QString());
    QCOMPARE(flat["lblRestFrei"], u"keiner"_s);
    flat.meter.Counter_Stop();
    QCOMPARE(LoadPrerun(data.dir(), u"Volumen - Flat.tel"_s), 0.0f);

    // Half a paid unit carried over: nothing is charged until it is used up.
    const QString file = volumeTariff(u"Volumen - Mega.tel"_s, "1");
    SavePrerun(data.dir(), file, 500);
    Recording r(data, file, At(5, 11));
    r.state.KanalbuendelungAktiv = true;
    r.start();
    r.expect({{1, "lblEinheiten", "Flatrate"}, {1, "lblEinheit", "1MB"}});  // no traffic yet
    r.traffic.set(499999, 0);
    r.expect(
        {{2, "lblEinheiten", "0 (0KB)"}, {2, "lblKosten", Euro("0.100")}});  // the fee, doubled by bundling
    r.traffic.set(400000, 100001);
    r.expect({{3, "lblEinheiten", "1 (1000KB)"}, {3, "lblKosten", Euro("0.200")}});  // a unit counts once
    r.meter.Counter_Stop();
    QCOMPARE(LoadPrerun(data.dir(), file), r.meter.Fields().EinheitRest);

    // Three and a half units in one second are charged one a tick.
    Recording fast(data, volumeTariff(u"Volumen - Schnell.tel"_s, "1"), At(5, 12));
    fast.traffic.set(3500000, 0);
    fast.start();
    fast.expect({{4, "lblEinheiten", "4 (500KB)"}, {4, "lblKosten", Euro("0.450")}});
    fast.tickTo(6);
    QCOMPARE(fast.hooks.count("CheckBudget"), 1 + 4);
    fast.meter.Counter_Stop();
    QCOMPARE(LoadPrerun(data.dir(), u"Volumen - Schnell.tel"_s), 500.0f);

    // Free transfer: units go to the shadow cost while it lasts.
    Recording free(data, volumeTariff(u"Volumen - Frei.tel"_s, "1"), At(5, 13));
    free.state.Restfrei = u"1"_s;
    free.traffic.set(500000, 0);
    free.start();
    free.expect({{1, "lblRestFrei", Local(u"0.500MB"_s)}, {1, "lblKosten", Bracket("0.100")}});
    free.traffic.set(2500000, 0);
    // Once there is a shadow cost the brackets stay.
    free.expect({{2, "lblRestFrei", Local(u"-1.500MB"_s)}, {2, "lblKosten", Bracket("0.100")}});
    QCOMPARE(free.meter.Fields().Kosten, 0.15f);
  }

  void trafficLabels() {
    Recording r(data, timeTariff(u"Takt - Verkehr.tel"_s), At(1, 8));
    // The values of the last recording don't show for a connection that
    // isn't counted.
    r.state.BytesIn = r.state.BytesTotal = 5000;
    r.start();
    QCOMPARE(r["lblBytesInOut"], u"unbekannt"_s);
    QCOMPARE(r.state.BytesTotal, 0.0);
    r.traffic.set(1234, 1000);
    r.expect({{2, "lblBytesIn", Bytes(1234)},
              {2, "lblBytesOut", Bytes(1000)},
              {2, "lblBytesInPerSecond", Local(u"1.2"_s)}});
    QCOMPARE(r.hooks.caption, Euro("0.060") + u" | 00:00:02 | "_s + Local(u"2.2"_s) + u" | "_s + Bytes(2234));
    // Beyond 32 bits; then the interface goes, and comes back counting anew:
    // the labels stand still until the counter has caught up.
    const std::pair<std::optional<TrafficCount>, double> counts[] = {{TrafficCount{4e9, 2e9}, 6e9},
                                                                     {std::nullopt, 6e9},
                                                                     {TrafficCount{3e9, 2e9}, 6e9},
                                                                     {TrafficCount{4e9, 2e9 + 1}, 6e9 + 1}};
    for (const auto& [count, shown] : counts) {
      r.traffic.now = count;
      r.expect({{r.meter.TickCount() + 1, "lblBytesInOut", Bytes(shown)}});
    }
    QCOMPARE(r["lblBytesOutPerSecond"], Local(u"0.0"_s));
    r.meter.Counter_Stop();
    QCOMPARE(record(u"01012024-080000.con"_s).mid(5, 3),
             (QList<QByteArray>{"4000000000", "2000000001", "6000000001"}));
  }

  void stopsFromInsideATick() {
    const QString file = timeTariff(u"Takt - Ende.tel"_s);
    Recording r(data, file, At(1, 7));
    r.state.MonthLimitOn = true;
    r.state.DialedByProgram = true;
    r.hooks.connectionEnd = [&r] {
      if (r.meter.TickCount() == 5) {
        r.meter.Counter_Stop();
      }
    };
    r.start();
    r.tickTo(10);
    QCOMPARE(r.meter.TickCount(), 5);
    QVERIFY(!r.state.DialedByProgram);
    // The tick that stopped ran to its end.
    QCOMPARE(r.hooks.count("CheckMonthLimit"), 5);
    QCOMPARE(r.hooks.calls.last(), u"CheckMonthLimit"_s);
    QCOMPARE(record(u"01012024-070000.con"_s).value(2), QByteArray("00:00:05"));
    // The month limit alone doesn't ask for the time left.
    QCOMPARE(r.hooks.count("GetTimeLimit"), 0);

    // A stop before the first tick: nothing ticks afterwards.
    Recording early(data, file, At(1, 7, 30));
    early.meter.Counter_Start();
    early.meter.Counter_Stop();
    early.meter.TimerStarterTick();
    QCOMPARE(early.meter.TickCount(), 0);
    QVERIFY(!early.meter.IsTimerEnabled());
  }

  void callsOutInTheirOrder() {
    const QString file = timeTariff(u"Takt - Folge.tel"_s);
    Recording r(data, u"Ab"_s, At(1, 6, 30));
    r.state.DayLimitOn = true;
    r.state.Restfrei = u"499:59:45"_s;
    // The tariff of the dial-up entry takes the place of the chosen one,
    // and the chosen one's free time goes with it.
    r.hooks.detect = [&](DetectedConnection& c) {
      c = {u"Arcor"_s, u"ISDN"_s, 7};
      r.state.AktuellerTarif = file;
    };
    r.meter.SetTimeSyncPending(true);
    r.meter.SetKleinesFenster(true);
    r.meter.Counter_Start();
    QCOMPARE(r.hooks.calls, (QStringList{"DetectConnection", "GetTimeLimit", "LaunchPrograms", "GetBudget",
                                         "StartServices", "ShowSmallWindow", "StartTimerStarter"}));
    QCOMPARE(r.meter.TickCount(), 0);
    r.meter.TimerStarterTick();
    QCOMPARE(r.hooks.calls.mid(7), (QStringList{"UpdateSmallWindow", "CheckDayLimit", "CheckBudget"}));
    QCOMPARE(r["lblConnectionSpeed"], u"ISDN"_s);
    QCOMPARE(r.meter.Fields().ConnectionHandle, 7);
    QCOMPARE(r.state.Restfrei, u"-"_s);
    QCOMPARE(r["lblKosten"], Euro("0.060"));
  }

  void bundlingCountsFromTheNextUnit() {
    Recording r(data, timeTariff(u"Takt - Doppelt.tel"_s, "60/60", "10"), At(1, 5));
    r.state.KanalbuendelungAktiv = true;
    r.start();
    QCOMPARE(r["lblKosten"], Euro("0.320"));
    r.meter.SetKanalbuendelung(false);
    r.expect({{61, "lblKosten", Euro("0.380")}});
  }

  void damagedCarryOverReadsAsFarAsItIsANumber() {
    const QString tariff = u"Volumen - Kaputt.tel"_s;
    const QList<std::pair<QByteArray, float>> cases = {{"abc", 0.0f},   {" 12,5 ", 12.5f},
                                                       {"7.25", 7.25f}, {"\xff\xfe\x01", 0.0f},
                                                       {"-3", -3.0f},   {QByteArray(5000, '9'), qInf()}};
    for (const auto& [content, expected] : cases) {
      data.write(u"Prerun/VOLUMEN - kaputt.DAT"_s, content + "\r\nnoch eine Zeile\r\n");
      QCOMPARE(LoadPrerun(data.dir(), tariff), expected);
    }
    QCOMPARE(LoadPrerun(data.dir(), u"Volumen - Keiner.tel"_s), 0.0f);

    // A carry-over too large to be used up: no unit is ever charged.
    volumeTariff(tariff, "1");
    Recording r(data, tariff, At(1, 4));
    r.traffic.set(5000000, 0);
    r.start();
    r.tickTo(5);
    QCOMPARE(r["lblDauer"], u"00:00:05"_s);
    r.meter.Counter_Stop();
    QCOMPARE(r.meter.Fields().Einheiten, 0);
  }
  void aCrashLosesAtMostTheLastMinute() {
    test::TempDataDir crash;
    crash.write(u"Tarife/Takt - Minute.tel"_s,
                test::Crlf(test::TimeHead("60/60", "0") + test::Zone(0, 24, "6", false)));
    crash.write(u"Tarife/Takt - Sekunde.tel"_s,
                test::Crlf(test::TimeHead("1/1", "0") + test::Zone(0, 24, "6", false)));
    crash.write(u"Tarife/Volumen - Mega.tel"_s, test::Crlf({"[Providerdaten]", "Volumenabrechnung:Ja",
                                                            "Volumenkosten:10", "Volumeneinheit:1"}));
    auto duration = [&](const QString& name) {
      return ReadRecordFields(crash.path(u"Verbindungen/"_s + name)).value_or(QList<QByteArray>()).value(2);
    };
    // Ticks run, then the process dies: the next start makes the record from
    // the last checkpoint (at the first tick, every minute, every charge).
    const std::tuple<const char*, int, QByteArray> cases[] = {{"Takt - Minute.tel", 30, "00:00:01"},
                                                              {"Takt - Minute.tel", 119, "00:01:01"},
                                                              {"Takt - Sekunde.tel", 77, "00:01:17"},
                                                              {"Volumen - Mega.tel", 70, "00:01:01"}};
    int hour = 1;
    for (const auto& [tariff, ticks, saved] : cases) {
      const QString name = u"05012024-0%1"_s.arg(hour) + u"0000.con"_s;
      {
        Recording r(crash, QString::fromLatin1(tariff), At(5, hour++));
        r.traffic.set(300000, 0);
        r.start();
        r.tickTo(ticks);
        QVERIFY(!crash.dir().FileExists(u"Verbindungen/"_s + name));
      }
      test::RecordingPrompter prompter;
      RecoverCheckpoint(crash.dir(), prompter);
      QCOMPARE(duration(name), saved);
      QCOMPARE(prompter.messages.size(), 1);
      QVERIFY(prompter.messages.first().contains(QString::fromLatin1(saved)));
      QVERIFY(!crash.dir().FileExists(kCheckpointFile));
    }
    QCOMPARE(LoadPrerun(crash.dir(), u"Volumen - Mega.tel"_s), 700.0f);

    // A normal stop leaves the record and no checkpoint; one that can't be
    // saved keeps its final values for the next start.
    Recording stopped(crash, u"Takt - Minute.tel"_s, At(6, 1));
    stopped.start();
    stopped.tickTo(10);
    stopped.meter.Counter_Stop();
    QCOMPARE(duration(u"06012024-010000.con"_s), QByteArray("00:00:10"));
    QVERIFY(!crash.dir().FileExists(kCheckpointFile));
    QVERIFY(QDir(crash.path(u"Verbindungen"_s)).removeRecursively());
    crash.write(u"Verbindungen"_s, "a file in the folder's place");
    Recording failed(crash, u"Takt - Minute.tel"_s, At(6, 2));
    failed.start();
    failed.tickTo(10);
    failed.meter.Counter_Stop();
    QCOMPARE(failed.prompter.messages, QStringList{SaveConnectionError(1)});
    QVERIFY(QFile::remove(crash.path(u"Verbindungen"_s)));
    test::RecordingPrompter prompter;
    RecoverCheckpoint(crash.dir(), prompter);
    QCOMPARE(duration(u"06012024-020000.con"_s), QByteArray("00:00:10"));

    // A record the stop had written is kept; a checkpoint that is no
    // checkpoint goes; a trial run writes none.
    for (const QByteArray& leftover : {QByteArray("garbage\r\n"), QByteArray()}) {
      Recording r(crash, u"Takt - Minute.tel"_s, At(6, 2));
      r.start();
      r.tickTo(5);
      if (!leftover.isEmpty()) {
        crash.write(kCheckpointFile, leftover);
      }
      RecoverCheckpoint(crash.dir(), prompter);
      QCOMPARE(duration(u"06012024-020000.con"_s), QByteArray("00:00:10"));
      QVERIFY(!crash.dir().FileExists(kCheckpointFile));
    }
    QCOMPARE(prompter.messages.size(), 1);
    Recording trial(crash, u"Takt - Minute.tel"_s, At(6, 3));
    trial.meter.SetWritesFiles(false);
    trial.start();
    QVERIFY(!crash.dir().FileExists(kCheckpointFile));
  }
};

QTEST_APPLESS_MAIN(TestMeter)
#include "test_meter.moc"
