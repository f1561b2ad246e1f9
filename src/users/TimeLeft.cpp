#include "users/TimeLeft.h"

#include "frame/AppState.h"
#include "frame/datadir/AnsiText.h"
#include "frame/datadir/ClockText.h"
#include "frame/datadir/DataDir.h"
#include "metering/ConnectionRecord.h"

#include <algorithm>
#include <limits>

namespace minutor {

namespace {

qint32 Clamped(qint64 value) {
  return static_cast<qint32>(
      std::clamp<qint64>(value, std::numeric_limits<qint32>::min(), std::numeric_limits<qint32>::max()));
}

}  // namespace

TimeLeft ComputeTimeLeft(const DataDir& dir, const QString& user, qint32 dayMinutes, qint32 monthMinutes,
                         const QDate& today) {
  qint64 day = qint64{dayMinutes} * 60;
  qint64 month = qint64{monthMinutes} * 60;
  const QString dd = today.toString(QStringLiteral("dd"));
  const QString mm = today.toString(QStringLiteral("MM"));
  const QString yyyy = today.toString(QStringLiteral("yyyy"));
  const QString wanted = user.toLower();
  const QString folder = dir.Resolve(kRecordFolder) + QLatin1Char('/');
  for (const QString& name : dir.ListFiles(kRecordFolder, QStringLiteral("*.*"))) {
    const bool thisMonth = RecordNameMonth(name) == mm && RecordNameYear(name) == yyyy;
    const bool thisDay = RecordNameDay(name) == dd;
    if (!thisMonth && !thisDay) {
      continue;
    }
    const auto fields = ReadRecordFields(folder + name, 11);
    if (!fields || fields->isEmpty() || FromAnsi(fields->last()).toLower() != wanted) {
      continue;
    }
    const auto seconds = static_cast<qint64>(ClockTextSeconds(FromAnsi(fields->value(2))));
    if (thisMonth) {
      month -= seconds;
    }
    if (thisDay) {
      day -= seconds;
    }
  }
  return {Clamped(day), Clamped(month)};
}

bool GetTimeLeft(const DataDir& dir, AppState& state, const QDate& today) {
  const TimeLeft left =
      ComputeTimeLeft(dir, state.ActiveUser, state.DayLimitMinutes, state.MonthLimitMinutes, today);
  state.DaySecondsLeft = left.daySeconds;
  state.MonthSecondsLeft = left.monthSeconds;
  return left.Refused();
}

void GetTimeLimit(const DataDir& dir, AppState& state, const QDate& today) {
  state.DaySecondsLeft = ComputeTimeLeft(dir, state.ActiveUser, state.DayLimitMinutes, 0, today).daySeconds;
}

}  // namespace minutor
