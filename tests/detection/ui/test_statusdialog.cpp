#include "detection/RasStates.h"
#include "detection/SimulatedRemoteAccess.h"
#include "detection/ui/StatusDialog.h"
#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Services.h"
#include "support/RecordingPrompter.h"
#include "support/TempDataDir.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTest>
#include <QTimer>

using namespace minutor;

namespace {

QString Shown(const StatusDialog& box) { return box.findChild<QLabel*>(QStringLiteral("Label1"))->text(); }

}  // namespace

class TestStatusDialog : public QObject {
  Q_OBJECT

 private slots:
  void followsItsOwnDialAndKeepsAFailureStanding() {
    SimulatedRemoteAccess remote;
    remote.AddEntry(QStringLiteral("T-Online"));
    remote.SetDialStates({RasState::OpenPort, RasState::DeviceConnected, 77, RasState::Disconnected});
    AppState state;
    StatusDialog box(remote, state);
    QVERIFY(box.isModal());
    QCOMPARE(box.objectName(), QStringLiteral("Status"));
    QCOMPARE(Shown(box), QStringLiteral("Wähle..."));

    const QString handle = box.Start(QStringLiteral("T-Online"));
    QVERIFY(!handle.isEmpty());
    QCOMPARE(remote.dials.size(), 1);
    QCOMPARE(remote.dials[0].params.Eintrag, QStringLiteral("T-Online"));
    // What the box shows after each state.
    QStringList shown;
    connect(&remote, &RemoteAccess::DialProgress, &box, [&] { shown.append(Shown(box)); });
    box.show();
    QTRY_COMPARE(shown.size(), 4);
    QCOMPARE(shown,
             QStringList({"Wähle. (0)", "Verbunden... (3)", "Wähle... (77)", "Verbindung getrennt! (8193)"}));

    // Another dial's news, even that it is up, isn't this box's business.
    emit remote.DialProgress(QStringLiteral("sim/other"), RasState::Authenticate);
    emit remote.DialProgress(QStringLiteral("sim/other"), RasState::Connected);
    QCOMPARE(shown.size(), 6);
    QCOMPARE(Shown(box), QStringLiteral("Verbindung getrennt! (8193)"));
    QVERIFY(box.isVisible());

    // The line stays down; cancelling takes the mark back and closes.
    state.DialedByProgram = true;
    box.findChild<QPushButton*>(QStringLiteral("cmdAbbrechen"))->click();
    QVERIFY(!state.DialedByProgram);
    QVERIFY(!box.isVisible());
    QCOMPARE(box.result(), int(QDialog::Rejected));
  }

  void cancellingHangsUpALineThatCameUpUnnoticed() {
    SimulatedRemoteAccess remote;
    remote.AddEntry(QStringLiteral("T-Online"));
    remote.SetDialStates({RasState::OpenPort, RasState::Connected});
    AppState state;
    StatusDialog box(remote, state);
    box.show();
    QString handle;
    {
      // The news of the dial gets lost: the box still waits.
      const QSignalBlocker quiet(remote);
      handle = box.Start(QStringLiteral("T-Online"));
      QTRY_COMPARE(remote.GetRasConnections().size(), 1);
    }
    QCOMPARE(Shown(box), QStringLiteral("Wähle..."));
    state.DialedByProgram = true;
    box.findChild<QPushButton*>(QStringLiteral("cmdAbbrechen"))->click();
    QVERIFY(!state.DialedByProgram);
    QCOMPARE(remote.hangUps, QStringList({handle}));
    QVERIFY(remote.GetRasConnections().isEmpty());
    QVERIFY(!box.isVisible());
  }

  void aDialThatComesUpClosesTheBoxByItself() {
    SimulatedRemoteAccess remote;
    remote.AddEntry(QStringLiteral("Arcor"));
    AppState state;
    test::TempDataDir data;
    FixedClock clock{QDateTime(QDate(2026, 11, 23), QTime(10, 0))};
    test::RecordingPrompter prompter;
    prompter.passwords = {QStringLiteral("geheim")};
    Services services{state, data.dir(), clock, prompter};
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
    StatusDialog::DialWithProgress(remote, services, QStringLiteral("Arcor"), &window);
    QVERIFY(!cancelled);
    QVERIFY(state.DialedByProgram);
    QCOMPARE(remote.GetRasConnections().size(), 1);
    QVERIFY(remote.hangUps.isEmpty());
  }

  void aDialThatNeverStartedSaysSoAndWaitsForCancel() {
    SimulatedRemoteAccess remote;  // knows no entry
    AppState state;
    test::TempDataDir data;
    FixedClock clock{QDateTime(QDate(2026, 11, 23), QTime(10, 0))};
    test::RecordingPrompter prompter;
    prompter.passwords = {QStringLiteral("geheim")};
    Services services{state, data.dir(), clock, prompter};
    QTimer::singleShot(0, [] {
      auto* box = qobject_cast<StatusDialog*>(QApplication::activeModalWidget());
      QVERIFY(box);
      QCOMPARE(Shown(*box), QStringLiteral("Verbindung getrennt! (8193)"));
      box->findChild<QPushButton*>(QStringLiteral("cmdAbbrechen"))->click();
    });
    StatusDialog::DialWithProgress(remote, services, QStringLiteral("Weg"), nullptr);
    QCOMPARE(remote.dials.size(), 1);
    QVERIFY(!state.DialedByProgram);
    QVERIFY(remote.hangUps.isEmpty());
  }
};

QTEST_MAIN(TestStatusDialog)
#include "test_statusdialog.moc"
