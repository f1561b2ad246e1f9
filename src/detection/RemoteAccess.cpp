#include "detection/RemoteAccess.h"

#include "frame/datadir/Names.h"

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>
#include <algorithm>

namespace minutor {

namespace {
constexpr int kHangUpPollMs = 50;
}

bool RemoteAccess::HangUp(const QString& handle) {
  if (handle.isEmpty() || !GetConnectState(handle)) {
    return true;
  }
  RequestHangUp(handle);
  const QDeadlineTimer deadline(hangUpTimeoutMs_);
  while (GetConnectState(handle)) {
    if (deadline.hasExpired()) {
      return false;
    }
    QEventLoop loop;
    QTimer::singleShot(qMin<qint64>(kHangUpPollMs, deadline.remainingTime()), &loop, &QEventLoop::quit);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
  }
  return true;
}

bool IsUsableEntryName(const QString& name) { return !name.trimmed().isEmpty() && IsSafeFileName(name); }

bool IsDialUpKind(const RasConnection& connection) {
  // NetworkManager's profile types of dialled lines, pppd's own "ppp", and
  // the device types of the classic dial-up world.
  static const QStringList kinds = {
      QStringLiteral("gsm"),       QStringLiteral("cdma"), QStringLiteral("pppoe"), QStringLiteral("wwan"),
      QStringLiteral("bluetooth"), QStringLiteral("ppp"),  QStringLiteral("modem"), QStringLiteral("isdn")};
  return connection.metered || kinds.contains(connection.deviceType, Qt::CaseInsensitive);
}

QStringList GetDFUe(RemoteAccess& remoteAccess) { return remoteAccess.GetEntries(); }

}  // namespace minutor
