#include "history/ListConfig.h"

#include "frame/datadir/AnsiText.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/NumberText.h"

namespace minutor {

namespace {

const QString kListFile = QStringLiteral("Config/List.cfg");
constexpr int kSettingLines = 8;

int Number(const QByteArray& line) { return static_cast<int>(LeadingNumber(line)); }

}  // namespace

ListConfig LoadListCfg(const DataDir& dir) {
  ListConfig config;
  const QList<QByteArray> lines = dir.ReadLines(kListFile).value_or(QList<QByteArray>());
  const auto has = [&](int line) { return lines.size() >= line; };
  if (has(1)) {
    const int index = Number(lines[0]);
    config.periodIndex = index >= 0 && index < 10 ? index : 0;
  }
  if (has(2)) {
    config.user = FromAnsi(lines[1]).trimmed();
  }
  if (has(3)) {
    config.provider = FromAnsi(lines[2]).trimmed();
  }
  if (has(4)) {
    config.tariff = FromAnsi(lines[3]).trimmed();
  }
  if (has(5)) {
    config.net = IsOne(lines[4]);
  }
  if (has(kSettingLines)) {
    config.sort = SortFromConfig(Number(lines[5]), Number(lines[6]), Number(lines[7]));
  }
  for (int column = 0; column < 13 && has(kSettingLines + 2 * column + 2); ++column) {
    const int first = kSettingLines + 2 * column;
    config.columns.append({Number(lines[first]), Number(lines[first + 1])});
  }
  return config;
}

bool SaveListCfg(const DataDir& dir, const ListConfig& config) {
  QList<QByteArray> lines{QByteArray::number(config.periodIndex),
                          ToAnsi(config.user),
                          ToAnsi(config.provider),
                          ToAnsi(config.tariff),
                          config.net ? "1" : "0",
                          QByteArray::number(config.sort.column),
                          QByteArray::number(config.sort.order),
                          QByteArray::number(config.sort.type)};
  for (const ListConfig::Column& column : config.columns) {
    lines << QByteArray::number(column.width) << QByteArray::number(column.position);
  }
  return dir.WriteLines(kListFile, lines);
}

}  // namespace minutor
