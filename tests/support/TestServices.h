#pragma once

#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Services.h"
#include "support/RecordingPrompter.h"
#include "support/TempDataDir.h"

namespace minutor::test {

// What a rule or a panel needs to run in a test: an empty data directory,
// the program's values, a clock standing at a moment and a prompter that
// remembers what it was asked.
struct TestServices {
  // The program has chosen its user, as after the start.
  explicit TestServices(const QDateTime& now = QDateTime(QDate(2026, 11, 23), QTime(10, 0))) : clock(now) {
    state.ActiveUser = QStringLiteral("Supervisor");
  }

  TempDataDir data;
  AppState state;
  FixedClock clock;
  RecordingPrompter prompter;
  Services services{state, data.dir(), clock, prompter};
};

}  // namespace minutor::test
