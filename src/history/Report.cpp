#include "history/Report.h"

#include "frame/datadir/AnsiText.h"
#include "frame/datadir/NumberText.h"
#include "history/RecordDates.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace minutor {

namespace {

const QString kAll = QStringLiteral("[Alle]");
constexpr int kMinutesPerDay = 1440;
constexpr int kDayBegins = 8 * 60;
constexpr int kDayEnds = 20 * 60;

// February has 28 days here in every year: the averages were always taken so.
int MonthLength(int month) {
  switch (month) {
    case 2:
      return 28;
    case 4:
    case 6:
    case 9:
    case 11:
      return 30;
    default:
      return 31;
  }
}

void CountName(QList<NameCount>& table, const QByteArray& name) {
  for (NameCount& entry : table) {
    if (entry.name == name) {
      ++entry.count;
      return;
    }
  }
  table.append({name, 1});
}

// The first entry with the highest count, or nullptr for an empty table.
const NameCount* MostFrequent(const QList<NameCount>& table) {
  const NameCount* best = nullptr;
  for (const NameCount& entry : table) {
    if (best == nullptr || entry.count > best->count) {
      best = &entry;
    }
  }
  return best;
}

QString Found(const QString& lead, const NameCount& entry) {
  return lead + FromAnsi(entry.name) + QStringLiteral(" (") + QString::number(entry.count) +
         QStringLiteral(" Verbindungen)");
}

// A figure as the sentence prints it without decimals, read back as a number.
double Rounded(double value) { return FixedText(value, 0).toDouble(); }

QString UserClass(double minutesPerDay) {
  if (minutesPerDay > 200) return QStringLiteral("Powernutzer");
  if (minutesPerDay > 100) return QStringLiteral("Vielnutzer");
  if (minutesPerDay > 50) return QStringLiteral("Normalnutzer");
  if (minutesPerDay > 20) return QStringLiteral("Gelegenheitsnutzer");
  return QStringLiteral("Wenignutzer");
}

QString VolumeWord(double kbPerDay) {
  if (kbPerDay > 100000) return QStringLiteral("imensen");
  if (kbPerDay > 50000) return QStringLiteral("sehr großem");
  if (kbPerDay > 20000) return QStringLiteral("großem");
  if (kbPerDay > 4000) return QStringLiteral("normalen");
  if (kbPerDay > 1000) return QStringLiteral("geringem");
  return QStringLiteral("sehr geringem");
}

// A clock text "H:M:S" or "H:M" that is a time of day. A duration of a day
// or more isn't one. Read by hand: the history holds a hundred thousand.
std::optional<QTime> ReadClock(QByteArrayView text) {
  std::array<int, 3> parts{};
  int field = 0;
  int digits = 0;
  for (const char c : text.trimmed()) {
    if (c >= '0' && c <= '9' && digits < 2) {
      parts[static_cast<std::size_t>(field)] = parts[static_cast<std::size_t>(field)] * 10 + (c - '0');
      ++digits;
    } else if (c == ':' && digits > 0 && field < 2) {
      ++field;
      digits = 0;
    } else {
      return std::nullopt;
    }
  }
  if (field == 0 || digits == 0 || parts[0] > 23 || parts[1] > 59 || parts[2] > 59) {
    return std::nullopt;
  }
  return QTime(parts[0], parts[1], parts[2]);
}

QString TwoDigits(qint64 value) { return QStringLiteral("%1").arg(value, 2, 10, QLatin1Char('0')); }

}  // namespace

qint64 CountDayMinutes(const QTime& start, qint64 minutes) {
  if (minutes <= 0) {
    return 0;
  }
  // Every whole day holds twelve day hours; only the rest is walked.
  qint64 count = minutes / kMinutesPerDay * (kDayEnds - kDayBegins);
  const int first = start.hour() * 60 + start.minute();
  for (qint64 k = 1; k <= minutes % kMinutesPerDay; ++k) {
    const qint64 moment = (first + k) % kMinutesPerDay;
    if (moment >= kDayBegins && moment < kDayEnds) {
      ++count;
    }
  }
  return count;
}

int GetPeriodDays(const QString& period, const QDate& today, const QDate& earliest) {
  if (period == QLatin1String("Dieser Monat")) {
    return MonthLength(today.month());
  }
  if (period == QLatin1String("Letzter Monat")) {
    return MonthLength(BuildDate(today.year(), today.month() - 1, today.day()).month());
  }
  if (period == QLatin1String("Vorletzter Monat")) {
    return MonthLength(BuildDate(today.year(), today.month() - 2, today.day()).month());
  }
  if (period == QLatin1String("Dieses Jahr")) {
    return 365;
  }
  if (period == QLatin1String("Gesamt")) {
    const qint64 days = earliest.daysTo(today);
    return days > 0 ? static_cast<int>(days) : 7;
  }
  // "Letztes Jahr" stays at a week: the old program looked for a misspelt
  // item and never found it, and its figures for last year have always read so.
  return 7;
}

bool AddToReport(ReportTotals& totals, const QList<QByteArray>& fields) {
  // Lines 1 and 4 begin with a character of no meaning.
  if (fields.size() < 11 || fields[0].size() < 2 || fields[3].size() < 2 ||
      std::any_of(fields.begin(), fields.begin() + 11,
                  [](const QByteArray& line) { return line.isEmpty(); })) {
    return false;
  }
  const qint64 hours = qRound64(LeadingNumber(fields[2]));
  // A duration beyond a day's clock has no minutes or seconds to read.
  const std::optional<QTime> clock = ReadClock(fields[2]);
  const int minute = clock ? clock->minute() : 0;
  const int second = clock ? clock->second() : 0;
  const qint64 durMinutes = hours * 60 + minute;

  const std::optional<QTime> start = ReadClock(fields[1]);
  const qint64 day = start ? CountDayMinutes(*start, durMinutes) : 0;
  totals.dayMinutes += day;
  totals.nightMinutes += durMinutes - day;

  CountName(totals.entries, fields[8]);
  CountName(totals.tariffs, fields[9]);
  CountName(totals.users, fields[10]);
  totals.hours += hours;
  totals.minutes += minute;
  totals.seconds += second;
  totals.costSum += static_cast<double>(ParseBetrag(fields[3].mid(1)));
  totals.kbSum += LeadingNumber(fields[7]) / 1000;
  ++totals.connections;
  return true;
}

ReportTexts ReportSentences(const ReportTotals& totals, int days, const QString& userItem,
                            const QString& currency) {
  ReportTexts texts;
  std::array<QString, 11>& s = texts.sentences;
  const double m = totals.hours * 60.0 + totals.minutes + totals.seconds / 60.0;
  const qint64 mInt = totals.hours * 60 + totals.minutes + totals.seconds / 60;

  if (mInt > 0) {
    const qint64 p = totals.dayMinutes * 100 / mInt;
    if (totals.dayMinutes > totals.nightMinutes) {
      s[0] = QStringLiteral("Sie surfen mehr tagsüber als nachts (");
    } else if (totals.dayMinutes < totals.nightMinutes) {
      s[0] = QStringLiteral("Sie surfen mehr nachts als tagsüber (");
    } else {
      s[0] = QStringLiteral("Sie surfen ausgeglichen tags und nachts (");
    }
    s[0] += QString::number(p) + QStringLiteral("% zwischen 8 und 20 Uhr, ") + QString::number(100 - p) +
            QStringLiteral("% in der restlichen Zeit).");
  } else {
    s[0] = QStringLiteral("Eine Auswertung ist aufgrund unzureichender Daten nicht möglich.");
  }

  const NameCount* entry = MostFrequent(totals.entries);
  s[7] = entry != nullptr ? Found(QStringLiteral("Die meistgewählte DFÜ Verbindung ist: "), *entry)
                          : QStringLiteral("Die meistgewählte DFÜ Verbindung ist nicht ermittelbar.");
  const NameCount* tariff = MostFrequent(totals.tariffs);
  s[8] = tariff != nullptr ? Found(QStringLiteral("Der meistgenutzte Tarif lautet: "), *tariff)
                           : QStringLiteral("Der meistgenutzte Tarif ist nicht ermittelbar.");
  if (userItem != kAll) {
    s[9] = QStringLiteral("Stellen Sie als Benutzer \"") + kAll +
           QStringLiteral("\" ein um den aktivsten Benutzer zu ermitteln.");
  } else {
    const NameCount* user = MostFrequent(totals.users);
    s[9] = user != nullptr ? Found(QStringLiteral("Der aktivste Benutzer ist: "), *user)
                           : QStringLiteral("Der aktivste Benutzer ist nicht ermittelbar.");
  }

  const double n = static_cast<double>(std::max<qint64>(totals.connections, 1));
  const double weeks = days / 7.0;
  const QString c = QLatin1Char(' ') + currency + QLatin1Char('.');
  s[1] = QStringLiteral("Die durchschnittliche Verbindungsdauer liegt bei ") + FixedText(m / n, 0) +
         QStringLiteral(" Minuten.");
  s[2] = QStringLiteral("Pro Tag verbringen sie durchschnittlich ") + FixedText(m / days, 0) +
         QStringLiteral(" Minuten, pro Woche ") + FixedText(m / 60 / weeks, 1) +
         QStringLiteral(" Stunden im Internet.");
  s[3] = QStringLiteral("Die durchschnittlichen Verbindungskosten liegen bei ") +
         FixedText(totals.costSum / n, 2) + c;
  s[4] = QStringLiteral("Pro Tag geben Sie für die Internetnutzung durchschnittlich ") +
         FixedText(totals.costSum / days, 2) + QLatin1Char(' ') + currency +
         QStringLiteral(" aus, pro Woche ") + FixedText(totals.costSum / weeks, 2) + c;
  s[5] = QStringLiteral("Der durchschnittliche Transfer pro Verbindung beträgt ") +
         FixedText(totals.kbSum / n, 0) + QStringLiteral(" KB.");
  s[6] = QStringLiteral("Pro Tag ergibt sich ein Transfervolumen von durchschnittlich ") +
         FixedText(totals.kbSum / days, 0) + QStringLiteral(" KB, pro Woche ") +
         FixedText(totals.kbSum / 1000 / weeks, 0) + QStringLiteral(" MB.");

  if (n != 1) {
    s[10] = QStringLiteral("Das entspricht einem ") + UserClass(Rounded(m / days)) + QStringLiteral(" mit ") +
            VolumeWord(Rounded(totals.kbSum / days)) + QStringLiteral(" Datenaufkommen.");
  } else {
    s[10] = QStringLiteral("Eine Einschätzung ist aufgrund unzureichender Daten nicht möglich.");
  }

  const qint64 minutes = totals.minutes + totals.seconds / 60;
  const qint64 hours = totals.hours + minutes / 60;
  texts.dauer = TwoDigits(hours) + QLatin1Char(':') + TwoDigits(minutes % 60) + QLatin1Char(':') +
                TwoDigits(totals.seconds % 60);
  texts.kosten = FixedText(totals.costSum, 2) + QLatin1Char(' ') + currency;
  texts.transfer = FixedText(totals.kbSum, 0) + QStringLiteral(" KB");
  return texts;
}

}  // namespace minutor
