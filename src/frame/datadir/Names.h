#pragma once

#include <QString>

namespace minutor {

// False when the text has more than 255 characters or holds one of
// \ / : * ? " < > |, so that it can't serve as a file name.
bool IsValidName(QStringView text);

// Whether a name read from a file or typed by the user may become one file
// name in a folder of the data directory: a valid name that isn't empty, "."
// or "..", and holds no control character.
bool IsSafeFileName(QStringView text);

// The login name of the user running the program, at most 24 characters as
// the old buffer held; "" when it can't be found.
QString GetLogonName();

// The text before the first null character.
QString CutAtNull(const QString& text);

}  // namespace minutor
