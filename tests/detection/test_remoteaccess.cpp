#include "detection/RasStates.h"
#include "detection/RemoteAccess.h"
#include "detection/SimulatedRemoteAccess.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

using namespace minutor;

class TestRemoteAccess : public QObject {
  Q_OBJECT

 private slots:
  void progressCaptions() {
    QCOMPARE(RasStateCaption(RasState::OpenPort), QStringLiteral("Wähle. (0)"));
    QCOMPARE(RasStateCaption(RasState::Disconnected), QStringLiteral("Verbindung getrennt! (8193)"));
    // States the box has no words for keep the dialling text, with their number.
    QCOMPARE(RasStateCaption(7), QStringLiteral("Wähle... (7)"));
    QCOMPARE(RasStateCaption(0x1000), QStringLiteral("Wähle... (4096)"));
    QVERIFY(IsRasStateFinal(RasState::Connected));
    QVERIFY(IsRasStateFinal(RasState::Disconnected));
    QVERIFY(!IsRasStateFinal(RasState::AuthNotify));
  }

  void entryNamesAsFileNames() {
    for (const char* good : {"T-Online", "Arcor Call by Call (0192)", "Büro ISDN"}) {
      QVERIFY2(IsUsableEntryName(QString::fromUtf8(good)), good);
    }
    for (const QString& bad :
         {QString(), QStringLiteral("   "), QStringLiteral("a/b"), QStringLiteral("a\\b"),
          QStringLiteral("VPN: Firma"), QStringLiteral("wer?"), QStringLiteral("x|y"),
          QStringLiteral("tab\there"), QString(300, QLatin1Char('x'))}) {
      QVERIFY2(!IsUsableEntryName(bad), qPrintable(bad));
    }
  }

  void dialPlaysItsStatesAndBringsTheLineUp() {
    SimulatedRemoteAccess ras;
    RasDialParams stored;
    stored.Benutzer = QStringLiteral("anonymer");
    stored.passwordStored = true;
    ras.AddEntry(QStringLiteral("Provider"), stored);
    QCOMPARE(GetDFUe(ras), QStringList{QStringLiteral("Provider")});
    QCOMPARE(ras.GetDialParams(QStringLiteral("Provider"))->Eintrag, QStringLiteral("Provider"));
    QVERIFY(!ras.GetDialParams(QStringLiteral("Fremd")));
    QVERIFY(ras.GetRasConnections().isEmpty());

    QSignalSpy progress(&ras, &RemoteAccess::DialProgress);
    ras.SetDialStates({RasState::OpenPort, RasState::Authenticate, RasState::Connected});
    RasDialParams own = *ras.GetDialParams(QStringLiteral("Provider"));
    own.Passwort = QStringLiteral("geheim");
    const QString handle = ras.DialEntry(QStringLiteral("Provider"), own);
    QVERIFY(!handle.isEmpty());
    // Nothing arrives before the caller has the handle in hand.
    QCOMPARE(progress.count(), 0);
    QTRY_COMPARE(progress.count(), 3);
    QCOMPARE(progress.at(0), (QList<QVariant>{handle, RasState::OpenPort}));
    QCOMPARE(progress.at(2), (QList<QVariant>{handle, RasState::Connected}));
    QCOMPARE(ras.dials.value(0).params.Passwort, QStringLiteral("geheim"));
    QCOMPARE(ras.GetRasConnections().size(), 1);
    QCOMPARE(ras.GetRasConnections().at(0).entryName, QStringLiteral("Provider"));
    QCOMPARE(ras.GetConnectState(handle)->state, RasState::Connected);

    // A dial that fails leaves no connection behind.
    ras.SetDialStates({RasState::OpenPort, RasState::AuthNotify, RasState::Disconnected});
    const QString failed = ras.DialEntry(QStringLiteral("Provider"), own);
    QTRY_COMPARE(progress.count(), 6);
    QCOMPARE(progress.last(), (QList<QVariant>{failed, RasState::Disconnected}));
    QCOMPARE(ras.GetRasConnections().size(), 1);
    QVERIFY(!ras.GetConnectState(failed));

    // An unknown entry isn't dialled.
    QVERIFY(ras.DialEntry(QStringLiteral("Fremd"), {}).isEmpty());
  }

  void hangUpWaitsUntilTheLineIsGone() {
    SimulatedRemoteAccess ras;
    QVERIFY(ras.HangUp(QString()));
    QVERIFY(ras.HangUp(QStringLiteral("sim/999")));
    QVERIFY(ras.hangUps.isEmpty());

    const QString slow = ras.BringUp(QStringLiteral("Provider"));
    ras.BringUp(QStringLiteral("Andere"));
    ras.SetHangUpPolls(3);
    QVERIFY(ras.HangUp(slow));
    QVERIFY(!ras.GetConnectState(slow));
    QCOMPARE(ras.GetRasConnections().size(), 1);
    QCOMPARE(ras.hangUps, QStringList{slow});

    // A line that never goes doesn't hold the program for longer than allowed.
    const QString stuck = ras.GetRasConnections().at(0).handle;
    ras.SetHangUpPolls(-1);
    ras.SetHangUpTimeout(300);
    QElapsedTimer clock;
    clock.start();
    QVERIFY(!ras.HangUp(stuck));
    QVERIFY(clock.elapsed() >= 250);
    QVERIFY(clock.elapsed() < 3000);
    QVERIFY(ras.GetConnectState(stuck));
  }
};

QTEST_GUILESS_MAIN(TestRemoteAccess)
#include "test_remoteaccess.moc"
