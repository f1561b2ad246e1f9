#include "frame/Options.h"

#include "frame/AppState.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/NumberText.h"

#include <array>

namespace minutor {

QString CurrencySign(int number) {
  static const std::array<QString, 12> signs = {
      QStringLiteral("€"),   QStringLiteral("sFr"), QStringLiteral("$"),   QStringLiteral("£"),
      QStringLiteral("F"),   QStringLiteral("trL"), QStringLiteral("dkK"), QStringLiteral("noK"),
      QStringLiteral("plZ"), QStringLiteral("seK"), QStringLiteral("zaR"), QStringLiteral("chK")};
  if (number < 1 || number > 11) {
    return signs[0];
  }
  return signs[static_cast<std::size_t>(number)];
}

void SetCurrency(AppState& state, int number) { state.Waehrung = CurrencySign(number); }

void LoadOptions(const DataDir& dir, AppState& state) {
  if (const auto lines = dir.ReadLines(QStringLiteral("Config/Options.cfg"))) {
    auto line = [&](qsizetype i) { return i < lines->size() ? lines->at(i) : QByteArray(); };
    const double currency = LeadingNumber(line(0));
    SetCurrency(state, currency >= -1e9 && currency <= 1e9 ? static_cast<int>(currency) : 0);
    state.SamePrograms = IsOne(line(1));
    state.HideToTray = IsOne(line(2));
    state.StartMinimized = IsOne(line(3));
    // Line 5, start with the desktop session, is the autostart file's business.
    state.OnlyMarkedEntries = IsOne(line(5));
  }
  if (state.Waehrung.isEmpty()) {
    state.Waehrung = QStringLiteral("€");
  }
}

}  // namespace minutor
