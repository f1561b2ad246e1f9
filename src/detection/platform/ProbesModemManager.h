#pragma once

#include "detection/Probes.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

#include <optional>

class QDBusServiceWatcher;

namespace minutor {

struct AppState;

// The TAPI method's line: the first modem of ModemManager. While the line is
// open, each change of the modem's state sets TapiOnline as the call state
// it stands for would. The state the modem is in when the line opens counts
// for nothing; only changes do. The line opens whenever the service runs: a
// stick plugged in later becomes the line when it appears, and one pulled
// out ends its call.
class ProbesModemManager final : public QObject, public TapiLine {
  Q_OBJECT

 public:
  ProbesModemManager(const QDBusConnection& bus, AppState& state, QObject* parent = nullptr);
  ~ProbesModemManager() override;

  bool Open() override;
  void Close() override;

  // The object path of the watched modem; empty while the line is closed.
  QString ModemPath() const { return modem_; }

 private slots:
  void OnStateChanged(int oldState, int newState, uint reason);
  void OnObjectsChanged(const QDBusMessage& message);

 private:
  // Nothing when the service doesn't answer; "" when it has no modem.
  std::optional<QString> FirstModem() const;
  void WatchObjects(bool on);
  void Watch(const QString& modem);
  void OnServiceGone();
  void OnServiceBack();

  QDBusConnection bus_;
  AppState& state_;
  QDBusServiceWatcher* watcher_ = nullptr;
  QString modem_;
  bool open_ = false;
};

}  // namespace minutor
