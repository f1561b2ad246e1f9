#include "history/ConnectionList.h"

#include "frame/datadir/AnsiText.h"
#include "frame/datadir/ClockText.h"
#include "frame/datadir/NumberText.h"

#include <algorithm>
#include <cmath>

namespace minutor {

namespace {

QString TwoDigits(qint64 value) { return QStringLiteral("%1").arg(value, 2, 10, QLatin1Char('0')); }

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool AllDigits(QByteArrayView text) { return std::all_of(text.begin(), text.end(), IsDigit); }

// The numeric value of a line as the grid shows it. The common case, a whole
// number without leading zeros, is its own text; only the rest goes through
// the number conversion.
void AppendNumber(QString& text, const QByteArray& line) {
  if (!line.isEmpty() && line.size() < 16 && AllDigits(line) && (line.size() == 1 || line[0] != '0')) {
    text.append(QLatin1String(line));
  } else {
    text.append(GeneralText(LeadingNumber(line)));
  }
}

// The cost of a record ("1,23" or "1.23" mostly) as ParseBetrag reads it,
// without its detour through the number text where the result is the same.
float Betrag(const QByteArray& text) {
  const qsizetype comma = text.indexOf(',');
  const qsizetype point = text.indexOf('.');
  const QByteArrayView whole(text.constData(), comma < 0 ? text.size() : comma);
  if (point < 0 && !whole.isEmpty() && whole.size() < 15 && AllDigits(whole) &&
      (comma < 0 || AllDigits(QByteArrayView(text).sliced(comma + 1)))) {
    QByteArray plain = text;
    if (comma >= 0) {
      plain[comma] = '.';
    }
    return static_cast<float>(LeadingNumber(plain));
  }
  return ParseBetrag(text);
}

// A duration already in the form "HH:MM:SS" stays as it is; anything else is
// normalised.
void AppendDuration(QString& text, const QByteArray& duration) {
  const qsizetype size = duration.size();
  const bool normal =
      size >= 8 && duration[size - 3] == ':' && duration[size - 6] == ':' && duration[size - 2] <= '5' &&
      duration[size - 5] <= '5' && AllDigits(QByteArrayView(duration).first(size - 6)) &&
      AllDigits(QByteArrayView(duration).sliced(size - 5, 2)) &&
      AllDigits(QByteArrayView(duration).sliced(size - 2)) && (size == 8 || duration[0] != '0');
  if (normal) {
    text.append(QLatin1String(duration));
  } else {
    text.append(NormalizeTime(FromAnsi(duration)));
  }
}

// Year, month and day of the date column as eight digits, so that the date
// sorts as a number.
void AppendSortDate(QString& text, QByteArrayView date) {
  if (date.size() == 10 && date[2] == '.' && date[5] == '.' && AllDigits(date.first(2)) &&
      AllDigits(date.sliced(3, 2)) && AllDigits(date.sliced(6))) {
    text.append(QLatin1String(date.sliced(6, 4)));
    text.append(QLatin1String(date.sliced(3, 2)));
    text.append(QLatin1String(date.first(2)));
    return;
  }
  const QDate d = ParseShortDate(FromAnsi(date.toByteArray()));
  text.append(d.isValid() ? d.toString(QStringLiteral("yyyyMMdd")) : QStringLiteral("0"));
}

// The amount with three decimals and the locale's decimal sign, which is
// looked up once for the whole list.
// `shown` is the value of that text, which the total adds up.
QString CostText(float cost, QChar decimalSign, float* shown) {
  if (!(cost >= 0) || !std::isfinite(cost)) {
    const QString text = FixedText(static_cast<double>(cost), 3);
    *shown = ParseBetrag(text);
    return text;
  }
  QString text = QString::number(static_cast<double>(cost), 'f', 3);
  *shown = static_cast<float>(LeadingNumber(text));
  text.replace(QLatin1Char('.'), decimalSign);
  return text;
}

struct Sums {
  qint64 hours = 0;
  qint64 minutes = 0;
  qint64 seconds = 0;
  float cost = 0;
};

// The parts of a normalised clock text "H:MM:SS".
void AddDuration(QStringView duration, Sums& sums) {
  const qsizetype first = duration.indexOf(QLatin1Char(':'));
  const qsizetype second = first < 0 ? -1 : duration.indexOf(QLatin1Char(':'), first + 1);
  sums.hours += static_cast<qint64>(LeadingNumber(first < 0 ? duration : duration.first(first)));
  sums.minutes += first < 0 ? 0 : static_cast<qint64>(LeadingNumber(duration.sliced(first + 1)));
  sums.seconds += second < 0 ? 0 : static_cast<qint64>(LeadingNumber(duration.sliced(second + 1)));
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

QStringList ListRow::Cells(int last) const {
  QStringList cells;
  for (int column = kColumnDatum; column <= last; ++column) {
    cells.append(Cell(column).toString());
  }
  return cells;
}

ListResult GetConnections(const DataDir& dir, const ListQuery& query, const std::atomic<bool>* cancel) {
  ListResult result;
  Sums sums;
  const QChar decimalSign = DecimalSign();
  const bool everything =
      query.filter.user == kAlle && query.filter.provider == kAlle && query.filter.tariff == kAlle;
  const auto wanted = [&](const QString&, const QDate& date) { return query.period.Passes(date); };
  const auto take = [&](const RecordFile& record) {
    for (int line = 1; line <= 11; ++line) {
      if (record.Line(line).isEmpty()) {
        return;
      }
    }
    const QByteArray tariffFile = record.Line(10);
    if (!everything && !RecordMatches(query.filter, FromAnsi(tariffFile), FromAnsi(record.Line(11)))) {
      return;
    }
    ListRow row;
    row.text.reserve(160);
    size_t cell = 0;
    const auto endCell = [&] { row.ends[cell++] = static_cast<int>(row.text.size()); };
    const QByteArray line1 = record.Line(1);
    const QByteArrayView date = QByteArrayView(line1).sliced(1);
    AppendAnsi(row.text, date);
    endCell();
    AppendAnsi(row.text, record.Line(2));
    endCell();
    AppendDuration(row.text, record.Line(3));
    endCell();
    AddDuration(row.Cell(kColumnDauer), sums);

    float cost = Betrag(record.Line(4).mid(1));
    if (query.tax) {
      cost = cost * static_cast<float>(100 - *query.tax) / 100.0F;
    }
    float shown = 0;
    const QString costText = CostText(cost, decimalSign, &shown);
    sums.cost += shown;
    row.text.append(costText);
    endCell();
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
    for (int line = 5; line <= 8; ++line) {
      AppendNumber(row.text, record.Line(line));
      endCell();
    }
    AppendAnsi(row.text, record.Line(9));
    endCell();
    AppendAnsi(row.text, QByteArrayView(tariffFile).first(std::max<qsizetype>(0, tariffFile.size() - 4)));
    endCell();
    AppendAnsi(row.text, record.Line(11));
    endCell();
    AppendAnsi(row.text, record.Line(12));
    endCell();
    row.text.append(record.name);
    endCell();
    AppendSortDate(row.text, date);
    endCell();
    result.rows.append(std::move(row));
  };
  result.walk = WalkRecords(dir, wanted, take, cancel, query.colouring.category == 3);

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
