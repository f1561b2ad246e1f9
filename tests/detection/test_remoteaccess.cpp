#include "detection/RasStates.h"
#include "detection/RemoteAccess.h"
#include "detection/SimulatedRemoteAccess.h"

#include <QTimer>
#include <QSignalSpy>
#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;

class TestRemoteAccess : public QObject {
  Q_OBJECT

 private slots:
  void progressCaptions() {
    QCOMPARE(RasStateCaption(RasState::OpenPort), u"Wähle. (0)"_s);
    QCOMPARE(RasStateCaption(RasState::Disconnected), u"Verbindung getrennt! (8193)"_s);
    // States the box has no words for keep the dialling text, with their number.
    QCOMPARE(RasStateCaption(7), u"Wähle... (7)"_s);
    QCOMPARE(RasStateCaption(0x1000), u"Wähle... (4096)"_s);
    QVERIFY(IsRasStateFinal(RasState::Connected));
    QVERIFY(IsRasStateFinal(RasState::Disconnected));
    QVERIFY(!IsRasStateFinal(RasState::AuthNotify));
  }

  void entryNamesAsFileNames() {
    for (const char* good : {"T-Online", "Arcor Call by Call (0192)", "Büro ISDN"}) {
      QVERIFY2(IsUsableEntryName(QString::fromUtf8(good)), good);
    }
    for (const QString& bad : {QString(), u"   "_s, u"a/b"_s, u"a\\b"_s, u"VPN: Firma"_s, u"wer?"_s, u"x|y"_s,
                               u"tab\there"_s, QString(300, QLatin1Char('x'))}) {
      QVERIFY2(!IsUsableEntryName(bad), qPrintable(bad));
    }
  }

  void dialPlaysItsStatesAndBringsTheLineUp() {
    SimulatedRemoteAccess ras;
    RasDialParams stored;
    stored.Benutzer = u"anonymer"_s;
    stored.passwordStored = true;
    ras.AddEntry(u"Provider"_s, stored);
    QCOMPARE(GetDFUe(ras), QStringList{u"Provider"_s});
    QCOMPARE(ras.GetDialParams(u"Provider"_s)->Eintrag, u"Provider"_s);
    QVERIFY(!ras.GetDialParams(u"Fremd"_s));
    QVERIFY(ras.GetRasConnections().isEmpty());

    QSignalSpy progress(&ras, &RemoteAccess::DialProgress);
    ras.SetDialStates({RasState::OpenPort, RasState::Authenticate, RasState::Connected});
    RasDialParams own = *ras.GetDialParams(u"Provider"_s);
    own.Passwort = u"geheim"_s;
    const QString handle = ras.DialEntry(u"Provider"_s, own);
    QVERIFY(!handle.isEmpty());
    // Nothing arrives before the caller has the handle in hand.
    QCOMPARE(progress.count(), 0);
    QTRY_COMPARE(progress.count(), 3);
    QCOMPARE(progress.at(0), (QList<QVariant>{handle, RasState::OpenPort}));
    QCOMPARE(progress.at(2), (QList<QVariant>{handle, RasState::Connected}));
    QCOMPARE(ras.dials.value(0).params.Passwort, u"geheim"_s);
    QCOMPARE(ras.GetRasConnections().size(), 1);
    QCOMPARE(ras.GetRasConnections().at(0).entryName, u"Provider"_s);
    QCOMPARE(ras.GetConnectState(handle)->state, RasState::Connected);

    // A dial that fails leaves no connection behind.
    ras.SetDialStates({RasState::OpenPort, RasState::AuthNotify, RasState::Disconnected});
    const QString failed = ras.DialEntry(u"Provider"_s, own);
    QTRY_COMPARE(progress.count(), 6);
    QCOMPARE(progress.last(), (QList<QVariant>{failed, RasState::Disconnected}));
    QCOMPARE(ras.GetRasConnections().size(), 1);
    QVERIFY(!ras.GetConnectState(failed));

    // An unknown entry isn't dialled.
    QVERIFY(ras.DialEntry(u"Fremd"_s, {}).isEmpty());
  }

  void hangUpWaitsUntilTheLineIsGone() {
    SimulatedRemoteAccess ras;
    QVERIFY(ras.HangUp(QString()));
    QVERIFY(ras.HangUp(u"sim/999"_s));
    QVERIFY(ras.hangUps.isEmpty());

    const QString slow = ras.BringUp(u"Provider"_s);
    ras.BringUp(u"Andere"_s);
    ras.SetHangUpPolls(3);
    QVERIFY(ras.HangUp(slow));
    QVERIFY(!ras.GetConnectState(slow));
    QCOMPARE(ras.GetRasConnections().size(), 1);
    QCOMPARE(ras.hangUps, QStringList{slow});

    // A line that never goes: the wait lets the program's events through and
    // gives up in the end.
    const QString stuck = ras.GetRasConnections().at(0).handle;
    ras.SetHangUpPolls(-1);
    ras.SetHangUpTimeout(300);
    bool turned = false;
    QTimer::singleShot(0, [&turned] { turned = true; });
    QVERIFY(!ras.HangUp(stuck));
    QVERIFY(turned);
    QVERIFY(ras.GetConnectState(stuck));
  }
};

QTEST_GUILESS_MAIN(TestRemoteAccess)
#include "test_remoteaccess.moc"
