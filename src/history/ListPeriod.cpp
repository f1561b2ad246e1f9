#include "history/ListPeriod.h"

#include "frame/datadir/AnsiText.h"
#include "frame/datadir/ClockText.h"
#include "frame/datadir/DataDir.h"
#include "history/RecordDates.h"

namespace minutor {

namespace {

const QString kPeriodFile = QStringLiteral("Config/Period.cfg");

enum Item {
  Gesamt,
  DieserMonat,
  LetzterMonat,
  VorletzterMonat,
  Heute,
  Gestern,
  Vorgestern,
  DiesesJahr,
  LetztesJahr,
  Definiert
};

QDate PeriodLine(const DataDir& dir, int line) {
  const auto lines = dir.ReadLines(kPeriodFile);
  if (!lines || lines->size() <= line) {
    return {};
  }
  return ParseShortDate(FromAnsi(lines->at(line)));
}

}  // namespace

const QStringList& ListPeriodItems() {
  static const QStringList items = {QStringLiteral("Gesamt"),        QStringLiteral("Dieser Monat"),
                                    QStringLiteral("Letzter Monat"), QStringLiteral("Vorletzter Monat"),
                                    QStringLiteral("Heute"),         QStringLiteral("Gestern"),
                                    QStringLiteral("Vorgestern"),    QStringLiteral("Dieses Jahr"),
                                    QStringLiteral("Letztes Jahr"),  QStringLiteral("Definiert")};
  return items;
}

bool ListPeriod::Passes(const QDate& d) const {
  if (index == Gesamt) {
    return true;
  }
  if (!d.isValid() || !today.isValid()) {
    return false;
  }
  const int y = today.year();
  const int m = today.month();
  const int t = today.day();
  switch (index) {
    case Heute:
      return d == today;
    case Gestern:
      return d == BuildDate(y, m, t - 1);
    case Vorgestern:
      return d == BuildDate(y, m, t - 2);
    case DieserMonat:
      return d.month() == m && d.year() == y;
    case LetzterMonat:
      return d.month() == BuildDate(y, m - 1, t).month();
    case VorletzterMonat:
      return d.month() == BuildDate(y, m - 2, t).month();
    case DiesesJahr:
      return d.year() == y;
    case LetztesJahr:
      return d.year() == BuildDate(y - 1, m, t).year();
    case Definiert:
      return from.isValid() && to.isValid() && d >= from && d <= to;
    default:
      return false;
  }
}

ListPeriod MakeListPeriod(const DataDir& dir, const QString& item, const QDate& today) {
  ListPeriod period;
  period.index = static_cast<int>(ListPeriodItems().indexOf(item));
  period.today = today;
  if (period.index == Definiert) {
    period.from = GetPeriodStart(dir);
    period.to = GetPeriodEnd(dir);
  }
  return period;
}

QDate GetPeriodStart(const DataDir& dir) { return PeriodLine(dir, 0); }

QDate GetPeriodEnd(const DataDir& dir) { return PeriodLine(dir, 1); }

bool PeriodFileExists(const DataDir& dir) { return dir.FileExists(kPeriodFile); }

bool WritePeriodFile(const DataDir& dir, const QString& from, const QString& to) {
  return dir.WriteLines(kPeriodFile, {ToAnsi(from), ToAnsi(to)});
}

}  // namespace minutor
