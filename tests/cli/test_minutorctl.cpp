#include "support/RecordFiles.h"
#include "support/TempDataDir.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
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
  void fieldsAndTariffs() {
    const Result enc = Ctl({"field", "encrypt", "Anna B", "Grüße €", ""});
    QCOMPARE(enc.code, 0);
    // Fields from standard input, with CR LF line ends on the way back.
    QCOMPARE(QString::fromUtf8(Ctl({"field", "decrypt"}, QByteArray(enc.out).replace("\n", "\r\n")).out),
             QStringLiteral("Anna B\nGrüße €\n\n"));

    test::TempDataDir data;
    data.write(QStringLiteral("Tarife/Test - Zonen.tel"), kTariff);
    const QStringList price{"--datadir", data.path(), "tariff", "price", "Test - Zonen.tel", "--at"};
    QCOMPARE(Ctl(price + QStringList{"2026-11-23 18:00:00"}).out, QByteArray("6\n"));
    QCOMPARE(Ctl(price + QStringList{"2026-11-23 07:00:00", "--holiday"}).out, QByteArray("1.5\n"));
    QCOMPARE(Ctl({"--datadir", data.path(), "tariff", "list"}).out,
             QByteArray("Test\tM - Zonen\tTest - Zonen.tel\n"));
  }

  void simulatesARecordingWithTheProgramsMeter() {
    test::TempDataDir data;
    data.write(QStringLiteral("Tarife/Test - Zonen.tel"), kTariff);
    const QStringList base{"--datadir",        data.path(), "simulate",
                           "Test - Zonen.tel", "--start",   "2026-11-23 17:59:00"};
    const Result r = Ctl(base + QStringList{"--seconds", "121", "--connection", "Modem", "--user", "Jörg"});
    QCOMPARE(r.code, 0);
    QCOMPARE(QString::fromUtf8(r.out),
             QStringLiteral(
                 "lblDauer\t00:02:01\nlblKosten\t0,159 €\nlblEinheiten\t3 (59s)\nlblRestFrei\tkeine\n"
                 "lblEinheit\t60s\nlblEuroProMinute\t0,039 €\nlblBytesIn\tunbekannt\nlblBytesOut\tunbekannt\n"
                 "lblBytesInOut\tunbekannt\nrecord 1\tS23.11.2026\nrecord 2\t17:59:00\nrecord 3\t00:02:01\n"
                 "record 4\tS0,16\nrecord 5\t3\nrecord 6\t0\nrecord 7\t0\nrecord 8\t0\nrecord 9\tModem\n"
                 "record 10\tTest - Zonen.tel\nrecord 11\tJörg\n"));
    // Without --save nothing is written.
    QCOMPARE(QDir(data.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList{"Tarife"});

    // A volume tariff, its traffic from a file, traced tick by tick and saved.
    data.write(QStringLiteral("Tarife/Funk - Volumen.tel"),
               "Volumenabrechnung:Ja\r\nVolumenkosten:10\r\nVolumeneinheit:1\r\nVolumengrenze:1\r\n");
    data.write(QStringLiteral("traffic.txt"), "2 300000 100000\n\n4 1500000 200000\n");
    const Result v =
        Ctl({"--datadir", data.path(), "simulate", "Funk - Volumen.tel", "--start", "2026-11-23 10:00:00",
             "--seconds", "5", "--traffic", data.path(QStringLiteral("traffic.txt")), "--trace", "--save"});
    const QList<QByteArray> lines = v.out.split('\n');
    QCOMPARE(lines.size(), 5 * 13 + 9 + 11 + 1);
    QCOMPARE(lines.at(13), QByteArray("tick 2"));
    QCOMPARE(lines.at(22), QByteArray("lblBytesInOut\t400.000 Bytes"));
    QCOMPARE(data.read(QStringLiteral("Prerun/Funk - Volumen.dat")), QByteArray(" 300 \r\n"));
    // The saved record, shown in plain text by its name or by its path.
    const Result saved = Ctl({"--datadir", data.path(), "record", "show", "23112026-100000.con"});
    QCOMPARE(saved.out,
             QByteArray("1\tS23.11.2026\n2\t10:00:00\n3\t00:00:05\n4\tS0,00\n5\t2\n6\t1500000\n"
                        "7\t200000\n8\t1700000\n9\tunbekannt\n10\tFunk - Volumen.tel\n11\tSupervisor\n"));
    QCOMPARE(Ctl({"record", "show", data.path(QStringLiteral("Verbindungen/23112026-100000.con"))}).out,
             saved.out);

    // The free minutes left at the start, as the Overview counts them: two
    // hours less an hour this month; --holiday and --bundling reach the meter.
    data.write(QStringLiteral("Tarife/Test - Frei.tel"),
               QByteArray(kTariff).replace("Takt:60/60", "Takt:60/60\r\nFreiminuten:120"));
    Ctl({"--datadir", data.path(), "simulate", "Test - Frei.tel", "--start", "2026-11-01 08:00:00", "--seconds",
         "3600", "--save"});
    const Result free = Ctl({"--datadir", data.path(), "simulate", "Test - Frei.tel", "--start",
                             "2026-11-23 09:00:00", "--seconds", "3601", "--holiday", "--bundling"});
    QVERIFY(free.out.contains("lblRestFrei\t-00:00:01\n"));
    QVERIFY(free.out.contains("lblKosten\t0,060 €\n"));

    // Failures (1) and wrong use (2), told apart.
    data.write(QStringLiteral("bad.txt"), "1 2 3\nzwei 4 5\n");
    const std::tuple<QStringList, int, const char*> mistakes[] = {
        {base + QStringList{"--seconds", "3", "--traffic", data.path(QStringLiteral("Tarife"))}, 1, ""},
        {base + QStringList{"--seconds", "3", "--traffic", data.path(QStringLiteral("bad.txt"))}, 1, "line 2"},
        {base + QStringList{"--seconds", "3", "--user", ""}, 1, "Kein Benutzer ausgewählt!"},
        {{"--datadir", data.path(), "record", "show", "01012000-000000.con"}, 1, "01012000-000000.con"},
        {base + QStringList{"--seconds", "0"}, 2, ""},
        {{"simulate", "Test - Zonen.tel", "--seconds", "5"}, 2, ""}};
    for (const auto& [args, code, told] : mistakes) {
      const Result m = Ctl(args);
      QCOMPARE(m.code, code);
      QVERIFY2(m.err.contains(told), m.err.constData());
    }
  }

  void theHistoryFromTheShell() {
    test::TempDataDir data;
    data.write(QStringLiteral("Tarife/Test - Zonen.tel"), kTariff);
    data.write(QStringLiteral("Benutzer/Anna.usr"), "");
    test::WriteRecord(data, "01112026-100000.con",
                      test::RecordLines("01.11.2026", "10:00:00", "01:30:00", "1,25"));
    test::WriteRecord(
        data, "03112026-210000.con",
        test::RecordLines("03.11.2026", "21:00:00", "00:10:00", "0,50", "Mobil - Flat.atl", "Bert"));
    const QStringList base{"--datadir", data.path()};
    const QStringList month = base + QStringList{"chart", "--month", "11", "--year", "2026"};
    const QList<QByteArray> days = Ctl(month + QStringList{"--measure", "dauer", "--user", "anna", "--values"})
                                       .out.split('\n');
    QCOMPARE(days.size(), 32);
    QCOMPARE(days[0], QByteArray("1\t2160"));  // an hour counts 360 seconds here
    for (const char* file : {"chart.png", "chart.bmp"}) {
      const QString path = data.path(QString::fromUtf8(file));
      QCOMPARE(Ctl(month + QStringList{"--measure", "kosten", "--style", "linien", "--output", path}).code,
               0);
      QVERIFY(data.read(QString::fromUtf8(file)).startsWith(path.endsWith("png") ? "\x89PNG" : "BM"));
    }

    const QList<QByteArray> report =
        Ctl(base + QStringList{"report", "--period", "Dieser Monat", "--today", "2026-11-23"}).out.split('\n');
    QCOMPARE(report.size(), 15);
    QCOMPARE(report[9], QByteArray("9\tDer aktivste Benutzer ist: Anna (1 Verbindungen)"));
    QCOMPARE(report.mid(11, 3), (QList<QByteArray>{"Kosten\t1,75 €", "Dauer\t01:40:00", "Transfer\t4 KB"}));

    // Saturday 2024-01-06: the weekend zone, 1.5 a minute.
    const QStringList when{"--date", "6.1.2024", "--start", "10:00", "--duration", "0:03:01"};
    QCOMPARE(Ctl(base + QStringList{"record", "estimate", "--tariff", "Test - Zonen.tel"} + when).out,
             QByteArray("Kosten\t0,06\nEinheiten\t4\n"));
    const QStringList add =
        base + QStringList{"record", "add", "--provider", "Test", "--tariff", "M - Zonen"} + when;
    QCOMPARE(Ctl(add).err, QByteArray("minutorctl: Sie müssen einen Benutzer angeben.\n"));
    QCOMPARE(Ctl(add + QStringList{"--user", "Anna"}).out, QByteArray("06012024-100000.con\n"));
    const Result list = Ctl(base + QStringList{"list", "--period", "Gestern", "--today", "2024-01-07",
                                               "--tariff", "M - Zonen", "--provider", "Test"});
    QVERIFY(list.out.startsWith("06.01.2024\t10:00:00\t00:03:01\t0,060\t4\t0\t0\t0\tKeine DF"));
    QVERIFY(list.out.endsWith("\nGesamt\t00:03:01\t0,06 €\n"));
    QCOMPARE(Ctl(base + QStringList{"list", "--period", "Morgen"}).code, 1);
  }

  void comparesTheTariffsOverAPeriod() {
    test::TempDataDir data;
    data.write(QStringLiteral("Tarife/Funk - Minute.tel"),
               "[Providerdaten]\r\nTakt:60/60\r\n[Tarifzonen]\r\nZone:M\r\nVon:0\r\nBis:24\r\nPfennig:6\r\n"
               "Einheit:60\r\nWochenende:Nein");
    data.write(QStringLiteral("Tarife/Netz - Volumen.atl"),
               "[Providerdaten]\r\nVolumenabrechnung:Ja\r\nVolumenkosten:10\r\nVolumeneinheit:1\r\n");
    // Two minutes and 2.5 MB: a minute's tariff charges two units, the
    // volume tariff three.
    test::WriteRecord(
        data, "02112026-100000.con",
        test::RecordLines("02.11.2026", "10:00:00", "00:02:00", "0,50", "X - Y.tel", "Anna", "2500000"));
    test::WriteRecord(
        data, "03112026-100000.con",
        test::RecordLines("03.11.2026", "10:00:00", "00:02:00", "0,40", "X - Y.tel", "Bert", "2500000"));
    const QStringList base{"--datadir", data.path(), "compare", "--today", "2026-11-23"};
    QCOMPARE(Ctl(base + QStringList{"--period", "Dieser Monat", "--user", "Anna"}).out,
             QByteArray("Funk - Minute.tel\t0,12\nNetz - Volumen.atl\t0,30\nTatsächlich\t0,50\n"));
  }

  void budgetsLimitsAndTheCut() {
    test::TempDataDir data;
    data.write(QStringLiteral("Tarife/Test - Zonen.tel"), kTariff);
    // Kind may not dial over budget: 0,05 a day, with the box on and no sound.
    const QByteArray kindFile =
        Ctl({"field", "encrypt", "0", "0", "0", "0", "1", "0", "0", "60", "", "0", "600"}).out;
    data.write(QStringLiteral("Benutzer/Kind.usr"),
               QByteArray(kindFile).replace("\n\n", "\n\r\n").replace('\n', "\r\n"));
    data.write(QStringLiteral("Benutzer/Kind.bdg"), "0,05\r\n0\r\n0\r\n1.1.2001\r\n31.1.2001\r\n");
    data.write(QStringLiteral("Benutzer/Benutzer.dat"), "0\r\n0\r\n1\r\nStandard\r\n");

    QCOMPARE(
        Ctl({"--datadir", data.path(), "budget", "--user", "Kind", "--today", "2026-11-23"}).out,
        QByteArray(
            "Tag\t0,05 €\nReicht bis\t23.11.2026\nPro Tag\t0,05 €\nMonat\tinaktiv\nDefiniert\tinaktiv\n"));
    const Result damaged = Ctl({"--datadir", data.path(), "budget", "--user", "Supervisor"});
    QCOMPARE(damaged.code, 1);
    QVERIFY(damaged.err.contains("Die Budgetdateien sind beschädigt"));
    QCOMPARE(Ctl({"--datadir", data.path(), "timeleft", "--user", "Kind", "--today", "2026-11-23"}).out,
             QByteArray("DaySecondsLeft\t3600\nMonthSecondsLeft\t36000\nRefused\t0\n"));
    QCOMPARE(Ctl({"--datadir", data.path(), "timeleft", "--today", "23.11.2026"}).code, 2);

    // 3,9 a minute: the second minute crosses the 5 hundredths; two minutes
    // later the line is cut, which that tick's check of the line notices.
    const Result cut = Ctl({"--datadir", data.path(), "simulate", "Test - Zonen.tel", "--start",
                            "2026-11-23 10:00:00", "--seconds", "600", "--user", "Kind", "--trace"});
    QCOMPARE(cut.code, 0);
    const QList<QByteArray> lines = cut.out.split('\n');
    const auto tickOf = [&](const QByteArray& line) {
      for (qsizetype i = lines.indexOf(line); i >= 0; --i) {
        if (lines[i].startsWith("tick ")) {
          return lines[i].mid(5).toInt();
        }
      }
      return -1;
    };
    QCOMPARE(tickOf("event\talarm 1"), 61);
    QCOMPARE(tickOf("event\tConStop"), 61);
    QCOMPARE(tickOf("event\tHangUp"), 181);
    QVERIFY(cut.out.contains("record 3\t00:03:01\n"));

    // A day limit of one minute: the countdown opens once the minute is used.
    const QByteArray limited =
        Ctl({"field", "encrypt", "0", "0", "0", "0", "0", "0", "1", "1", "", "0", "600"}).out;
    data.write(QStringLiteral("Benutzer/Uhr.usr"),
               QByteArray(limited).replace("\n\n", "\n\r\n").replace('\n', "\r\n"));
    const QList<QByteArray> limit = Ctl({"--datadir", data.path(), "simulate", "Test - Zonen.tel", "--start",
                                         "2026-11-23 10:00:00", "--seconds", "100", "--user", "Uhr", "--trace"})
                                        .out.split('\n');
    QCOMPARE(limit.value(limit.indexOf("event\tConStop") - 1), QByteArray("tick 60"));
  }

  void exportsTheList() {
    test::TempDataDir data;
    test::WriteRecord(data, "01112026-100000.con",
                      test::RecordLines("01.11.2026", "10:00:00", "01:30:00", "1,25"));
    const QStringList base{"--datadir", data.path()};
    const QString html = data.path(QStringLiteral("Liste"));
    QCOMPARE(Ctl(base + QStringList{"export", "--format", "html", "--charts", "--period", "Dieser Monat",
                                    "--today", "2026-11-23", "--output", html})
                 .code,
             0);
    QVERIFY(
        data.read(QStringLiteral("Liste")).contains("\r\n<IMG src=Liste1.bmp>\r\n<IMG src=Liste2.bmp>\r\n"));
    QVERIFY(data.read(QStringLiteral("Liste2.bmp")).startsWith("BM"));
    QCOMPARE(Ctl(base + QStringList{"export", "--format", "csv", "--output", data.path("l.csv")}).code, 0);
    QVERIFY(data.read(QStringLiteral("l.csv"))
                .endsWith("\r\n2026-11-01,10:00:00,01:30:00,1.25,3,1500,500,2000,"
                          "Mobilfunk-Stick,Funkwelle - Tag und Nacht,Anna,\r\n"));

    // An empty list writes nothing; charts only go with a month's list.
    const Result empty = Ctl(base + QStringList{"export", "--format", "text", "--user", "Bert", "--output",
                                                data.path("leer.txt")});
    QCOMPARE(empty.code, 1);
    QVERIFY(empty.err.endsWith("minutorctl: Die Liste enthält keine Einträge.\n"));
    QVERIFY(!QFile::exists(data.path("leer.txt")));
    QCOMPARE(Ctl(base + QStringList{"export", "--format", "html", "--charts", "--output", html}).code, 2);
  }

  void mistakesAreToldApart() {
    test::TempDataDir data;
    const Result noTariff = Ctl({"--datadir", data.path(), "tariff", "price", "Fehlt - X.tel"});
    QCOMPARE(noTariff.code, 1);
    QVERIFY(noTariff.err.contains("Fehlt - X.tel"));
    QCOMPARE(Ctl({"--datadir", data.path(), "tariff", "price", "../etc/passwd"}).code, 1);
    const Result noDir = Ctl({"--datadir", data.path("fehlt"), "tariff", "list"});
    QCOMPARE(noDir.code, 1);
    QVERIFY(noDir.err.contains("no data directory"));
    for (const QStringList& usage :
         {QStringList(), QStringList{"tariff", "fly"},
          QStringList{"tariff", "price", "X - Y.tel", "--at", "gestern"}, QStringList{"--datadir"},
          QStringList{"chart", "--month", "13", "--year", "2026", "--measure", "dauer"},
          QStringList{"chart", "--month", "1", "--year", "2026", "--measure", "tage", "--values"},
          QStringList{"report", "--period", "Morgen"}, QStringList{"report", "--today", "23.11.2026"},
          QStringList{"compare", "--period", "Morgen"}}) {
      QCOMPARE(Ctl(usage).code, 2);
    }
  }

  void servesChecksAndFetchesTariffUpdates() {
    test::TempDataDir server;
    server.write(QStringLiteral("tel/0001/Alt - A.atl"), "Name:Alt - A\n");
    server.write(QStringLiteral("tel/0002/Neu - B.atl"), "Name:Neu - B\nTakt:60/60\n");
    const Result index = Ctl({"update", "index", server.path(), "--revision", "400"});
    QCOMPARE(index.code, 0);
    QVERIFY(server.read(QStringLiteral("update.txt")).startsWith("*U* 400\r\n[0001]\r\n"));

    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost);
    const quint16 port = probe.serverPort();
    probe.close();
    QProcess http;
    http.start(QStringLiteral("python3"), {"-m", "http.server", "--bind", "127.0.0.1", QString::number(port),
                                           "--directory", server.path()});
    QTRY_VERIFY_WITH_TIMEOUT(([port] {
                               QTcpSocket socket;
                               socket.connectToHost(QHostAddress::LocalHost, port);
                               return socket.waitForConnected(200);
                             }()),
                             10000);
    const QString url = QStringLiteral("http://127.0.0.1:%1").arg(port);

    test::TempDataDir data;
    data.write(QStringLiteral("Config/Update.cfg"), " 1 \r\n01.01.2026\r\n");
    const Result check = Ctl({"--datadir", data.path(), "update", "check", "--server", url});
    QCOMPARE(check.code, 0);
    QCOMPARE(check.out, (url + "/tel/0002/Neu - B.atl\tNeu - B.atl\nletzteSerie\t2\n").toUtf8());
    const Result fetch = Ctl({"--datadir", data.path(), "update", "fetch", "--server", url});
    QCOMPARE(fetch.code, 0);
    QCOMPARE(fetch.out, (data.path(QStringLiteral("Tarife/Neu - B.atl")) + "\n").toUtf8());
    QCOMPARE(data.read(QStringLiteral("Tarife/Neu - B.atl")), QByteArray("Name:Neu - B\r\nTakt:60/60\r\n"));
    QVERIFY(data.read(QStringLiteral("Config/Update.cfg")).startsWith(" 2 \r\n"));
    http.terminate();
    http.waitForFinished(3000);
    // Without Servers.dat: said, and a failure.
    QCOMPARE(Ctl({"--datadir", data.path(), "update", "check"}).code, 1);

    data.write(QStringLiteral("time.html"),
               "<p>Current Timezone: Etc/GMT</p><H2>Mon Nov 23 23:30:15 GMT 2026</H2></body>\n");
    const QString page = data.path(QStringLiteral("time.html"));
    QCOMPARE(Ctl({"timesync", "parse", page, "--bias", "3600"}).out, QByteArray("2026-11-23 00:30:15\n"));
    data.write(QStringLiteral("time.html"), "nothing here");
    QCOMPARE(Ctl({"timesync", "parse", page}).out, QByteArray("0\n"));
  }
};

QTEST_GUILESS_MAIN(TestMinutorctl)
#include "test_minutorctl.moc"
