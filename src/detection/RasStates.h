#pragma once

#include <QString>
#include <QtGlobal>

namespace minutor {

// The dial states the progress box knows, numbered as the old dial-up service
// numbered them; every backend translates its own states into these.
namespace RasState {
inline constexpr quint32 OpenPort = 0;
inline constexpr quint32 PortOpened = 1;
inline constexpr quint32 ConnectDevice = 2;
inline constexpr quint32 DeviceConnected = 3;
inline constexpr quint32 AllDevicesConnected = 4;
inline constexpr quint32 Authenticate = 5;
inline constexpr quint32 AuthNotify = 6;
inline constexpr quint32 Authenticated = 14;
inline constexpr quint32 WaitForModemReset = 16;
inline constexpr quint32 LogonNetwork = 21;
inline constexpr quint32 PasswordExpired = 0x1003;
inline constexpr quint32 Connected = 0x2000;
inline constexpr quint32 Disconnected = 0x2001;
}  // namespace RasState

// The text of the progress box for a state, without its number; states the
// box doesn't know keep "Wähle...".
QString RasStateText(quint32 state);

// The caption the box shows: the text, a blank and the number in brackets,
// "Verbunden... (3)".
QString RasStateCaption(quint32 state);

// The box closes on these: the line is up, or it is gone for good.
bool IsRasStateFinal(quint32 state);

}  // namespace minutor
