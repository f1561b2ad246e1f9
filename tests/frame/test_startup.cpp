#include "frame/AppState.h"
#include "frame/Options.h"
#include "frame/SingleInstance.h"
#include "frame/StartUp.h"
#include "support/TempDataDir.h"
#include "users/FieldCipher.h"
#include "users/UserFile.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QScopeGuard>
#include <QTest>

#include <sys/stat.h>

using namespace minutor;
using namespace Qt::StringLiterals;

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
    QCOMPARE(data.read(u"Benutzer/Supervisor.bdg"_s),
             QByteArray(" 0 \r\n 0 \r\n 0 \r\n1.1.2002\r\n31.1.2002\r\n"));

    const QList<QByteArray> lines = data.read(u"Benutzer/Supervisor.usr"_s).split('\n');
    QCOMPARE(lines.size(), 12);  // eleven lines, each ended
    QList<QByteArray> plain;
    for (const QByteArray& line : lines.mid(0, 11)) {
      plain.append(DecryptField(line.chopped(1)));
    }
    QCOMPARE(plain, (QList<QByteArray>{"0", "0", "0", "0", "0", "0", "0", "60", "", "0", "600"}));
    QCOMPARE(lines.at(8), QByteArray("\r"));  // no password: a truly empty line

    // Existing user files, whatever their case, are left alone.
    test::TempDataDir existing;
    UserFile restricted;
    restricted.noListEdit = true;
    restricted.password = "geheim";
    QVERIFY(WriteUserFile(existing.dir(), u"supervisor"_s, restricted));
    existing.write(u"Benutzer/SUPERVISOR.BDG"_s, "5\r\n");
    const QByteArray usr = existing.read(u"Benutzer/supervisor.usr"_s);
    CreateDefaultUser(existing.dir());
    QCOMPARE(allFiles(existing), (QStringList{"Benutzer/SUPERVISOR.BDG", "Benutzer/supervisor.usr"}));
    QCOMPARE(existing.read(u"Benutzer/supervisor.usr"_s), usr);
    QCOMPARE(existing.read(u"Benutzer/SUPERVISOR.BDG"_s), QByteArray("5\r\n"));
  }

  void settingsFiles() {
    // Without files: monitoring on, the Internet state every 2 s, euro.
    test::TempDataDir data;
    AppState state;
    state.MonitoringOn = false;
    LoadMonitoring(data.dir(), state);
    LoadConCheck(data.dir(), state);
    LoadOptions(data.dir(), state);
    QVERIFY(state.MonitoringOn && state.MethodIE && !state.MethodIP && !state.MethodLAN && !state.MethodTAPI);
    QCOMPARE(state.CheckInterval, 2);
    QCOMPARE(state.IgnoredIPTable, QStringList{QString()});
    QCOMPARE(state.Waehrung, u"€"_s);
    QVERIFY(!state.HideToTray && !state.StartMinimized && !state.SamePrograms && !state.OnlyMarkedEntries);

    const QList<QPair<QByteArray, bool>> cases = {
        {" 1 \r\n", true}, {"0\r\n", false}, {"", false}, {"ja\r\n", false}};
    for (const auto& [content, on] : cases) {
      data.write(u"Config/Monitoring.cfg"_s, content);
      LoadMonitoring(data.dir(), state);
      QVERIFY2(state.MonitoringOn == on, content.constData());
    }

    // A short options file leaves the missing lines off.
    state.StartMinimized = state.OnlyMarkedEntries = true;
    data.write(u"Config/Options.cfg"_s, "11\r\n0\r\n1\r\n");
    LoadOptions(data.dir(), state);
    QCOMPARE(state.Waehrung, u"chK"_s);
    QVERIFY(state.HideToTray && !state.StartMinimized && !state.OnlyMarkedEntries);

    QVERIFY(CurrencySign(12) == u"€"_s && CurrencySign(-1) == u"€"_s);
  }

  void startStepsOnAnEmptyDirectory() {
    test::TempDataDir shipped;
    shipped.write(u"Tarife/A - B.tel"_s, "[Providerdaten]\r\n");
    shipped.write(u"Servers.dat"_s, "http://example.invalid\r\n");
    test::TempDataDir data;
    data.write(u"Verbindungen/01032026-120000.con.AbCdEf"_s, "a save cut short");
    AppState state;
    state.Restfrei = u"01:00:00"_s;
    RunStartSteps(data.dir(), shipped.path(), state);
    QCOMPARE(allFiles(data), (QStringList{"Benutzer/Supervisor.bdg", "Benutzer/Supervisor.usr",
                                          "Config/Shipped.cfg", "Servers.dat", "Tarife/A - B.tel"}));
    QVERIFY(state.MonitoringOn);
    QCOMPARE(state.Restfrei, u"-"_s);
    QCOMPARE(state.Waehrung, u"€"_s);
  }

  void oneInstancePerDataDirectory() {
    test::TempDataDir data;
    test::TempDataDir other;
    SingleInstance first(data.path()), second(data.path()), elsewhere(other.path());
    QVERIFY(first.TryAcquire() && !second.TryAcquire() && elsewhere.TryAcquire());

    // The lock lies where no other account can put one first: the session's
    // own runtime folder, else the data directory.
    const QByteArray oldRuntime = qgetenv("XDG_RUNTIME_DIR");
    const auto restore = qScopeGuard([&] { qputenv("XDG_RUNTIME_DIR", oldRuntime); });
    QVERIFY(QFile::setPermissions(other.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    const QString shared = other.path(u"shared"_s);
    QVERIFY(QDir().mkdir(shared) && ::chmod(QFile::encodeName(shared).constData(), 01777) == 0);
    for (const auto& [runtime, folder] : {std::pair{QByteArray(), data.path()},
                                          {"relative", data.path()},
                                          {shared.toUtf8(), data.path()},
                                          {other.path().toUtf8(), other.path()}}) {
      qputenv("XDG_RUNTIME_DIR", runtime);
      QCOMPARE(QFileInfo(SingleInstance::LockPath(data.path())).absolutePath(), folder);
    }
  }
};

QTEST_APPLESS_MAIN(TestStartUp)
#include "test_startup.moc"
