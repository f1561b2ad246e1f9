#pragma once

#include <QByteArray>
#include <QString>

namespace minutor {

// The files are Windows-1252 bytes. Text becomes a QString only where it meets
// the screen or the command line; between file and cipher it stays bytes.
QString FromAnsi(const QByteArray& bytes);

// Appends the text of the bytes, for readers that gather many fields into one
// string.
void AppendAnsi(QString& text, QByteArrayView bytes);

// Characters without a Windows-1252 code become "?", as the old program's
// conversion did.
QByteArray ToAnsi(const QString& text);

}  // namespace minutor
