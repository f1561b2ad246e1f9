#include "metering/Prerun.h"

#include "frame/datadir/AnsiText.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/Names.h"
#include "frame/datadir/NumberText.h"

namespace minutor {

namespace {

const QString kFolder = QStringLiteral("Prerun");

QString PrerunFile(const QString& tariff) {
  return kFolder + QLatin1Char('/') + tariff.chopped(qMin<qsizetype>(4, tariff.size())) +
         QStringLiteral(".dat");
}

}  // namespace

float LoadPrerun(const DataDir& dir, const QString& tariff) {
  const QString file = PrerunFile(tariff);
  if (!IsSafeFileName(tariff) || !dir.FileExists(file)) {
    return 0.0f;
  }
  const auto lines = dir.ReadLines(file);
  if (!lines || lines->isEmpty()) {
    return 0.0f;
  }
  return ParseBetrag(lines->first());
}

void SavePrerun(const DataDir& dir, const QString& tariff, float einheitRest) {
  // Printed as a single float: a blank for the sign, the number, a blank.
  QByteArray line = ToAnsi(GeneralText(einheitRest));
  if (!(einheitRest < 0)) {
    line.prepend(' ');
  }
  line.append(' ');
  if (!IsSafeFileName(tariff)) {
    return;
  }
  dir.MakeDir(kFolder);
  dir.WriteLines(PrerunFile(tariff), {line});
}

}  // namespace minutor
