#include "frame/AppState.h"
#include "frame/datadir/DataDir.h"
#include "support/TestServices.h"
#include "users/FieldCipher.h"
#include "users/UserAccounts.h"
#include "users/UserRights.h"

#include <QTest>

using namespace minutor;

namespace {

// A user file from its eleven plain values; "?" stands for a line that
// doesn't decipher.
QByteArray UserLines(const QList<QByteArray>& plain) {
  QByteArray bytes;
  for (const QByteArray& value : plain) {
    bytes += (value == "?" ? QByteArray("\x01\x02garbage") : EncryptField(value)) + "\r\n";
  }
  return bytes;
}

const QString kExists =
    QStringLiteral("Ein Benutzer mit diesem Namen existiert bereits. Bitte wählen Sie einen anderen Namen.");

}  // namespace

class TestUsers : public QObject {
  Q_OBJECT

 private slots:
  void rightsBecomeFlagsLocksAndTheQuitLock() {
    // Flags: L NoListEdit, B NoDialOnBudget, D day limit (minutes), M month
    // limit (minutes), S no monitoring settings, Q quit locked; then the
    // locked entries.
    const std::pair<QList<QByteArray>, const char*> cases[] = {
        {{"0", "0", "0", "0", "0", "0", "0", "60", "", "0", "600"}, "D0 M0 |"},
        {{"1", "1", "1", "0", "0", "0", "0", "60", "", "0", "600"}, "S D0 M0 | 3 4 5 6"},  // may quit
        {{"0", "0", "0", "1", "0", "0", "0", "60", "", "0", "600"}, "L D0 M0 Q |"},  // list edit: can't quit
        {{"0", "0", "0", "0", "0", "1", "0", "60", "", "0", "600"},
         "L D0 M0 Q | 1 8 9"},  // view implies edit
        {{"0", "0", "0", "0", "1", "0", "1", "45", "pw", "1", "900"}, "B D45 M900 Q |"},
        {{"?", "1", "?", "?", "?"}, "S D0 M0 | 3 6"},  // short and undecipherable lines are off
    };
    for (const auto& [lines, expected] : cases) {
      test::TempDataDir data;
      data.write(QStringLiteral("Benutzer/Kind.usr"), UserLines(lines));
      AppState state;
      const auto locks = SetUserPreventions(data.dir(), QStringLiteral("Kind"), state);
      QVERIFY(locks);
      QStringList shown;
      if (state.NoListEdit) shown << "L";
      if (state.NoDialOnBudget) shown << "B";
      if (state.NoMonitoringSettings) shown << "S";
      shown << QStringLiteral("D%1").arg(state.DayLimitOn ? state.DayLimitMinutes : 0)
            << QStringLiteral("M%1").arg(state.MonthLimitOn ? state.MonthLimitMinutes : 0);
      if (state.QuitLocked) shown << "Q";
      shown << "|";
      for (int index = 0; index < 10; ++index) {
        if (NavigationLabel(index, *locks) == kLockedLabel) {
          shown << QString::number(index);
        }
      }
      QCOMPARE(shown.join(' '), QString::fromLatin1(expected));
    }
    // A missing user leaves the rights as they were.
    test::TempDataDir data;
    AppState state;
    state.QuitLocked = state.DayLimitOn = true;
    QVERIFY(!SetUserPreventions(data.dir(), QStringLiteral("Weg"), state));
    QVERIFY(!SetUserPreventions(data.dir(), QString(), state));
    QVERIFY(state.QuitLocked && state.DayLimitOn);
  }

  void newUsersAreCheckedByName() {
    test::TestServices t;
    CreateUserFiles(t.data.dir(), QStringLiteral("Supervisor"), BudgetDates::Year2002);
    t.data.write(QStringLiteral("Benutzer/Waise.bdg"), "0\r\n");
    // A taken name (case-blind, and a budget file alone takes it too) asks
    // again; a bad name ends the question.
    t.prompter.texts = {QStringLiteral("SUPERVISOR"), QStringLiteral("waise"), QStringLiteral("  Anna  ")};
    QCOMPARE(NewUser(t.services), QStringLiteral("Anna"));
    QCOMPARE(t.prompter.messages.count(kExists), 2);
    QVERIFY(ReadUserFile(t.data.dir(), QStringLiteral("Anna")));
    QCOMPARE(ReadBudgetFile(t.data.dir(), QStringLiteral("Benutzer/Anna.bdg"))->periodTo,
             QStringLiteral("31.1.2001"));
    // A new user's password line is empty, not the cipher of nothing.
    QCOMPARE(t.data.read(QStringLiteral("Benutzer/Anna.usr")).split('\n').at(8), QByteArray("\r"));

    for (const QString& bad :
         {QString(256, QLatin1Char('x')), QStringLiteral("a/b"), QStringLiteral("a:b")}) {
      t.prompter.messages.clear();
      t.prompter.texts = {bad};
      QCOMPARE(NewUser(t.services), QString());
      QVERIFY(t.prompter.messages.last().startsWith(QStringLiteral("Der Name enthält ungültige Zeichen")));
    }
    t.prompter.texts = {QString(255, QLatin1Char('x'))};
    NewUser(t.services);  // the name passes; the file system may still refuse it
    t.prompter.texts = {QStringLiteral("   ")};
    QCOMPARE(NewUser(t.services), QString());

    // Supervisor can't be deleted in any case; others go after a yes.
    t.prompter.messages.clear();
    QVERIFY(!DeleteUser(t.services, QStringLiteral("SuperVisor")));
    QCOMPARE(t.prompter.messages, QStringList{QStringLiteral("Der Supervisor kann nicht gelöscht werden.")});
    t.prompter.answers = {Prompter::Answer::Yes};
    QVERIFY(DeleteUser(t.services, QStringLiteral("Anna")));
    QVERIFY(!t.data.dir().FileExists(QStringLiteral("Benutzer/Anna.usr")));
    QVERIFY(!t.data.dir().FileExists(QStringLiteral("Benutzer/Anna.bdg")));
  }

  void theStartAsksOnlyForAPassword() {
    test::TestServices t;
    const DataDir& dir = t.data.dir();
    CreateUserFiles(dir, QStringLiteral("Supervisor"), BudgetDates::Year2002);
    QCOMPARE(CheckUser(dir), std::nullopt);
    UserFile withPassword;
    withPassword.password = "Geheim";
    WriteUserFile(dir, QStringLiteral("Mia"), withPassword);
    t.data.write(QStringLiteral("Config/Overview.cfg"), "Modem\r\nMia\r\n");
    QCOMPARE(CheckUser(dir), QStringLiteral("Mia"));
    // With the desktop login linked, the login decides without a question.
    t.data.write(QStringLiteral("Config/Users.cfg"), "1\r\n");
    QCOMPARE(CheckUser(dir), std::nullopt);
    t.data.write(QStringLiteral("Config/Users.cfg"), "0\r\n");
    t.data.write(QStringLiteral("Config/Overview.cfg"), "Modem\r\nWeg\r\n");
    QCOMPARE(CheckUser(dir), std::nullopt);

    QVERIFY(PasswordMatches(dir, QStringLiteral("Mia"), QStringLiteral("Geheim")));
    QVERIFY(!PasswordMatches(dir, QStringLiteral("Mia"), QStringLiteral("geheim")));
    QVERIFY(PasswordMatches(dir, QStringLiteral("Supervisor"), QString()));

    // The question of the panels: cancel and empty end silently, a wrong
    // answer is told.
    t.prompter.passwords = {QString(), QStringLiteral("falsch"), QStringLiteral("Geheim")};
    QVERIFY(!AskUserPassword(t.services, QStringLiteral("Mia")));
    QVERIFY(!AskUserPassword(t.services, QStringLiteral("Mia")));
    QCOMPARE(t.prompter.messages.last(), QStringLiteral("Falsches Passwort!"));
    QVERIFY(AskUserPassword(t.services, QStringLiteral("Mia")));
    QVERIFY(AskUserPassword(t.services, QStringLiteral("Supervisor")));

    // A lost file is made again with the 2002 budget and the user told.
    t.prompter.messages.clear();
    LoadOrRebuildUser(t.services, QStringLiteral("Weg"));
    QCOMPARE(t.prompter.messages.size(), 1);
    QCOMPARE(ReadBudgetFile(dir, QStringLiteral("Benutzer/Weg.bdg"))->periodFrom, QStringLiteral("1.1.2002"));
  }
};

QTEST_APPLESS_MAIN(TestUsers)
#include "test_users.moc"
