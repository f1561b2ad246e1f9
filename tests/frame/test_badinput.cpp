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
using namespace Qt::StringLiterals;

namespace {

// The settings a start reads, and the supervisor's user file.
const char* const kSettingsFiles[] = {
    "Config/Options.cfg", "Config/Monitoring.cfg",  "Config/ConCheck.cfg", "Config/IgnoredIPs.cfg", "Tax.dat",
    "Note.dat",           "Benutzer/Supervisor.usr"};

// A record's lines, enciphered.
QByteArray Record(const QByteArray& duration) {
  QByteArray bytes;
  for (const QByteArray& field :
       {QByteArray("S01.03.2026"), QByteArray("12:00:00"), duration, QByteArray("S0,50"), QByteArray("10"),
        QByteArray("1000"), QByteArray("1000"), QByteArray("2000"), QByteArray("Stick"),
        QByteArray("Mobil - Frei.tel"), QByteArray("Supervisor")}) {
    bytes += EncryptField(field) + "\r\n";
  }
  return bytes;
}

}  // namespace

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
      for (const char* name : kSettingsFiles) {
        data.write(QString::fromLatin1(name), content);
      }
      data.write(u"Benutzer/Supervisor.bdg"_s, content);
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
      QVERIFY(ReadBudgetFile(data.dir(), u"Benutzer/Supervisor.bdg"_s).has_value());
      // Damaged files are never replaced at start.
      CreateDefaultUser(data.dir());
      QCOMPARE(data.read(u"Benutzer/Supervisor.usr"_s), content);
    }
  }

  void pipesAndFoldersInPlaceOfSettings() {
    // Nothing waits for a writer that never comes.
    test::TempDataDir data;
    QVERIFY(data.dir().MakeDir(u"Config"_s) && data.dir().MakeDir(u"Benutzer"_s));
    for (const char* name : kSettingsFiles) {
      QVERIFY(::mkfifo(QFile::encodeName(data.path(QString::fromLatin1(name))).constData(), 0600) == 0);
    }
    QVERIFY(data.dir().MakeDir(u"Prerun/Netz - Volumen.dat"_s));
    QCOMPARE(LoadPrerun(data.dir(), u"Netz - Volumen.tel"_s), 0.0f);
    test::RecordingPrompter prompter;
    AppState state;
    LoadOptions(data.dir(), state);
    LoadMonitoring(data.dir(), state);
    LoadConCheck(data.dir(), state);
    QVERIFY(!state.MonitoringOn && state.Waehrung == u"€"_s && state.CheckInterval == 2);
    QVERIFY(LoadNote(data.dir()).isEmpty() && !ReadUserFile(data.dir(), kSupervisor));
    ReadTax(data.dir(), prompter);
  }

  void clockTextsWithGarbage() {
    QStringList texts = {"99999999999999999999:00:00",
                         "-9223372036854775808:59:59",
                         "1e308:1e308:1e308",
                         QString(400, QLatin1Char('9')) + ":99:99",
                         "9223372036854775807",
                         "::-:",
                         "-",
                         ""};
    for (const QByteArray& bytes : samples()) {
      texts.append(QString::fromLatin1(bytes.left(80)));
    }
    static const QRegularExpression clock(u"^-?\\d{2,}:\\d\\d:\\d\\d$"_s);
    for (const QString& a : texts) {
      for (const QString& b : {texts.first(), texts.at(1), a, u"00:00:01"_s}) {
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
    data.write(u"Tarife/Mobil - Frei.tel"_s, "Freiminuten:60\r\n");
    data.write(u"Tarife/Netz - Volumen.tel"_s, "Volumengrenze:100\r\n");
    const QString name = u"01032026-120000.con"_s;
    // Garbage, and a sound record cut off at every byte.
    const QByteArray whole = Record("00:10:00");
    QList<QByteArray> contents = samples();
    for (qsizetype size = 0; size <= whole.size(); ++size) {
      contents.append(whole.left(size));
    }
    contents.append(Record("99999999999999999999:00:00"));
    for (const QByteArray& content : contents) {
      data.write(u"Verbindungen/"_s + name, content);
      data.write(u"Verbindungen/x"_s, content);  // a name too short for a date
      const auto fields = ReadRecordFields(data.path(u"Verbindungen/"_s + name));
      QVERIFY(fields.has_value());
      QVERIFY(fields->size() <= (whole.startsWith(content) ? 11 : 12));
      // A record cut short before its fourth line names its user on the last.
      const QString user = RecordUser(data.dir(), name);
      if (whole.startsWith(content) && fields->size() < 4) {
        QCOMPARE(user, fields->isEmpty() ? QString() : QString::fromLatin1(fields->last()));
      }
      RecordCost(data.dir(), name);
      ComputeFreeAllowance(data.dir(), u"Mobil - Frei.tel"_s, QDate(2026, 3, 5));
      ComputeFreeAllowance(data.dir(), u"Netz - Volumen.tel"_s, QDate(2026, 3, 5));
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
