#pragma once

#include "detection/RasStates.h"
#include "detection/RemoteAccess.h"

#include <QHash>
#include <QList>

namespace minutor {

// Remote access without a system behind it: for tests, and for machines with
// neither NetworkManager nor pppd. Entries and connections are whatever the
// owner puts in; a dial plays a list of states, one per event-loop turn.
class SimulatedRemoteAccess final : public RemoteAccess {
  Q_OBJECT

 public:
  using RemoteAccess::RemoteAccess;

  QList<RasConnection> GetRasConnections() override;
  QStringList GetEntries() override;
  std::optional<RasDialParams> GetDialParams(const QString& entry) override;
  QString DialEntry(const QString& entry, const RasDialParams& params) override;
  std::optional<RasConnStatus> GetConnectState(const QString& handle) override;

  // An entry the system knows, with what it keeps about dialling it.
  void AddEntry(const QString& name, const RasDialParams& params = {});
  void RemoveEntry(const QString& name);

  // A connection comes up or goes away outside the program, as when the user
  // dials with another tool.
  QString BringUp(const QString& entry, const QString& deviceName = QStringLiteral("ttyS0"),
                  const QString& interfaceName = QStringLiteral("ppp0"));
  // The same for a connection of any kind; its handle is given here.
  QString BringUp(RasConnection connection);
  void TakeDown(const QString& handle);

  // The states a dial goes through; when the last is Connected the
  // connection is up from then on. Empty: DialEntry refuses to dial.
  void SetDialStates(const QList<quint32>& states) { dialStates_ = states; }
  // How many polls a hang-up takes before the connection is gone; negative:
  // it never goes.
  void SetHangUpPolls(int polls) { hangUpPolls_ = polls; }

  // What the program asked for.
  struct Dial {
    QString entry;
    RasDialParams params;
  };
  QList<Dial> dials;
  QStringList hangUps;

 protected:
  void RequestHangUp(const QString& handle) override;

 private:
  void PlayDial(const QString& handle, const QString& entry, int step);

  QStringList entryOrder_;
  QHash<QString, RasDialParams> entries_;
  QList<RasConnection> connections_;
  QHash<QString, int> pendingHangUps_;
  QList<quint32> dialStates_ = {RasState::OpenPort,        RasState::PortOpened,   RasState::ConnectDevice,
                                RasState::DeviceConnected, RasState::Authenticate, RasState::Authenticated,
                                RasState::Connected};
  int hangUpPolls_ = 0;
  int nextHandle_ = 1;
};

}  // namespace minutor
