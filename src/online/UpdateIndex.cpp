#include "online/UpdateIndex.h"

#include "frame/datadir/AnsiText.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/Names.h"
#include "frame/datadir/NumberText.h"

#include <QDir>

#include <map>

namespace minutor {

namespace {

QByteArray BatchHead(int number) { return '[' + QByteArray::number(number).rightJustified(4, '0') + ']'; }

}  // namespace

bool IsUpdateFileName(QStringView name) {
  if (!IsValidName(name) || name.contains(u"..") || !name.endsWith(u".atl", Qt::CaseInsensitive) ||
      name.size() <= 4) {
    return false;
  }
  for (const QChar c : name) {
    if (c.category() == QChar::Other_Control) {
      return false;
    }
  }
  return true;
}

std::optional<UpdateIndex> ParseUpdateIndex(const QByteArray& bytes, const QString& base, int lastBatch) {
  const QList<QByteArray> lines = SplitLines(bytes);
  if (lines.isEmpty() || !lines.first().startsWith("*U*")) {
    return std::nullopt;
  }
  UpdateIndex index;
  index.revision = LeadingNumber(lines.first().mid(4));
  index.letzteSerie = lastBatch + 1;
  const QByteArray wanted = BatchHead(lastBatch + 1);
  qsizetype i = 1;
  while (i < lines.size() && lines[i] != wanted) {
    ++i;
  }
  for (; i < lines.size(); ++i) {
    const QByteArray& line = lines[i];
    if (line.startsWith('[')) {
      index.letzteSerie = static_cast<int>(LeadingNumber(line.mid(1)));
    } else if (line.startsWith("<tel")) {
      const qsizetype bar = line.indexOf('|');
      if (bar < 0) {
        continue;
      }
      // The line's last character closes the entry, whatever it is.
      const QString name = FromAnsi(line.mid(bar + 1, line.size() - bar - 2));
      if (IsUpdateFileName(name)) {
        index.entries.append({base + QLatin1Char('/') + FromAnsi(line.mid(1, bar - 1)), name});
      }
    }
  }
  return index;
}

std::optional<QByteArray> MakeUpdateIndex(const QString& folder, double revision, QStringList* skipped,
                                          QString* error) {
  const QDir tel(folder + QStringLiteral("/tel"));
  if (!tel.exists()) {
    *error = QStringLiteral("%1 has no folder \"tel\" with the batches").arg(folder);
    return std::nullopt;
  }
  std::map<int, QString> batches;
  for (const QString& sub : tel.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
    bool isNumber = false;
    const int number = sub.toInt(&isNumber);
    if (isNumber && number > 0) {
      batches.emplace(number, sub);
    }
  }
  QByteArray index = "*U* " + QByteArray::number(revision) + "\r\n";
  int expected = 1;
  for (const auto& [number, sub] : batches) {
    if (number != expected) {
      *error =
          QStringLiteral("batch %1 is missing: batches must run 1, 2, 3, ... without a gap").arg(expected);
      return std::nullopt;
    }
    ++expected;
    index += BatchHead(number) + "\r\n";
    const QDir batch(tel.filePath(sub));
    for (const QString& name : batch.entryList({QStringLiteral("*.atl")}, QDir::Files, QDir::Name)) {
      // The index is Windows-1252: a name it can't spell is left out too.
      if (!IsUpdateFileName(name) || FromAnsi(ToAnsi(name)) != name) {
        skipped->append(batch.filePath(name));
        continue;
      }
      index += "<tel/" + ToAnsi(sub) + '/' + ToAnsi(name) + '|' + ToAnsi(name) + ">\r\n";
    }
  }
  return index;
}

}  // namespace minutor
