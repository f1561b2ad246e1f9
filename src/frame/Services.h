#pragma once

namespace minutor {

class Clock;
class DataDir;
class Prompter;
struct AppState;

// What every panel and rule of the running program works with. The
// application owns the parts; a test builds its own.
struct Services {
  AppState& state;
  const DataDir& dir;
  const Clock& clock;
  Prompter& prompter;
};

}  // namespace minutor
