#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

namespace minutor {

class DataDir;

// The items of the list's period combo, in their order.
const QStringList& ListPeriodItems();

// Which records of the history a period of the list admits, by the date in
// their file names.
struct ListPeriod {
  int index = 0;  // position among ListPeriodItems()
  QDate today;
  QDate from;  // the custom period of "Definiert"
  QDate to;

  // The two month items compare the month alone, so the same month of every
  // earlier year passes too; a name without a valid date passes "Gesamt" only.
  bool Passes(const QDate& fileDate) const;
};

// The period of an item of the combo; "Definiert" takes its dates from
// Period.cfg. An unknown item gives index -1, which admits nothing.
ListPeriod MakeListPeriod(const DataDir& dir, const QString& item, const QDate& today);

// The first and last date of the custom period, lines 1 and 2 of
// Config/Period.cfg as the dialog's fields held them; invalid when missing.
QDate GetPeriodStart(const DataDir& dir);
QDate GetPeriodEnd(const DataDir& dir);
bool PeriodFileExists(const DataDir& dir);
bool WritePeriodFile(const DataDir& dir, const QString& from, const QString& to);

}  // namespace minutor
