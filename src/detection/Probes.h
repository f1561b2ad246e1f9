#pragma once

#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <optional>

namespace minutor {

class Prompter;
struct AppState;

// The state of the network as NetworkManager reports it (NMState: 20
// disconnected, 40 connecting, 50 local, 60 site, 70 global); nullopt when
// the service gives no answer in time.
class NetworkStateSource {
 public:
  virtual ~NetworkStateSource() = default;
  virtual std::optional<quint32> NetworkState() = 0;
};

// The IPv4 addresses of the machine's interfaces that are up, as dotted
// texts; nullopt when the system can't list them.
class HostAddressSource {
 public:
  virtual ~HostAddressSource() = default;
  virtual std::optional<QStringList> IPv4Addresses() const = 0;
};

// The line the TAPI method watches: the first modem. While open, its call
// states reach OnTapiCallState.
class TapiLine {
 public:
  virtual ~TapiLine() = default;
  // False when there is no modem to watch.
  virtual bool Open() = 0;
  virtual void Close() = 0;
};

// The call states of a line that the TAPI method answers to.
namespace CallState {
inline constexpr quint32 Idle = 0x1;
inline constexpr quint32 Busy = 0x40;
inline constexpr quint32 Connected = 0x100;
inline constexpr quint32 Disconnected = 0x4000;
}  // namespace CallState

// The connection flags of the Internet state probe: LAN (2) when the network
// reaches the internet, none otherwise or without an answer.
quint32 InternetFlags(std::optional<quint32> networkState);

// The Internet state probe. The flags are joined as texts with the masks
// rather than tested bit by bit, and such a text is never the number 0: with
// either method on the answer is true at every poll, whatever the line does.
bool IsOnlineIE(bool methodIE, bool methodLAN, quint32 flags);
bool IsOnlineIE(const AppState& state, NetworkStateSource& network);

// True when the address matches an entry of the table. Segments of an entry
// are compared with the characters of the address at the same places as in
// the entry, not octet by octet; a segment that begins with "*" fits
// whatever stands there. An entry without a dot ends the search.
bool IsIgnoredIP(const QStringList& table, const QString& ip);

// True when one of the addresses isn't empty and isn't ignored.
bool HasUnignoredAddress(const QStringList& table, const QStringList& addresses);

// The IP probe. When the addresses can't be listed the user is told once,
// the method is off for this run and the answer is false.
bool IsOnlineIP(AppState& state, const HostAddressSource& host, Prompter& prompter);

// The call state a change of the modem's state stands for (11 connected,
// 9 disconnecting, 10 connecting, below 9 not in a call); nullopt for
// states that leave the line as it is.
std::optional<quint32> CallStateOfModem(int modemState);

// A call state reported for the watched line; call is 0 when the state
// belongs to no call.
void OnTapiCallState(AppState& state, quintptr call, quint32 callState);

// Opens the line for the TAPI method. Without a line the user is asked to
// switch the method off, and it stays off for this run.
void StartTapi(AppState& state, TapiLine& line, Prompter& prompter);

}  // namespace minutor
