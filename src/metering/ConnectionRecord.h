#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <array>
#include <optional>

namespace minutor {

class DataDir;
class Prompter;

// The folder of the connection records below the data directory.
inline const QString kRecordFolder = QStringLiteral("Verbindungen");

// The texts that the meter's labels hold at the end of a connection; the
// record is made from them, not from the meter's own numbers.
struct RecordLabels {
  QString startTag;        // tag of lblStartzeit: day, month, year as "DDMMYYYY"
  QString startTime;       // lblStartzeit: the clock text of the start
  QString dauer;           // lblDauer
  QString kosten;          // lblKosten, e.g. "1,234 €" or "0 (0,120 €)"
  QString einheiten;       // lblEinheiten
  QString bytesIn;         // lblBytesIn, "12.345 Bytes" or "unbekannt"
  QString bytesOut;        // lblBytesOut
  QString bytesInOut;      // lblBytesInOut
  QString connectionName;  // lblConnectionName
  QString tarif;           // tag of lblTarifname: the tariff's file name
  QString benutzer;        // lblBenutzer
};

// The plain values of a record's eleven lines, in file order, before they are
// enciphered. Numbers that can't be read become 0.
QList<QByteArray> RecordPlainLines(const RecordLabels& labels);

// "DDMMYYYY-HHMMSS.con" from the start tag and the start time; empty when the
// time can't be read or the name would not be a plain file name.
QString RecordFileName(const QString& startTag, const QString& startTime);

enum class SaveResult { Saved, NoStart, Failed };

// The box text of a failed save, by the region of the save that failed.
QString SaveConnectionError(int subcode);

// Writes the record of a finished connection into the data directory. An
// empty start tag writes nothing. A failure is reported with its subcode.
SaveResult SaveConnection(const DataDir& dir, const RecordLabels& labels, Prompter& prompter);

// The deciphered lines of a record, read in order while the file has lines,
// at most `count`. nullopt when the file can't be read. Only the lines whose
// bit is set in `wanted` (bit 0 for line 1) are deciphered; the others come
// back empty, so that a scan of the history pays only for what it reads.
// With `cipher`, the lines as they stand in the file are handed back there
// too.
std::optional<QList<QByteArray>> ReadRecordFields(const QString& absolutePath, int count = 12,
                                                  quint32 wanted = ~0u, QList<QByteArray>* cipher = nullptr);

// The user of a record: the last of up to eleven lines read, deciphered.
QString RecordUser(const DataDir& dir, const QString& fileName);
QString GetRecordUser(const DataDir& dir, const QString& fileName);

// The cost of a record: the last of up to four lines read, deciphered, from
// its second character on; 0 when that is empty.
double RecordCost(const DataDir& dir, const QString& fileName);

// The date parts that a record's name holds; empty when the name is too short.
QString RecordNameDay(const QString& fileName);
QString RecordNameMonth(const QString& fileName);
QString RecordNameYear(const QString& fileName);

}  // namespace minutor
