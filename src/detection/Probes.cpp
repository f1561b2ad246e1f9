#include "detection/Probes.h"

#include "frame/AppState.h"
#include "frame/Prompter.h"

#include <algorithm>

namespace minutor {

namespace {

constexpr quint32 kNetworkGlobal = 70;
constexpr quint32 kConnectionLan = 2;
constexpr int kModemDisconnecting = 9;
constexpr int kModemConnecting = 10;
constexpr int kModemConnected = 11;

// A text as a truth value: a number is true unless it is 0. A text that is
// no number gives nothing, and the probe keeps the answer it had.
std::optional<bool> TextToBool(const QString& text) {
  bool ok = false;
  const double value = text.toDouble(&ok);
  if (!ok) {
    return std::nullopt;
  }
  return value != 0;
}

bool JoinedFlags(quint32 flags, const char* mask) {
  return TextToBool(QString::number(flags) + QLatin1String(mask)).value_or(false);
}

// Whether one segment of an entry fits the address at the entry's own place.
bool SegmentFits(const QString& ip, const QString& segment, qsizetype position) {
  return segment.startsWith(QLatin1Char('*')) || segment == ip.mid(position, segment.size());
}

}  // namespace

quint32 InternetFlags(std::optional<quint32> networkState) {
  return networkState.value_or(0) >= kNetworkGlobal ? kConnectionLan : 0;
}

bool IsOnlineIE(bool methodIE, bool methodLAN, quint32 flags) {
  bool online = false;
  if (methodIE && JoinedFlags(flags, "1")) {
    online = true;
  }
  if (methodLAN && (JoinedFlags(flags, "2") || JoinedFlags(flags, "4"))) {
    online = true;
  }
  return online;
}

bool IsOnlineIE(const AppState& state, NetworkStateSource& network) {
  // The state is asked for at each poll even though the answer can't change
  // the result: a service that hangs shows here and nowhere else.
  const quint32 flags = InternetFlags(network.NetworkState());
  return IsOnlineIE(state.MethodIE, state.MethodLAN, flags);
}

bool IsIgnoredIP(const QStringList& table, const QString& ip) {
  for (const QString& entry : table) {
    if (entry == ip) {
      return true;
    }
    // Three dots part the entry into four segments; where one is missing the
    // search ends, and the entries after it are never looked at.
    qsizetype dots[3];
    qsizetype from = 0;
    bool fits = true;
    for (int i = 0; i < 3 && fits; ++i) {
      dots[i] = entry.indexOf(QLatin1Char('.'), from);
      if (dots[i] < 0) {
        return false;
      }
      fits = SegmentFits(ip, entry.mid(from, dots[i] - from), from);
      from = dots[i] + 1;
    }
    if (fits && SegmentFits(ip, entry.mid(from), from)) {
      return true;
    }
  }
  return false;
}

bool HasUnignoredAddress(const QStringList& table, const QStringList& addresses) {
  return std::any_of(addresses.begin(), addresses.end(), [&](const QString& address) {
    return !address.isEmpty() && !IsIgnoredIP(table, address);
  });
}

bool IsOnlineIP(AppState& state, const HostAddressSource& host, Prompter& prompter) {
  const std::optional<QStringList> addresses = host.IPv4Addresses();
  if (!addresses) {
    prompter.Message(
        QStringLiteral("Die IP Überwachung ist nicht ausführbar! Bitte deaktivieren Sie diese in "
                       "den Überwachungseinstellungen."),
        Prompter::Icon::None);
    state.MethodIP = false;
    return false;
  }
  return HasUnignoredAddress(state.IgnoredIPTable, *addresses);
}

std::optional<quint32> CallStateOfModem(int modemState) {
  switch (modemState) {
    case kModemConnected:
      return CallState::Connected;
    case kModemConnecting:
      return std::nullopt;
    case kModemDisconnecting:
      return CallState::Disconnected;
    default:
      return CallState::Idle;
  }
}

void OnTapiCallState(AppState& state, quintptr call, quint32 callState) {
  switch (callState) {
    case CallState::Connected:
      if (call != 0) {
        state.TapiOnline = true;
      }
      break;
    case CallState::Idle:
    case CallState::Busy:
    case CallState::Disconnected:
      state.TapiOnline = false;
      break;
    default:
      break;
  }
}

void StartTapi(AppState& state, TapiLine& line, Prompter& prompter) {
  if (line.Open()) {
    return;
  }
  prompter.Message(
      QStringLiteral("Fehler beim Initialisieren der TAPI Überwachung. Bitte deaktivieren Sie die "
                     "TAPI Überwachung in den Überwachungseinstellungen."),
      Prompter::Icon::None);
  state.MethodTAPI = false;
}

}  // namespace minutor
