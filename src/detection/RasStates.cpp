#include "detection/RasStates.h"

namespace minutor {

QString RasStateText(quint32 state) {
  switch (state) {
    case RasState::OpenPort:
      return QStringLiteral("Wähle.");
    case RasState::PortOpened:
      return QStringLiteral("Wähle..");
    case RasState::ConnectDevice:
      return QStringLiteral("Wähle...");
    case RasState::DeviceConnected:
    case RasState::AllDevicesConnected:
      return QStringLiteral("Verbunden...");
    case RasState::Authenticate:
      return QStringLiteral("Benutzernamen und Passwort überprüfen...");
    case RasState::AuthNotify:
      // Sent in every authentication, yet worded as a failure; the users know
      // the box this way.
      return QStringLiteral("Benutzername oder Passwort ist falsch!");
    case RasState::Authenticated:
      return QStringLiteral("Bestätigt...");
    case RasState::WaitForModemReset:
      return QStringLiteral("Warte auf Modem Reset...");
    case RasState::LogonNetwork:
      return QStringLiteral("Netwerk einloggen...");
    case RasState::PasswordExpired:
      return QStringLiteral("Falsches Passwort!");
    case RasState::Disconnected:
      return QStringLiteral("Verbindung getrennt!");
    default:
      return QStringLiteral("Wähle...");
  }
}

QString RasStateCaption(quint32 state) { return RasStateText(state) + QStringLiteral(" (%1)").arg(state); }

bool IsRasStateFinal(quint32 state) {
  return state == RasState::Connected || state == RasState::Disconnected;
}

}  // namespace minutor
