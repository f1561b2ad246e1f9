#include "detection/RasStates.h"
#include "detection/platform/NetworkManagerRemoteAccess.h"
#include "detection/platform/RemoteAccessFactory.h"
#include "support/PrivateBus.h"

#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace minutor;
using namespace Qt::StringLiterals;

namespace {
// The named values of a settings group, as text.
QStringList Values(const QVariantMap& group, const QStringList& keys) {
  QStringList values;
  for (const QString& key : keys) {
    values.append(group.value(key).toString());
  }
  return values;
}

const QString kService = u"org.freedesktop.NetworkManager"_s;
const QString kRoot = u"/org/freedesktop/NetworkManager"_s;
const QString kActive = u"org.freedesktop.NetworkManager.Connection.Active"_s;
const QString kDevice = u"org.freedesktop.NetworkManager.Device"_s;
const QString kProfile = u"org.freedesktop.NetworkManager.Settings.Connection"_s;
const QString kMock = u"org.freedesktop.DBus.Mock"_s;
}  // namespace

// NetworkManager as python-dbusmock plays it, on a bus of the test's own.
class TestNetworkManager : public QObject {
  Q_OBJECT

  test::PrivateBus bus_;
  QProcess* mock_ = nullptr;
  std::unique_ptr<NetworkManagerRemoteAccess> ras_;
  QString device_;
  QString tonline_;
  QString mobil_;

  QVariant Call(const QString& path, const QString& interfaceName, const QString& method,
                const QVariantList& args = {}) {
    QDBusMessage ask = QDBusMessage::createMethodCall(kService, path, interfaceName, method);
    ask.setArguments(args);
    const QDBusMessage reply = bus_.connection().call(ask, QDBus::Block, 5000);
    if (reply.type() == QDBusMessage::ErrorMessage) {
      qWarning() << method << reply.errorMessage();
    }
    return reply.arguments().value(0);
  }

  void Emit(const QString& path, const QString& interfaceName, const QString& signature,
            const QVariantList& args) {
    Call(path, kMock, "EmitSignal", {interfaceName, "StateChanged", signature, QVariant::fromValue(args)});
  }

  QString AddProfile(const NMSettings& settings) {
    return qvariant_cast<QDBusObjectPath>(Call(kRoot + "/Settings", "org.freedesktop.NetworkManager.Settings",
                                               "AddConnection", {QVariant::fromValue(settings)}))
        .path();
  }

  // An active connection started by someone else.
  QString AddActive(const QString& profile, const QString& name) {
    return Call(kRoot, kMock, "AddActiveConnection", {QStringList{device_}, profile, "/", name, 2u})
        .toString();
  }

 private slots:
  void initTestCase() {
    qDBusRegisterMetaType<NMSettings>();
    if (!bus_.Start("nm")) {
      QSKIP("dbus-daemon can't start a private bus here");
    }
    mock_ = bus_.StartMock({"-t", "networkmanager"}, kService);
    if (mock_ == nullptr) {
      QSKIP("python3-dbusmock's NetworkManager template doesn't start");
    }
    QVERIFY(dynamic_cast<NetworkManagerRemoteAccess*>(CreateRemoteAccess(bus_.connection()).get()));

    device_ = Call(kRoot, kMock, "AddEthernetDevice", {"mock_Modem", "ttyUSB0", 30}).toString();
    tonline_ = AddProfile(
        {{"connection", {{"id", "T-Online"}, {"type", "pppoe"}}}, {"pppoe", {{"username", "anonymer"}}}});
    mobil_ = AddProfile(
        {{"connection", {{"id", "Mobil"}, {"uuid", "5f1c0a4e-2b7d-4c55-9d0e-7a1b2c3d4e5f"}, {"type", "gsm"}}},
         {"gsm", {{"number", "*99#"}, {"username", "eplus"}}}});
    // The template nests secrets one level deeper than the service does;
    // answer as the service would.
    Call(
        mobil_, kMock, "AddMethod",
        {kProfile, "GetSecrets", "s", "a{sa{sv}}", "ret = {args[0]: {'password': 'geheim', 'pin': '1234'}}"});
    // What the program hands over for the session is kept to be looked at.
    Call(mobil_, kMock, "AddMethod",
         {kProfile, "UpdateUnsaved", "a{sa{sv}}", QString(), "self.unsaved = args[0]"});
    Call(mobil_, kMock, "AddMethod", {kMock, "Unsaved", QString(), "a{sa{sv}}", "ret = self.unsaved"});
    ras_ = std::make_unique<NetworkManagerRemoteAccess>(bus_.connection());
  }

  void cleanupTestCase() { ras_.reset(); }

  void entriesAndTheirDialData() {
    QCOMPARE(ras_->GetEntries(), (QStringList{"T-Online", "Mobil"}));

    const RasDialParams mobil = ras_->GetDialParams("Mobil").value_or(RasDialParams{});
    QCOMPARE(QStringList({mobil.Telefon, mobil.Benutzer, mobil.Passwort}),
             QStringList({"*99#", "eplus", "geheim"}));
    QVERIFY(mobil.passwordStored);
    // The template's own answer carries no password where the service would.
    RasDialParams own = ras_->GetDialParams("T-Online").value_or(RasDialParams{});
    QCOMPARE(own.Benutzer, u"anonymer"_s);
    QVERIFY(!own.passwordStored);
    QVERIFY(!ras_->GetDialParams("Unbekannt"));

    // The connection editor opens a profile by its uuid.
    const RemoteAccess::EditorRef ref = ras_->EntryEditorId("Mobil");
    QCOMPARE(ref.uuid + u' ' + ref.type, u"5f1c0a4e-2b7d-4c55-9d0e-7a1b2c3d4e5f gsm"_s);
    QVERIFY(ras_->EntryEditorId("Unbekannt").uuid.isEmpty());

    own.Passwort = "selbst";
    const QVariantMap pppoe =
        NetworkManagerRemoteAccess::BuildDialParams(own, {{"connection", {{"type", "pppoe"}}}})
            .value("pppoe");
    QCOMPARE(Values(pppoe, {"username", "password"}), QStringList({"anonymer", "selbst"}));
  }

  void dialFollowsDeviceAndConnectionStates() {
    QSignalSpy progress(ras_.get(), &RemoteAccess::DialProgress);
    const QString handle = ras_->DialEntry("Mobil", *ras_->GetDialParams("Mobil"));
    QVERIFY(handle.startsWith(kRoot + "/ActiveConnection/"));
    QTRY_COMPARE(progress.count(), 1);

    // The service names the modem once it has picked it.
    Call(kRoot, kMock, "SetProperty",
         {handle, kActive, "Devices",
          QVariant::fromValue(
              QDBusVariant(QVariant::fromValue(QList<QDBusObjectPath>{QDBusObjectPath(device_)})))});
    QTest::qWait(300);
    for (const uint state : {40u, 50u, 60u, 70u, 80u}) {
      Emit(device_, kDevice, "uuu", {state, 30u, 0u});
    }
    Emit(handle, kActive, "uu", {2u, 0u});
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
    Emit(device_, kDevice, "uuu", {120u, 100u, 0u});
    QTest::qWait(200);
    QCOMPARE(progress.count(), 7);

    const RasConnection up = ras_->GetRasConnections().value(0);
    QCOMPARE(ras_->GetRasConnections().size(), 1);
    QCOMPARE(QStringList({up.handle, up.entryName, up.deviceType, up.deviceName, up.interfaceName}),
             QStringList({handle, "Mobil", "gsm", "ttyUSB0", "ttyUSB0"}));
    QCOMPARE(ras_->GetConnectState(handle)->state, RasState::Connected);

    // A failed dial ends the box with the line gone.
    const QString second = ras_->DialEntry("T-Online", {});
    QVERIFY(!second.isEmpty());
    QTRY_COMPARE(progress.count(), 8);
    Emit(second, kActive, "uu", {4u, 0u});
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
    const QString active = AddActive(tonline_, "ext");
    QTRY_COMPARE(changed.count(), 1);
    QCOMPARE(ras_->GetRasConnections().value(0).entryName, u"T-Online"_s);
    // What the device says about its billing goes to the dialer guard.
    QVERIFY(!ras_->GetRasConnections().value(0).metered);
    Call(device_, kMock, "AddProperty", {kDevice, "Metered", QVariant::fromValue(QDBusVariant(3u))});
    QVERIFY(ras_->GetRasConnections().value(0).metered);
    Call(kRoot, kMock, "RemoveActiveConnection", {device_, active});
    QTRY_COMPARE(changed.count(), 2);
    QVERIFY(ras_->GetRasConnections().isEmpty());
  }

  // The session's own user and password go in beside the profile's other
  // secrets: a SIM PIN must not be lost.
  void ownDialDataGoesIntoTheProfileForTheSession() {
    RasDialParams own = *ras_->GetDialParams("Mobil");
    own.Benutzer = "selbst";
    own.Passwort = "eigenes";
    const QString handle = ras_->DialEntry("Mobil", own);
    QVERIFY(!handle.isEmpty());
    const NMSettings unsaved = qdbus_cast<NMSettings>(Call(mobil_, kMock, "Unsaved"));
    QCOMPARE(Values(unsaved.value("gsm"), {"username", "password", "pin", "number"}),
             QStringList({"selbst", "eigenes", "1234", "*99#"}));
    QCOMPARE(unsaved.value("connection").value("id").toString(), u"Mobil"_s);
    // Once the dial is over the profile has its own data back.
    QVERIFY(ras_->HangUp(handle));
    const NMSettings restored = qdbus_cast<NMSettings>(Call(mobil_, kMock, "Unsaved"));
    QCOMPARE(Values(restored.value("gsm"), {"username", "password", "pin"}),
             QStringList({"eplus", "geheim", "1234"}));

    // A profile the service won't change isn't dialled with the wrong data.
    Call(mobil_, kMock, "AddMethod",
         {kProfile, "UpdateUnsaved", "a{sa{sv}}", QString(),
          "raise dbus.exceptions.DBusException('nein', "
          "name='org.freedesktop.NetworkManager.PermissionDenied')"});
    QVERIFY(ras_->DialEntry("Mobil", own).isEmpty());
    Call(mobil_, kMock, "AddMethod",
         {kProfile, "UpdateUnsaved", "a{sa{sv}}", QString(), "self.unsaved = args[0]"});
  }

  void aServiceThatHangsCostsAMoment() {
    const QString active = AddActive(mobil_, "hang");
    QTRY_COMPARE(ras_->GetRasConnections().size(), 1);
    test::PrivateBus::Freeze(*mock_);
    // Unanswered questions count as "nothing there".
    QVERIFY(ras_->GetRasConnections().isEmpty());
    QVERIFY(ras_->GetEntries().isEmpty());
    QVERIFY(ras_->DialEntry("Mobil", {}).isEmpty());
    // Not knowing, the hang-up gives up when its time is over.
    ras_->SetHangUpTimeout(800);
    QVERIFY(!ras_->HangUp(active));
    test::PrivateBus::Thaw(*mock_);
    ras_->SetHangUpTimeout(5000);
    QVERIFY(ras_->HangUp(active));
  }

  void theServiceVanishes() {
    QSignalSpy progress(ras_.get(), &RemoteAccess::DialProgress);
    const QString handle = ras_->DialEntry("T-Online", {});
    QVERIFY(!handle.isEmpty());
    QTRY_COMPARE(progress.count(), 1);
    mock_->terminate();
    QVERIFY(mock_->waitForFinished(5000));
    QTRY_COMPARE(progress.count(), 2);
    QCOMPARE(progress.last(), (QList<QVariant>{handle, RasState::Disconnected}));
    QVERIFY(ras_->GetRasConnections().isEmpty());
    QVERIFY(ras_->GetEntries().isEmpty());
    QVERIFY(!ras_->GetDialParams("T-Online"));
    QVERIFY(ras_->HangUp(handle));
    QVERIFY(!NetworkManagerRemoteAccess::IsAvailable(bus_.connection()));
    QVERIFY(!dynamic_cast<NetworkManagerRemoteAccess*>(CreateRemoteAccess(bus_.connection()).get()));
  }
};

QTEST_GUILESS_MAIN(TestNetworkManager)
#include "test_networkmanager.moc"
