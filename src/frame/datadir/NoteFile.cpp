#include "frame/datadir/NoteFile.h"

#include "frame/datadir/AnsiText.h"
#include "frame/datadir/DataDir.h"

#include <QFileInfo>
#include <QStringList>

namespace minutor {

namespace {
const QString kNoteFile = QStringLiteral("Note.dat");
}

QString LoadNote(const DataDir& dir, bool* whole) {
  if (whole != nullptr) {
    *whole = QFileInfo(dir.Resolve(kNoteFile)).size() <= DataDir::kSmallFileLimit;
  }
  const auto lines = dir.ReadLines(kNoteFile);
  if (!lines) {
    return {};
  }
  QStringList text;
  for (const QByteArray& line : *lines) {
    text.append(FromAnsi(line));
  }
  return text.join(QLatin1Char('\n'));
}

bool SaveNote(const DataDir& dir, const QString& text) {
  QString normalized = text;
  normalized.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  QList<QByteArray> lines;
  for (const QString& line : normalized.split(QLatin1Char('\n'))) {
    lines.append(ToAnsi(line));
  }
  return dir.WriteLines(kNoteFile, lines);
}

}  // namespace minutor
