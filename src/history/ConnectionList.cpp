#include "history/ConnectionList.h"

#include "frame/datadir/AnsiText.h"
#include "frame/datadir/ClockText.h"
#include "frame/datadir/NumberText.h"

namespace minutor {

namespace {

QString TwoDigits(qint64 value) { return QStringLiteral("%1").arg(value, 2, 10, QLatin1Char('0')); }

QString NumberCell(const QByteArray& line) { return GeneralText(LeadingNumber(line)); }

// Year, month and day of the date column as eight digits, so that the date
// sorts as a number.
QString SortDate(const QString& date) {
  const QDate d = ParseShortDate(date);
  return d.isValid() ? d.toString(QStringLiteral("yyyyMMdd")) : QStringLiteral("0");
}

struct Sums {
  qint64 hours = 0;
  qint64 minutes = 0;
  qint64 seconds = 0;
  float cost = 0;
};

// The parts of a normalised clock text "H:MM:SS".
void AddDuration(const QString& duration, Sums& sums) {
  const QStringList parts = duration.split(QLatin1Char(':'));
  sums.hours += static_cast<qint64>(LeadingNumber(parts.value(0)));
  sums.minutes += static_cast<qint64>(LeadingNumber(parts.value(1)));
  sums.seconds += static_cast<qint64>(LeadingNumber(parts.value(2)));
}

}  // namespace

const QStringList& ListColumnHeaders() {
  static const QStringList headers = {
      QString(),
      QStringLiteral("Datum"),
      QStringLiteral("Startzeit"),
      QStringLiteral("Dauer"),
      QStringLiteral("Kosten"),
      QStringLiteral("Einheiten"),
      QStringLiteral("Empfangen"),
      QStringLiteral("Gesendet"),
      QStringLiteral("Gesamt"),
      QStringLiteral("DFÜ"),
      QStringLiteral("Tarif"),
      QStringLiteral("Benutzer"),
      QStringLiteral("Kommentar"),
  };
  return headers;
}

int ListColumnWidth(int column) {
  static constexpr int kWidths[] = {20, 60, 50, 50, 50, 60, 70, 70, 70, 60, 80, 80, 200};
  return column >= 1 && column <= 13 ? kWidths[column - 1] : 0;
}

ListResult GetConnections(const DataDir& dir, const ListQuery& query, const std::atomic<bool>* cancel) {
  ListResult result;
  Sums sums;
  const auto wanted = [&](const QString&, const QDate& date) { return query.period.Passes(date); };
  const auto take = [&](const RecordFile& record) {
    for (int line = 1; line <= 11; ++line) {
      if (record.Line(line).isEmpty()) {
        return;
      }
    }
    const QString tariffFile = FromAnsi(record.Line(10));
    if (!RecordMatches(query.filter, tariffFile, FromAnsi(record.Line(11)))) {
      return;
    }
    ListRow row;
    row.cells.reserve(kColumnSortDatum - kColumnDatum + 1);
    const QString date = FromAnsi(record.Line(1).mid(1));
    const QString duration = NormalizeTime(FromAnsi(record.Line(3)));
    AddDuration(duration, sums);

    float cost = ParseBetrag(record.Line(4).mid(1));
    if (query.tax) {
      cost = cost * static_cast<float>(100 - *query.tax) / 100.0F;
    }
    const QString costText = FixedText(static_cast<double>(cost), 3);
    sums.cost += ParseBetrag(costText);

    switch (query.colouring.category) {
      case 1:
        row.icon = DifferenceIcon(query.colouring, ToAnsi(costText));
        break;
      case 3:
        row.icon = DifferenceIcon(query.colouring, record.cipher.value(7));
        break;
      default:
        row.icon = 0;
    }
    row.cells << date << FromAnsi(record.Line(2)) << duration << costText << NumberCell(record.Line(5))
              << NumberCell(record.Line(6)) << NumberCell(record.Line(7)) << NumberCell(record.Line(8))
              << FromAnsi(record.Line(9)) << tariffFile.left(tariffFile.size() - 4)
              << FromAnsi(record.Line(11)) << FromAnsi(record.Line(12)) << record.name << SortDate(date);
    result.rows.append(std::move(row));
  };
  result.walk = WalkRecords(dir, wanted, take, cancel);

  sums.minutes += sums.seconds / 60;
  sums.hours += sums.minutes / 60;
  sums.seconds %= 60;
  sums.minutes %= 60;
  result.totalDuration = TwoDigits(sums.hours) + QLatin1Char(':') + TwoDigits(sums.minutes) +
                         QLatin1Char(':') + TwoDigits(sums.seconds);
  result.totalCost = FixedText(static_cast<double>(sums.cost), 2) + QLatin1Char(' ') + query.waehrung;
  return result;
}

}  // namespace minutor
