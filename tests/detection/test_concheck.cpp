#include "detection/ConCheck.h"
#include "frame/AppState.h"
#include "frame/StartUp.h"
#include "support/RecordingPrompter.h"
#include "support/TempDataDir.h"

#include <QSet>
#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;

namespace {

class FakeBus final : public BusServices {
 public:
  bool HasService(const QString& name) const override { return names.contains(name); }
  QSet<QString> names;
};

ConCheckBoxes Boxes(bool ip, bool ie, bool tapi, bool lan, int interval) {
  ConCheckBoxes boxes;
  boxes.Check1 = {ip, ie, tapi, lan};
  boxes.Interval = interval;
  return boxes;
}

}  // namespace

class TestConCheck : public QObject {
  Q_OBJECT

 private slots:
  void fileKeepsItsOwnOrder() {
    test::TempDataDir data;
    QCOMPARE(ReadConCheckBoxes(data.dir()), Boxes(false, true, false, false, 2));

    // IP, TAPI, LAN on: the file lists IP, Internet state, LAN, TAPI.
    QVERIFY(WriteConCheck(data.dir(), Boxes(true, false, true, false, 10)));
    QCOMPARE(data.read(u"Config/ConCheck.cfg"_s), QByteArray(" 1 \r\n 0 \r\n 0 \r\n 1 \r\n 10 \r\n"));
    QCOMPARE(ReadConCheckBoxes(data.dir()), Boxes(true, false, true, false, 10));
    AppState state;
    LoadConCheck(data.dir(), state);
    QVERIFY(state.MethodIP && !state.MethodIE && !state.MethodLAN && state.MethodTAPI);
    QCOMPARE(state.CheckInterval, 10);

    // What a failed start leaves behind, and garbage, give no method and 2 s.
    data.write(u"Config/ConCheck.cfg"_s, "0\r\n0\r\n0\r\n0\r\n0\r\n");
    QCOMPARE(ReadConCheckBoxes(data.dir()), Boxes(false, false, false, false, 2));
    data.write(u"Config/ConCheck.cfg"_s,
               QByteArray("\xff\x00\x01\r\n2\r\nja\r\n\r\n99999999999999999999", 34));
    QCOMPARE(ReadConCheckBoxes(data.dir()), Boxes(false, false, false, false, 2));
    data.write(u"Config/ConCheck.cfg"_s, " 1 \r\n 0 \r\n 0 \r\n 0 \r\n 11 \r\n");  // just past the longest
    QCOMPARE(ReadConCheckBoxes(data.dir()), Boxes(true, false, false, false, 2));

    // The ignored addresses are kept as typed.
    QCOMPARE(ReadIgnoredIPsLine(data.dir()), QString());
    const QString typed = u"192.168.*.* ,  10.0.0.1,Müll"_s;
    QVERIFY(WriteIgnoredIPsLine(data.dir(), typed));
    QCOMPARE(data.read(u"Config/IgnoredIPs.cfg"_s), QByteArray("192.168.*.* ,  10.0.0.1,M\xfcll\r\n"));
    QCOMPARE(ReadIgnoredIPsLine(data.dir()), typed);
    LoadConCheck(data.dir(), state);
    QCOMPARE(state.IgnoredIPTable, (QStringList{"192.168.*.*", "10.0.0.1", "Müll"}));
  }

  void methodsNeedTheirServices() {
    test::RecordingPrompter prompter;
    FakeBus bus;
    ConCheckBoxes boxes = Boxes(true, true, true, true, 3);
    CheckDlls(boxes, bus, prompter);
    // The IP method needs no service and stays.
    QCOMPARE(boxes, Boxes(true, false, false, false, 3));
    QCOMPARE(prompter.messages.size(), 2);
    QVERIFY(prompter.messages[0].startsWith("Die Internet Explorer Überwachung läßt sich nicht aktivieren."));
    QVERIFY(prompter.messages[0].contains("'NetworkManager'"));
    QVERIFY(prompter.messages[1].startsWith("Die TAPI Überwachung läßt sich nicht aktivieren."));
    QVERIFY(prompter.messages[1].contains("'ModemManager'"));

    prompter.messages.clear();
    bus.names = {kNetworkManagerService, kModemManagerService};
    boxes = Boxes(false, false, true, true, 3);
    CheckDlls(boxes, bus, prompter);
    QCOMPARE(boxes, Boxes(false, false, true, true, 3));
    QVERIFY(prompter.messages.isEmpty());

    // At start only the Internet state is checked; the file stays.
    AppState state;
    state.MethodLAN = true;
    bus.names.clear();
    CheckServicesAtStart(state, bus, prompter);
    QVERIFY(!state.MethodIE && !state.MethodLAN);
    QCOMPARE(prompter.messages.size(), 1);
    QVERIFY(prompter.messages[0].contains("'NetworkManager'"));
  }

  void firstStartPresetsWhatTheMachineCanUse() {
    FakeBus bus;
    test::TempDataDir plain;
    PresetConCheck(plain.dir(), bus);
    QCOMPARE(ReadConCheckBoxes(plain.dir()), Boxes(true, false, false, false, 2));
    QCOMPARE(ReadIgnoredIPsLine(plain.dir()), u"127.*.*.*"_s);

    bus.names = {kNetworkManagerService};
    test::TempDataDir managed;
    PresetConCheck(managed.dir(), bus);
    QCOMPARE(ReadConCheckBoxes(managed.dir()), Boxes(false, true, false, false, 2));
    QVERIFY(!managed.dir().FileExists(u"Config/IgnoredIPs.cfg"_s));
    // What the user set is never preset again.
    PresetConCheck(plain.dir(), bus);
    QCOMPARE(ReadConCheckBoxes(plain.dir()), Boxes(true, false, false, false, 2));
  }

  void savingAppliesWhatThePanelMayHave() {
    test::TempDataDir data;
    test::RecordingPrompter prompter;
    FakeBus bus;
    bus.names = {kNetworkManagerService};
    AppState state;
    ConCheckBoxes boxes = Boxes(false, true, true, false, 5);
    SaveSettings(boxes, state, data.dir(), &bus, prompter);
    QCOMPARE(boxes, Boxes(false, true, false, false, 5));
    QVERIFY(!state.MethodIP && state.MethodIE && !state.MethodTAPI && !state.MethodLAN);
    QCOMPARE(state.CheckInterval, 5);
    QCOMPARE(data.read(u"Config/ConCheck.cfg"_s), QByteArray(" 0 \r\n 1 \r\n 0 \r\n 0 \r\n 5 \r\n"));
    QCOMPARE(prompter.messages.size(), 1);
  }
};

QTEST_APPLESS_MAIN(TestConCheck)
#include "test_concheck.moc"
