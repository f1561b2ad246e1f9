#include "tariffs/EditorRules.h"

#include "frame/datadir/Names.h"
#include "frame/datadir/NumberText.h"
#include "tariffs/TariffFile.h"
#include "tariffs/TariffLines.h"

#include <cmath>

namespace minutor {

namespace {

double WholePart(QStringView text) { return std::floor(LeadingNumber(text)); }

QString TwoDigits(int hour) { return QStringLiteral("%1").arg(hour, 2, 10, QLatin1Char('0')); }

}  // namespace

QString BereinigeBetrag(QStringView text) { return GeneralText(ParseBetrag(text)); }

QString BereinigeGanzzahl(QStringView text) { return GeneralText(WholePart(text)); }

QString BereinigeTakt(QStringView text) {
  const auto slash = text.indexOf(QLatin1Char('/'));
  if (slash < 0) {
    const double first = LeadingNumber(text);
    return first == 0 ? QStringLiteral("60 / 60") : GeneralText(first) + QStringLiteral(" / 60");
  }
  const double first = WholePart(text.left(slash));
  const double rest = WholePart(text.mid(slash + 1));
  if (first == 0) {
    return QStringLiteral("60 / 60");
  }
  return GeneralText(first) + QStringLiteral(" / ") + (rest == 0 ? QStringLiteral("60") : GeneralText(rest));
}

QString ZonenEintrag(int von, int bis, const QString& kosten, bool wochenende) {
  return QStringLiteral("Von: ") + TwoDigits(von) + QStringLiteral(" Bis: ") + TwoDigits(bis) +
         QStringLiteral(" Kosten: ") + kosten +
         (wochenende ? QStringLiteral(" Wochenende") : QStringLiteral(" Werktag"));
}

Tarifzone ZoneAusEintrag(const QString& eintrag) {
  Tarifzone zone;
  zone.Von = RoundToByte(LeadingNumber(QStringView(eintrag).mid(5, 2)));
  zone.Bis = RoundToByte(LeadingNumber(QStringView(eintrag).mid(13, 2)));
  zone.Pfennig = PfennigAusBetrag(QStringView(eintrag).mid(24));
  zone.Wochenende = eintrag.endsWith(QLatin1String("Wochenende"));
  return zone;
}

QString TarifFehler(const QString& anbieter, const QString& tarifname, const QStringList& zonen,
                    bool volumenabrechnung) {
  if (anbieter.isEmpty() || tarifname.isEmpty() || !IsValidName(anbieter) || !IsValidName(tarifname)) {
    return QStringLiteral(
        "Der Anbieter- und Tarifname ist unvollständig oder enthält ungültige Zeichen. Beide Felder dürfen "
        "250 "
        "Zeichen nicht überschreiten.");
  }
  if (!volumenabrechnung && !zonen.isEmpty()) {
    for (const QString& zone : zonen) {
      if (zone.endsWith(QLatin1String("Wochenende"))) {
        return {};
      }
    }
    return QStringLiteral(
        "Es ist kein Tarif für das Wochenende angegeben. Bitte geben Sie ebenfalls die Wochenendtarife an, "
        "auch "
        "wenn diese identisch zu den Werktagstarifen sind.");
  }
  return {};
}

}  // namespace minutor
