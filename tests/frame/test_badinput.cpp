#include "desk/FreeAllowance.h"
#include "frame/AppState.h"
#include "frame/Options.h"
#include "frame/StartUp.h"
#include "frame/datadir/ClockText.h"
#include "frame/datadir/NoteFile.h"
#include "frame/datadir/TaxFile.h"
#include "metering/ConnectionRecord.h"
#include "metering/Prerun.h"
#include "support/RecordingPrompter.h"
#include "support/TempDataDir.h"
#include "users/FieldCipher.h"
#include "users/UserFile.h"

#include <QFile>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>

#include <limits>

#include <sys/stat.h>

using namespace minutor;

// Damaged and hostile files fed to every reader of settings, users and
// records. Nothing may crash or hang, and the fallbacks must hold. The suite
// runs under the address and undefined-behaviour sanitizers too.
class TestBadInput : public QObject {
  Q_OBJECT

  QRandomGenerator random_{20261122};

  QByteArray randomBytes(int size, int low = 0, int high = 256) {
    QByteArray bytes(size, '\0');
    for (char& b : bytes) {
      b = static_cast<char>(random_.bounded(low, high));
    }
    return bytes;
  }

  QList<QByteArray> samples() {
    QList<QByteArray> all = {QByteArray(),
                             QByteArray("\r\n\r\n\r\n"),
                             QByteArray("\n"),
                             QByteArray(1 << 20, '9'),
                             QByteArray(1 << 20, '\n'),
                             QByteArray("-99999999999999999999999\r\n1e308\r\nnan\r\n-inf\r\n"),
                             QByteArray("\0\0\0", 3)};
    for (int i = 0; i < 40; ++i) {
      all.append(randomBytes(random_.bounded(1, 400)));
      all.append(randomBytes(random_.bounded(1, 400), 98, 202));  // near the cipher's range
    }
    return all;
  }

 private slots:
  void settingsFilesWithGarbage() {
    test::TempDataDir data;
    test::RecordingPrompter prompter;
    for (const QByteArray& content : samples()) {
      for (const char* name :
           {"Config/Options.cfg", "Config/Monitoring.cfg", "Config/ConCheck.cfg", "Config/IgnoredIPs.cfg",
            "Tax.dat", "Note.dat", "Benutzer/Supervisor.usr", "Benutzer/Supervisor.bdg"}) {
        data.write(QString::fromLatin1(name), content);
      }
      AppState state;
      LoadOptions(data.dir(), state);
      QVERIFY(!state.Waehrung.isEmpty());
      LoadMonitoring(data.dir(), state);
      LoadConCheck(data.dir(), state);
      QVERIFY(state.CheckInterval >= 1 && state.CheckInterval <= 10);
      QVERIFY(!state.IgnoredIPTable.isEmpty());
      QVERIFY(ReadTax(data.dir(), prompter) <= 100);
      LoadNote(data.dir());
      QVERIFY(ReadUserFile(data.dir(), kSupervisor).has_value());
      QVERIFY(ReadBudgetFile(data.dir(), QStringLiteral("Benutzer/Supervisor.bdg")).has_value());
      // Damaged files are never replaced at start.
      CreateDefaultUser(data.dir());
      QCOMPARE(data.read(QStringLiteral("Benutzer/Supervisor.usr")), content);
    }
  }

  void pipesAndFoldersInPlaceOfSettings() {
    // Nothing waits for a writer that never comes.
    test::TempDataDir data;
    const QStringList names = {"Config/Options.cfg",
                               "Config/Monitoring.cfg",
                               "Config/ConCheck.cfg",
                               "Config/IgnoredIPs.cfg",
                               "Tax.dat",
                               "Note.dat",
                               "Benutzer/Supervisor.usr"};
    QVERIFY(data.dir().MakeDir(QStringLiteral("Config")) && data.dir().MakeDir(QStringLiteral("Benutzer")));
    for (const QString& name : names) {
      QVERIFY(::mkfifo(QFile::encodeName(data.path(name)).constData(), 0600) == 0);
    }
    QVERIFY(data.dir().MakeDir(QStringLiteral("Prerun/Netz - Volumen.dat")));
    QCOMPARE(LoadPrerun(data.dir(), QStringLiteral("Netz - Volumen.tel")), 0.0f);
    test::RecordingPrompter prompter;
    AppState state;
    LoadOptions(data.dir(), state);
    LoadMonitoring(data.dir(), state);
    LoadConCheck(data.dir(), state);
    QVERIFY(!state.MonitoringOn && state.Waehrung == QStringLiteral("€") && state.CheckInterval == 2);
    QVERIFY(LoadNote(data.dir()).isEmpty() && !ReadUserFile(data.dir(), kSupervisor));
    ReadTax(data.dir(), prompter);
  }

  void clockTextsWithGarbage() {
    QStringList texts = {QStringLiteral("99999999999999999999:00:00"),
                         QStringLiteral("-9223372036854775808:59:59"),
                         QStringLiteral("1e308:1e308:1e308"),
                         QString(400, QLatin1Char('9')) + ":99:99",
                         QStringLiteral("9223372036854775807"),
                         QStringLiteral("::-:"),
                         QStringLiteral("-"),
                         QString()};
    for (const QByteArray& bytes : samples()) {
      texts.append(QString::fromLatin1(bytes.left(80)));
    }
    static const QRegularExpression clock(QStringLiteral("^-?\\d{2,}:\\d\\d:\\d\\d$"));
    for (const QString& a : texts) {
      for (const QString& b : {texts.first(), texts.at(1), a, QStringLiteral("00:00:01")}) {
        QVERIFY2(clock.match(ZeitDifferenz(a, b)).hasMatch(), qPrintable(a + " - " + b));
        const double percent = ZeitProzent(a, b);
        QVERIFY(!(percent < 0));
      }
      QVERIFY(clock.match(NormalizeTime(a)).hasMatch());
      QVERIFY(NormalizeTimeOfDay(a).left(2).toInt() < 24);
      TimeToSeconds(a);
      ClockTextSeconds(a);
      ParseShortDate(a);
    }
    for (const qint64 seconds :
         {std::numeric_limits<qint64>::min(), std::numeric_limits<qint64>::max(), qint64(-1)}) {
      QVERIFY(clock.match(SecondsToClockText(seconds)).hasMatch());
    }
  }

  void recordsWithGarbage() {
    test::TempDataDir data;
    data.write(QStringLiteral("Tarife/Mobil - Frei.tel"), "Freiminuten:60\r\n");
    data.write(QStringLiteral("Tarife/Netz - Volumen.tel"), "Volumengrenze:100\r\n");
    const QString name = QStringLiteral("01032026-120000.con");
    // Garbage, and a sound record cut off at every byte.
    QByteArray whole;
    for (const char* field : {"S01.03.2026", "12:00:00", "00:10:00", "S0,50", "10", "1000", "1000", "2000",
                              "Stick", "Mobil - Frei.tel", "Supervisor"}) {
      whole += EncryptField(field) + "\r\n";
    }
    QList<QByteArray> contents = samples();
    for (qsizetype size = 0; size <= whole.size(); ++size) {
      contents.append(whole.left(size));
    }
    QByteArray huge;
    for (const char* field : {"S01.03.2026", "12:00:00", "99999999999999999999:00:00", "S0,50", "10", "1",
                              "1", "2", "Stick", "Mobil - Frei.tel", "Supervisor"}) {
      huge += EncryptField(field) + "\r\n";
    }
    contents.append(huge);
    for (const QByteArray& content : contents) {
      data.write(QStringLiteral("Verbindungen/") + name, content);
      data.write(QStringLiteral("Verbindungen/x"), content);  // a name too short for a date
      const auto fields = ReadRecordFields(data.path(QStringLiteral("Verbindungen/") + name));
      QVERIFY(fields.has_value());
      QVERIFY(fields->size() <= (whole.startsWith(content) ? 11 : 12));
      // A record cut short before its fourth line names its user on the last.
      const QString user = RecordUser(data.dir(), name);
      if (whole.startsWith(content) && fields->size() < 4) {
        QCOMPARE(user, fields->isEmpty() ? QString() : QString::fromLatin1(fields->last()));
      }
      RecordCost(data.dir(), name);
      ComputeFreeAllowance(data.dir(), QStringLiteral("Mobil - Frei.tel"), QDate(2026, 3, 5));
      ComputeFreeAllowance(data.dir(), QStringLiteral("Netz - Volumen.tel"), QDate(2026, 3, 5));
    }
  }

  void cipherWithGarbage() {
    for (const QByteArray& content : samples()) {
      const QByteArray line = content.left(300);
      const QByteArray plain = DecryptField(line);
      QVERIFY(plain.size() <= line.size());
      QCOMPARE(DecryptField(EncryptField(line)), line);
    }
  }
};

QTEST_APPLESS_MAIN(TestBadInput)
#include "test_badinput.moc"
