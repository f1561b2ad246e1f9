#pragma once

#include "support/TempDataDir.h"
#include "users/FieldCipher.h"

#include <QByteArray>
#include <QList>
#include <QString>

namespace minutor::test {

// The plain lines of a record: date, start, duration, cost, units, bytes in,
// out and in all, connection, tariff file, user, comment.
inline QList<QByteArray> RecordLines(const QByteArray& date, const QByteArray& start,
                                     const QByteArray& duration, const QByteArray& cost,
                                     const QByteArray& tariff = "Funkwelle - Tag und Nacht.tel",
                                     const QByteArray& user = "Anna", const QByteArray& bytes = "2000") {
  return {'S' + date, start, duration,          'S' + cost, "3",  "1500",
          "500",      bytes, "Mobilfunk-Stick", tariff,     user, ""};
}

// Writes a record file in Verbindungen, each line enciphered as the program
// writes them.
inline void WriteRecord(const TempDataDir& data, const QString& name, const QList<QByteArray>& plain) {
  QByteArray bytes;
  for (const QByteArray& line : plain) {
    bytes += EncryptField(line) + "\r\n";
  }
  data.write(QStringLiteral("Verbindungen/") + name, bytes);
}

}  // namespace minutor::test
