#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

// Starts the real program on an empty data directory and ends it the way the
// desktop session does.
class TestProgram : public QObject {
  Q_OBJECT

 private slots:
  void firstStartLaysOutTheDataAndClosesCleanly() {
    QTemporaryDir home;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("XDG_DATA_HOME"), home.path());
    env.insert(QStringLiteral("XDG_RUNTIME_DIR"), home.path());
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    QProcess program;
    program.setProcessEnvironment(env);
    program.start(QStringLiteral(MINUTOR_EXECUTABLE), QStringList());
    QVERIFY(program.waitForStarted());

    const QString data = home.path() + QStringLiteral("/minutor");
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(data + QStringLiteral("/Benutzer/Supervisor.bdg")), 20000);
    QVERIFY(QFile::exists(data + QStringLiteral("/Benutzer/Supervisor.usr")));
    QVERIFY(!QDir(data + QStringLiteral("/Tarife")).entryList(QStringList{"*.tel"}).isEmpty());
    QVERIFY(QFile::exists(data + QStringLiteral("/Servers.dat")));
    QVERIFY(QFile::exists(data + QStringLiteral("/Sounds/Standard.wav")));
    QCOMPARE(program.state(), QProcess::Running);

    program.terminate();
    QVERIFY(program.waitForFinished(10000));
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 0);
  }
};

QTEST_GUILESS_MAIN(TestProgram)
#include "test_program.moc"
