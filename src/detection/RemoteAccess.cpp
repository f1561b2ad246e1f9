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

QStringList GetDFUe(RemoteAccess& remoteAccess) { return remoteAccess.GetEntries(); }

}  // namespace minutor
