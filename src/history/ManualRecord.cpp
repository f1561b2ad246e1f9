#include "history/ManualRecord.h"

#include "frame/datadir/AnsiText.h"
#include "frame/datadir/ClockText.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/NumberText.h"
#include "metering/ConnectionRecord.h"
#include "users/FieldCipher.h"

#include <QTime>

namespace minutor {

namespace {

const QString kNoDialUp = QStringLiteral("Keine DFÜ Verbindung");

QString TwoDigits(int value) { return QStringLiteral("%1").arg(value, 2, 10, QLatin1Char('0')); }

std::optional<QTime> TimeOfDay(const QString& text) {
  const QStringList parts = text.trimmed().split(QLatin1Char(':'));
  if (parts.size() != 3) {
    return std::nullopt;
  }
  bool ok[3] = {false, false, false};
  const QTime time(parts[0].trimmed().toInt(&ok[0]), parts[1].trimmed().toInt(&ok[1]),
                   parts[2].trimmed().toInt(&ok[2]));
  if (!ok[0] || !ok[1] || !ok[2] || !time.isValid()) {
    return std::nullopt;
  }
  return time;
}

}  // namespace

QString NormaliseEntryField(int index, const QString& text) {
  switch (index) {
    case 0:
      return NormaliseDate(ParseShortDate(text));
    case 1:
      return NormalizeTimeOfDay(text);
    case 2:
      return NormalizeTime(text);
    case 3:
      return FixedText(static_cast<double>(ParseBetrag(text)), 2);
    default:
      return GeneralText(LeadingNumber(text));
  }
}

std::optional<qint64> DurationAsTimeOfDay(const QString& duration) {
  const auto time = TimeOfDay(duration);
  if (!time) {
    return std::nullopt;
  }
  return time->hour() * 3600 + time->minute() * 60 + time->second();
}

QString ManualTariffFile(const ManualRecord& record) {
  if (record.tariff.startsWith(QLatin1String("A -"))) {
    return record.provider + record.tariff.mid(1) + QStringLiteral(".atl");
  }
  if (record.tariff.startsWith(QLatin1String("M -"))) {
    return record.provider + record.tariff.mid(1) + QStringLiteral(".tel");
  }
  return {};
}

std::optional<QString> CheckManualRecord(const ManualRecord& record) {
  const std::pair<const QString*, const char*> checks[] = {
      {&record.date, "Sie müssen ein Datum eingeben."},
      {&record.start, "Sie müssen eine Startzeit der Verbindung eingeben."},
      {&record.duration, "Sie müssen die Verbindungsdauer angeben."},
      {&record.cost,
       "Sie müssen die Verbindungskosten angeben. Falls keine angefallen sind geben Sie eine 0 ein."},
      {&record.provider, "Sie müssen einen Tarif angeben."},
      {&record.tariff, "Sie müssen einen Tarif angeben."},
      {&record.user, "Sie müssen einen Benutzer angeben."},
  };
  for (const auto& [field, message] : checks) {
    if (field->isEmpty()) {
      return QString::fromUtf8(message);
    }
  }
  return std::nullopt;
}

QString ManualRecordFileName(const ManualRecord& record) {
  const QDate date = ParseShortDate(record.date);
  const auto start = TimeOfDay(record.start);
  if (!date.isValid() || !start || date.year() < 1 || date.year() > 9999) {
    return {};
  }
  return TwoDigits(date.day()) + TwoDigits(date.month()) +
         QStringLiteral("%1").arg(date.year(), 4, 10, QLatin1Char('0')) + QLatin1Char('-') +
         TwoDigits(start->hour()) + TwoDigits(start->minute()) + TwoDigits(start->second()) +
         QStringLiteral(".con");
}

ManualSaveResult SaveManualRecord(const DataDir& dir, ManualRecord record, const QString& replacedFile) {
  if (record.dfue.isEmpty()) {
    record.dfue = kNoDialUp;
  }
  const QString name = ManualRecordFileName(record);
  if (name.isEmpty()) {
    return {{},
            QStringLiteral("Datum \"%1\" und Startzeit \"%2\" ergeben keinen gültigen Zeitpunkt.")
                .arg(record.date, record.start)};
  }
  QList<QByteArray> plain{'S' + ToAnsi(record.date), ToAnsi(record.start),      ToAnsi(record.duration),
                          'S' + ToAnsi(record.cost), ToAnsi(record.units),      ToAnsi(record.bytesIn),
                          ToAnsi(record.bytesOut),   ToAnsi(record.bytesTotal), ToAnsi(record.dfue)};
  // A label that is neither "M -" nor "A -" writes no tariff line, and the
  // record comes out a line short, as it always has.
  const QString tariffFile = ManualTariffFile(record);
  if (!tariffFile.isEmpty()) {
    plain.append(ToAnsi(tariffFile));
  }
  plain << ToAnsi(record.user) << ToAnsi(record.comment);
  QList<QByteArray> lines;
  for (const QByteArray& line : plain) {
    lines.append(EncryptField(line));
  }
  const QString path = kRecordFolder + QLatin1Char('/') + name;
  if (!dir.MakeDir(kRecordFolder) || !dir.WriteLines(path, lines)) {
    return {
        {},
        QStringLiteral("Die Verbindung konnte nicht in \"%1\" gespeichert werden.").arg(dir.Resolve(path))};
  }
  if (!replacedFile.isEmpty() && replacedFile.compare(name, Qt::CaseInsensitive) != 0) {
    dir.Remove(kRecordFolder + QLatin1Char('/') + replacedFile);
  }
  return {name, {}};
}

std::optional<ManualRecord> ReadManualRecord(const DataDir& dir, const QString& fileName) {
  const auto fields = ReadRecordFields(dir.Resolve(kRecordFolder + QLatin1Char('/') + fileName));
  if (!fields) {
    return std::nullopt;
  }
  const auto line = [&](int n) { return FromAnsi(fields->value(n - 1)); };
  ManualRecord record;
  record.date = line(1).mid(1);
  record.start = line(2);
  record.duration = line(3);
  record.cost = line(4).mid(1);
  record.units = line(5);
  record.bytesIn = line(6);
  record.bytesOut = line(7);
  record.bytesTotal = line(8);
  record.dfue = line(9);
  const QString tariffFile = line(10);
  const qsizetype p = tariffFile.indexOf(QLatin1Char('-')) + 1;  // counted from 1
  record.provider = p >= 2 ? tariffFile.left(p - 2) : QString();
  const QString name = p >= 1 ? tariffFile.mid(p + 1, tariffFile.size() - p - 5) : QString();
  const QString extension = tariffFile.right(4).toLower();
  if (extension == QLatin1String(".atl")) {
    record.tariff = QStringLiteral("A - ") + name;
  } else if (extension == QLatin1String(".tel")) {
    record.tariff = QStringLiteral("M - ") + name;
  }
  record.user = line(11);
  record.comment = line(12);
  return record;
}

}  // namespace minutor
