#include "detection/platform/NetworkManagerRemoteAccess.h"

#include "NMManagerProxy.h"
#include "NMProfileProxy.h"
#include "NMSettingsProxy.h"
#include "detection/RasStates.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QDeadlineTimer>
#include <QTimer>

namespace minutor {

namespace {

const QString kService = QStringLiteral("org.freedesktop.NetworkManager");
const QString kManagerPath = QStringLiteral("/org/freedesktop/NetworkManager");
const QString kSettingsPath = QStringLiteral("/org/freedesktop/NetworkManager/Settings");
const QString kActiveInterface = QStringLiteral("org.freedesktop.NetworkManager.Connection.Active");
const QString kDeviceInterface = QStringLiteral("org.freedesktop.NetworkManager.Device");
const QString kPropertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

// Reads must not hold the window; the dial call may take a little longer,
// since the service checks the profile before it answers.
constexpr int kReadTimeoutMs = 500;
constexpr int kDialTimeoutMs = 1500;

QVariant Plain(QVariant value) {
  while (value.canConvert<QDBusVariant>() && value.metaType() == QMetaType::fromType<QDBusVariant>()) {
    value = value.value<QDBusVariant>().variant();
  }
  return value;
}

QStringList ObjectPaths(const QVariant& wrapped) {
  const QVariant value = Plain(wrapped);
  QList<QDBusObjectPath> paths;
  if (value.metaType() == QMetaType::fromType<QDBusArgument>()) {
    paths = qdbus_cast<QList<QDBusObjectPath>>(value.value<QDBusArgument>());
  } else {
    paths = value.value<QList<QDBusObjectPath>>();
  }
  QStringList result;
  for (const QDBusObjectPath& path : std::as_const(paths)) {
    if (path.path() != QLatin1String("/")) {
      result.append(path.path());
    }
  }
  return result;
}

QString Text(const QVariant& value) { return Plain(value).toString(); }

// The loopback profile is the machine's own and never a line to meter or cut.
bool IsLoopback(const QString& type) { return type == QLatin1String("loopback"); }

// Where a profile keeps its user and number: in the setting named after its
// type (pppoe, gsm, cdma); a plain serial line keeps them in ppp.
QString DialSetting(const NMSettings& settings) {
  const QString type = Text(settings.value(QStringLiteral("connection")).value(QStringLiteral("type")));
  return type.isEmpty() ? QStringLiteral("ppp") : type;
}

}  // namespace

NetworkManagerRemoteAccess::NetworkManagerRemoteAccess(const QDBusConnection& bus, QObject* parent)
    : RemoteAccess(parent),
      bus_(bus),
      manager_(std::make_unique<NMManagerProxy>(kService, kManagerPath, bus_)),
      settings_(std::make_unique<NMSettingsProxy>(kService, kSettingsPath, bus_)),
      watcher_(new QDBusServiceWatcher(kService, bus_, QDBusServiceWatcher::WatchForUnregistration, this)) {
  qDBusRegisterMetaType<NMSettings>();
  manager_->setTimeout(kReadTimeoutMs);
  settings_->setTimeout(kReadTimeoutMs);
  connect(watcher_, &QDBusServiceWatcher::serviceUnregistered, this,
          &NetworkManagerRemoteAccess::OnServiceGone);
  bus_.connect(kService, kManagerPath, kPropertiesInterface, QStringLiteral("PropertiesChanged"), this,
               SLOT(OnPropertiesChanged(QString, QVariantMap, QStringList, QDBusMessage)));
}

NetworkManagerRemoteAccess::~NetworkManagerRemoteAccess() = default;

bool NetworkManagerRemoteAccess::IsAvailable(const QDBusConnection& bus) {
  if (!bus.isConnected()) {
    return false;
  }
  QDBusMessage ask = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
      QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameHasOwner"));
  ask << kService;
  const QDBusMessage reply = bus.call(ask, QDBus::Block, kReadTimeoutMs);
  return reply.type() == QDBusMessage::ReplyMessage && reply.arguments().value(0).toBool();
}

QVariantMap NetworkManagerRemoteAccess::GetAllProperties(const QString& path, const QString& interfaceName) {
  QDBusMessage ask =
      QDBusMessage::createMethodCall(kService, path, kPropertiesInterface, QStringLiteral("GetAll"));
  ask << interfaceName;
  const QDBusMessage reply = bus_.call(ask, QDBus::Block, kReadTimeoutMs);
  if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
    return {};
  }
  return qdbus_cast<QVariantMap>(reply.arguments().at(0));
}

QList<RasConnection> NetworkManagerRemoteAccess::GetRasConnections() {
  QList<RasConnection> result;
  const QStringList active =
      ObjectPaths(GetAllProperties(kManagerPath, QStringLiteral("org.freedesktop.NetworkManager"))
                      .value(QStringLiteral("ActiveConnections")));
  for (const QString& path : active) {
    const QVariantMap properties = GetAllProperties(path, kActiveInterface);
    if (properties.isEmpty()) {
      continue;  // gone between the two questions
    }
    RasConnection connection;
    connection.handle = path;
    connection.entryName = Text(properties.value(QStringLiteral("Id")));
    connection.deviceType = Text(properties.value(QStringLiteral("Type")));
    if (IsLoopback(connection.deviceType)) {
      continue;
    }
    const QStringList devices = ObjectPaths(properties.value(QStringLiteral("Devices")));
    if (!devices.isEmpty()) {
      const QVariantMap device = GetAllProperties(devices.first(), kDeviceInterface);
      connection.deviceName = Text(device.value(QStringLiteral("Interface")));
      connection.interfaceName = Text(device.value(QStringLiteral("IpInterface")));
      if (connection.interfaceName.isEmpty()) {
        connection.interfaceName = connection.deviceName;
      }
      // NMMetered: 1 yes, 3 guessed yes.
      const uint metered = Plain(device.value(QStringLiteral("Metered"))).toUInt();
      connection.metered = metered == 1 || metered == 3;
    }
    result.append(connection);
  }
  return result;
}

QList<NetworkManagerRemoteAccess::Profile> NetworkManagerRemoteAccess::GetProfiles() {
  QDBusPendingReply<QList<QDBusObjectPath>> listed = settings_->ListConnections();
  listed.waitForFinished();
  if (listed.isError()) {
    return {};
  }
  // All questions go out at once, so that a slow service costs one timeout
  // and not one per profile.
  QList<std::pair<QString, QDBusPendingReply<NMSettings>>> pending;
  std::vector<std::unique_ptr<NMProfileProxy>> proxies;
  for (const QDBusObjectPath& path : listed.value()) {
    proxies.push_back(std::make_unique<NMProfileProxy>(kService, path.path(), bus_));
    proxies.back()->setTimeout(kReadTimeoutMs);
    pending.append({path.path(), proxies.back()->GetSettings()});
  }
  QList<Profile> profiles;
  for (auto& [path, reply] : pending) {
    reply.waitForFinished();
    if (reply.isError()) {
      continue;
    }
    const NMSettings settings = reply.value();
    if (IsLoopback(Text(settings.value(QStringLiteral("connection")).value(QStringLiteral("type"))))) {
      continue;
    }
    profiles.append({path, settings});
  }
  return profiles;
}

std::optional<NetworkManagerRemoteAccess::Profile> NetworkManagerRemoteAccess::FindProfile(
    const QString& entry) {
  for (const Profile& profile : GetProfiles()) {
    if (Text(profile.settings.value(QStringLiteral("connection")).value(QStringLiteral("id"))) == entry) {
      return profile;
    }
  }
  return std::nullopt;
}

QStringList NetworkManagerRemoteAccess::GetEntries() {
  QStringList entries;
  for (const Profile& profile : GetProfiles()) {
    const QString id = Text(profile.settings.value(QStringLiteral("connection")).value(QStringLiteral("id")));
    if (!id.isEmpty()) {
      entries.append(id);
    }
  }
  return entries;
}

RemoteAccess::EditorRef NetworkManagerRemoteAccess::EntryEditorId(const QString& entry) {
  const auto profile = FindProfile(entry);
  if (!profile) {
    return {};
  }
  const QVariantMap connection = profile->settings.value(QStringLiteral("connection"));
  return {Text(connection.value(QStringLiteral("uuid"))), Text(connection.value(QStringLiteral("type")))};
}

RasDialParams NetworkManagerRemoteAccess::ParseDialParams(const NMSettings& settings,
                                                          const NMSettings& secrets) {
  const QString setting = DialSetting(settings);
  const QVariantMap keys = settings.value(setting);
  RasDialParams record;
  record.Eintrag = Text(settings.value(QStringLiteral("connection")).value(QStringLiteral("id")));
  record.Telefon = Text(keys.value(QStringLiteral("number")));
  record.Benutzer = Text(keys.value(QStringLiteral("username")));
  record.Passwort = Text(secrets.value(setting).value(QStringLiteral("password")));
  record.passwordStored = !record.Passwort.isEmpty();
  return record;
}

NMSettings NetworkManagerRemoteAccess::BuildDialParams(const RasDialParams& record, NMSettings settings) {
  const QString setting = DialSetting(settings);
  QVariantMap& keys = settings[setting];
  if (!record.Telefon.isEmpty()) {
    keys.insert(QStringLiteral("number"), record.Telefon);
  }
  if (!record.Benutzer.isEmpty()) {
    keys.insert(QStringLiteral("username"), record.Benutzer);
  }
  if (!record.Passwort.isEmpty()) {
    keys.insert(QStringLiteral("password"), record.Passwort);
  }
  return settings;
}

NMSettings NetworkManagerRemoteAccess::GetSecrets(const Profile& profile) {
  // Secrets come only where the profile stores them and the user may read
  // them; the service never asks anybody on this call.
  NMProfileProxy proxy(kService, profile.path, bus_);
  proxy.setTimeout(kReadTimeoutMs);
  QDBusPendingReply<NMSettings> secrets = proxy.GetSecrets(DialSetting(profile.settings));
  secrets.waitForFinished();
  return secrets.isError() ? NMSettings() : secrets.value();
}

std::optional<RasDialParams> NetworkManagerRemoteAccess::GetDialParams(const QString& entry) {
  const std::optional<Profile> profile = FindProfile(entry);
  if (!profile) {
    return std::nullopt;
  }
  return ParseDialParams(profile->settings, GetSecrets(*profile));
}

QString NetworkManagerRemoteAccess::DialEntry(const QString& entry, const RasDialParams& params) {
  const std::optional<Profile> profile = FindProfile(entry);
  if (!profile) {
    return {};
  }
  const NMSettings secrets = GetSecrets(*profile);
  // The program's own dial data goes into the profile for this dial only;
  // the profile gets its own back once the dial is over. The update
  // replaces the setting's secrets, so the others (a SIM's PIN) go along.
  NMSettings settings = profile->settings;
  for (auto setting = secrets.begin(); setting != secrets.end(); ++setting) {
    for (auto key = setting->begin(); key != setting->end(); ++key) {
      settings[setting.key()].insert(key.key(), key.value());
    }
  }
  std::optional<NMSettings> original;
  const NMSettings wanted = BuildDialParams(params, settings);
  if (wanted != settings) {
    // Dialling with the profile's data instead of the user's would bill the
    // wrong account: a refused update refuses the dial.
    if (!UpdateProfile(profile->path, wanted)) {
      return {};
    }
    original = settings;
  }
  manager_->setTimeout(kDialTimeoutMs);
  QDBusPendingReply<QDBusObjectPath> activated =
      manager_->ActivateConnection(QDBusObjectPath(profile->path), QDBusObjectPath(QStringLiteral("/")),
                                   QDBusObjectPath(QStringLiteral("/")));
  activated.waitForFinished();
  manager_->setTimeout(kReadTimeoutMs);
  if (activated.isError()) {
    if (original) {
      UpdateProfile(profile->path, *original);
    }
    return {};
  }
  const QString handle = activated.value().path();
  if (original) {
    toRestore_.insert(handle, {profile->path, *original});
  }
  WatchDial(handle);
  // The box opens with the first step; the service reports only what follows.
  QTimer::singleShot(0, this, [this, handle] { ReportDial(handle, RasState::OpenPort); });
  return handle;
}

bool NetworkManagerRemoteAccess::UpdateProfile(const QString& profilePath, const NMSettings& settings) {
  NMProfileProxy proxy(kService, profilePath, bus_);
  proxy.setTimeout(kDialTimeoutMs);
  QDBusPendingReply<> updated = proxy.UpdateUnsaved(settings);
  updated.waitForFinished();
  return !updated.isError();
}

void NetworkManagerRemoteAccess::RestoreProfile(const QString& activePath) {
  const auto it = toRestore_.constFind(activePath);
  if (it == toRestore_.constEnd()) {
    return;
  }
  const auto [profilePath, settings] = *it;
  toRestore_.erase(it);
  UpdateProfile(profilePath, settings);
}

void NetworkManagerRemoteAccess::WatchDial(const QString& activePath) {
  dialling_.insert(activePath, {});
  bus_.connect(kService, activePath, kActiveInterface, QStringLiteral("StateChanged"), this,
               SLOT(OnActiveStateChanged(uint, uint, QDBusMessage)));
  bus_.connect(kService, activePath, kPropertiesInterface, QStringLiteral("PropertiesChanged"), this,
               SLOT(OnPropertiesChanged(QString, QVariantMap, QStringList, QDBusMessage)));
  RefreshDialDevices(activePath);
}

void NetworkManagerRemoteAccess::RefreshDialDevices(const QString& activePath) {
  QDBusMessage ask =
      QDBusMessage::createMethodCall(kService, activePath, kPropertiesInterface, QStringLiteral("Get"));
  ask << kActiveInterface << QStringLiteral("Devices");
  const QDBusMessage reply = bus_.call(ask, QDBus::Block, kReadTimeoutMs);
  if (reply.type() != QDBusMessage::ReplyMessage || !dialling_.contains(activePath)) {
    return;
  }
  const QStringList devices = ObjectPaths(reply.arguments().value(0));
  dialling_[activePath] = devices;
  for (const QString& device : devices) {
    if (!watchedDevices_.contains(device)) {
      watchedDevices_.insert(device);
      bus_.connect(kService, device, kDeviceInterface, QStringLiteral("StateChanged"), this,
                   SLOT(OnDeviceStateChanged(uint, uint, uint, QDBusMessage)));
    }
  }
}

void NetworkManagerRemoteAccess::ReportDial(const QString& activePath, quint32 rasState) {
  if (!dialling_.contains(activePath)) {
    return;
  }
  if (IsRasStateFinal(rasState)) {
    // Up or failed, the dial needs the program's own data no longer.
    RestoreProfile(activePath);
    dialling_.remove(activePath);
    bus_.disconnect(kService, activePath, kActiveInterface, QStringLiteral("StateChanged"), this,
                    SLOT(OnActiveStateChanged(uint, uint, QDBusMessage)));
    bus_.disconnect(kService, activePath, kPropertiesInterface, QStringLiteral("PropertiesChanged"), this,
                    SLOT(OnPropertiesChanged(QString, QVariantMap, QStringList, QDBusMessage)));
  }
  emit DialProgress(activePath, rasState);
}

std::optional<quint32> NetworkManagerRemoteAccess::RasStateOfDevice(quint32 deviceState) {
  switch (deviceState) {
    case 30:   // disconnected: the line went down again
    case 120:  // failed
      return RasState::Disconnected;
    case 40:  // prepare
      return RasState::OpenPort;
    case 50:  // config: the modem dials
      return RasState::ConnectDevice;
    case 60:  // need-auth
    case 70:  // ip-config: the peer checks user and password
      return RasState::Authenticate;
    case 80:  // ip-check
    case 90:  // secondaries
      return RasState::Authenticated;
    case 100:
      return RasState::Connected;
    default:
      return std::nullopt;
  }
}

std::optional<quint32> NetworkManagerRemoteAccess::RasStateOfActive(quint32 activeState) {
  switch (activeState) {
    case 1:  // activating
      return RasState::OpenPort;
    case 2:
      return RasState::Connected;
    case 4:  // deactivated
      return RasState::Disconnected;
    default:
      return std::nullopt;
  }
}

void NetworkManagerRemoteAccess::OnActiveStateChanged(uint state, uint, const QDBusMessage& message) {
  if (const std::optional<quint32> rasState = RasStateOfActive(state)) {
    ReportDial(message.path(), *rasState);
  }
}

void NetworkManagerRemoteAccess::OnDeviceStateChanged(uint newState, uint, uint,
                                                      const QDBusMessage& message) {
  const std::optional<quint32> rasState = RasStateOfDevice(newState);
  if (!rasState) {
    return;
  }
  const QStringList dials = dialling_.keys();
  for (const QString& active : dials) {
    if (dialling_.value(active).contains(message.path())) {
      ReportDial(active, *rasState);
    }
  }
}

void NetworkManagerRemoteAccess::OnPropertiesChanged(const QString& interfaceName, const QVariantMap& changed,
                                                     const QStringList&, const QDBusMessage& message) {
  if (interfaceName == kActiveInterface && dialling_.contains(message.path())) {
    if (changed.contains(QStringLiteral("Devices"))) {
      RefreshDialDevices(message.path());
    }
    return;
  }
  if (message.path() != kManagerPath || !changed.contains(QStringLiteral("ActiveConnections"))) {
    return;
  }
  // A dial whose connection the service dropped from its list has failed,
  // even if no state change told so. The list may be older than the dial
  // (signals wait while a call blocks), so the connection itself is asked.
  const QStringList active = ObjectPaths(changed.value(QStringLiteral("ActiveConnections")));
  const QStringList dials = dialling_.keys();
  for (const QString& dial : dials) {
    if (!active.contains(dial) && !GetConnectState(dial)) {
      ReportDial(dial, RasState::Disconnected);
    }
  }
  emit ConnectionsChanged();
}

void NetworkManagerRemoteAccess::OnServiceGone() {
  const QStringList dials = dialling_.keys();
  for (const QString& dial : dials) {
    ReportDial(dial, RasState::Disconnected);
  }
  emit ConnectionsChanged();
}

std::optional<RasConnStatus> NetworkManagerRemoteAccess::GetConnectState(const QString& handle) {
  if (handle.isEmpty()) {
    return std::nullopt;
  }
  QDBusMessage ask =
      QDBusMessage::createMethodCall(kService, handle, kPropertiesInterface, QStringLiteral("GetAll"));
  ask << kActiveInterface;
  const QDBusMessage reply = bus_.call(ask, QDBus::Block, kReadTimeoutMs);
  if (reply.type() != QDBusMessage::ReplyMessage) {
    // A service that is slow to answer still has the connection as far as
    // anybody knows; one that says the object is unknown, or is gone, hasn't.
    if (reply.errorName() == QLatin1String("org.freedesktop.DBus.Error.NoReply") ||
        reply.errorName() == QLatin1String("org.freedesktop.DBus.Error.Timeout")) {
      return RasConnStatus{RasState::OpenPort, 0, {}, {}, {}};
    }
    return std::nullopt;
  }
  const QVariantMap properties = qdbus_cast<QVariantMap>(reply.arguments().value(0));
  const quint32 state = Plain(properties.value(QStringLiteral("State"))).toUInt();
  if (state == 4) {
    return std::nullopt;
  }
  RasConnStatus status;
  status.state = RasStateOfActive(state).value_or(RasState::OpenPort);
  status.deviceType = Text(properties.value(QStringLiteral("Type")));
  return status;
}

void NetworkManagerRemoteAccess::RequestHangUp(const QString& handle) {
  RestoreProfile(handle);
  dialling_.remove(handle);
  QDBusMessage ask =
      QDBusMessage::createMethodCall(kService, kManagerPath, QStringLiteral("org.freedesktop.NetworkManager"),
                                     QStringLiteral("DeactivateConnection"));
  ask << QVariant::fromValue(QDBusObjectPath(handle));
  // The reply doesn't matter: the wait afterwards asks for the state anyway.
  bus_.asyncCall(ask, kReadTimeoutMs);
}

}  // namespace minutor
