#pragma once

#include <QString>

#include <optional>

namespace minutor {

class DataDir;

// The fields of the dialogs that enter or change a record by hand, as their
// controls hold them.
struct ManualRecord {
  QString date;      // Text1(0), "Datum"
  QString start;     // Text1(1), "Startzeit"
  QString duration;  // Text1(2), "Dauer"
  QString cost;      // Text1(3), "Kosten", in currency units
  QString units;     // Text1(4) ... Text1(7)
  QString bytesIn;
  QString bytesOut;
  QString bytesTotal;
  QString dfue;      // comDFÜ
  QString provider;  // comAnbieter
  QString tariff;    // comTarif, "M - Tag und Nacht"
  QString user;      // comUser
  QString comment;   // Text1(8), "Kommentar"
};

// The dialog's text field `index` (0 to 7) as it reads after losing the
// focus: a date in short form, a time of day, a duration, an amount with two
// decimals, or a plain number.
QString NormaliseEntryField(int index, const QString& text);

// The duration read as a time of day, in seconds; nullopt from 24 hours on,
// when it can't be one.
std::optional<qint64> DurationAsTimeOfDay(const QString& duration);

// The tariff file the combos name; "" when the label is neither "M" nor "A".
QString ManualTariffFile(const ManualRecord& record);

// The message of the first check that fails, as a warning shows it; nothing
// when the record can be saved. The values themselves aren't checked.
std::optional<QString> CheckManualRecord(const ManualRecord& record);

// "DDMMYYYY-HHMMSS.con" from date and start; "" when either can't be read.
QString ManualRecordFileName(const ManualRecord& record);

// Writes the record (its fields enciphered) and, when it replaces one whose
// name differs, removes that one afterwards, so a failed write loses
// nothing. A record with the same date and start is overwritten. Gives the
// new file's name, or an error message.
struct ManualSaveResult {
  QString fileName;
  QString error;
};
ManualSaveResult SaveManualRecord(const DataDir& dir, ManualRecord record, const QString& replacedFile = {});

// The fields of a stored record as the change dialog loads them; nullopt
// when the file can't be read.
std::optional<ManualRecord> ReadManualRecord(const DataDir& dir, const QString& fileName);

}  // namespace minutor
