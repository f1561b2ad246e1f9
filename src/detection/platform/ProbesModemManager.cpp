#include "detection/platform/ProbesModemManager.h"

#include "frame/AppState.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusServiceWatcher>

namespace minutor {

namespace {

const QString kService = QStringLiteral("org.freedesktop.ModemManager1");
const QString kRoot = QStringLiteral("/org/freedesktop/ModemManager1");
const QString kModem = QStringLiteral("org.freedesktop.ModemManager1.Modem");
const QString kModemPrefix = QStringLiteral("/org/freedesktop/ModemManager1/Modem/");

// Opening the line happens at start and at a click on the panel: a service
// that doesn't answer at once counts as one without a modem.
constexpr int kTimeoutMs = 500;

// The modem's number in its path; modems are numbered as they appear.
qlonglong ModemNumber(const QString& path) {
  bool ok = false;
  const qlonglong number = path.mid(kModemPrefix.size()).toLongLong(&ok);
  return ok && path.startsWith(kModemPrefix) ? number : -1;
}

}  // namespace

ProbesModemManager::ProbesModemManager(const QDBusConnection& bus, AppState& state, QObject* parent)
    : QObject(parent),
      bus_(bus),
      state_(state),
      watcher_(new QDBusServiceWatcher(kService, bus, QDBusServiceWatcher::WatchForOwnerChange, this)) {
  connect(watcher_, &QDBusServiceWatcher::serviceUnregistered, this, &ProbesModemManager::OnServiceGone);
  connect(watcher_, &QDBusServiceWatcher::serviceRegistered, this, &ProbesModemManager::OnServiceBack);
}

ProbesModemManager::~ProbesModemManager() { Close(); }

bool ProbesModemManager::Open() {
  Close();
  const std::optional<QString> modem = FirstModem();
  if (!modem) {
    return false;
  }
  open_ = true;
  WatchObjects(true);
  Watch(*modem);
  return true;
}

void ProbesModemManager::Close() {
  if (open_) {
    WatchObjects(false);
  }
  open_ = false;
  Watch(QString());
}

void ProbesModemManager::WatchObjects(bool on) {
  const QString objectManager = QStringLiteral("org.freedesktop.DBus.ObjectManager");
  const char* slot = SLOT(OnObjectsChanged(QDBusMessage));
  for (const QString& signal : {QStringLiteral("InterfacesAdded"), QStringLiteral("InterfacesRemoved")}) {
    if (on) {
      bus_.connect(kService, kRoot, objectManager, signal, this, slot);
    } else {
      bus_.disconnect(kService, kRoot, objectManager, signal, this, slot);
    }
  }
}

void ProbesModemManager::OnObjectsChanged(const QDBusMessage& message) {
  const QString path = message.arguments().value(0).value<QDBusObjectPath>().path();
  if (!open_ || ModemNumber(path) < 0) {
    return;
  }
  if (message.member() == QLatin1String("InterfacesAdded")) {
    // During a call the line stays where the call is; otherwise the line is
    // the first modem again, which may be the new one.
    if (!state_.TapiOnline) {
      if (const std::optional<QString> first = FirstModem()) {
        Watch(*first);
      }
    }
  } else if (path == modem_ && message.arguments().value(1).toStringList().contains(kModem)) {
    // A modem pulled out ends its call.
    OnTapiCallState(state_, 0, CallState::Idle);
    Watch(FirstModem().value_or(QString()));
  }
}

std::optional<QString> ProbesModemManager::FirstModem() const {
  const QDBusMessage ask =
      QDBusMessage::createMethodCall(kService, kRoot, QStringLiteral("org.freedesktop.DBus.ObjectManager"),
                                     QStringLiteral("GetManagedObjects"));
  const QDBusMessage reply = bus_.call(ask, QDBus::Block, kTimeoutMs);
  if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != QLatin1String("a{oa{sa{sv}}}")) {
    return std::nullopt;
  }
  QString first;
  qlonglong firstNumber = -1;
  const QDBusArgument objects = reply.arguments().value(0).value<QDBusArgument>();
  objects.beginMap();
  while (!objects.atEnd()) {
    QDBusObjectPath path;
    objects.beginMapEntry();
    objects >> path;
    bool isModem = false;
    objects.beginMap();
    while (!objects.atEnd()) {
      QString interfaceName;
      QVariantMap properties;
      objects.beginMapEntry();
      objects >> interfaceName >> properties;
      objects.endMapEntry();
      isModem = isModem || interfaceName == kModem;
    }
    objects.endMap();
    objects.endMapEntry();
    const qlonglong number = ModemNumber(path.path());
    if (isModem && number >= 0 && (firstNumber < 0 || number < firstNumber)) {
      first = path.path();
      firstNumber = number;
    }
  }
  objects.endMap();
  return first;
}

void ProbesModemManager::Watch(const QString& modem) {
  const char* slot = SLOT(OnStateChanged(int, int, uint));
  if (!modem_.isEmpty()) {
    bus_.disconnect(kService, modem_, kModem, QStringLiteral("StateChanged"), this, slot);
  }
  modem_ = modem;
  if (!modem_.isEmpty()) {
    bus_.connect(kService, modem_, kModem, QStringLiteral("StateChanged"), this, slot);
  }
}

void ProbesModemManager::OnStateChanged(int /*oldState*/, int newState, uint /*reason*/) {
  if (const std::optional<quint32> callState = CallStateOfModem(newState)) {
    // The modem stands for the call: its number, counted from 1, is the
    // handle, so that no real modem has the handle 0 of "no call".
    OnTapiCallState(state_, static_cast<quintptr>(ModemNumber(modem_) + 1), *callState);
  }
}

void ProbesModemManager::OnServiceGone() {
  // With the service the modem is gone too, and so is any call on it.
  if (!modem_.isEmpty()) {
    OnTapiCallState(state_, 0, CallState::Idle);
  }
  Watch(QString());
}

void ProbesModemManager::OnServiceBack() {
  // A restarted service numbers its modems anew.
  if (open_) {
    Watch(FirstModem().value_or(QString()));
  }
}

}  // namespace minutor
