#include "history/RecordFilter.h"

#include "desk/OverviewFiles.h"

namespace minutor {

namespace {

bool ProviderAndTariffMatch(const RecordFilter& filter, const QString& file) {
  if (filter.provider == kAlle) {
    return true;
  }
  // p is the position of the first "-" counted from 1, as the names are cut
  // around it: "Foo - Bar.tel" has provider "Foo" and tariff "Bar".
  const qsizetype p = file.indexOf(QLatin1Char('-')) + 1;
  if (p < 2 || file.left(p - 2) != filter.provider) {
    return false;
  }
  if (filter.tariff == kAlle) {
    return true;
  }
  const QString extension = file.right(4).toLower();
  const bool kindMatches =
      (extension == QLatin1String(".atl") && filter.tariff.startsWith(QLatin1String("A "))) ||
      (extension == QLatin1String(".tel") && filter.tariff.startsWith(QLatin1String("M ")));
  const qsizetype length = file.size() - 5 - p;
  return kindMatches && length >= 0 && file.mid(p + 1, length) == filter.tariff.mid(4);
}

}  // namespace

bool RecordMatches(const RecordFilter& filter, const QString& tariffFile, const QString& user) {
  if (tariffFile.isEmpty() || user.isEmpty()) {
    return false;
  }
  if (filter.user != kAlle && filter.user.compare(user, filter.userCase) != 0) {
    return false;
  }
  return ProviderAndTariffMatch(filter, tariffFile);
}

QStringList GetUsers(const DataDir& dir) { return QStringList{kAlle} + GetUserNames(dir); }

}  // namespace minutor
