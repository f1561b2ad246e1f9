#pragma once

#include <QString>

namespace minutor {

class DataDir;
struct AppState;

// The currency sign of a position in the currency list; "€" for anything
// outside 1 to 11.
QString CurrencySign(int number);

// Sets state.Waehrung from a position in the currency list.
void SetCurrency(AppState& state, int number);

// Reads "Config/Options.cfg" into the state. Missing lines read as empty and
// leave their values off; the currency falls back on "€".
void LoadOptions(const DataDir& dir, AppState& state);

}  // namespace minutor
