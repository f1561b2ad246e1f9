#include "frame/AppState.h"
#include "frame/Options.h"
#include "frame/SingleInstance.h"
#include "frame/StartUp.h"
#include "support/TempDataDir.h"
#include "users/FieldCipher.h"
#include "users/UserFile.h"

#include <QDir>
#include <QDirIterator>
#include <QTest>

using namespace minutor;

class TestStartUp : public QObject {
  Q_OBJECT

  static QStringList allFiles(const test::TempDataDir& data) {
    QStringList files;
    QDirIterator it(data.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
      files.append(QDir(data.path()).relativeFilePath(it.next()));
    }
    files.sort();
    return files;
  }

 private slots:
  void firstStartMakesTheSupervisorAndNothingElse() {
    test::TempDataDir data;
    CreateDefaultUser(data.dir());
    QCOMPARE(allFiles(data), (QStringList{"Benutzer/Supervisor.bdg", "Benutzer/Supervisor.usr"}));
    QCOMPARE(data.read(QStringLiteral("Benutzer/Supervisor.bdg")),
             QByteArray(" 0 \r\n 0 \r\n 0 \r\n1.1.2002\r\n31.1.2002\r\n"));

    const QList<QByteArray> lines = data.read(QStringLiteral("Benutzer/Supervisor.usr")).split('\n');
    QCOMPARE(lines.size(), 12);  // eleven lines, each ended
    QList<QByteArray> plain;
    for (const QByteArray& line : lines.mid(0, 11)) {
      plain.append(DecryptField(line.chopped(1)));
    }
    QCOMPARE(plain, (QList<QByteArray>{"0", "0", "0", "0", "0", "0", "0", "60", "", "0", "600"}));
    QCOMPARE(lines.at(8), QByteArray("\r"));  // no password: a truly empty line

    const auto user = ReadUserFile(data.dir(), kSupervisor);
    QVERIFY(user.has_value());
    QCOMPARE(user->dayLimitMinutes, 60);
    QCOMPARE(user->monthLimitMinutes, 600);
    QVERIFY(user->password.isEmpty());
  }

  void existingUserFilesAreLeftAlone() {
    test::TempDataDir data;
    UserFile restricted;
    restricted.noListEdit = true;
    restricted.password = "geheim";
    QVERIFY(WriteUserFile(data.dir(), QStringLiteral("supervisor"), restricted));
    data.write(QStringLiteral("Benutzer/SUPERVISOR.BDG"), "5\r\n");
    CreateDefaultUser(data.dir());
    QCOMPARE(allFiles(data), (QStringList{"Benutzer/SUPERVISOR.BDG", "Benutzer/supervisor.usr"}));
    const auto user = ReadUserFile(data.dir(), kSupervisor);
    QVERIFY(user->noListEdit);
    QCOMPARE(user->password, QByteArray("geheim"));
    QCOMPARE(ReadBudgetFile(data.dir(), QStringLiteral("Benutzer/Supervisor.bdg"))->perDay, 5.0);
  }

  void monitoringSwitch() {
    test::TempDataDir data;
    AppState state;
    state.MonitoringOn = false;
    LoadMonitoring(data.dir(), state);
    QVERIFY(state.MonitoringOn);
    const QList<QPair<QByteArray, bool>> cases = {{"1\r\n", true}, {" 1 \r\n", true}, {"0\r\n", false},
                                                  {"", false},     {"\r\n", false},   {"ja\r\n", false}};
    for (const auto& [content, on] : cases) {
      data.write(QStringLiteral("Config/Monitoring.cfg"), content);
      LoadMonitoring(data.dir(), state);
      QVERIFY2(state.MonitoringOn == on, content.constData());
    }
  }

  void detectionSettings() {
    test::TempDataDir data;
    AppState state;
    LoadConCheck(data.dir(), state);
    QVERIFY(state.MethodIE && !state.MethodIP && !state.MethodLAN && !state.MethodTAPI);
    QCOMPARE(state.CheckInterval, 2);
    QCOMPARE(state.IgnoredIPTable, QStringList{QString()});

    data.write(QStringLiteral("Config/ConCheck.cfg"), " 1 \r\n 0 \r\n 1 \r\n 1 \r\n 10 \r\n");
    data.write(QStringLiteral("Config/IgnoredIPs.cfg"), "192.168.*.*, 10.0.0.1 ,\r\n");
    LoadConCheck(data.dir(), state);
    QVERIFY(state.MethodIP && !state.MethodIE && state.MethodLAN && state.MethodTAPI);
    QCOMPARE(state.CheckInterval, 10);
    QCOMPARE(state.IgnoredIPTable, (QStringList{"192.168.*.*", "10.0.0.1", ""}));

    for (const QByteArray& interval : {QByteArray("11"), QByteArray("0"), QByteArray("x")}) {
      data.write(QStringLiteral("Config/ConCheck.cfg"), "0\r\n0\r\n0\r\n0\r\n" + interval + "\r\n");
      LoadConCheck(data.dir(), state);
      QVERIFY(!state.MethodIP && !state.MethodIE && !state.MethodLAN && !state.MethodTAPI);
      QCOMPARE(state.CheckInterval, 2);
    }
  }

  void optionsAndCurrency() {
    test::TempDataDir data;
    AppState state;
    LoadOptions(data.dir(), state);
    QCOMPARE(state.Waehrung, QStringLiteral("€"));
    QVERIFY(!state.HideToTray && !state.StartMinimized && !state.SamePrograms && !state.OnlyMarkedEntries);

    data.write(QStringLiteral("Config/Options.cfg"), " 3 \r\n 1 \r\n 1 \r\n 1 \r\n 1 \r\n 1 \r\n");
    LoadOptions(data.dir(), state);
    QCOMPARE(state.Waehrung, QStringLiteral("£"));
    QVERIFY(state.HideToTray && state.StartMinimized && state.SamePrograms && state.OnlyMarkedEntries);

    // A short file leaves the missing lines off.
    data.write(QStringLiteral("Config/Options.cfg"), "11\r\n0\r\n1\r\n");
    LoadOptions(data.dir(), state);
    QCOMPARE(state.Waehrung, QStringLiteral("chK"));
    QVERIFY(state.HideToTray && !state.StartMinimized && !state.OnlyMarkedEntries);

    for (int outside : {12, -1, 0}) {
      QCOMPARE(CurrencySign(outside), QStringLiteral("€"));
    }
    QCOMPARE(CurrencySign(1), QStringLiteral("sFr"));
    QCOMPARE(CurrencySign(10), QStringLiteral("zaR"));
  }

  void startStepsOnAnEmptyDirectory() {
    test::TempDataDir shipped;
    shipped.write(QStringLiteral("Tarife/A - B.tel"), "[Providerdaten]\r\n");
    shipped.write(QStringLiteral("Servers.dat"), "http://example.invalid\r\n");
    test::TempDataDir data;
    AppState state;
    state.Restfrei = QStringLiteral("01:00:00");
    RunStartSteps(data.dir(), shipped.path(), state);
    QCOMPARE(allFiles(data), (QStringList{"Benutzer/Supervisor.bdg", "Benutzer/Supervisor.usr", "Servers.dat",
                                          "Tarife/A - B.tel"}));
    QVERIFY(state.MonitoringOn);
    QCOMPARE(state.Restfrei, QStringLiteral("-"));
    QCOMPARE(state.Waehrung, QStringLiteral("€"));
  }

  void oneInstancePerDataDirectory() {
    test::TempDataDir data;
    test::TempDataDir other;
    SingleInstance first(data.path());
    QVERIFY(first.TryAcquire());
    SingleInstance second(data.path());
    QVERIFY(!second.TryAcquire());
    SingleInstance elsewhere(other.path());
    QVERIFY(elsewhere.TryAcquire());
  }
};

QTEST_APPLESS_MAIN(TestStartUp)
#include "test_startup.moc"
