#pragma once

#include <QByteArray>

namespace minutor {

// The text cipher of every stored field in user files, connection records and
// dial-up credentials. Plain text and cipher text are Windows-1252 bytes; the
// cipher text holds only bytes 100 to 199, so a field fits on one line.

// With an empty pass phrase the default "GreenBishop" is used.
QByteArray EncryptText(const QByteArray& text, const QByteArray& passPhrase);
QByteArray DecryptText(const QByteArray& cipher, const QByteArray& passPhrase);

// The cipher with the program's fixed pass phrase. Empty stays empty.
QByteArray EncryptField(const QByteArray& value);
QByteArray EncryptField(qint64 value);
QByteArray DecryptField(const QByteArray& cipher);

// The number the cipher derives from its pass phrase, public for the tests:
// the default for an empty pass phrase, -1 when the number would leave the
// 32-bit range (the cipher then gives an empty result).
qint32 DeriveS(const QByteArray& passPhrase);

}  // namespace minutor
