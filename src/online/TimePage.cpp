#include "online/TimePage.h"

#include "frame/datadir/DataDir.h"
#include "frame/datadir/NumberText.h"

#include <cmath>

namespace minutor {

namespace {

int MonthNumber(const QByteArray& name) {
  static const char* const kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                        "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  for (int i = 0; i < 12; ++i) {
    if (name == kMonths[i]) {
      return i + 1;
    }
  }
  return 12;
}

}  // namespace

std::optional<Zeitkorrektur> ParseZeitseite(const QByteArray& page, qint64 biasSeconds) {
  const QList<QByteArray> lines = SplitLines(page);
  if (lines.isEmpty()) {
    return std::nullopt;
  }
  const QByteArray& line = lines.last();
  const qsizetype zone = line.indexOf("Current Timezone:");
  const qsizetype pos = zone < 0 ? -1 : line.indexOf("<H2>", zone);
  if (pos < 0 || line.size() < pos + 40) {
    return std::nullopt;
  }
  auto field = [&](qsizetype offset, qsizetype length) { return line.mid(pos + offset, length); };
  const int month = MonthNumber(field(8, 3));
  const auto day = static_cast<int>(LeadingNumber(field(12, 2)));
  const auto hour = static_cast<qint64>(LeadingNumber(field(15, 2)));
  const auto minute = static_cast<qint64>(LeadingNumber(field(18, 2)));
  const auto second = static_cast<qint64>(LeadingNumber(field(21, 2)));
  const auto year = static_cast<int>(LeadingNumber(field(28, 4)));
  if (day <= 0 || year <= 0) {
    return std::nullopt;
  }
  const qint64 minutes = minute + biasSeconds / 60;
  constexpr qint64 kDay = 24 * 3600;
  const qint64 seconds = ((hour * 3600 + minutes * 60 + second) % kDay + kDay) % kDay;
  // Day 31 of a 30-day month runs on into the next, as a date built of
  // its parts does.
  const QDate date = QDate(year, month, 1).addDays(day - 1);
  if (!date.isValid()) {
    return std::nullopt;
  }
  return Zeitkorrektur{date, QTime(0, 0).addSecs(static_cast<int>(seconds))};
}

}  // namespace minutor
