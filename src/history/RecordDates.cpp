#include "history/RecordDates.h"

namespace minutor {

QDate BuildDate(int year, int month, int day) {
  return QDate(year, 1, 1).addMonths(month - 1).addDays(day - 1);
}

QDate GetRecordFileDate(const QString& fileName) {
  const QStringView stem = QStringView(fileName).left(fileName.indexOf(QLatin1Char('-')));
  if (stem.size() < 5) {
    return {};
  }
  bool dayOk = false;
  bool monthOk = false;
  bool yearOk = false;
  const int day = stem.left(2).toInt(&dayOk);
  const int month = stem.mid(2, 2).toInt(&monthOk);
  const int year = stem.mid(4).toInt(&yearOk);
  if (!dayOk || !monthOk || !yearOk) {
    return {};
  }
  return QDate(year, month, day);
}

}  // namespace minutor
