#include "metering/ConnectionRecord.h"
#include "support/RecordingPrompter.h"
#include "support/TempDataDir.h"

#include <QProcess>
#include <QTest>

using namespace minutor;

namespace {

struct Result {
  int code = -1;
  QByteArray out;
  QByteArray err;
};

Result Ctl(const QStringList& args, const QByteArray& input = {}) {
  QProcess process;
  process.start(QStringLiteral(MINUTORCTL_EXECUTABLE), args);
  process.waitForStarted();
  process.write(input);
  process.closeWriteChannel();
  process.waitForFinished(20000);
  return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

// A time tariff: working days 8 to 18 at 3,9, 18 to 24 at 6; weekends free.
const QByteArray kTariff =
    "[Providerdaten]\r\nName:Test - Zonen\r\nVolumenabrechnung:Nein\r\nTakt:60/60\r\n\r\n[Tarifzonen]\r\n"
    "Zone:Zonen\r\nVon:8\r\nBis:18\r\nPfennig:3,9\r\nEinheit:60\r\nWochenende:Nein\r\n"
    "Zone:Zonen\r\nVon:18\r\nBis:24\r\nPfennig:6\r\nEinheit:60\r\nWochenende:Nein\r\n"
    "Zone:Zonen\r\nVon:0\r\nBis:24\r\nPfennig:1.5\r\nEinheit:60\r\nWochenende:Ja";

}  // namespace

class TestMinutorctl : public QObject {
  Q_OBJECT

 private slots:
  void fieldsRoundTripThroughTheShell() {
    const Result enc = Ctl({"field", "encrypt", "Anna B", "ab c", "Grüße €", ""});
    QCOMPARE(enc.code, 0);
    const QList<QByteArray> lines = enc.out.split('\n');
    QCOMPARE(lines.size(), 5);
    QCOMPARE(lines.at(3), QByteArray());
    for (const QByteArray& line : lines) {
      for (const char c : line) {
        QVERIFY(static_cast<unsigned char>(c) >= 100 && static_cast<unsigned char>(c) <= 199);
      }
    }
    const Result dec = Ctl({"field", "decrypt"}, enc.out);
    QCOMPARE(dec.code, 0);
    QCOMPARE(QString::fromUtf8(dec.out), QStringLiteral("Anna B\nab c\nGrüße €\n\n"));

    // Fields from standard input, with CR LF line ends on the way back.
    const Result fromInput = Ctl({"field", "encrypt"}, "eins\nzwei\n");
    QByteArray crlf = fromInput.out;
    crlf.replace("\n", "\r\n");
    QCOMPARE(Ctl({"field", "decrypt"}, crlf).out, QByteArray("eins\nzwei\n"));
  }

  void recordsAreShownInPlainText() {
    test::TempDataDir data;
    RecordLabels l;
    l.startTag = QStringLiteral("23112026");
    l.startTime = QStringLiteral("09:30:00");
    l.dauer = QStringLiteral("00:01:00");
    l.kosten = QStringLiteral("0,039 €");
    l.einheiten = QStringLiteral("1");
    l.bytesIn = l.bytesOut = l.bytesInOut = QStringLiteral("unbekannt");
    l.connectionName = QStringLiteral("unbekannt");
    l.tarif = QStringLiteral("Test - Zonen.tel");
    l.benutzer = QStringLiteral("Jörg");
    test::RecordingPrompter prompter;
    QCOMPARE(SaveConnection(data.dir(), l, prompter), SaveResult::Saved);

    const Result shown = Ctl({"--datadir", data.path(), "record", "show", "23112026-093000.con"});
    QCOMPARE(shown.code, 0);
    QCOMPARE(QString::fromUtf8(shown.out),
             QStringLiteral("1\tS23.11.2026\n2\t09:30:00\n3\t00:01:00\n4\tS0,04\n5\t1\n6\t0\n7\t0\n8\t0\n"
                            "9\tunbekannt\n10\tTest - Zonen.tel\n11\tJörg\n"));
    // A path works as well as a name.
    QCOMPARE(Ctl({"record", "show", data.path(QStringLiteral("Verbindungen/23112026-093000.con"))}).out,
             shown.out);

    const Result missing = Ctl({"--datadir", data.path(), "record", "show", "01012000-000000.con"});
    QCOMPARE(missing.code, 1);
    QVERIFY(missing.err.contains("01012000-000000.con"));
  }

  void tariffPricesAtAMoment() {
    test::TempDataDir data;
    data.write(QStringLiteral("Tarife/Test - Zonen.tel"), kTariff);
    auto price = [&](const char* at, bool holiday = false) {
      QStringList args{"--datadir", data.path(), "tariff", "price", "Test - Zonen.tel", "--at", at};
      if (holiday) {
        args.append(QStringLiteral("--holiday"));
      }
      const Result r = Ctl(args);
      return r.code == 0 ? r.out.trimmed() : QByteArray("exit ") + QByteArray::number(r.code);
    };
    QCOMPARE(price("2026-11-23 09:30:00"), QByteArray("3.9"));  // Monday
    QCOMPARE(price("2026-11-23 18:00:00"), QByteArray("6"));    // the later zone wins on the hour
    QCOMPARE(price("2026-11-23 07:59:59"), QByteArray("0"));
    QCOMPARE(price("2026-11-22 12:00:00"), QByteArray("1.5"));  // Sunday
    QCOMPARE(price("2026-11-23 07:00:00", true), QByteArray("1.5"));

    const Result list = Ctl({"--datadir", data.path(), "tariff", "list"});
    QCOMPARE(list.code, 0);
    QCOMPARE(list.out, QByteArray("Test\tM - Zonen\tTest - Zonen.tel\n"));
  }

  void mistakesAreToldApart() {
    test::TempDataDir data;
    const Result noTariff = Ctl({"--datadir", data.path(), "tariff", "price", "Fehlt - X.tel"});
    QCOMPARE(noTariff.code, 1);
    QVERIFY(noTariff.err.contains("Fehlt - X.tel"));
    QCOMPARE(Ctl({"--datadir", data.path(), "tariff", "price", "../etc/passwd"}).code, 1);
    QCOMPARE(Ctl({}).code, 2);
    QCOMPARE(Ctl({"tariff"}).code, 2);
    QCOMPARE(Ctl({"tariff", "fly"}).code, 2);
    QCOMPARE(Ctl({"tariff", "price", "X - Y.tel", "--at", "gestern"}).code, 2);
    QCOMPARE(Ctl({"--datadir"}).code, 2);
  }
};

QTEST_GUILESS_MAIN(TestMinutorctl)
#include "test_minutorctl.moc"
