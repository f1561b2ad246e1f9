#include "detection/RasStates.h"
#include "detection/SimulatedRemoteAccess.h"
#include "detection/ui/StatusDialog.h"
#include "support/TestServices.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTest>
#include <QTimer>

using namespace minutor;
using namespace Qt::StringLiterals;

namespace {

QString Shown(const StatusDialog& box) { return box.findChild<QLabel*>("Label1")->text(); }

}  // namespace

class TestStatusDialog : public QObject {
  Q_OBJECT

 private slots:
  void followsItsOwnDialAndKeepsAFailureStanding() {
    SimulatedRemoteAccess remote;
    remote.AddEntry("T-Online");
    remote.SetDialStates({RasState::OpenPort, RasState::DeviceConnected, 77, RasState::Disconnected});
    AppState state;
    StatusDialog box(remote, state);
    const QString handle = box.Start("T-Online");
    QVERIFY(!handle.isEmpty());
    QCOMPARE(remote.dials.size(), 1);
    QCOMPARE(remote.dials[0].params.Eintrag, u"T-Online"_s);
    // What the box shows after each state.
    QStringList shown;
    connect(&remote, &RemoteAccess::DialProgress, &box, [&] { shown.append(Shown(box)); });
    box.show();
    QTRY_COMPARE(shown.size(), 4);
    QCOMPARE(shown,
             QStringList({"Wähle. (0)", "Verbunden... (3)", "Wähle... (77)", "Verbindung getrennt! (8193)"}));

    // Another dial's news, even that it is up, isn't this box's business.
    emit remote.DialProgress("sim/other", RasState::Authenticate);
    emit remote.DialProgress("sim/other", RasState::Connected);
    QCOMPARE(shown.size(), 6);
    QCOMPARE(Shown(box), u"Verbindung getrennt! (8193)"_s);
    QVERIFY(box.isVisible());

    // The line stays down; cancelling takes the mark back and closes.
    state.DialedByProgram = true;
    box.findChild<QPushButton*>("cmdAbbrechen")->click();
    QVERIFY(!state.DialedByProgram);
    QVERIFY(!box.isVisible());
  }

  void cancellingHangsUpALineThatCameUpUnnoticed() {
    SimulatedRemoteAccess remote;
    remote.AddEntry("T-Online");
    remote.SetDialStates({RasState::OpenPort, RasState::Connected});
    AppState state;
    StatusDialog box(remote, state);
    box.show();
    QString handle;
    {
      // The news of the dial gets lost: the box still waits.
      const QSignalBlocker quiet(remote);
      handle = box.Start("T-Online");
      QTRY_COMPARE(remote.GetRasConnections().size(), 1);
    }
    QCOMPARE(Shown(box), u"Wähle..."_s);
    state.DialedByProgram = true;
    box.findChild<QPushButton*>("cmdAbbrechen")->click();
    QVERIFY(!state.DialedByProgram);
    QCOMPARE(remote.hangUps, QStringList({handle}));
    QVERIFY(remote.GetRasConnections().isEmpty());
    QVERIFY(!box.isVisible());
  }

  void aDialThatComesUpClosesTheBoxByItself() {
    SimulatedRemoteAccess remote;
    remote.AddEntry("Arcor");
    test::TestServices desk;
    desk.prompter.passwords = {"geheim"};
    QWidget window;
    // The modal box runs its own loop; should it fail to close, a cancel ends
    // it and the checks below fail rather than hang.
    bool cancelled = false;
    QTimer::singleShot(5000, &window, [&cancelled] {
      if (auto* box = qobject_cast<StatusDialog*>(QApplication::activeModalWidget())) {
        cancelled = true;
        box->reject();
      }
    });
    StatusDialog::DialWithProgress(remote, desk.services, "Arcor", &window);
    QVERIFY(!cancelled);
    QVERIFY(desk.state.DialedByProgram);
    QCOMPARE(remote.GetRasConnections().size(), 1);
    QVERIFY(remote.hangUps.isEmpty());
  }

  // A refused password question and a dial the system refuses alike: the
  // box comes, its text stays where it was, and only a cancel ends it.
  void aDialThatNeverStartedWaitsForCancel() {
    SimulatedRemoteAccess remote;
    remote.AddEntry("Arcor");
    test::TestServices desk;
    for (const auto& [entry, password, dials] :
         {std::tuple{"Arcor", "", 0}, std::tuple{"Weg", "geheim", 1}}) {
      desk.prompter.passwords = {password};
      QTimer::singleShot(0, [] {
        auto* box = qobject_cast<StatusDialog*>(QApplication::activeModalWidget());
        QVERIFY(box);
        QCOMPARE(Shown(*box), u"Wähle..."_s);
        box->findChild<QPushButton*>("cmdAbbrechen")->click();
      });
      StatusDialog::DialWithProgress(remote, desk.services, entry, nullptr);
      QCOMPARE(remote.dials.size(), dials);
      QVERIFY(!desk.state.DialedByProgram);
      QVERIFY(remote.hangUps.isEmpty());
    }
  }
};

QTEST_MAIN(TestStatusDialog)
#include "test_statusdialog.moc"
