#include "frame/datadir/TaxFile.h"

#include "frame/Prompter.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/NumberText.h"

#include <cmath>

namespace minutor {

namespace {

constexpr quint8 kDefaultTax = 16;
const QString kTaxFile = QStringLiteral("Tax.dat");

void WriteDefault(const DataDir& dir) { dir.WriteLines(kTaxFile, {PrintedNumber(kDefaultTax)}); }

}  // namespace

quint8 ReadTax(const DataDir& dir, Prompter& prompter) {
  if (!dir.FileExists(kTaxFile)) {
    WriteDefault(dir);
  }
  const auto lines = dir.ReadLines(kTaxFile);
  const double value = (lines && !lines->isEmpty()) ? std::round(LeadingNumber(lines->first())) : kDefaultTax;
  if (value < 0 || value > 100) {
    prompter.Message(
        QStringLiteral("Die Mehrwertsteuer muß in Prozent angegeben werden, darf also 0 nicht "
                       "unterschreiten und 100 nicht überschreiten (soweit sollte es ohnehin nie "
                       "kommen). Die Datei 'Tax.dat' im Minutor Verzeichnis wurde mit dem Wert 16 "
                       "korrigert. Bitte ändern Sie diese Datei gegebenfalls mit einem Texteditor ab."),
        Prompter::Icon::Information);
    WriteDefault(dir);
    return kDefaultTax;
  }
  return static_cast<quint8>(value);
}

}  // namespace minutor
