#include "detection/Probes.h"
#include "frame/AppState.h"
#include "support/FakeProbes.h"
#include "support/RecordingPrompter.h"

#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;

namespace {

class FakeNetwork final : public NetworkStateSource {
 public:
  std::optional<quint32> NetworkState() override {
    ++asked;
    return answer;
  }
  std::optional<quint32> answer;
  int asked = 0;
};

class FakeLine final : public TapiLine {
 public:
  bool Open() override { return opens; }
  void Close() override {}
  bool opens = true;
};

}  // namespace

class TestProbes : public QObject {
  Q_OBJECT

 private slots:
  void ignoredAddressesArePlacedByTheEntry() {
    const QList<std::tuple<QStringList, QString, bool>> cases = {
        {{"10.0.0.1"}, "10.0.0.1", true},
        // Each segment only has to begin the address's text at its place.
        {{"10.0.0.1"}, "10.0.0.11", true},
        {{"10.0.0.1"}, "10.0.0.2", false},
        {{"192.168.*.*"}, "192.168.100.200", true},
        {{"192.168.*.*"}, "192.169.0.5", false},
        // Segments are compared where they stand in the entry: after a star
        // the rest only fits addresses whose first octet has one digit.
        {{"*.168.0.1"}, "1.168.0.1", true},
        {{"*.168.0.1"}, "192.168.0.1", false},
        // An entry without enough dots ends the search once its first
        // segment fits; one whose first segment doesn't fit is passed over.
        {{"abc", "192.168.*.*"}, "192.168.0.1", false},
        {{"10.0.*", "10.0.0.1"}, "10.0.0.1", false},
        {{"11.0.*", "10.0.0.1"}, "10.0.0.1", true},
        {{QString()}, "10.0.0.1", false},
    };
    for (const auto& [table, ip, ignored] : cases) {
      QVERIFY2(IsIgnoredIP(table, ip) == ignored, qPrintable(table.join(',') + " / " + ip));
    }

    // The IP probe looks at every address.
    const QStringList table = {"127.*.*.*", "192.168.*.*"};
    QVERIFY(HasUnignoredAddress(table, {"127.0.0.1", "192.168.1.20", "84.130.7.1"}));
    QVERIFY(!HasUnignoredAddress(table, {"127.0.0.1", "192.168.1.20", ""}));
    QVERIFY(!HasUnignoredAddress(table, {}));

    AppState state;
    state.MethodIP = true;
    state.IgnoredIPTable = table;
    test::RecordingPrompter prompter;
    test::FakeHost host;
    host.addresses->append(u"10.1.2.3"_s);
    QVERIFY(IsOnlineIP(state, host, prompter));
    host.addresses = std::nullopt;
    QVERIFY(!IsOnlineIP(state, host, prompter));
    QVERIFY(!state.MethodIP);
    QVERIFY(prompter.messages.size() == 1 && prompter.messages[0].startsWith("Die IP Überwachung"));
  }

  void internetStateIsOnWheneverAMethodIs() {
    // The flags don't count; the two methods do.
    QVERIFY(IsOnlineIE(true, false, 0) && IsOnlineIE(false, true, 0));
    QVERIFY(!IsOnlineIE(false, false, 2));
    QCOMPARE(InternetFlags(70), 2u);
    QCOMPARE(InternetFlags(60), 0u);

    // Without an answer from the network the probe still says connected,
    // but it has asked.
    AppState state;
    FakeNetwork network;
    QVERIFY(IsOnlineIE(state, network));
    QCOMPARE(network.asked, 1);
    state.MethodIE = false;
    QVERIFY(!IsOnlineIE(state, network));
  }

  void modemStatesDriveTheLine() {
    AppState state;
    auto change = [&](int modemState) {
      if (const auto callState = CallStateOfModem(modemState)) {
        OnTapiCallState(state, 1, *callState);
      }
    };
    // Connecting (10) again leaves the line as it is; disconnecting (9), a
    // drop straight back to registered (8) and an unknown state end it.
    const QList<std::pair<int, bool>> steps = {{10, false}, {11, true}, {10, true}, {9, false},
                                               {11, true},  {8, false}, {11, true}, {-1, false}};
    for (const auto& [modemState, online] : steps) {
      change(modemState);
      QVERIFY2(state.TapiOnline == online, qPrintable(QString::number(modemState)));
    }

    // A connected state without a call changes nothing; busy ends a call.
    OnTapiCallState(state, 0, CallState::Connected);
    QVERIFY(!state.TapiOnline);
    OnTapiCallState(state, 5, CallState::Connected);
    OnTapiCallState(state, 0, CallState::Busy);
    QVERIFY(!state.TapiOnline);
  }

  void tapiWithoutAModemIsOffForTheRun() {
    AppState state;
    state.MethodTAPI = true;
    test::RecordingPrompter prompter;
    FakeLine line;
    StartTapi(state, line, prompter);
    QVERIFY(state.MethodTAPI && prompter.messages.isEmpty());
    line.opens = false;
    StartTapi(state, line, prompter);
    QVERIFY(!state.MethodTAPI);
    QVERIFY(prompter.messages.size() == 1 && prompter.messages[0].startsWith("Fehler beim Initialisieren"));
  }
};

QTEST_APPLESS_MAIN(TestProbes)
#include "test_probes.moc"
