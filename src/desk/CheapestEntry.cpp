#include "desk/CheapestEntry.h"

#include "detection/RemoteAccess.h"
#include "frame/datadir/AnsiText.h"
#include "frame/datadir/NumberText.h"
#include "tariffs/RateLookup.h"

#include <QFileInfo>

namespace minutor {

namespace {

// Prices at or above this never name an entry.
constexpr double kNoPrice = 64000;

const QString kKeineZuordnung = QStringLiteral("[Keine Zuordnung]");

// The tariff file assigned to the entry, or "" when it has none.
QString AssignedTariff(const DataDir& dir, const QString& entry) {
  // A name that can't be a file name has no assignment.
  if (!IsUsableEntryName(entry)) {
    return {};
  }
  const QString relative = QStringLiteral("DialUp/") + entry + QStringLiteral(".trf");
  if (!dir.FileExists(relative) ||
      QFileInfo(dir.Resolve(relative)).fileName().toLower() != (entry + QStringLiteral(".trf")).toLower()) {
    return {};
  }
  const auto lines = dir.ReadLines(relative);
  if (!lines || lines->size() < 2) {
    return {};
  }
  const QString provider = FromAnsi(lines->at(0));
  const QString label = FromAnsi(lines->at(1));
  if (provider == kKeineZuordnung || label == kKeineZuordnung) {
    return {};
  }
  const QString extension =
      label.startsWith(QLatin1Char('A')) ? QStringLiteral(".atl") : QStringLiteral(".tel");
  return provider + label.mid(1) + extension;
}

}  // namespace

QString FindCheapestEntry(const DataDir& dir, const QStringList& entries, const QDateTime& moment,
                          bool feiertagAktiv, const QString& waehrung) {
  double best = kNoPrice;
  QString result;
  for (const QString& entry : entries) {
    const QString file = AssignedTariff(dir, entry);
    if (file.isEmpty()) {
      continue;
    }
    const double price = GetTarifPreis(dir, file, moment, feiertagAktiv);
    if (price < best) {
      best = price;
      result = entry + QStringLiteral(" (") + FixedText(price / 100.0, 3) + QLatin1Char(' ') + waehrung +
               QLatin1Char(')');
    }
  }
  return result;
}

QString CheapestEntryText(const DataDir& dir, const QStringList& entries, const QDateTime& moment,
                          bool feiertagAktiv, const QString& waehrung) {
  const QString found = FindCheapestEntry(dir, entries, moment, feiertagAktiv, waehrung);
  return found.isEmpty() ? QStringLiteral("unbekannt (keine Tarife zugewiesen)") : found;
}

}  // namespace minutor
