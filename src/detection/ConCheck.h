#pragma once

#include <QString>

#include <array>

namespace minutor {

class DataDir;
class Prompter;
struct AppState;

// Which services answer on the system bus, or can be started there.
class BusServices {
 public:
  virtual ~BusServices() = default;
  virtual bool HasService(const QString& name) const = 0;
};

inline constexpr char kNetworkManagerService[] = "org.freedesktop.NetworkManager";
inline constexpr char kModemManagerService[] = "org.freedesktop.ModemManager1";

// The boxes of the monitoring panel, by their index (0 IP, 1 Internet state,
// 2 TAPI, 3 LAN and proxy), and the interval in seconds.
struct ConCheckBoxes {
  enum Index { IP = 0, IE = 1, TAPI = 2, LAN = 3 };
  std::array<bool, 4> Check1 = {false, true, false, false};
  int Interval = 2;

  bool operator==(const ConCheckBoxes&) const = default;
};

// "Config/ConCheck.cfg" as the panel shows it: a line is on only when it is
// 1, an interval outside 1 to 10 gives 2, no file gives the Internet state
// method alone.
ConCheckBoxes ReadConCheckBoxes(const DataDir& dir);

// The five lines of "Config/ConCheck.cfg": IP, Internet state, LAN, TAPI,
// interval. The file's order is not the order of the boxes.
bool WriteConCheck(const DataDir& dir, const ConCheckBoxes& boxes);

// The line of "Config/IgnoredIPs.cfg" as the user typed it; empty without a file.
QString ReadIgnoredIPsLine(const DataDir& dir);
bool WriteIgnoredIPsLine(const DataDir& dir, const QString& line);

// Switches off, with a message each, the boxes whose methods lack the
// service they need: NetworkManager for the Internet state and its LAN
// variant, ModemManager for TAPI. The IP method reads the kernel's
// addresses and needs nothing.
void CheckDlls(ConCheckBoxes& boxes, const BusServices& bus, Prompter& prompter);

// What a change on the panel does: the checks (none without a bus to ask),
// the flags of the running program, and the file. The boxes come back as
// they stand after the checks.
void SaveSettings(ConCheckBoxes& boxes, AppState& state, const DataDir& dir, const BusServices* bus,
                  Prompter& prompter);

// The checks once at start, for the methods read from the file: a method
// whose service is missing is off for this run, the file stays as it is.
void CheckServicesAtStart(AppState& state, const BusServices& bus, Prompter& prompter);

// Where no monitoring has been set up yet, the method this machine can use:
// NetworkManager's state where it runs, else the IP method with the
// machine's own loopback addresses ignored.
void PresetConCheck(const DataDir& dir, const BusServices& bus);

// The text of the panel's "Hinweise..." button.
QString IgnoredIPsHint();

}  // namespace minutor
