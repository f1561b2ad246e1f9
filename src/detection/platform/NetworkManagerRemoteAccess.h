#pragma once

#include "detection/RemoteAccess.h"
#include "detection/platform/NMSettings.h"

#include <QDBusConnection>
#include <QHash>
#include <QSet>
#include <memory>

class QDBusMessage;
class QDBusServiceWatcher;
class NMManagerProxy;
class NMSettingsProxy;

namespace minutor {

// Remote access through NetworkManager on the system bus. Entries are the
// connection profiles, connections are the active connections, a handle is
// the active connection's object path. Every call has a short timeout, so a
// service that hangs or goes away costs a moment, never the program.
class NetworkManagerRemoteAccess final : public RemoteAccess {
  Q_OBJECT

 public:
  explicit NetworkManagerRemoteAccess(const QDBusConnection& bus, QObject* parent = nullptr);
  ~NetworkManagerRemoteAccess() override;

  static bool IsAvailable(const QDBusConnection& bus);

  QList<RasConnection> GetRasConnections() override;
  QStringList GetEntries() override;
  std::optional<RasDialParams> GetDialParams(const QString& entry) override;
  QString DialEntry(const QString& entry, const RasDialParams& params) override;
  std::optional<RasConnStatus> GetConnectState(const QString& handle) override;
  EditorRef EntryEditorId(const QString& entry) override;

  // The progress box's state for a device state and for an active
  // connection's state; nothing for states that don't move the box.
  static std::optional<quint32> RasStateOfDevice(quint32 deviceState);
  static std::optional<quint32> RasStateOfActive(quint32 activeState);

  // Between a profile (its settings and stored secrets) and the dial record.
  static RasDialParams ParseDialParams(const NMSettings& settings, const NMSettings& secrets);
  // The profile's settings with the record's number, user and password in them.
  static NMSettings BuildDialParams(const RasDialParams& record, NMSettings settings);

 protected:
  void RequestHangUp(const QString& handle) override;

 private slots:
  void OnActiveStateChanged(uint state, uint reason, const QDBusMessage& message);
  void OnDeviceStateChanged(uint newState, uint oldState, uint reason, const QDBusMessage& message);
  void OnPropertiesChanged(const QString& interfaceName, const QVariantMap& changed,
                           const QStringList& invalidated, const QDBusMessage& message);
  void OnServiceGone();

 private:
  struct Profile {
    QString path;
    NMSettings settings;
  };
  QList<Profile> GetProfiles();
  std::optional<Profile> FindProfile(const QString& entry);
  // The secrets of the profile's dial setting; empty when they can't be read.
  NMSettings GetSecrets(const Profile& profile);
  QVariantMap GetAllProperties(const QString& path, const QString& interfaceName);
  // UpdateUnsaved: the profile changes for the running session, not on disk.
  bool UpdateProfile(const QString& profilePath, const NMSettings& settings);
  // Gives the profile of a dial its own settings and secrets back.
  void RestoreProfile(const QString& activePath);
  void WatchDial(const QString& activePath);
  void RefreshDialDevices(const QString& activePath);
  void ReportDial(const QString& activePath, quint32 rasState);

  QDBusConnection bus_;
  std::unique_ptr<NMManagerProxy> manager_;
  std::unique_ptr<NMSettingsProxy> settings_;
  QDBusServiceWatcher* watcher_;
  QHash<QString, QStringList> dialling_;  // active connection -> its devices
  QSet<QString> watchedDevices_;
  // Dials with data of the program's own: active connection -> the profile
  // and what it held before.
  QHash<QString, std::pair<QString, NMSettings>> toRestore_;
};

}  // namespace minutor
