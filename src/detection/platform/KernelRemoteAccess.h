#pragma once

#include "detection/RemoteAccess.h"

#include <QHash>
#include <QSet>

class QTimer;

namespace minutor {

// Remote access with pppd alone: entries are the peer files, connections the
// ppp interfaces that are up, dialling and hanging up go through pon and
// poff. A connection's handle is its interface; a dial's handle is "peer:"
// and the entry until its interface shows.
class KernelRemoteAccess final : public RemoteAccess {
  Q_OBJECT

 public:
  struct Paths {
    QString peers = QStringLiteral("/etc/ppp/peers");
    QString net = QStringLiteral("/sys/class/net");
    QString run = QStringLiteral("/run");
    QString pon = QStringLiteral("pon");
    QString poff = QStringLiteral("poff");
    QString proc = QStringLiteral("/proc");
  };

  explicit KernelRemoteAccess(const Paths& paths, QObject* parent = nullptr);

  QList<RasConnection> GetRasConnections() override;
  QStringList GetEntries() override;
  std::optional<RasDialParams> GetDialParams(const QString& entry) override;
  QString DialEntry(const QString& entry, const RasDialParams& params) override;
  std::optional<RasConnStatus> GetConnectState(const QString& handle) override;

  // How long a dial may take before it counts as failed.
  void SetDialTimeout(int milliseconds) { dialTimeoutMs_ = milliseconds; }

 protected:
  void RequestHangUp(const QString& handle) override;

 private:
  struct PendingDial {
    QSet<QString> interfacesBefore;
    qint64 startedMs = 0;
  };
  QStringList UpInterfaces() const;
  QString EntryOfInterface(const QString& interfaceName) const;
  bool IsEntry(const QString& entry) const;
  // The command of the peer's connect line; empty when it has none.
  QString PeerConnectLine(const QString& entry) const;
  void CheckDials();

  Paths paths_;
  QHash<QString, QString> dialledEntries_;  // interface -> entry it was dialled for
  QHash<QString, PendingDial> pending_;     // entry -> dial under way
  QTimer* dialTimer_;
  int dialTimeoutMs_ = 90000;
};

}  // namespace minutor
