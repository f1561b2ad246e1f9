#pragma once

#include <QString>

namespace minutor {

// How the warnings of a budget or a time limit reach the user: the sound,
// the warning box and the box that counts down to the cut. The program shows
// real boxes; a simulated run writes them into its trace.
class AlarmOutput {
 public:
  virtual ~AlarmOutput() = default;
  // A budget of this kind was crossed; the warnings asked for follow.
  virtual void BudgetCrossed(int /*kind*/) {}
  // Plays a wave file to its end; silence when it can't be played.
  virtual void PlaySound(const QString& path) = 0;
  // "Budgetüberschreitung!" for a budget kind: 1 day, 2 month, 3 the period.
  virtual void ShowAlert(int kind) = 0;
  // "Verbindungstrennung!": two minutes, then the line is cut. A box that
  // counts already goes on counting.
  virtual void ShowConStop() = 0;
};

}  // namespace minutor
