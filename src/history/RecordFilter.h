#pragma once

#include <QString>
#include <QStringList>

namespace minutor {

class DataDir;

// The first item of every filter combo of the history panels.
inline const QString kAlle = QStringLiteral("[Alle]");

// The user, provider and tariff filters of the history panels, as their
// combos read: the provider's name, the tariff's label ("M - Tag und
// Nacht") and the user's name, each "[Alle]" for no filter.
struct RecordFilter {
  QString user = kAlle;
  QString provider = kAlle;
  QString tariff = kAlle;
  // The list compares the user exactly, the chart without case.
  Qt::CaseSensitivity userCase = Qt::CaseSensitive;
};

// True when a record of this tariff file and user passes the filter; false
// when either is empty. The provider is the record's tariff file name before
// its first "-" less the blank, so a provider whose name holds a "-" never
// matches; with provider "[Alle]" the tariff choice has no effect.
bool RecordMatches(const RecordFilter& filter, const QString& tariffFile, const QString& user);

// The items of a user filter combo: "[Alle]", then one per Benutzer/*.usr.
QStringList GetUsers(const DataDir& dir);

}  // namespace minutor
