#include "frame/AppState.h"
#include "frame/datadir/DataDir.h"
#include "support/TestServices.h"
#include "users/FieldCipher.h"
#include "users/UserAccounts.h"
#include "users/UserRights.h"

#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;

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
    u"Ein Benutzer mit diesem Namen existiert bereits. Bitte wählen Sie einen anderen Namen."_s;

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
      data.write(u"Benutzer/Kind.usr"_s, UserLines(lines));
      AppState state;
      const auto locks = SetUserPreventions(data.dir(), u"Kind"_s, state);
      QVERIFY(locks);
      QStringList shown;
      if (state.NoListEdit) shown << "L";
      if (state.NoDialOnBudget) shown << "B";
      if (state.NoMonitoringSettings) shown << "S";
      shown << u"D%1"_s.arg(state.DayLimitOn ? state.DayLimitMinutes : 0)
            << u"M%1"_s.arg(state.MonthLimitOn ? state.MonthLimitMinutes : 0);
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
    QVERIFY(!SetUserPreventions(data.dir(), u"Weg"_s, state));
    QVERIFY(!SetUserPreventions(data.dir(), QString(), state));
    QVERIFY(state.QuitLocked && state.DayLimitOn);
  }

  void newUsersAreCheckedByName() {
    test::TestServices t;
    CreateUserFiles(t.data.dir(), u"Supervisor"_s, BudgetDates::Year2002);
    t.data.write(u"Benutzer/Waise.bdg"_s, "0\r\n");
    // A taken name (case-blind, and a budget file alone takes it too) asks
    // again; a bad name ends the question.
    t.prompter.texts = {u"SUPERVISOR"_s, u"waise"_s, u"  Anna  "_s};
    QCOMPARE(NewUser(t.services), u"Anna"_s);
    QCOMPARE(t.prompter.messages.count(kExists), 2);
    QVERIFY(ReadUserFile(t.data.dir(), u"Anna"_s));
    QCOMPARE(ReadBudgetFile(t.data.dir(), u"Benutzer/Anna.bdg"_s)->periodTo, u"31.1.2001"_s);
    // A new user's password line is empty, not the cipher of nothing.
    QCOMPARE(t.data.read(u"Benutzer/Anna.usr"_s).split('\n').at(8), QByteArray("\r"));

    for (const QString& bad : {QString(256, QLatin1Char('x')), u"a/b"_s, u"a:b"_s}) {
      t.prompter.messages.clear();
      t.prompter.texts = {bad};
      QCOMPARE(NewUser(t.services), QString());
      QVERIFY(t.prompter.messages.last().startsWith(u"Der Name enthält ungültige Zeichen"_s));
    }
    t.prompter.texts = {QString(255, QLatin1Char('x'))};
    NewUser(t.services);  // the name passes; the file system may still refuse it
    t.prompter.texts = {u"   "_s};
    QCOMPARE(NewUser(t.services), QString());

    // Supervisor can't be deleted in any case; others go after a yes.
    t.prompter.messages.clear();
    QVERIFY(!DeleteUser(t.services, u"SuperVisor"_s));
    QCOMPARE(t.prompter.messages, QStringList{u"Der Supervisor kann nicht gelöscht werden."_s});
    t.prompter.answers = {Prompter::Answer::Yes};
    QVERIFY(DeleteUser(t.services, u"Anna"_s));
    QVERIFY(!t.data.dir().FileExists(u"Benutzer/Anna.usr"_s));
    QVERIFY(!t.data.dir().FileExists(u"Benutzer/Anna.bdg"_s));
  }

  void theStartAsksOnlyForAPassword() {
    test::TestServices t;
    const DataDir& dir = t.data.dir();
    CreateUserFiles(dir, u"Supervisor"_s, BudgetDates::Year2002);
    QCOMPARE(CheckUser(dir), std::nullopt);
    UserFile withPassword;
    withPassword.password = "Geheim";
    WriteUserFile(dir, u"Mia"_s, withPassword);
    t.data.write(u"Config/Overview.cfg"_s, "Modem\r\nMia\r\n");
    QCOMPARE(CheckUser(dir), u"Mia"_s);
    // With the desktop login linked, the login decides without a question.
    t.data.write(u"Config/Users.cfg"_s, "1\r\n");
    QCOMPARE(CheckUser(dir), std::nullopt);
    t.data.write(u"Config/Users.cfg"_s, "0\r\n");
    t.data.write(u"Config/Overview.cfg"_s, "Modem\r\nWeg\r\n");
    QCOMPARE(CheckUser(dir), std::nullopt);

    QVERIFY(PasswordMatches(dir, u"Mia"_s, u"Geheim"_s));
    QVERIFY(!PasswordMatches(dir, u"Mia"_s, u"geheim"_s));
    QVERIFY(PasswordMatches(dir, u"Supervisor"_s, QString()));

    // The question of the panels: cancel and empty end silently, a wrong
    // answer is told.
    t.prompter.passwords = {QString(), u"falsch"_s, u"Geheim"_s};
    QVERIFY(!AskUserPassword(t.services, u"Mia"_s));
    QVERIFY(!AskUserPassword(t.services, u"Mia"_s));
    QCOMPARE(t.prompter.messages.last(), u"Falsches Passwort!"_s);
    QVERIFY(AskUserPassword(t.services, u"Mia"_s));
    QVERIFY(AskUserPassword(t.services, u"Supervisor"_s));

    // A lost file is made again with the 2002 budget and the user told.
    t.prompter.messages.clear();
    LoadOrRebuildUser(t.services, u"Weg"_s);
    QCOMPARE(t.prompter.messages.size(), 1);
    QCOMPARE(ReadBudgetFile(dir, u"Benutzer/Weg.bdg"_s)->periodFrom, u"1.1.2002"_s);
  }
};

QTEST_APPLESS_MAIN(TestUsers)
#include "test_users.moc"
