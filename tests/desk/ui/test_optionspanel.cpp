#include "desk/ui/OptionsPanel.h"
#include "detection/SimulatedRemoteAccess.h"
#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Services.h"
#include "support/RecordingPrompter.h"
#include "support/TempDataDir.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

using namespace minutor;

class TestOptionsPanel : public QObject {
  Q_OBJECT

 private slots:
  void panelLoadsAndSavesEachChange() {
    test::TempDataDir data;
    AppState state;
    FixedClock clock{QDateTime(QDate(2026, 11, 23), QTime(10, 0))};
    test::RecordingPrompter prompter;
    Services services{state, data.dir(), clock, prompter};
    SimulatedRemoteAccess remote;
    remote.AddEntry(QStringLiteral("Mobilfunk"));
    remote.AddEntry(QStringLiteral("Büro"));
    data.write(QStringLiteral("Config/Options.cfg"), "2\r\n0\r\n1\r\n0\r\n0\r\n0\r\n");
    data.write(QStringLiteral("DialUp/Deny.sec"), "B\xdcRO\r\n1\r\n");
    data.write(QStringLiteral("DialUp/Mobilfunk.prg"), "/usr/bin/mail\r\n1\r\n");
    const QByteArray optionsBefore = data.read(QStringLiteral("Config/Options.cfg"));

    OptionsPanel panel(services, &remote);
    panel.resize(470, 400);
    panel.show();
    QCOMPARE(panel.objectName(), QStringLiteral("Options"));
    QCOMPARE(data.read(QStringLiteral("Config/Options.cfg")), optionsBefore);  // loading saves nothing

    auto* currency = panel.findChild<QComboBox*>(QStringLiteral("Combo1_0"));
    auto* example = panel.findChild<QLabel*>(QStringLiteral("Label1"));
    QCOMPARE(currency->currentText(), QStringLiteral("Dollar"));
    QCOMPARE(example->text(), QStringLiteral("Beispiel: 0,00 $"));
    QVERIFY(panel.findChild<QCheckBox*>(QStringLiteral("Check2_0"))->isChecked());

    currency->setCurrentIndex(3);
    QCOMPARE(example->text(), QStringLiteral("Beispiel: 0,00 £"));
    QCOMPARE(state.Waehrung, QStringLiteral("£"));
    QVERIFY(data.read(QStringLiteral("Config/Options.cfg")).startsWith(" 3 \r\n 0 \r\n 1 \r\n"));

    // The guard: its list follows the box and keeps the machine's entries.
    auto* guard = panel.findChild<QCheckBox*>(QStringLiteral("Check2_3"));
    auto* list2 = panel.findChild<QListWidget*>(QStringLiteral("List2"));
    QCOMPARE(list2->count(), 2);
    QVERIFY(!list2->isEnabled());
    QCOMPARE(list2->item(0)->checkState(), Qt::Unchecked);
    QCOMPARE(list2->item(1)->checkState(), Qt::Checked);
    guard->click();
    QVERIFY(list2->isEnabled());
    QVERIFY(state.OnlyMarkedEntries);
    list2->item(0)->setCheckState(Qt::Checked);
    QCOMPARE(data.read(QStringLiteral("DialUp/Deny.sec")),
             QByteArray("Mobilfunk\r\n 1 \r\nB\xfcro\r\n 1 \r\n"));

    panel.findChild<QLabel*>(QStringLiteral("Label3"))->linkActivated(QStringLiteral("mehr"));
    QCOMPARE(prompter.messages.size(), 1);
    QVERIFY(prompter.messages[0].startsWith(QStringLiteral("Im Internet kursieren")));

    // Programs: the entry's list, then the general one.
    auto* entry = panel.findChild<QComboBox*>(QStringLiteral("Combo1_1"));
    auto* list1 = panel.findChild<QListWidget*>(QStringLiteral("List1"));
    QCOMPARE(entry->currentText(), QStringLiteral("Mobilfunk"));
    QCOMPARE(list1->count(), 1);
    panel.AddProgram(QStringLiteral("/usr/bin/browser"));
    QCOMPARE(data.read(QStringLiteral("DialUp/Mobilfunk.prg")),
             QByteArray("/usr/bin/mail\r\n 1 \r\n/usr/bin/browser\r\n 1 \r\n"));
    list1->setCurrentRow(0);
    panel.findChild<QPushButton*>(QStringLiteral("Command2"))->click();
    QCOMPARE(data.read(QStringLiteral("DialUp/Mobilfunk.prg")), QByteArray("/usr/bin/browser\r\n 1 \r\n"));

    panel.findChild<QCheckBox*>(QStringLiteral("Check1"))->click();
    QVERIFY(state.SamePrograms);
    QVERIFY(!entry->isEnabled());
    // The box writes the list on show to the general one.
    QCOMPARE(data.read(QStringLiteral("DialUp/General.prg")), QByteArray("/usr/bin/browser\r\n 1 \r\n"));
    panel.AddProgram(QStringLiteral("/usr/bin/allgemein"));
    QCOMPARE(data.read(QStringLiteral("DialUp/General.prg")),
             QByteArray("/usr/bin/browser\r\n 1 \r\n/usr/bin/allgemein\r\n 1 \r\n"));
    QCOMPARE(data.read(QStringLiteral("DialUp/Mobilfunk.prg")), QByteArray("/usr/bin/browser\r\n 1 \r\n"));
  }

  void withoutRemoteAccessTheListsAreEmpty() {
    test::TempDataDir data;
    AppState state;
    FixedClock clock{QDateTime(QDate(2026, 11, 23), QTime(10, 0))};
    test::RecordingPrompter prompter;
    Services services{state, data.dir(), clock, prompter};
    OptionsPanel panel(services, nullptr);
    QCOMPARE(panel.findChild<QListWidget*>(QStringLiteral("List2"))->count(), 0);
    QCOMPARE(panel.findChild<QComboBox*>(QStringLiteral("Combo1_0"))->currentIndex(), 0);
    panel.AddProgram(QStringLiteral("/usr/bin/mail"));  // no entry, no file
    QVERIFY(data.dir().ListFiles(QStringLiteral("DialUp")).isEmpty());
  }
};

QTEST_MAIN(TestOptionsPanel)
#include "test_optionspanel.moc"
