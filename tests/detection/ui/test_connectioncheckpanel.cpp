#include "detection/ConCheck.h"
#include "detection/Probes.h"
#include "detection/ui/ConnectionCheckPanel.h"
#include "support/FindControl.h"
#include "support/TestServices.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSet>
#include <QSignalSpy>
#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;

namespace {

class FakeBus final : public BusServices {
 public:
  bool HasService(const QString& name) const override { return names.contains(name); }
  QSet<QString> names = {kNetworkManagerService, kModemManagerService};
};

class FakeLine final : public TapiLine {
 public:
  bool Open() override {
    ++opened;
    return opens;
  }
  void Close() override { ++closed; }
  bool opens = true;
  int opened = 0;
  int closed = 0;
};

struct Desk : test::TestServices {
  FakeBus bus;
  FakeLine line;

  QByteArray conCheck() const { return data.read("Config/ConCheck.cfg"); }
};

using test::Find;

QCheckBox* Box(const QWidget& panel, int index) { return Find<QCheckBox>(panel, u"Check1(%1)"_s.arg(index)); }

QStringList Checked(const QWidget& panel) {
  QStringList on;
  for (int i = 0; i < 4; ++i) {
    if (Box(panel, i)->isChecked()) {
      on.append(QString::number(i));
    }
  }
  return on;
}

}  // namespace

class TestConnectionCheckPanel : public QObject {
  Q_OBJECT

 private slots:
  void loadsWithoutSaving() {
    Desk desk;
    {
      ConnectionCheckPanel panel(desk.services);
      // Without files: the Internet state method alone, every 2 seconds.
      QCOMPARE(Checked(panel), QStringList{"1"});
      QCOMPARE(Find<QComboBox>(panel, "comInterval")->currentText(), u"2"_s);
    }
    QVERIFY(!desk.data.dir().FileExists(u"Config/ConCheck.cfg"_s));

    desk.data.write("Config/ConCheck.cfg", " 1 \r\n 0 \r\n 1 \r\n 1 \r\n 10 \r\n");
    desk.data.write("Config/IgnoredIPs.cfg", "192.168.*.*,10.0.0.1\r\n");
    ConnectionCheckPanel panel(desk.services);
    QCOMPARE(Checked(panel), (QStringList{"0", "2", "3"}));
    QCOMPARE(Find<QComboBox>(panel, "comInterval")->currentText(), u"10"_s);
    QCOMPARE(Find<QLineEdit>(panel, "IgnoredIPs")->text(), u"192.168.*.*,10.0.0.1"_s);
    QCOMPARE(desk.conCheck(), QByteArray(" 1 \r\n 0 \r\n 1 \r\n 1 \r\n 10 \r\n"));
    QVERIFY(desk.prompter.messages.isEmpty());
  }

  void changesAreSavedAndApplied() {
    Desk desk;
    ConnectionCheckPanel panel(desk.services);
    panel.SetPlatform(&desk.bus, &desk.line);
    QSignalSpy interval(&panel, &ConnectionCheckPanel::intervalChanged);

    Box(panel, 0)->click();
    QVERIFY(desk.state.MethodIP);
    Find<QComboBox>(panel, "comInterval")->setCurrentIndex(9);
    QCOMPARE(desk.state.CheckInterval, 10);
    QCOMPARE(interval.last().first().toInt(), 10000);
    QCOMPARE(desk.conCheck(), QByteArray(" 1 \r\n 1 \r\n 0 \r\n 0 \r\n 10 \r\n"));

    // Without NetworkManager the LAN box can't go on, and takes the other
    // Internet state box with it.
    desk.bus.names.remove(kNetworkManagerService);
    Box(panel, 3)->click();
    QCOMPARE(Checked(panel), QStringList{"0"});
    QVERIFY(!desk.state.MethodIE && !desk.state.MethodLAN);
    QCOMPARE(desk.prompter.messages.size(), 1);

    // The TAPI box opens and closes the modem line.
    Box(panel, 2)->click();
    QCOMPARE(desk.line.opened, 1);
    QVERIFY(desk.state.MethodTAPI);
    Box(panel, 2)->click();
    QCOMPARE(desk.line.closed, 1);
    QVERIFY(!desk.state.MethodTAPI);

    // No modem: the method is off for this run, the setting stays on.
    desk.line.opens = false;
    Box(panel, 2)->click();
    QVERIFY(Box(panel, 2)->isChecked());
    QVERIFY(!desk.state.MethodTAPI);
    QCOMPARE(desk.conCheck(), QByteArray(" 1 \r\n 0 \r\n 0 \r\n 1 \r\n 10 \r\n"));
    QCOMPARE(desk.prompter.messages.size(), 2);
  }

  void ignoredAddressesWrittenWhenLeft() {
    Desk desk;
    desk.state.IgnoredIPTable = {"127.*.*.*"};
    ConnectionCheckPanel panel(desk.services);
    panel.show();
    QApplication::setActiveWindow(&panel);
    QVERIFY(QTest::qWaitForWindowActive(&panel));
    auto* field = Find<QLineEdit>(panel, "IgnoredIPs");
    field->setFocus();
    QTest::keyClicks(field, "192.168.*.*, 10.0.0.1");
    QVERIFY(!desk.data.dir().FileExists(u"Config/IgnoredIPs.cfg"_s));
    Find<QComboBox>(panel, "comInterval")->setFocus();
    QCOMPARE(desk.data.read("Config/IgnoredIPs.cfg"), QByteArray("192.168.*.*, 10.0.0.1\r\n"));
    // The running table changes only at the next start.
    QCOMPARE(desk.state.IgnoredIPTable, QStringList{"127.*.*.*"});

    Find<QPushButton>(panel, "Command1")->click();
    QCOMPARE(desk.prompter.messages, QStringList{IgnoredIPsHint()});
    // Each method's explanation opens from the link beside its box.
    for (const auto& [index, text] : {std::pair{0, "IP Nummer"}, {1, "Internet Explorers"}, {2, "TAPI"}}) {
      emit Find<QLabel>(panel, u"lblMehr(%1)"_s.arg(index))->linkActivated("mehr");
      QVERIFY2(desk.prompter.messages.last().contains(QString::fromUtf8(text)), text);
    }
  }
};

QTEST_MAIN(TestConnectionCheckPanel)
#include "test_connectioncheckpanel.moc"
