#pragma once

#include <QDate>
#include <QString>
#include <QtGlobal>

namespace minutor {

class DataDir;
struct AppState;

// The seconds of the day's and the month's allowance that `user` has left
// on `today`. A record counts against the month when its name holds today's
// month and year, and against the day when it holds today's day of the
// month, whatever its month: a long history leaves less time on each day.
// The user is compared without case.
struct TimeLeft {
  qint32 daySeconds = 0;
  qint32 monthSeconds = 0;

  // Dialling is refused below 61 seconds of either, limits on or not.
  bool Refused() const { return daySeconds < 61 || monthSeconds < 61; }
};
TimeLeft ComputeTimeLeft(const DataDir& dir, const QString& user, qint32 dayMinutes, qint32 monthMinutes,
                         const QDate& today);

// GetTimeLeft: both values into the program's state for its active user;
// true when dialling is refused.
bool GetTimeLeft(const DataDir& dir, AppState& state, const QDate& today);

// GetTimeLimit: the day's value only.
void GetTimeLimit(const DataDir& dir, AppState& state, const QDate& today);

}  // namespace minutor
