#include "desk/ui/OverviewPanel.h"
#include "frame/StartUp.h"
#include "frame/ui/MainWindow.h"
#include "frame/ui/SideBar.h"
#include "metering/TrafficSource.h"
#include "support/FindControl.h"
#include "support/TestServices.h"
#include "users/FieldCipher.h"
#include "users/UserAccounts.h"
#include "users/UserRights.h"
#include "users/ui/BudgetPanel.h"
#include "users/ui/LoginDialog.h"
#include "users/ui/UserPanel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

using namespace minutor;
using test::Find;

namespace {

const QString kWrong = QStringLiteral("Falsches Passwort!");

// Chooses an entry of a list as the user would.
void Choose(QComboBox* combo, const QString& text) {
  combo->setCurrentIndex(combo->findText(text));
  emit combo->activated(combo->currentIndex());
}

// An installation with the supervisor, a child with a password and rights,
// and a guest without either.
struct Family : test::TestServices {
  Family() {
    RunStartSteps(data.dir(), test::TempDataDir::shippedDir(), state);
    CreateUserFiles(data.dir(), QStringLiteral("Gast"), BudgetDates::Year2001);
    UserFile kind;
    kind.password = "geheim";
    kind.noBudgetSettings = true;
    kind.noListView = true;
    WriteUserFile(data.dir(), QStringLiteral("Kind"), kind);
    data.write(QStringLiteral("Benutzer/Kind.bdg"), "2\r\n0\r\n0\r\n1.1.2001\r\n31.1.2001\r\n");
  }
};

}  // namespace

class TestUserPanels : public QObject {
  Q_OBJECT

 private slots:
  void theLoginLetsInWithTheRightPasswordOnly() {
    Family f;
    LoginDialog login(f.services, QStringLiteral("Kind"));
    QCOMPARE(Find<QComboBox>(login, QStringLiteral("Combo1"))->currentText(), QStringLiteral("Kind"));
    Find<QLineEdit>(login, QStringLiteral("Text1"))->setText(QStringLiteral("Geheim"));
    Find<QPushButton>(login, QStringLiteral("Command1"))->click();
    QCOMPARE(login.result(), 0);
    QCOMPARE(f.prompter.messages.last(),
             QStringLiteral("Das eingegebene Passwort ist falsch. Bitte überprüfen Sie Ihre Eingabe."));
    // Any user without a password comes in with an empty field.
    Choose(Find<QComboBox>(login, QStringLiteral("Combo1")), QStringLiteral("Gast"));
    Find<QLineEdit>(login, QStringLiteral("Text1"))->clear();
    Find<QPushButton>(login, QStringLiteral("Command1"))->click();
    QCOMPARE(login.result(), int(QDialog::Accepted));
    QCOMPARE(f.state.ActiveUser, QStringLiteral("Gast"));
  }

  void theUserPanelAsksSavesAndLocks() {
    Family f;
    UserPanel panel(f.services);
    panel.show();
    QSignalSpy changed(&panel, &UserPanel::rightsChanged);
    auto* users = Find<QComboBox>(panel, QStringLiteral("comUser"));
    QCOMPARE(users->currentText(), QStringLiteral("Supervisor"));
    // The supervisor can't be restricted; only his password is open.
    QVERIFY(!Find<QCheckBox>(panel, QStringLiteral("chkUser(0)"))->isEnabled());
    QVERIFY(Find<QLineEdit>(panel, QStringLiteral("txtUserPassword"))->isEnabled());

    f.prompter.passwords = {QStringLiteral("falsch"), QStringLiteral("geheim")};
    Choose(users, QStringLiteral("Kind"));
    QCOMPARE(f.prompter.messages.last(), kWrong);
    QCOMPARE(users->currentText(), QStringLiteral("Supervisor"));
    QCOMPARE(f.state.ActiveUser, QStringLiteral("Supervisor"));
    Choose(users, QStringLiteral("Kind"));
    QCOMPARE(f.state.ActiveUser, QStringLiteral("Kind"));
    QCOMPARE(changed.count(), 1);

    // The list lock shows the edit lock on and fixed; off, the stored value
    // comes back.
    auto* edit = Find<QCheckBox>(panel, QStringLiteral("chkUser(3)"));
    QVERIFY(edit->isChecked() && !edit->isEnabled());
    Find<QCheckBox>(panel, QStringLiteral("chkUser(6)"))->click();
    QVERIFY(!edit->isChecked() && edit->isEnabled());
    QVERIFY(!ReadUserFile(f.data.dir(), QStringLiteral("Kind"))->noListView);
    auto* minutes = Find<QLineEdit>(panel, QStringLiteral("txtTimeLimit"));
    minutes->setText(QStringLiteral("45 Minuten"));
    emit minutes->editingFinished();
    QCOMPARE(minutes->text(), QStringLiteral("45"));
    QCOMPARE(ReadUserFile(f.data.dir(), QStringLiteral("Kind"))->dayLimitMinutes, 45);
    Find<QCheckBox>(panel, QStringLiteral("chkUser(5)"))->click();
    QCOMPARE(f.data.read(QStringLiteral("Config/Users.cfg")), QByteArray("1\r\n"));
  }

  void lockedEntriesAndTheQuitLockFollowTheUser() {
    // The start takes the last active user, as the Overview left it.
    Family f;
    f.state.ActiveUser.clear();
    f.data.write(QStringLiteral("Config/Overview.cfg"), "\r\nKind\r\n\r\n\r\n");
    NoTrafficSource traffic;
    MainWindow window(f.services, traffic);
    window.Start();
    QCOMPARE(window.statusField(2)->text(), QStringLiteral("Aktiver Benutzer: Kind"));
    QCOMPARE(f.data.read(QStringLiteral("Config/Overview.cfg")).split('\n').value(1), QByteArray("Kind\r"));
    SideBar* bar = window.sideBar();
    QCOMPARE(QStringList({bar->Label(1), bar->Label(4), bar->Label(5), bar->Label(8)}),
             QStringList({"[Gesperrt]", "[Gesperrt]", "Benutzer", "[Gesperrt]"}));
    emit bar->entryClicked(4);
    QVERIFY(!window.IsFormLoaded(QStringLiteral("Budget")));
    QVERIFY(f.state.QuitLocked && f.state.NoListEdit);
    QVERIFY(!window.close());
    QVERIFY(window.isVisible());
    QVERIFY(window.windowFlags().testFlag(Qt::Tool));

    // Another user chosen in the User panel takes the locks away at once.
    emit bar->entryClicked(5);
    auto* panel = window.findChild<UserPanel*>();
    QVERIFY(panel);
    Choose(Find<QComboBox>(*panel, QStringLiteral("comUser")), QStringLiteral("Gast"));
    QCOMPARE(bar->Label(4), QStringLiteral("Budget"));
    QVERIFY(!f.state.QuitLocked);
    QVERIFY(!window.windowFlags().testFlag(Qt::Tool));
    QCOMPARE(window.statusField(2)->text(), QStringLiteral("Aktiver Benutzer: Gast"));
  }

  void theBudgetPanelEditsAndShowsTheRests() {
    Family f;
    f.data.write(QStringLiteral("Benutzer/Gast.bdg"), "5\r\n0\r\n0\r\n1.1.2001\r\n31.1.2001\r\n");
    f.state.ActiveUser = QStringLiteral("Gast");
    BudgetPanel panel(f.services);
    panel.show();
    QSignalSpy saved(&panel, &BudgetPanel::budgetSaved);
    QCOMPARE(Find<QLabel>(panel, QStringLiteral("lblRestTag"))->text(), QStringLiteral("5,00 €"));
    QCOMPARE(Find<QLabel>(panel, QStringLiteral("lblRestMonat"))->text(), QStringLiteral("inaktiv"));

    // Field and bar are one amount, whole numbers only.
    auto* field = Find<QLineEdit>(panel, QStringLiteral("txtBudget(2)"));
    QTest::keyClicks(field, QStringLiteral("12.5"));
    emit field->editingFinished();
    QCOMPARE(field->text(), QStringLiteral("12"));
    QCOMPARE(Find<QScrollBar>(panel, QStringLiteral("scrlBudget(2)"))->value(), -12);
    QCOMPARE(ReadBudgetFile(f.data.dir(), QStringLiteral("Benutzer/Gast.bdg"))->perMonth, 12.0);
    QCOMPARE(Find<QLabel>(panel, QStringLiteral("lblRestMonat"))->text(), QStringLiteral("12,00 €"));
    // The projection follows the new amount.
    QCOMPARE(Find<QLabel>(panel, QStringLiteral("lblProjection(1)"))->text(),
             QStringLiteral("bis Ende · 1,50 €/Tag"));
    QVERIFY(saved.count() >= 1);

    // A shared budget without its file is rebuilt by the first save.
    Find<QCheckBox>(panel, QStringLiteral("chkBudget(0)"))->click();
    QVERIFY(f.prompter.messages.contains(kBudgetFilesDamaged));
    QVERIFY(!Find<QComboBox>(panel, QStringLiteral("comBudgetUser"))->isEnabled());
    QCOMPARE(f.data.read(QStringLiteral("Benutzer/Benutzer.dat")).left(3), QByteArray(" 1 "));

    // Choosing a user with a password asks for it; a lost file comes back.
    Find<QCheckBox>(panel, QStringLiteral("chkBudget(0)"))->click();
    f.data.dir().Remove(QStringLiteral("Benutzer/Kind.bdg"));
    f.prompter.messages.clear();
    f.prompter.passwords = {QStringLiteral("geheim")};
    Choose(Find<QComboBox>(panel, QStringLiteral("comBudgetUser")), QStringLiteral("Kind"));
    QCOMPARE(Find<QComboBox>(panel, QStringLiteral("comBudgetUser"))->currentText(), QStringLiteral("Kind"));
    QVERIFY(f.prompter.messages.last().startsWith(QStringLiteral("Die Speicherdatei dieses Benutzers")));
    QCOMPARE(ReadBudgetFile(f.data.dir(), QStringLiteral("Benutzer/Kind.bdg"))->periodFrom,
             QStringLiteral("1.1.2001"));
  }

  void theOverviewShowsTheRestsAndRefusesToDial() {
    Family f;
    QByteArray record;
    for (const QByteArray& value : QList<QByteArray>{"S23.11.2026", "08:00:00", "00:10:00", "S3,00", "1", "0",
                                                     "0", "0", "Modem", "T - T.tel", "Kind"}) {
      record += EncryptField(value) + "\r\n";
    }
    f.data.write(QStringLiteral("Verbindungen/23112026-080000.con"), record);
    UserFile kind = *ReadUserFile(f.data.dir(), QStringLiteral("Kind"));
    kind.noDialOnBudget = kind.dayLimitOn = true;
    kind.dayLimitMinutes = 30;
    WriteUserFile(f.data.dir(), QStringLiteral("Kind"), kind);
    f.state.ActiveUser = QStringLiteral("Kind");
    SetUserPreventions(f.data.dir(), f.state.ActiveUser, f.state);

    OverviewPanel panel(f.services);
    panel.show();
    QCOMPARE(Find<QLabel>(panel, QStringLiteral("lblOverview(2)"))->text(), QStringLiteral("-1,00 €"));
    QCOMPARE(Find<QLabel>(panel, QStringLiteral("lblOverview(7)"))->text(),
             QStringLiteral("nicht festgelegt"));
    QVERIFY(Find<QLabel>(panel, QStringLiteral("lblOverview(2)"))->toolTip().contains(QStringLiteral("0,43 €")));
    auto* dial = Find<QPushButton>(panel, QStringLiteral("Command1"));
    dial->click();
    QCOMPARE(f.prompter.messages.last(),
             QStringLiteral("Das Einwählen wurde Ihnen in den Benutzereinstellungen verboten (Ihr Budget ist "
                            "überschritten)."));
    // 20 minutes left of the day: dialling is allowed; at 10 it isn't.
    f.state.NoDialOnBudget = false;
    f.prompter.messages.clear();
    dial->click();
    QVERIFY(f.prompter.messages.isEmpty());
    f.state.DayLimitMinutes = 11;
    dial->click();
    QCOMPARE(f.prompter.messages.last(),
             QStringLiteral("Das Einwählen wurde Ihnen in den Benutzereinstellungen verboten (Ihr tägliches "
                            "Zeitlimit ist überschritten)."));
  }
};

QTEST_MAIN(TestUserPanels)
#include "test_userpanels.moc"
