#include "metering/ConnectionRecord.h"

#include "frame/Prompter.h"
#include "frame/datadir/AnsiText.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/Names.h"
#include "frame/datadir/NumberText.h"
#include "users/FieldCipher.h"

#include <QLocale>

#include <QFile>

#include <cmath>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace minutor {

namespace {

// A whole number as the record holds it: digits, no exponent.
QByteArray WholeNumber(double value) {
  if (!std::isfinite(value)) {
    return "0";
  }
  value = std::round(value);
  if (std::fabs(value) >= 9.0e18) {
    value = std::copysign(9.0e18, value);
  }
  return QByteArray::number(static_cast<qint64>(value));
}

// A byte counter's label: " Bytes" comes off its end, the thousands
// separators go, and the number is what remains. "unbekannt" reads as 0.
QByteArray BytesValue(const QString& label) {
  if (label.size() < 6) {
    return "0";
  }
  QString number = label.left(label.size() - 6);
  const QLocale locale;
  number.remove(locale.groupSeparator());
  const QChar decimal = DecimalSign();
  if (decimal != QLatin1Char('.')) {
    number.replace(decimal, QLatin1Char('.'));
  }
  return WholeNumber(LeadingNumber(number));
}

// The cost label cut behind a "(" if it has one: the bracket form, cost
// within the free allowance, reads as 0.
QByteArray CostValue(const QString& label) {
  const auto bracket = label.indexOf(QLatin1Char('('));
  const float amount = ParseBetrag(bracket < 0 ? label : label.left(bracket + 1));
  return 'S' + ToAnsi(FixedText(static_cast<double>(amount), 2));
}

QByteArray DateValue(const QString& tag) {
  return 'S' + ToAnsi(tag.left(2) + QLatin1Char('.') + tag.mid(2, 2) + QLatin1Char('.') + tag.right(4));
}

struct TimeOfDay {
  int hour = -1;
  int minute = -1;
  int second = -1;
};

// Hour, minute and second of a clock text as the system prints it, with or
// without a 12-hour marker.
TimeOfDay ReadTimeOfDay(const QString& text) {
  const QStringList parts = text.trimmed().split(QLatin1Char(':'));
  if (parts.size() != 3) {
    return {};
  }
  auto field = [](const QString& part) -> int {
    bool ok = false;
    const int value = part.trimmed().left(2).toInt(&ok);
    return ok ? value : -1;
  };
  TimeOfDay t{field(parts[0]), field(parts[1]), field(parts[2].left(2))};
  const QString marker = parts[2].mid(2).trimmed().toLower();
  if (marker.startsWith(QLatin1Char('p')) && t.hour >= 1 && t.hour < 12) {
    t.hour += 12;
  } else if (marker.startsWith(QLatin1Char('a')) && t.hour == 12) {
    t.hour = 0;
  }
  if (t.hour < 0 || t.hour > 23 || t.minute < 0 || t.minute > 59 || t.second < 0 || t.second > 59) {
    return {};
  }
  return t;
}

QByteArray LastLineRead(const DataDir& dir, const QString& fileName, int count) {
  const auto lines = ReadRecordFields(dir.Resolve(kRecordFolder + QLatin1Char('/') + fileName), count);
  if (!lines || lines->isEmpty()) {
    return {};
  }
  return lines->last();
}

}  // namespace

QString SaveConnectionError(int subcode) {
  return QStringLiteral("Fehler beim speichern der Verbindungsdaten aufgetreten. Subcode %1.").arg(subcode);
}

QList<QByteArray> RecordPlainLines(const RecordLabels& labels) {
  return {
      DateValue(labels.startTag),
      ToAnsi(labels.startTime),
      ToAnsi(labels.dauer),
      CostValue(labels.kosten),
      WholeNumber(LeadingNumber(labels.einheiten)),
      BytesValue(labels.bytesIn),
      BytesValue(labels.bytesOut),
      BytesValue(labels.bytesInOut),
      ToAnsi(labels.connectionName),
      ToAnsi(labels.tarif),
      ToAnsi(labels.benutzer),
  };
}

QString RecordFileName(const QString& startTag, const QString& startTime) {
  const TimeOfDay t = ReadTimeOfDay(startTime);
  if (t.hour < 0) {
    return {};
  }
  const QString name = QStringLiteral("%1-%2%3%4.con")
                           .arg(startTag)
                           .arg(t.hour, 2, 10, QLatin1Char('0'))
                           .arg(t.minute, 2, 10, QLatin1Char('0'))
                           .arg(t.second, 2, 10, QLatin1Char('0'));
  return IsValidName(name) ? name : QString();
}

SaveResult SaveConnection(const DataDir& dir, const RecordLabels& labels, Prompter& prompter) {
  if (!dir.MakeDir(kRecordFolder)) {
    prompter.Message(SaveConnectionError(1), Prompter::Icon::Critical);
    return SaveResult::Failed;
  }
  if (labels.startTag.isEmpty()) {
    return SaveResult::NoStart;
  }
  const QString name = RecordFileName(labels.startTag, labels.startTime);
  if (name.isEmpty()) {
    prompter.Message(SaveConnectionError(1), Prompter::Icon::Critical);
    return SaveResult::Failed;
  }
  QList<QByteArray> lines;
  for (const QByteArray& plain : RecordPlainLines(labels)) {
    lines.append(EncryptField(plain));
  }
  DataDir::WriteStage stage = DataDir::WriteStage::Open;
  if (!dir.WriteLines(kRecordFolder + QLatin1Char('/') + name, lines, &stage)) {
    prompter.Message(SaveConnectionError(stage == DataDir::WriteStage::Open ? 2 : 4),
                     Prompter::Icon::Critical);
    return SaveResult::Failed;
  }
  return SaveResult::Saved;
}

std::optional<QList<QByteArray>> ReadRecordFields(const QString& absolutePath, int count, quint32 wanted,
                                                  QList<QByteArray>* cipher) {
  // Records are read by the thousand when the history is scanned, so this
  // path stays close to the bare system calls: one read into a stack buffer
  // for a record of normal size, and the fields deciphered in place.
  const int fd = ::open(QFile::encodeName(absolutePath).constData(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) {
    return std::nullopt;
  }
  char small[2048];
  QByteArray large;
  qsizetype size = 0;
  for (;;) {
    char* target = large.isEmpty() ? small + size : large.data() + size;
    const qsizetype room = large.isEmpty() ? qsizetype(sizeof small) - size : large.size() - size;
    const ssize_t got = ::read(fd, target, static_cast<size_t>(room));
    if (got < 0) {
      ::close(fd);
      return std::nullopt;
    }
    if (got == 0) {
      break;
    }
    size += got;
    if (size == (large.isEmpty() ? qsizetype(sizeof small) : large.size())) {
      if (large.isEmpty()) {
        large = QByteArray(small, size);
      }
      large.resize(large.size() * 2);
    }
  }
  ::close(fd);
  const char* bytes = large.isEmpty() ? small : large.constData();

  QList<QByteArray> fields;
  fields.reserve(count);
  qsizetype start = 0;
  while (start < size && fields.size() < count) {
    const char* newline = static_cast<const char*>(std::memchr(bytes + start, '\n', size - start));
    const qsizetype end = newline != nullptr ? newline - bytes : size;
    qsizetype stop = end;
    if (stop > start && bytes[stop - 1] == '\r') {
      --stop;
    }
    const QByteArray line = QByteArray::fromRawData(bytes + start, stop - start);
    const bool deciphered = fields.size() < 32 && (wanted >> fields.size() & 1u) != 0;
    fields.append(deciphered ? DecryptField(line) : QByteArray());
    if (cipher != nullptr) {
      cipher->append(QByteArray(line.constData(), line.size()));
    }
    start = end + 1;
  }
  return fields;
}

QString RecordUser(const DataDir& dir, const QString& fileName) {
  return FromAnsi(LastLineRead(dir, fileName, 11));
}

QString GetRecordUser(const DataDir& dir, const QString& fileName) { return RecordUser(dir, fileName); }

double RecordCost(const DataDir& dir, const QString& fileName) {
  const QByteArray cost = LastLineRead(dir, fileName, 4);
  if (cost.isEmpty()) {
    return 0.0;
  }
  return static_cast<double>(ParseBetrag(cost.mid(1)));
}

QString RecordNameDay(const QString& fileName) { return fileName.size() >= 8 ? fileName.left(2) : QString(); }

QString RecordNameMonth(const QString& fileName) {
  return fileName.size() >= 8 ? fileName.mid(2, 2) : QString();
}

QString RecordNameYear(const QString& fileName) {
  return fileName.size() >= 8 ? fileName.mid(4, 4) : QString();
}

}  // namespace minutor
