#include "frame/AppState.h"
#include "frame/datadir/DataDir.h"
#include "support/TestServices.h"
#include "users/AlarmOutput.h"
#include "users/Budget.h"
#include "users/BudgetProjection.h"
#include "users/ConnectionAlarms.h"
#include "users/FieldCipher.h"
#include "users/TimeLeft.h"
#include "users/UserAccounts.h"

#include <QTest>

using namespace minutor;

namespace {

// A record named after its start, with duration, cost and user.
void WriteRecord(const test::TempDataDir& data, const char* name, const char* dauer, const char* cost,
                 const char* user) {
  const QList<QByteArray> plain = {"S01.01.2026", "10:00:00", dauer,   cost,        "1", "0",
                                   "0",           "0",        "Modem", "T - T.tel", user};
  QByteArray bytes;
  for (const QByteArray& value : plain) {
    bytes += EncryptField(value) + "\r\n";
  }
  data.write(QStringLiteral("Verbindungen/") + QString::fromLatin1(name) + QStringLiteral(".con"), bytes);
}

// What the boxes were asked to do, in order.
class NotedOutput final : public AlarmOutput {
 public:
  void PlaySound(const QString& path) override { noted << QStringLiteral("sound ") + path.section('/', -1); }
  void ShowAlert(int kind) override { noted << QStringLiteral("alert %1").arg(kind); }
  void ShowConStop() override { noted << QStringLiteral("ConStop"); }
  QStringList noted;
};

}  // namespace

class TestBudget : public QObject {
  Q_OBJECT

 private slots:
  void restsAreAmountsLessTheRecords_data() {
    QTest::addColumn<QByteArray>("budget");
    QTest::addColumn<bool>("shared");
    QTest::addColumn<QString>("rests");
    // Today is 23.11.2026 (TestServices). Records: today Anna 1,50; this
    // month Anna 2; last year Anna 4; today Ben 8.
    QTest::newRow("period holds today")
        << QByteArray("10\r\n20\r\n30\r\n1.11.2026\r\n23.11.2026\r\n") << false << "8.5 16.5 22.5";
    QTest::newRow("period in the past")
        << QByteArray("10\r\n20\r\n30\r\n1.1.2001\r\n31.1.2001\r\n") << false << "8.5 16.5 30";
    QTest::newRow("shared counts everyone")
        << QByteArray("10\r\n20\r\n30\r\n23.11.2026\r\n1.12.2026\r\n") << true << "-15.5 -7.5 -1.5";
    QTest::newRow("text amounts read 0")
        << QByteArray("zehn\r\n20\r\n\r\n1.1.2001\r\n31.1.2001\r\n") << false << "-1.5 16.5 0";
  }
  void restsAreAmountsLessTheRecords() {
    QFETCH(QByteArray, budget);
    QFETCH(bool, shared);
    QFETCH(QString, rests);
    test::TestServices t;
    WriteRecord(t.data, "23112026-080000", "00:10:00", "S1,50", "Anna");
    WriteRecord(t.data, "02112026-080000", "00:10:00", "S2,00", "Anna");
    WriteRecord(t.data, "23112025-080000", "00:10:00", "S4,00", "Anna");
    WriteRecord(t.data, "23112026-090000", "00:10:00", "S8,00", "Ben");
    WriteRecord(t.data, "23112026-100000", "00:10:00", "S16,00", "anna");  // another user: case counts
    t.data.write(QStringLiteral("Benutzer/Benutzer.dat"), shared ? "1\r\n" : "0\r\n");
    t.data.write(shared ? QStringLiteral("Benutzer/Budget.dat") : QStringLiteral("Benutzer/Anna.bdg"),
                 budget);
    const auto result = GetBudget(t.data.dir(), QStringLiteral("Anna"), t.clock.Now().date());
    QVERIFY(result);
    QStringList shown;
    for (double rest : result->rests) {
      shown << QString::number(rest);
    }
    QCOMPARE(shown.join(' '), rests);
  }

  void damagedBudgetFilesAreReported() {
    test::TestServices t;
    const QDate today = t.clock.Now().date();
    QVERIFY(!GetBudget(t.data.dir(), QStringLiteral("Anna"), today));
    t.data.write(QStringLiteral("Benutzer/Anna.bdg"), "1\r\n2\r\n3\r\n\r\n31.1.2001\r\n");
    QVERIFY(!GetBudget(t.data.dir(), QStringLiteral("Anna"), today));
    t.data.write(QStringLiteral("Benutzer/Anna.bdg"), "1\r\n2\r\n3\r\n1/1/2001x\r\n31.1.2001\r\n");
    QVERIFY(!GetBudget(t.data.dir(), QStringLiteral("Anna"), today));
    // Shared without Budget.dat: damaged too, whatever the user's own file.
    t.data.write(QStringLiteral("Benutzer/Anna.bdg"), "1\r\n2\r\n3\r\n1.1.2001\r\n31.1.2001\r\n");
    QVERIFY(GetBudget(t.data.dir(), QStringLiteral("Anna"), today));
    t.data.write(QStringLiteral("Benutzer/Benutzer.dat"), "1\r\n0\r\n0\r\nStandard\r\n");
    QVERIFY(!GetBudget(t.data.dir(), QStringLiteral("Anna"), today));
  }

  void theLastWeekSetsThePaceAcrossTheMonthsEnd() {
    // Anna spends 1,50 a day and Ben 10 from 1.11. to 5.12.; today is 3.12.,
    // so the last seven days reach back to 27.11. The period lies in the
    // past: only the name filter opens November's records.
    test::TempDataDir data;
    for (QDate day(2026, 11, 1); day <= QDate(2026, 12, 5); day = day.addDays(1)) {
      const QByteArray tag = day.toString(QStringLiteral("ddMMyyyy")).toLatin1();
      WriteRecord(data, (tag + "-080000").constData(), "00:10:00", "S1,50", "Anna");
      WriteRecord(data, (tag + "-090000").constData(), "00:10:00", "S10,00", "Ben");
    }
    WriteRecord(data, "01122025-080000", "00:10:00", "S7,00", "Anna");
    data.write(QStringLiteral("Benutzer/Anna.bdg"), "4\r\n20\r\n9\r\n1.1.2001\r\n31.1.2001\r\n");
    const QDate today(2026, 12, 3);
    const auto anna = GetBudget(data.dir(), QStringLiteral("Anna"), today);
    QVERIFY(anna);
    QCOMPARE(anna->lastWeekSpent, 7 * 1.5);
    // The month has 12,50 left after five days at 1,50: eight more days.
    const auto projections = ProjectBudgets(*anna, today);
    QCOMPARE(BudgetProjectionShows(projections[1], QStringLiteral("€")).Text(),
             QStringLiteral("bis 11.12. · 0,43 €/Tag"));
    QVERIFY(!projections[2]);
    data.write(QStringLiteral("Benutzer/Benutzer.dat"), "1\r\n");
    data.write(QStringLiteral("Benutzer/Budget.dat"), "0\r\n0\r\n0\r\n1.1.2001\r\n31.1.2001\r\n");
    QCOMPARE(GetBudget(data.dir(), QStringLiteral("Anna"), today)->lastWeekSpent, 7 * 11.5);
  }

  void projectionAtTheLastWeeksPace_data() {
    QTest::addColumn<int>("budget");  // day, month, period
    QTest::addColumn<double>("amount");
    QTest::addColumn<double>("rest");
    QTest::addColumn<double>("lastWeekSpent");
    QTest::addColumn<QDate>("periodTo");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("told");  // a part of the tooltip
    // Today is 23.11.2026; the period begins on 1.11.2026. 21 a week is 3 a day.
    const QDate december(2026, 12, 31);
    QTest::newRow("no pace lasts the month") << 1 << 50.0 << 8.0 << 0.0 << december << "bis Ende · 1,00 €/Tag"
                                             << "reicht bis zum Ende (30.11.)";
    QTest::newRow("refunds are no pace") << 1 << 50.0 << 8.0 << -5.0 << december << "bis Ende · 1,00 €/Tag"
                                         << "Tage (0,00 € pro Tag)";
    QTest::newRow("runs out in the month")
        << 1 << 50.0 << 10.0 << 21.0 << december << "bis 26.11. · 1,25 €/Tag"
        << "reicht bis zum 26.11. beim";
    QTest::newRow("runs out on the last day")
        << 1 << 50.0 << 22.0 << 21.0 << december << "bis 30.11. · 2,75 €/Tag"
        << "reicht bis zum 30.11. beim";
    QTest::newRow("day runs out today") << 0 << 5.0 << 2.0 << 21.0 << december << "bis 23.11. · 2,00 €/Tag"
                                        << "noch 2,00 € pro Tag";
    QTest::newRow("used up at 0.00") << 0 << 5.0 << 0.004 << 21.0 << december << "aufgebraucht"
                                     << "aufgebraucht (Ausgaben der letzten 7 Tage: 3,00 € pro Tag)";
    QTest::newRow("period at a tiny pace")
        << 2 << 500.0 << 390.0 << 1e-9 << december << "bis Ende · 10,00 €/Tag"
        << "reicht bis zum Ende (31.12.)";
    QTest::newRow("period into next year")
        << 2 << 500.0 << 120.0 << 21.0 << QDate(2027, 3, 31) << "bis 02.01. · 0,93 €/Tag"
        << "reicht bis zum 02.01.2027 beim";
    QTest::newRow("period ending today")
        << 2 << 500.0 << 6.0 << 21.0 << QDate(2026, 11, 23) << "bis Ende · 6,00 €/Tag"
        << "reicht bis zum Ende (23.11.)";
    QTest::newRow("period in the past") << 2 << 500.0 << 6.0 << 21.0 << QDate(2026, 11, 22) << ""
                                        << "";
    QTest::newRow("not set") << 1 << 0.0 << 0.0 << 21.0 << december << ""
                             << "";
  }
  void projectionAtTheLastWeeksPace() {
    QFETCH(int, budget);
    QFETCH(double, amount);
    QFETCH(double, rest);
    QFETCH(double, lastWeekSpent);
    QFETCH(QDate, periodTo);
    QFETCH(QString, shown);
    QFETCH(QString, told);
    BudgetRests rests;
    rests.amounts[static_cast<std::size_t>(budget)] = amount;
    rests.rests[static_cast<std::size_t>(budget)] = rest;
    rests.lastWeekSpent = lastWeekSpent;
    rests.periodFrom = QDate(2026, 11, 1);
    rests.periodTo = periodTo;
    const auto projections = ProjectBudgets(rests, QDate(2026, 11, 23));
    const BudgetProjectionLine line =
        BudgetProjectionShows(projections[static_cast<std::size_t>(budget)], QStringLiteral("€"));
    QCOMPARE(line.Text(), shown);
    QVERIFY2(line.toolTip.contains(told) && line.toolTip.isEmpty() == told.isEmpty(),
             qPrintable(line.toolTip));
  }

  void panelsShowRestsAndTheOverviewJudgesThem() {
    const QString e = QStringLiteral("€");
    QCOMPARE(BudgetPanelShows(0, 0, e).text, QStringLiteral("inaktiv"));
    const BudgetPanelLine half = BudgetPanelShows(10, 4.999, e);
    QCOMPARE(half.text, QStringLiteral("5,00 €"));
    QCOMPARE(half.bar, 49);
    QCOMPARE(BudgetPanelShows(10, -2, e).bar, 0);

    const OverviewBudgetLine unset = OverviewBudgetShows(0, 0, e);
    QCOMPARE(unset.rest, QStringLiteral("0.00 €"));
    QCOMPARE(unset.percent, QStringLiteral("nicht festgelegt"));
    QCOMPARE(OverviewBudgetShows(20, 5, e).percent, QStringLiteral("25,0%"));

    // Exceeded: below zero, or exactly nothing left of a budget that is set.
    const OverviewBudgetLine some = OverviewBudgetShows(10, 0.4, e);
    QVERIFY(!IsBudgetExceeded({unset, unset, unset}));
    QVERIFY(!IsBudgetExceeded({some, unset, some}));
    QVERIFY(IsBudgetExceeded({some, OverviewBudgetShows(10, 0, e), unset}));
    QVERIFY(IsBudgetExceeded({unset, unset, OverviewBudgetShows(10, -0.01, e)}));
  }

  void timeLeftCountsTheDayOfTheMonthOnly() {
    test::TestServices t;
    WriteRecord(t.data, "23112026-080000", "00:59:30", "S0", "Anna");  // today
    WriteRecord(t.data, "23102026-080000", "00:10:00", "S0", "ANNA");  // same day, last month
    WriteRecord(t.data, "05112026-080000", "01:00:00", "S0", "anna");  // this month
    WriteRecord(t.data, "23112026-090000", "02:00:00", "S0", "Ben");
    const TimeLeft left =
        ComputeTimeLeft(t.data.dir(), QStringLiteral("Anna"), 70, 600, t.clock.Now().date());
    QCOMPARE(left.daySeconds, 70 * 60 - 3570 - 600);
    QCOMPARE(left.monthSeconds, 600 * 60 - 3570 - 3600);
    QVERIFY(left.Refused());  // 30 seconds are left, under 61
    QCOMPARE(ComputeTimeLeft(t.data.dir(), QStringLiteral("Ben"), 121, 600, t.clock.Now().date()).daySeconds,
             60);
    QVERIFY(!ComputeTimeLeft(t.data.dir(), QStringLiteral("Ben"), 122, 600, t.clock.Now().date()).Refused());
  }

  void limitsFireAfterTheWholeMinutesLeft() {
    // 89 seconds are one minute; a negative allowance fires at once.
    QVERIFY(!IsLimitReached(89, QStringLiteral("00:00:59")));
    QVERIFY(IsLimitReached(89, QStringLiteral("00:01:00")));
    QVERIFY(IsLimitReached(-30, QStringLiteral("00:00:01")));
    // More than a day wraps as a time of day does.
    QVERIFY(IsLimitReached(25 * 3600, QStringLiteral("01:00:00")));
  }

  void crossingsWarnOnceAndTheCutHangsOnTheBox_data() {
    QTest::addColumn<QByteArray>("options");
    QTest::addColumn<bool>("noDialOnBudget");
    QTest::addColumn<QStringList>("noted");
    QTest::newRow("no options: Standard and the box")
        << QByteArray() << false << QStringList{"sound Standard.wav", "alert 1"};
    QTest::newRow("cut after the box") << QByteArray("0\r\n1\r\n1\r\nKlingel\r\n") << true
                                       << QStringList{"sound Klingel.wav", "alert 1", "ConStop"};
    QTest::newRow("no box, no cut") << QByteArray("0\r\n1\r\n0\r\nKlingel\r\n") << true
                                    << QStringList{"sound Klingel.wav"};
    QTest::newRow("a sound name leaving the folder")
        << QByteArray("0\r\n1\r\n0\r\n../x\r\n") << false << QStringList{};
  }
  void crossingsWarnOnceAndTheCutHangsOnTheBox() {
    QFETCH(QByteArray, options);
    QFETCH(bool, noDialOnBudget);
    QFETCH(QStringList, noted);
    test::TestServices t;
    if (!options.isEmpty()) {
      t.data.write(QStringLiteral("Benutzer/Benutzer.dat"), options);
    }
    // Day 1,00 with 0,50 spent today; month 5,00; the period is past.
    t.data.write(QStringLiteral("Benutzer/Anna.bdg"), "1\r\n5\r\n9\r\n1.1.2001\r\n31.1.2001\r\n");
    WriteRecord(t.data, "23112026-080000", "00:10:00", "S0,50", "Anna");
    t.state.ActiveUser = QStringLiteral("Anna");
    t.state.NoDialOnBudget = noDialOnBudget;
    NotedOutput output;
    ConnectionAlarms alarms(t.services, output);
    alarms.GetBudget();
    QCOMPARE(alarms.Label(1).text, QStringLiteral("0,50 €"));
    QCOMPARE(alarms.Label(3).text, QStringLiteral("9,00 €"));
    // A rest of exactly 0 doesn't fire; below it does, once.
    for (double cost : {0.1, 0.5, 0.6, 0.7, 4.0}) {
      alarms.CheckBudget(cost);
    }
    QCOMPARE(output.noted, noted);
    QCOMPARE(alarms.Label(1).text, QStringLiteral("-3,50 €"));
    QCOMPARE(alarms.Label(1).colour, 128);
    QCOMPARE(alarms.Label(2).colour, 32768);
    // A rest negative at the start never fires.
    output.noted.clear();
    ConnectionAlarms later(t.services, output);
    WriteRecord(t.data, "23112026-090000", "00:10:00", "S1,00", "Anna");
    later.GetBudget();
    later.CheckBudget(0.5);
    QCOMPARE(output.noted, QStringList{});
  }
};

QTEST_APPLESS_MAIN(TestBudget)
#include "test_budget.moc"
