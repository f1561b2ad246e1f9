#include "detection/ConCheck.h"

#include "frame/AppState.h"
#include "frame/Prompter.h"
#include "frame/StartUp.h"
#include "frame/datadir/AnsiText.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/NumberText.h"

namespace minutor {

namespace {

const QString kConCheckFile = QStringLiteral("Config/ConCheck.cfg");
const QString kIgnoredIPsFile = QStringLiteral("Config/IgnoredIPs.cfg");

QByteArray Flag(bool on) { return PrintedNumber(on ? 1 : 0); }

bool HasNetworkManager(const BusServices& bus) {
  return bus.HasService(QString::fromLatin1(kNetworkManagerService));
}

}  // namespace

ConCheckBoxes ReadConCheckBoxes(const DataDir& dir) {
  // The start reads the same file by the same rules; the panel only shows it.
  AppState read;
  LoadConCheck(dir, read);
  ConCheckBoxes boxes;
  boxes.Check1[ConCheckBoxes::IP] = read.MethodIP;
  boxes.Check1[ConCheckBoxes::IE] = read.MethodIE;
  boxes.Check1[ConCheckBoxes::TAPI] = read.MethodTAPI;
  boxes.Check1[ConCheckBoxes::LAN] = read.MethodLAN;
  boxes.Interval = read.CheckInterval;
  return boxes;
}

bool WriteConCheck(const DataDir& dir, const ConCheckBoxes& boxes) {
  return dir.WriteLines(kConCheckFile,
                        {Flag(boxes.Check1[ConCheckBoxes::IP]), Flag(boxes.Check1[ConCheckBoxes::IE]),
                         Flag(boxes.Check1[ConCheckBoxes::LAN]), Flag(boxes.Check1[ConCheckBoxes::TAPI]),
                         PrintedNumber(boxes.Interval)});
}

QString ReadIgnoredIPsLine(const DataDir& dir) {
  const auto lines = dir.ReadLines(kIgnoredIPsFile);
  return lines && !lines->isEmpty() ? FromAnsi(lines->first()) : QString();
}

bool WriteIgnoredIPsLine(const DataDir& dir, const QString& line) {
  return dir.WriteLines(kIgnoredIPsFile, {ToAnsi(line)});
}

void CheckDlls(ConCheckBoxes& boxes, const BusServices& bus, Prompter& prompter) {
  auto& check = boxes.Check1;
  if ((check[ConCheckBoxes::IE] || check[ConCheckBoxes::LAN]) && !HasNetworkManager(bus)) {
    prompter.Message(
        QStringLiteral(
            "Die Internet Explorer Überwachung läßt sich nicht aktivieren. Ein Überwachen des Internet "
            "Explorers ist nicht möglich, da der Dienst 'NetworkManager' nicht am System D-Bus "
            "gefunden wurde. Dieser wird bei der NetworkManager Installation dort angemeldet."),
        Prompter::Icon::None);
    check[ConCheckBoxes::IE] = false;
    check[ConCheckBoxes::LAN] = false;
  }
  if (check[ConCheckBoxes::TAPI] && !bus.HasService(QString::fromLatin1(kModemManagerService))) {
    prompter.Message(
        QStringLiteral(
            "Die TAPI Überwachung läßt sich nicht aktivieren. Ein Überwachen der TAPI Schnittstelle "
            "ist nicht möglich, da der Dienst 'ModemManager' nicht am System D-Bus gefunden wurde. "
            "Dieser wird von vielen Anwendungen benötigt und wird bei der ModemManager "
            "Installation normalerweise angemeldet."),
        Prompter::Icon::None);
    check[ConCheckBoxes::TAPI] = false;
  }
}

void SaveSettings(ConCheckBoxes& boxes, AppState& state, const DataDir& dir, const BusServices* bus,
                  Prompter& prompter) {
  if (bus != nullptr) {
    CheckDlls(boxes, *bus, prompter);
  }
  state.MethodIP = boxes.Check1[ConCheckBoxes::IP];
  state.MethodIE = boxes.Check1[ConCheckBoxes::IE];
  state.MethodTAPI = boxes.Check1[ConCheckBoxes::TAPI];
  state.MethodLAN = boxes.Check1[ConCheckBoxes::LAN];
  state.CheckInterval = boxes.Interval;
  WriteConCheck(dir, boxes);
}

void CheckServicesAtStart(AppState& state, const BusServices& bus, Prompter& prompter) {
  if ((state.MethodIE || state.MethodLAN) && !HasNetworkManager(bus)) {
    state.MethodIE = false;
    state.MethodLAN = false;
    prompter.Message(
        QStringLiteral(
            "Bitte deaktivieren Sie die Internet Explorer Überwachung in den "
            "Überwachungseinstellungen. Ein überwachen des Internet Explorers ist nicht möglich, da "
            "der Dienst 'NetworkManager' nicht am System D-Bus gefunden wurde. Dieser wird bei der "
            "NetworkManager Installation dort angemeldet."),
        Prompter::Icon::None);
  }
}

void PresetConCheck(const DataDir& dir, const BusServices& bus) {
  if (dir.FileExists(kConCheckFile)) {
    return;
  }
  const bool networkManager = HasNetworkManager(bus);
  ConCheckBoxes boxes;
  boxes.Check1 = {!networkManager, networkManager, false, false};
  WriteConCheck(dir, boxes);
  if (!networkManager && !dir.FileExists(kIgnoredIPsFile)) {
    WriteIgnoredIPsLine(dir, QStringLiteral("127.*.*.*"));
  }
}

QString IgnoredIPsHint() {
  return QStringLiteral(
      "Sie können das * Symbol verwenden, um nur einen bestimmten Teil der IP zu definieren. Die IP muss "
      "dann "
      "nur diesen Teil erfüllen um ignoriert zu werden. Bitte beachten Sie dabei dennoch alle 3 Punkte "
      "anzugeben, also nich \"192.168.*\" sondern \"192.168.*.*\". Trennen Sie mehrere IPs durch das Komma "
      "Zeichen.");
}

}  // namespace minutor
