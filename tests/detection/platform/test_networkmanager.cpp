#include "detection/RasStates.h"
#include "detection/platform/NetworkManagerRemoteAccess.h"
#include "detection/platform/RemoteAccessFactory.h"
#include "support/PrivateBus.h"

#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace minutor;

namespace {
const QString kService = QStringLiteral("org.freedesktop.NetworkManager");
const QString kActive = QStringLiteral("org.freedesktop.NetworkManager.Connection.Active");
const QString kDevice = QStringLiteral("org.freedesktop.NetworkManager.Device");
const QString kMock = QStringLiteral("org.freedesktop.DBus.Mock");
}  // namespace

// NetworkManager as python-dbusmock plays it, on a bus of the test's own.
class TestNetworkManager : public QObject {
  Q_OBJECT

  test::PrivateBus bus_;
  QProcess* mock_ = nullptr;
  QDBusConnection* connection_ = nullptr;
  std::unique_ptr<NetworkManagerRemoteAccess> ras_;
  QString device_;
  QString tonline_;
  QString mobil_;

  QDBusMessage Call(const QString& path, const QString& interfaceName, const QString& method,
                    const QVariantList& args = {}) {
    QDBusMessage ask = QDBusMessage::createMethodCall(kService, path, interfaceName, method);
    ask.setArguments(args);
    const QDBusMessage reply = connection_->call(ask, QDBus::Block, 5000);
    if (reply.type() == QDBusMessage::ErrorMessage) {
      qWarning() << method << reply.errorMessage();
    }
    return reply;
  }

  void Emit(const QString& path, const QString& interfaceName, const QString& signature,
            const QVariantList& args) {
    Call(path, kMock, QStringLiteral("EmitSignal"),
         {interfaceName, QStringLiteral("StateChanged"), signature, QVariant::fromValue(args)});
  }

  QString AddProfile(const NMSettings& settings) {
    return Call(QStringLiteral("/org/freedesktop/NetworkManager/Settings"),
                QStringLiteral("org.freedesktop.NetworkManager.Settings"), QStringLiteral("AddConnection"),
                {QVariant::fromValue(settings)})
        .arguments()
        .value(0)
        .value<QDBusObjectPath>()
        .path();
  }

 private slots:
  void initTestCase() {
    qDBusRegisterMetaType<NMSettings>();
    if (!bus_.Start(QStringLiteral("nm"))) {
      QSKIP("dbus-daemon can't start a private bus here");
    }
    connection_ = &bus_.connection();
    mock_ = bus_.StartMock({QStringLiteral("-t"), QStringLiteral("networkmanager")}, kService);
    if (mock_ == nullptr) {
      QSKIP("python3-dbusmock's NetworkManager template doesn't start");
    }
    QVERIFY(NetworkManagerRemoteAccess::IsAvailable(*connection_));
    QVERIFY(dynamic_cast<NetworkManagerRemoteAccess*>(CreateRemoteAccess(*connection_).get()));

    device_ =
        Call(QStringLiteral("/org/freedesktop/NetworkManager"), kMock, QStringLiteral("AddEthernetDevice"),
             {QStringLiteral("mock_Modem"), QStringLiteral("ttyUSB0"), 30})
            .arguments()
            .value(0)
            .toString();
    tonline_ =
        AddProfile({{QStringLiteral("connection"),
                     {{QStringLiteral("id"), QStringLiteral("T-Online")},
                      {QStringLiteral("type"), QStringLiteral("pppoe")}}},
                    {QStringLiteral("pppoe"), {{QStringLiteral("username"), QStringLiteral("anonymer")}}}});
    mobil_ = AddProfile(
        {{QStringLiteral("connection"),
          {{QStringLiteral("id"), QStringLiteral("Mobil")},
           {QStringLiteral("uuid"), QStringLiteral("5f1c0a4e-2b7d-4c55-9d0e-7a1b2c3d4e5f")},
           {QStringLiteral("type"), QStringLiteral("gsm")}}},
         {QStringLiteral("gsm"),
          {{QStringLiteral("number"), QStringLiteral("*99#")},
           {QStringLiteral("username"), QStringLiteral("eplus")}}}});
    // The template nests secrets one level deeper than the service does;
    // answer as the service would.
    Call(mobil_, kMock, QStringLiteral("AddMethod"),
         {QStringLiteral("org.freedesktop.NetworkManager.Settings.Connection"), QStringLiteral("GetSecrets"),
          QStringLiteral("s"), QStringLiteral("a{sa{sv}}"),
          QStringLiteral("ret = {args[0]: {'password': 'geheim', 'pin': '1234'}}")});
    // What the program hands over for the session is kept to be looked at.
    Call(mobil_, kMock, QStringLiteral("AddMethod"),
         {QStringLiteral("org.freedesktop.NetworkManager.Settings.Connection"),
          QStringLiteral("UpdateUnsaved"), QStringLiteral("a{sa{sv}}"), QString(),
          QStringLiteral("self.unsaved = args[0]")});
    Call(mobil_, kMock, QStringLiteral("AddMethod"),
         {kMock, QStringLiteral("Unsaved"), QString(), QStringLiteral("a{sa{sv}}"),
          QStringLiteral("ret = self.unsaved")});
    ras_ = std::make_unique<NetworkManagerRemoteAccess>(*connection_);
  }

  void cleanupTestCase() { ras_.reset(); }

  void entriesAndTheirDialData() {
    QCOMPARE(ras_->GetEntries(), (QStringList{QStringLiteral("T-Online"), QStringLiteral("Mobil")}));
    QVERIFY(ras_->GetRasConnections().isEmpty());

    const std::optional<RasDialParams> mobil = ras_->GetDialParams(QStringLiteral("Mobil"));
    QVERIFY(mobil);
    QCOMPARE(mobil->Eintrag, QStringLiteral("Mobil"));
    QCOMPARE(mobil->Telefon, QStringLiteral("*99#"));
    QCOMPARE(mobil->Benutzer, QStringLiteral("eplus"));
    QCOMPARE(mobil->Passwort, QStringLiteral("geheim"));
    QVERIFY(mobil->passwordStored);
    // The template's own answer carries no password where the service would.
    const std::optional<RasDialParams> tonline = ras_->GetDialParams(QStringLiteral("T-Online"));
    QVERIFY(tonline);
    QCOMPARE(tonline->Benutzer, QStringLiteral("anonymer"));
    QVERIFY(!tonline->passwordStored);
    QVERIFY(!ras_->GetDialParams(QStringLiteral("Unbekannt")));

    // The connection editor opens a profile by its uuid.
    const RemoteAccess::EditorRef ref = ras_->EntryEditorId(QStringLiteral("Mobil"));
    QCOMPARE(ref.uuid, QStringLiteral("5f1c0a4e-2b7d-4c55-9d0e-7a1b2c3d4e5f"));
    QCOMPARE(ref.type, QStringLiteral("gsm"));
    QVERIFY(ras_->EntryEditorId(QStringLiteral("Unbekannt")).uuid.isEmpty());

    RasDialParams own = *tonline;
    own.Passwort = QStringLiteral("selbst");
    const NMSettings built = NetworkManagerRemoteAccess::BuildDialParams(
        own, {{QStringLiteral("connection"), {{QStringLiteral("type"), QStringLiteral("pppoe")}}}});
    QCOMPARE(built.value(QStringLiteral("pppoe")).value(QStringLiteral("password")).toString(),
             QStringLiteral("selbst"));
    QCOMPARE(built.value(QStringLiteral("pppoe")).value(QStringLiteral("username")).toString(),
             QStringLiteral("anonymer"));
  }

  void dialFollowsDeviceAndConnectionStates() {
    QSignalSpy progress(ras_.get(), &RemoteAccess::DialProgress);
    const QString handle =
        ras_->DialEntry(QStringLiteral("Mobil"), *ras_->GetDialParams(QStringLiteral("Mobil")));
    QVERIFY(handle.startsWith(QStringLiteral("/org/freedesktop/NetworkManager/ActiveConnection/")));
    QTRY_COMPARE(progress.count(), 1);
    QCOMPARE(progress.at(0), (QList<QVariant>{handle, RasState::OpenPort}));

    // The service names the modem once it has picked it.
    Call(QStringLiteral("/org/freedesktop/NetworkManager"), kMock, QStringLiteral("SetProperty"),
         {handle, kActive, QStringLiteral("Devices"),
          QVariant::fromValue(
              QDBusVariant(QVariant::fromValue(QList<QDBusObjectPath>{QDBusObjectPath(device_)})))});
    QTest::qWait(300);
    for (const uint state : {40u, 50u, 60u, 70u, 80u}) {
      Emit(device_, kDevice, QStringLiteral("uuu"), {state, 30u, 0u});
    }
    Emit(handle, kActive, QStringLiteral("uu"), {2u, 0u});
    QTRY_COMPARE(progress.count(), 7);
    QList<quint32> states;
    for (const QList<QVariant>& signal : std::as_const(progress)) {
      QCOMPARE(signal.at(0).toString(), handle);
      states.append(signal.at(1).value<quint32>());
    }
    QCOMPARE(states, (QList<quint32>{RasState::OpenPort, RasState::OpenPort, RasState::ConnectDevice,
                                     RasState::Authenticate, RasState::Authenticate, RasState::Authenticated,
                                     RasState::Connected}));
    // Once connected, later changes are no longer the dial's business.
    Emit(device_, kDevice, QStringLiteral("uuu"), {120u, 100u, 0u});
    QTest::qWait(200);
    QCOMPARE(progress.count(), 7);

    const QList<RasConnection> up = ras_->GetRasConnections();
    QCOMPARE(up.size(), 1);
    QCOMPARE(up.at(0).handle, handle);
    QCOMPARE(up.at(0).entryName, QStringLiteral("Mobil"));
    QCOMPARE(up.at(0).deviceType, QStringLiteral("gsm"));
    QCOMPARE(up.at(0).deviceName, QStringLiteral("ttyUSB0"));
    QCOMPARE(up.at(0).interfaceName, QStringLiteral("ttyUSB0"));
    QCOMPARE(ras_->GetConnectState(handle)->state, RasState::Connected);

    // A failed dial ends the box with the line gone.
    const QString second = ras_->DialEntry(QStringLiteral("T-Online"), {});
    QVERIFY(!second.isEmpty());
    QTRY_COMPARE(progress.count(), 8);
    Emit(second, kActive, QStringLiteral("uu"), {4u, 0u});
    QTRY_COMPARE(progress.count(), 9);
    QCOMPARE(progress.last(), (QList<QVariant>{second, RasState::Disconnected}));

    // Hanging up returns once both are gone.
    QSignalSpy changed(ras_.get(), &RemoteAccess::ConnectionsChanged);
    QVERIFY(ras_->HangUp(handle));
    QVERIFY(ras_->HangUp(second));
    QVERIFY(!ras_->GetConnectState(handle));
    QVERIFY(ras_->GetRasConnections().isEmpty());
    QTRY_VERIFY(changed.count() >= 1);
  }

  void connectionsComeAndGoFromOutside() {
    QSignalSpy changed(ras_.get(), &RemoteAccess::ConnectionsChanged);
    const QString active =
        Call(QStringLiteral("/org/freedesktop/NetworkManager"), kMock, QStringLiteral("AddActiveConnection"),
             {QStringList{device_}, tonline_, QStringLiteral("/"), QStringLiteral("ext"), 2u})
            .arguments()
            .value(0)
            .toString();
    QTRY_COMPARE(changed.count(), 1);
    QCOMPARE(ras_->GetRasConnections().value(0).entryName, QStringLiteral("T-Online"));
    Call(QStringLiteral("/org/freedesktop/NetworkManager"), kMock, QStringLiteral("RemoveActiveConnection"),
         {device_, active});
    QTRY_COMPARE(changed.count(), 2);
    QVERIFY(ras_->GetRasConnections().isEmpty());
  }

  void ownDialDataGoesIntoTheProfileForTheSession() {
    RasDialParams own = *ras_->GetDialParams(QStringLiteral("Mobil"));
    own.Benutzer = QStringLiteral("selbst");
    own.Passwort = QStringLiteral("eigenes");
    const QString handle = ras_->DialEntry(QStringLiteral("Mobil"), own);
    QVERIFY(!handle.isEmpty());
    const NMSettings unsaved =
        qdbus_cast<NMSettings>(Call(mobil_, kMock, QStringLiteral("Unsaved")).arguments().value(0));
    const QVariantMap gsm = unsaved.value(QStringLiteral("gsm"));
    QCOMPARE(gsm.value(QStringLiteral("username")).toString(), QStringLiteral("selbst"));
    QCOMPARE(gsm.value(QStringLiteral("password")).toString(), QStringLiteral("eigenes"));
    QCOMPARE(gsm.value(QStringLiteral("pin")).toString(), QStringLiteral("1234"));
    QCOMPARE(gsm.value(QStringLiteral("number")).toString(), QStringLiteral("*99#"));
    QCOMPARE(unsaved.value(QStringLiteral("connection")).value(QStringLiteral("id")).toString(),
             QStringLiteral("Mobil"));
    QVERIFY(ras_->HangUp(handle));
  }

  void aServiceThatHangsCostsAMoment() {
    const QString active =
        Call(QStringLiteral("/org/freedesktop/NetworkManager"), kMock, QStringLiteral("AddActiveConnection"),
             {QStringList{device_}, mobil_, QStringLiteral("/"), QStringLiteral("hang"), 2u})
            .arguments()
            .value(0)
            .toString();
    QTRY_COMPARE(ras_->GetRasConnections().size(), 1);
    test::PrivateBus::Freeze(*mock_);
    QElapsedTimer clock;
    clock.start();
    QVERIFY(ras_->GetRasConnections().isEmpty());
    QVERIFY(ras_->GetEntries().isEmpty());
    QVERIFY(ras_->DialEntry(QStringLiteral("Mobil"), {}).isEmpty());
    QVERIFY(clock.elapsed() < 3000);
    // Not knowing, the hang-up waits for its time and no longer.
    ras_->SetHangUpTimeout(800);
    clock.restart();
    QVERIFY(!ras_->HangUp(active));
    QVERIFY(clock.elapsed() < 3000);
    test::PrivateBus::Thaw(*mock_);
    ras_->SetHangUpTimeout(5000);
    QVERIFY(ras_->HangUp(active));
  }

  void theServiceVanishes() {
    QSignalSpy progress(ras_.get(), &RemoteAccess::DialProgress);
    const QString handle = ras_->DialEntry(QStringLiteral("T-Online"), {});
    QVERIFY(!handle.isEmpty());
    QTRY_COMPARE(progress.count(), 1);
    mock_->terminate();
    QVERIFY(mock_->waitForFinished(5000));
    QTRY_COMPARE(progress.count(), 2);
    QCOMPARE(progress.last(), (QList<QVariant>{handle, RasState::Disconnected}));
    QElapsedTimer clock;
    clock.start();
    QVERIFY(ras_->GetRasConnections().isEmpty());
    QVERIFY(ras_->GetEntries().isEmpty());
    QVERIFY(!ras_->GetDialParams(QStringLiteral("T-Online")));
    QVERIFY(ras_->HangUp(handle));
    QVERIFY(clock.elapsed() < 1000);
    QVERIFY(!NetworkManagerRemoteAccess::IsAvailable(*connection_));
    QVERIFY(!dynamic_cast<NetworkManagerRemoteAccess*>(CreateRemoteAccess(*connection_).get()));
  }
};

QTEST_GUILESS_MAIN(TestNetworkManager)
#include "test_networkmanager.moc"
