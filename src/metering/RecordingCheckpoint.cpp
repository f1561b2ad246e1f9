#include "metering/RecordingCheckpoint.h"

#include "frame/Prompter.h"
#include "frame/datadir/AnsiText.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/NumberText.h"
#include "metering/Prerun.h"
#include "users/FieldCipher.h"

namespace minutor {

namespace {

// The record's eleven enciphered lines, then the carry-over (empty for a
// time tariff).
constexpr int kRecordLines = 11;

}  // namespace

bool SaveCheckpoint(const DataDir& dir, const RecordLabels& labels, std::optional<float> carryOver) {
  if (labels.startTag.isEmpty()) {
    return false;
  }
  QList<QByteArray> lines;
  for (const QByteArray& plain : RecordPlainLines(labels)) {
    lines.append(EncryptField(plain));
  }
  lines.append(carryOver ? ToAnsi(GeneralText(*carryOver)) : QByteArray());
  return dir.WriteLines(kCheckpointFile, lines);
}

void RemoveCheckpoint(const DataDir& dir) {
  if (dir.FileExists(kCheckpointFile)) {
    dir.Remove(kCheckpointFile);
  }
}

void RecoverCheckpoint(const DataDir& dir, Prompter& prompter) {
  const auto lines = dir.ReadLines(kCheckpointFile);
  if (!lines) {
    return;
  }
  QList<QByteArray> fields;
  for (qsizetype i = 0; i < lines->size() && i < kRecordLines; ++i) {
    fields.append(DecryptField(lines->at(i)));
  }
  // "SDD.MM.YYYY" and the start time make the record's name.
  const QString date = fields.isEmpty() ? QString() : FromAnsi(fields.first().mid(1));
  const QString tag = date.left(2) + date.mid(3, 2) + date.mid(6, 4);
  const QString name = fields.size() == kRecordLines && tag.size() == 8
                           ? RecordFileName(tag, FromAnsi(fields.at(1)))
                           : QString();
  if (name.isEmpty()) {
    // Not a checkpoint this program wrote: nothing in it can become a record.
    RemoveCheckpoint(dir);
    return;
  }
  const QString record = kRecordFolder + QLatin1Char('/') + name;
  if (!dir.FileExists(record)) {
    DataDir::WriteStage stage = DataDir::WriteStage::Open;
    if (!dir.WriteLines(record, lines->mid(0, kRecordLines), &stage)) {
      prompter.Message(SaveConnectionError(stage == DataDir::WriteStage::Open ? 2 : 4),
                       Prompter::Icon::Critical);
      return;
    }
    const QByteArray carryOver = lines->value(kRecordLines).trimmed();
    if (!carryOver.isEmpty()) {
      SavePrerun(dir, FromAnsi(fields.at(9)), ParseBetrag(carryOver));
    }
    // Gone before the box shows: the record is saved, whatever happens to
    // the program while the box is open.
    RemoveCheckpoint(dir);
    prompter.Message(QStringLiteral("Die Aufzeichnung der Verbindung vom %1 um %2 wurde unerwartet "
                                    "unterbrochen und mit ihrem letzten gesicherten Stand (Dauer %3) "
                                    "gespeichert.")
                         .arg(date, FromAnsi(fields.at(1)), FromAnsi(fields.at(2))),
                     Prompter::Icon::Information);
  }
  RemoveCheckpoint(dir);
}

}  // namespace minutor
