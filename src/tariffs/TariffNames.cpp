#include "tariffs/TariffNames.h"

namespace minutor {

namespace {

// The three letters that make a file a tariff; "" for any other.
QString Extension(const QString& file) { return file.right(3).toLower(); }

// The name without its extension. Only ".tel" and ".atl" files are tariffs,
// so the extension is always the last four characters.
QString WithoutExtension(const QString& name) { return name.left(qMax<qsizetype>(0, name.size() - 4)); }

}  // namespace

std::optional<QString> GetAnbieter(const QString& file) {
  const qsizetype dash = file.indexOf(QStringLiteral(" -"));
  if (dash < 0) {
    return std::nullopt;
  }
  return file.left(dash);
}

QString GetTarifname(const QString& file) {
  const auto anbieter = GetAnbieter(file);
  if (!anbieter) {
    return WithoutExtension(file);
  }
  return WithoutExtension(file.mid(anbieter->size() + 3));
}

TarifHerkunft GetHerkunft(const QString& file) {
  return Extension(file) == QLatin1String("atl") ? TarifHerkunft::Automatisch : TarifHerkunft::Manuell;
}

QString TarifLabel(const QString& anbieter, const QString& file) {
  const QString extension = Extension(file);
  QString letter;
  if (extension == QLatin1String("tel")) {
    letter = QStringLiteral("M");
  } else if (extension == QLatin1String("atl")) {
    letter = QStringLiteral("A");
  } else {
    return {};
  }
  return letter + WithoutExtension(file.mid(anbieter.size()));
}

QString GetTarifDatei(const QString& anbieter, const QString& label) {
  if (label.startsWith(QLatin1Char('A'))) {
    return anbieter + label.mid(1) + QStringLiteral(".atl");
  }
  if (label.startsWith(QLatin1Char('M'))) {
    return anbieter + label.mid(1) + QStringLiteral(".tel");
  }
  return {};
}

QStringList GetAnbieterListe(const DataDir& dir) {
  QStringList providers;
  for (const QString& file : dir.ListFiles(QStringLiteral("Tarife"))) {
    const auto anbieter = GetAnbieter(file);
    if (anbieter && !providers.contains(*anbieter)) {
      providers.append(*anbieter);
    }
  }
  return providers;
}

QList<TarifEintrag> GetTarifListe(const DataDir& dir, const QString& anbieter) {
  QList<TarifEintrag> entries;
  // Compared by hand rather than through a wildcard, so that a bracket in a
  // provider's name is no pattern.
  for (const QString& file : dir.ListFiles(QStringLiteral("Tarife"))) {
    if (!file.startsWith(anbieter, Qt::CaseInsensitive)) {
      continue;
    }
    const QString label = TarifLabel(anbieter, file);
    if (!label.isEmpty()) {
      entries.append({file, label, GetHerkunft(file)});
    }
  }
  return entries;
}

}  // namespace minutor
