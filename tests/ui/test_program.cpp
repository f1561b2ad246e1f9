#include "metering/ConnectionRecord.h"
#include "metering/RecordingCheckpoint.h"
#include "support/PrivateBus.h"
#include "support/TempDataDir.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

#include <csignal>

#include <sys/stat.h>

using namespace minutor;
using namespace Qt::StringLiterals;

// Starts the real program on a data directory of its own and ends it the way
// the desktop session does, or kills it.
class TestProgram : public QObject {
  Q_OBJECT

  minutor::test::TempDataDir home_;
  ::test::PrivateBus bus_;
  bool hasNetworkManager_ = false;

  QString data(const QString& relative = {}) const {
    return home_.path() + u"/minutor"_s + (relative.isEmpty() ? QString() : QLatin1Char('/') + relative);
  }

  void write(const QString& relative, const QByteArray& bytes) const {
    home_.write(u"minutor/"_s + relative, bytes);
  }

  void start(QProcess& program) const {
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(u"XDG_DATA_HOME"_s, home_.path());
    env.insert(u"XDG_RUNTIME_DIR"_s, home_.path());
    env.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
    if (hasNetworkManager_) {
      env.insert(u"DBUS_SYSTEM_BUS_ADDRESS"_s, bus_.address());
    }
    program.setProcessEnvironment(env);
    program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    program.start(QStringLiteral(MINUTOR_EXECUTABLE), QStringList());
    QVERIFY(program.waitForStarted());
  }

  // SIGTERM, as at the end of the session: the program ends by itself.
  static void endSession(QProcess& program) {
    program.terminate();
    QVERIFY(program.waitForFinished(10000));
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 0);
  }

  QStringList records() const { return QDir(data(kRecordFolder)).entryList(QDir::Files); }

  static QString mode(const QString& path) {
    struct stat info {};
    ::stat(QFile::encodeName(path).constData(), &info);
    return QString::number(info.st_mode & 0777, 8);
  }

 private slots:
  void initTestCase() {
    QVERIFY(QFile::setPermissions(home_.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    hasNetworkManager_ =
        bus_.Start(u"program"_s) &&
        bus_.StartMock({u"-t"_s, u"networkmanager"_s}, u"org.freedesktop.NetworkManager"_s) != nullptr;
  }

  void firstStartLaysOutTheDataAndClosesCleanly() {
    QProcess program;
    start(program);
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(data(u"Benutzer/Supervisor.bdg"_s)), 20000);
    QVERIFY(QFile::exists(data(u"Benutzer/Supervisor.usr"_s)));
    QVERIFY(!QDir(data(u"Tarife"_s)).entryList(QStringList{"*.tel"}).isEmpty());  // the shipped files found
    // The passwords' files for this account only.
    QCOMPARE(mode(data()), u"700"_s);
    QCOMPARE(mode(data(u"Benutzer/Supervisor.usr"_s)), u"600"_s);
    QCOMPARE(program.state(), QProcess::Running);

    // A second start says so in a box; the session's end doesn't wait for
    // anyone to close it.
    QProcess second;
    start(second);
    QTest::qWait(1000);
    QCOMPARE(second.state(), QProcess::Running);
    endSession(second);
    endSession(program);
  }

  // Killed in the middle of a recording or while it is being saved, the
  // program finds exactly one record of the connection at its next start,
  // with the duration of its last checkpoint at worst.
  void aKillLosesNoRecord() {
    if (!hasNetworkManager_) {
      QSKIP("no private bus with python3-dbusmock's NetworkManager here");
    }
    // A tariff chosen, and the detection that takes the machine for online.
    write(u"Config/Overview.cfg"_s, "\r\nSupervisor\r\nFunkwelle\r\nM - Tag und Nacht\r\n");
    write(u"Config/ConCheck.cfg"_s, " 0 \r\n 1 \r\n 0 \r\n 0 \r\n 1 \r\n");
    // SIGKILL in the middle of the recording, then at moments ever closer to
    // the session's end, when the record is being written.
    const QList<int> delays = {-1, 0, 1, 3, 10, 30};
    for (int i = 0; i < delays.size(); ++i) {
      write(u"Config/Monitoring.cfg"_s, " 1 \r\n");
      QProcess program;
      start(program);
      QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(data(kCheckpointFile)), 20000);
      QTest::qWait(1500);
      if (delays[i] >= 0) {
        ::kill(static_cast<pid_t>(program.processId()), SIGTERM);
        QTest::qWait(delays[i]);
      }
      program.kill();
      program.waitForFinished(10000);
      QCOMPARE(program.state(), QProcess::NotRunning);

      // The next start makes the record and tells so in a box, which the
      // session's end closes.
      write(u"Config/Monitoring.cfg"_s, " 0 \r\n");
      QProcess again;
      start(again);
      QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(data(kCheckpointFile)) && records().size() == i + 1, 20000);
      QTest::qWait(500);
      endSession(again);
      QCOMPARE(QDir(data(kRecordFolder)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(), i + 1);

      const auto fields = ReadRecordFields(data(kRecordFolder + QLatin1Char('/') + records().last()));
      QVERIFY(fields && fields->size() == 11);
      QVERIFY2(fields->at(2) != "00:00:00", fields->at(2).constData());
      QCOMPARE(fields->at(9), QByteArray("Funkwelle - Tag und Nacht.tel"));
    }
  }
};

QTEST_GUILESS_MAIN(TestProgram)
#include "test_program.moc"
