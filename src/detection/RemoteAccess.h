#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <optional>

namespace minutor {

// One connection that is up. The handle is whatever the backend needs to find
// it again (an object path, an interface name); empty means none.
struct RasConnection {
  QString handle;
  QString entryName;
  QString deviceType;
  QString deviceName;
  QString interfaceName;
  // The system bills this connection by what it carries, as far as it knows.
  bool metered = false;
};

// Whether a connection is of the kind the dialer guard may cut: a line that
// is dialled (modem, mobile, ISDN, PPPoE, Bluetooth) or one the system calls
// metered. The user's own Ethernet, Wi-Fi or VPN is never cut.
bool IsDialUpKind(const RasConnection& connection);

// What the system knows about dialling an entry, and what the program hands
// back when it dials with data of its own.
struct RasDialParams {
  QString Eintrag;
  QString Telefon;
  QString Rueckruf;
  QString Benutzer;
  QString Passwort;
  QString Domain;
  quint32 SubEntry = 0;
  quint32 CallbackId = 0;
  bool passwordStored = false;
};

struct RasConnStatus {
  quint32 state = 0;  // a RasState
  quint32 error = 0;
  QString deviceType;
  QString deviceName;
  QString phoneNumber;
};

// Dial-up entries and connections of the system. One implementation talks to
// NetworkManager, one to pppd and the kernel, one only pretends.
class RemoteAccess : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

  // The connections that are up, oldest first as far as the system tells.
  virtual QList<RasConnection> GetRasConnections() = 0;
  // The names of the entries the user can dial.
  virtual QStringList GetEntries() = 0;
  // Nothing when the entry is unknown or the system doesn't answer.
  virtual std::optional<RasDialParams> GetDialParams(const QString& entry) = 0;
  // Starts dialling and gives the handle of the new connection at once, or ""
  // when nothing was dialled; the progress arrives through DialProgress.
  virtual QString DialEntry(const QString& entry, const RasDialParams& params) = 0;
  // Nothing once the handle no longer stands for a connection.
  virtual std::optional<RasConnStatus> GetConnectState(const QString& handle) = 0;

  // How the desktop's connection editor finds an entry: the profile's uuid
  // and type. Empty where the backend has no such editor or doesn't know the
  // entry.
  struct EditorRef {
    QString uuid;
    QString type;
  };
  virtual EditorRef EntryEditorId(const QString& entry) {
    Q_UNUSED(entry);
    return {};
  }

  // Ends the connection and comes back when it is gone, so that the line is
  // free for the next dial. The event loop keeps turning meanwhile (without
  // user input), and the wait is bounded: false when the connection was still
  // there when the time ran out.
  bool HangUp(const QString& handle);
  void SetHangUpTimeout(int milliseconds) { hangUpTimeoutMs_ = milliseconds; }
  int HangUpTimeout() const { return hangUpTimeoutMs_; }

 signals:
  // A dial started by DialEntry moved on; the state is a RasState.
  void DialProgress(const QString& handle, quint32 state);
  // Connections came or went, as far as the backend learns of it by itself.
  void ConnectionsChanged();

 protected:
  // Asks the system to end the connection, without waiting for it.
  virtual void RequestHangUp(const QString& handle) = 0;

 private:
  int hangUpTimeoutMs_ = 10000;
};

// Entries become file names below DialUp, so a name that can't be one (or is
// empty) can be listed and dialled but gets no settings of its own.
bool IsUsableEntryName(const QString& name);

// The list for the entry combos of the panels.
QStringList GetDFUe(RemoteAccess& remoteAccess);

}  // namespace minutor
