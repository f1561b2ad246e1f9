#include "online/TimeCorrection.h"
#include "online/UpdateCheck.h"
#include "online/UpdateDownload.h"
#include "online/platform/NetworkFetcher.h"
#include "online/platform/TimedatedClockSetter.h"
#include "support/PrivateBus.h"
#include "support/TestServices.h"

#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;

namespace {

// A web server on 127.0.0.1 that answers each path as the test wants: with
// a body, not at all, or with bytes that aren't HTTP.
class TestServer : public QObject {
 public:
  enum class Mode { Answer, Silent, Garbage };
  struct Page {
    QByteArray body;
    Mode mode = Mode::Answer;
  };

  TestServer() {
    server_.listen(QHostAddress::LocalHost);
    connect(&server_, &QTcpServer::newConnection, this, [this] {
      while (QTcpSocket* socket = server_.nextPendingConnection()) {
        connect(socket, &QTcpSocket::readyRead, socket, [this, socket] { Answer(socket); });
      }
    });
  }
  QString base() const { return u"http://127.0.0.1:%1"_s.arg(server_.serverPort()); }
  QHash<QByteArray, Page> pages;
  QList<QByteArray> asked;

 private:
  void Answer(QTcpSocket* socket) {
    const QByteArray request = socket->readAll();
    const QByteArray path = QByteArray::fromPercentEncoding(request.split(' ').value(1));
    asked.append(path);
    const Page page = pages.value(path, {"", Mode::Answer});
    if (page.mode == Mode::Silent) {
      return;
    }
    if (page.mode == Mode::Garbage) {
      socket->write("\x01\x02 not a web server \xff\r\n\r\n");
    } else {
      const bool found = pages.contains(path);
      socket->write((found ? "HTTP/1.1 200 OK\r\n" : "HTTP/1.1 404 Not Found\r\n") +
                    QByteArray("Content-Length: ") + QByteArray::number(page.body.size()) +
                    "\r\nConnection: close\r\n\r\n" + page.body);
    }
    socket->disconnectFromHost();
  }
  QTcpServer server_;
};

// Short limits, so that a silent server ends the wait soon.
NetworkFetcher::Limits Quick() { return {300, 1000, 1'000'000}; }

QString Unreachable() {
  QTcpServer closed;
  closed.listen(QHostAddress::LocalHost);
  const quint16 port = closed.serverPort();
  closed.close();
  return u"http://127.0.0.1:%1"_s.arg(port);
}

const QByteArray kTariff = "[Providerdaten]\nName:Neu - Eins\nTakt:60/60\n";

}  // namespace

class TestUpdateOnline : public QObject {
  Q_OBJECT

 private slots:
  void serversAreAskedInTurnAndTheTariffsFetched() {
    minutor::test::TestServices s;
    TestServer silent, garbage, stale, good;
    silent.pages.insert("/update.txt", {"", TestServer::Mode::Silent});
    garbage.pages.insert("/update.txt", {"", TestServer::Mode::Garbage});
    stale.pages.insert("/update.txt", {"*U* 330\r\n[0001]\r\n<tel/1/Alt - A.atl|Alt - A.atl>\r\n"});
    good.pages.insert("/update.txt",
                      {"*U* 331\n[0001]\n<tel/1/Alt - A.atl|Alt - A.atl>\n[0002]\n"
                       "<tel/2/Neu - Eins.atl|Neu - Eins.atl>\n<tel/2/x|../Weg - Da.atl>\n"
                       "<tel/2/y|/tmp/Weg - Da.atl>\n[0003]\n<tel/3/Neu - Zwei.atl|Neu - Zwei.atl>\n"});
    good.pages.insert("/tel/2/Neu - Eins.atl", {kTariff});
    good.pages.insert("/tel/3/Neu - Zwei.atl", {QByteArray(1'000'001, 'x')});
    NetworkFetcher fetcher(Quick());
    {
      // Without Servers.dat the user is told at once.
      UpdateCheck check(s.data.dir(), s.prompter, fetcher);
      QSignalSpy checked(&check, &UpdateCheck::finished);
      check.Start();
      QVERIFY(checked.size() == 1 && check.Entries().isEmpty());
      QVERIFY(s.prompter.messages.takeFirst().startsWith("Kann die Datei 'Servers.dat' nicht finden."));
    }
    s.data.write(u"Revision.dat"_s, "330\r\n");
    s.data.write(u"Config/Update.cfg"_s, " 1 \r\n01.01.2026\r\n");
    s.data.write(u"Servers.dat"_s, (Unreachable() + "\r\n\r\nfile:///etc\r\n" + silent.base() + "\r\n" +
                                    garbage.base() + "\r\n" + stale.base() + "\r\n" + good.base() + "\r\n")
                                       .toUtf8());
    UpdateCheck check(s.data.dir(), s.prompter, fetcher);
    QSignalSpy checked(&check, &UpdateCheck::finished);
    check.Start();
    QVERIFY(checked.wait(10000));
    QCOMPARE(check.Entries(),
             (QList<UpdateEntry>{{good.base() + "/tel/2/Neu - Eins.atl", "Neu - Eins.atl"},
                                 {good.base() + "/tel/3/Neu - Zwei.atl", "Neu - Zwei.atl"}}));
    QCOMPARE(check.LetzteSerie(), 3);
    QVERIFY(check.NewerRevision());
    QVERIFY(s.prompter.messages.isEmpty());

    // The oversized tariff fails and is passed by; the batch counts as taken.
    UpdateDownload download(s.data.dir(), s.clock, fetcher, check.Entries(), check.LetzteSerie());
    QSignalSpy done(&download, &UpdateDownload::finished);
    QSignalSpy progress(&download, &UpdateDownload::progress);
    download.Start();
    QVERIFY(done.wait(10000));
    QCOMPARE(download.Written(), QStringList{"Tarife/Neu - Eins.atl"});
    QCOMPARE(s.data.read(u"Tarife/Neu - Eins.atl"_s),
             QByteArray("[Providerdaten]\r\nName:Neu - Eins\r\nTakt:60/60\r\n"));
    QCOMPARE(progress.size(), 2);
    QCOMPARE(s.data.read(u"Config/Update.cfg"_s), QByteArray(" 3 \r\n23.11.2026\r\n"));
    QCOMPARE(QDir(s.data.path(u"Tarife"_s)).entryList(QDir::Files), QStringList{"Neu - Eins.atl"});
  }

  void cancelStopsTheTransferAndKeepsTheBatch() {
    minutor::test::TestServices s;
    TestServer server;
    server.pages.insert("/a", {kTariff});
    server.pages.insert("/b", {"", TestServer::Mode::Silent});
    NetworkFetcher fetcher;  // the full time limits: only the cancel ends the wait
    UpdateDownload download(s.data.dir(), s.clock, fetcher,
                            {{server.base() + "/a", "Neu - A.atl"}, {server.base() + "/b", "Neu - B.atl"}},
                            5);
    QSignalSpy status(&download, &UpdateDownload::status);
    download.Start();
    QTRY_COMPARE(status.size(), 2);
    QTRY_COMPARE(server.asked.size(), 2);
    download.Cancel();
    QTest::qWait(100);
    QCOMPARE(download.Written(), QStringList{"Tarife/Neu - A.atl"});
    QVERIFY(!s.data.dir().FileExists(u"Config/Update.cfg"_s));

    // A check that goes away while its server is silent (the connection
    // ended) is never answered.
    server.pages.insert("/update.txt", {"", TestServer::Mode::Silent});
    NetworkFetcher quick(Quick());
    auto* check = new UpdateCheck(s.data.dir(), s.prompter, quick);
    check->StartWith({server.base()});
    QTRY_COMPARE(server.asked.size(), 3);
    delete check;
    QTest::qWait(1500);
  }

  void theClockIsSetThroughTimedatedUnlessTheSystemKeepsIt() {
    ::test::PrivateBus bus;
    if (!bus.Start(u"timedated"_s)) {
      QSKIP("dbus-daemon can't start a private bus here");
    }
    // Berlin in winter: UTC + 1 hour.
    minutor::test::TestServices s(QDateTime(QDate(2026, 11, 23), QTime(11, 0, 0)));
    TestServer server;
    server.pages.insert(
        "/xdate?Etc/GMT",
        {"<html><body><p>Current Timezone: Etc/GMT</p><H2>Mon Nov 23 10:05:09 GMT 2026</H2></body>"});
    s.data.write(u"Online.dat"_s, ("\r\n" + server.base() + "\r\n").toUtf8());
    NetworkFetcher fetcher(Quick());
    TimedatedClockSetter setter(bus.connection());

    auto mock = [&bus](const QStringList& call) {
      QProcess gdbus;
      gdbus.start("gdbus",
                  QStringList{"call", "--address", bus.address(), "--dest", "org.freedesktop.timedate1",
                              "--object-path", "/org/freedesktop/timedate1", "--method"} +
                      call);
      gdbus.waitForFinished(5000);
      return gdbus.readAllStandardOutput();
    };
    // The page's 10:05:09 UTC moved to Berlin's 11:05:09 and handed over as UTC again.
    const QByteArray setTime =
        "<int64 " +
        QByteArray::number(QDateTime(QDate(2026, 11, 23), QTime(10, 5, 9), Qt::UTC).toMSecsSinceEpoch() *
                           1000) +
        ">, <false>, <true>";
    for (const auto& [ntp, refuse, text] :
         {std::tuple{false, false, "Zeit um ±00:05:09 korrigiert."},
          {true, false, "Nicht korrigiert: das System stellt die Uhr selbst."},
          {false, true, "Nicht korrigiert: keine Berechtigung."}}) {
      QProcess* timedated =
          bus.StartMock({"-t", "timedated", "-p", ntp ? R"({"NTP": true})" : R"({"NTP": false})"},
                        u"org.freedesktop.timedate1"_s);
      if (timedated == nullptr) {
        QSKIP("python3-dbusmock's timedated template doesn't start");
      }
      if (refuse) {
        mock({"org.freedesktop.DBus.Mock.AddMethod", "org.freedesktop.timedate1", "SetTime", "xbb", "",
              "raise dbus.exceptions.DBusException('nein', name='org.freedesktop.DBus.Error.AccessDenied')"});
      }
      TimeCorrection correction(s.data.dir(), s.clock, fetcher, setter);
      QSignalSpy finished(&correction, &TimeCorrection::finished);
      correction.Start();
      QVERIFY(finished.wait(10000));
      QCOMPARE(finished.first().first().toString(), QString::fromUtf8(text));
      const QByteArray recorded = mock({"org.freedesktop.DBus.Mock.GetMethodCalls", "SetTime"});
      QVERIFY2(recorded.contains(setTime) == !ntp, recorded);
      ::test::PrivateBus::Stop(*timedated);
    }
  }
};

QTEST_GUILESS_MAIN(TestUpdateOnline)
#include "test_update_online.moc"
