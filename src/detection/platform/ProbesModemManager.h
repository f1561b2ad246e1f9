#pragma once

#include "detection/Probes.h"

#include <QDBusConnection>
#include <QObject>

class QDBusServiceWatcher;

namespace minutor {

struct AppState;

// The TAPI method's line: the first modem of ModemManager. While the line is
// open, each change of the modem's state sets TapiOnline as the call state
// it stands for would. The state the modem is in when the line opens counts
// for nothing; only changes do.
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

 private:
  QString FirstModem() const;
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
