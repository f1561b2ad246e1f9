#include "history/ChartSettings.h"

#include "frame/datadir/AnsiText.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/NumberText.h"

namespace minutor {

namespace {

const QString kFile = QStringLiteral("Config/Chart.cfg");

int Number(const QByteArray& line) { return static_cast<int>(LeadingNumber(line)); }

}  // namespace

ChartSettings ChartSettings::Load(const DataDir& dir) {
  ChartSettings settings;
  const QList<QByteArray> lines = dir.ReadLines(kFile).value_or(QList<QByteArray>{});
  const auto has = [&](int line) { return lines.size() >= line; };
  if (has(1)) settings.monthIndex = Number(lines[0]);
  if (has(2)) settings.yearIndex = Number(lines[1]);
  if (has(3)) settings.user = FromAnsi(lines[2]).trimmed();
  if (has(4)) settings.provider = FromAnsi(lines[3]).trimmed();
  if (has(5)) settings.tariff = FromAnsi(lines[4]).trimmed();
  if (has(6)) settings.measure = Number(lines[5]);
  if (has(7)) settings.style = Number(lines[6]);
  return settings;
}

bool ChartSettings::Save(const DataDir& dir) const {
  return dir.WriteLines(kFile,
                        {PrintedNumber(monthIndex), PrintedNumber(yearIndex), ToAnsi(user), ToAnsi(provider),
                         ToAnsi(tariff), PrintedNumber(measure), PrintedNumber(style)});
}

}  // namespace minutor
