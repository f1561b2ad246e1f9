#include "users/TimeLeft.h"

#include "frame/AppState.h"
#include "frame/datadir/AnsiText.h"
#include "frame/datadir/ClockText.h"
#include "frame/datadir/DataDir.h"
#include "metering/ConnectionRecord.h"
#include "users/RecordScan.h"

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
  const QByteArray dd = today.toString(QStringLiteral("dd")).toLatin1();
  const QByteArray monthYear = today.toString(QStringLiteral("MMyyyy")).toLatin1();
  const QString wanted = user.toLower();
  auto isThisMonth = [&](QByteArrayView name) { return name.size() >= 8 && name.sliced(2, 6) == monthYear; };
  auto isThisDay = [&](QByteArrayView name) { return name.size() >= 8 && name.first(2) == dd; };
  auto counts = [&](QByteArrayView name) {
    return name.contains('.') && (isThisMonth(name) || isThisDay(name));
  };
  ScanRecords(dir, counts, [&](const QString& path, QByteArrayView name) {
    // The duration and the user, lines 3 and 11 (or the last line of a short
    // record).
    auto fields = ReadRecordFields(path, 11, 1u << 2 | 1u << 10);
    if (fields && !fields->isEmpty() && fields->size() < 11) {
      fields = ReadRecordFields(path, 11);
    }
    if (!fields || fields->isEmpty() || FromAnsi(fields->last()).toLower() != wanted) {
      return;
    }
    const auto seconds = static_cast<qint64>(ClockTextSeconds(FromAnsi(fields->value(2))));
    if (isThisMonth(name)) {
      month -= seconds;
    }
    if (isThisDay(name)) {
      day -= seconds;
    }
  });
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
