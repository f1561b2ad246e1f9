#include "history/ListColouring.h"

#include "frame/datadir/AnsiText.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/NumberText.h"

namespace minutor {

namespace {

const QString kDifferenceFile = QStringLiteral("Config/Difference.cfg");

int ClassOf(float value, const std::array<float, 3>& limits) {
  // One test after the other, the last that holds wins: limits out of order
  // class by the last of them that the value passes.
  int icon = 0;
  for (int i = 0; i < 3; ++i) {
    if (value > limits[static_cast<size_t>(i)]) {
      icon = i + 1;
    }
  }
  return icon;
}

}  // namespace

DifferenceConfig ReadDifferenceConfig(const DataDir& dir) {
  DifferenceConfig config;
  const QList<QByteArray> lines = dir.ReadLines(kDifferenceFile).value_or(QList<QByteArray>());
  const auto text = [&](int index) { return FromAnsi(lines.value(index)).trimmed(); };
  const double category = LeadingNumber(lines.value(0));
  config.category = category >= 0 && category <= 3 ? static_cast<int>(category) : 0;
  for (int i = 0; i < 3; ++i) {
    config.costs[i] = text(1 + i);
    config.durations[i] = text(4 + i);
    config.volumes[i] = text(7 + i);
  }
  return config;
}

bool WriteDifferenceConfig(const DataDir& dir, const DifferenceConfig& config) {
  QList<QByteArray> lines{QByteArray::number(config.category)};
  for (const QStringList* group : {&config.costs, &config.durations, &config.volumes}) {
    for (int i = 0; i < 3; ++i) {
      lines.append(ToAnsi(group->value(i)));
    }
  }
  return dir.WriteLines(kDifferenceFile, lines);
}

Colouring ReadColouring(const DataDir& dir) {
  const DifferenceConfig config = ReadDifferenceConfig(dir);
  Colouring colouring;
  colouring.category = config.category;
  const QStringList* groups[] = {&config.costs, &config.durations, &config.volumes};
  if (colouring.category > 0) {
    const QStringList& group = *groups[colouring.category - 1];
    for (int i = 0; i < 3; ++i) {
      colouring.limits[static_cast<size_t>(i)] = ParseBetrag(group.at(i));
    }
  }
  return colouring;
}

int DifferenceIcon(const Colouring& colouring, const QByteArray& value) {
  switch (colouring.category) {
    case 1:
      return ClassOf(ParseBetrag(value), colouring.limits);
    case 3:
      return ClassOf(static_cast<float>(LeadingNumber(value) / 1000), colouring.limits);
    default:
      return 0;
  }
}

}  // namespace minutor
