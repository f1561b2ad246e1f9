#include "desk/ui/OptionsPanel.h"
#include "detection/SimulatedRemoteAccess.h"
#include "support/FindControl.h"
#include "support/TestServices.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;
using test::Find;

class TestOptionsPanel : public QObject {
  Q_OBJECT

 private slots:
  void panelLoadsAndSavesEachChange() {
    test::TestServices t;
    SimulatedRemoteAccess remote;
    remote.AddEntry(u"Mobilfunk"_s);
    remote.AddEntry(u"Büro"_s);
    t.data.write(u"Config/Options.cfg"_s, "2\r\n0\r\n1\r\n0\r\n0\r\n0\r\n");
    t.data.write(u"DialUp/Deny.sec"_s, "B\xdcRO\r\n1\r\n");
    t.data.write(u"DialUp/Mobilfunk.prg"_s, "/usr/bin/mail\r\n1\r\n");
    const QByteArray optionsBefore = t.data.read(u"Config/Options.cfg"_s);

    OptionsPanel panel(t.services, &remote);
    panel.resize(470, 400);
    panel.show();
    QCOMPARE(t.data.read(u"Config/Options.cfg"_s), optionsBefore);  // loading saves nothing

    auto* currency = Find<QComboBox>(panel, u"Combo1_0"_s);
    auto* example = Find<QLabel>(panel, u"Label1"_s);
    QCOMPARE(currency->currentText() + ' ' + example->text(), u"Dollar Beispiel: 0,00 $"_s);
    QVERIFY(Find<QCheckBox>(panel, u"Check2_0"_s)->isChecked());
    currency->setCurrentIndex(3);
    QCOMPARE(example->text(), u"Beispiel: 0,00 £"_s);
    QCOMPARE(t.state.Waehrung, u"£"_s);
    QVERIFY(t.data.read(u"Config/Options.cfg"_s).startsWith(" 3 \r\n 0 \r\n 1 \r\n"));

    // The guard: its list follows the box and keeps the machine's entries.
    auto* list2 = Find<QListWidget>(panel, u"List2"_s);
    QCOMPARE(list2->count(), 2);
    QVERIFY(!list2->isEnabled());
    QVERIFY(list2->item(0)->checkState() == Qt::Unchecked && list2->item(1)->checkState() == Qt::Checked);
    Find<QCheckBox>(panel, u"Check2_3"_s)->click();
    QVERIFY(list2->isEnabled() && t.state.OnlyMarkedEntries);
    list2->item(0)->setCheckState(Qt::Checked);
    QCOMPARE(t.data.read(u"DialUp/Deny.sec"_s), QByteArray("Mobilfunk\r\n 1 \r\nB\xfcro\r\n 1 \r\n"));
    Find<QLabel>(panel, u"Label3"_s)->linkActivated(u"mehr"_s);
    QVERIFY(t.prompter.messages.value(0).startsWith(u"Im Internet kursieren"_s));

    // Programs: the entry's list, then the general one.
    auto* entry = Find<QComboBox>(panel, u"Combo1_1"_s);
    auto* list1 = Find<QListWidget>(panel, u"List1"_s);
    QCOMPARE(entry->currentText(), u"Mobilfunk"_s);
    QCOMPARE(list1->count(), 1);
    panel.AddProgram(u"/usr/bin/browser"_s);
    list1->setCurrentRow(0);
    Find<QPushButton>(panel, u"Command2"_s)->click();
    QCOMPARE(t.data.read(u"DialUp/Mobilfunk.prg"_s), QByteArray("/usr/bin/browser\r\n 1 \r\n"));
    Find<QCheckBox>(panel, u"Check1"_s)->click();
    QVERIFY(t.state.SamePrograms && !entry->isEnabled());
    // The box writes the list on show to the general one.
    panel.AddProgram(u"/usr/bin/allgemein"_s);
    QCOMPARE(t.data.read(u"DialUp/General.prg"_s),
             QByteArray("/usr/bin/browser\r\n 1 \r\n/usr/bin/allgemein\r\n 1 \r\n"));
    QCOMPARE(t.data.read(u"DialUp/Mobilfunk.prg"_s), QByteArray("/usr/bin/browser\r\n 1 \r\n"));

    // Without remote access the lists are empty and no program list is kept.
    test::TestServices other;
    OptionsPanel bare(other.services, nullptr);
    QCOMPARE(Find<QListWidget>(bare, u"List2"_s)->count(), 0);
    bare.AddProgram(u"/usr/bin/mail"_s);
    QVERIFY(other.data.dir().ListFiles(u"DialUp"_s).isEmpty());
  }
};

QTEST_MAIN(TestOptionsPanel)
#include "test_optionspanel.moc"
