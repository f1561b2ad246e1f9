#pragma once

#include <QString>

namespace minutor {

class DataDir;

// The note of the Overview, "Note.dat": its lines joined by line breaks, none
// after the last. Empty when there is no file. Of a note larger than a
// settings file may be, the beginning; `whole` tells whether that is all.
QString LoadNote(const DataDir& dir, bool* whole = nullptr);

// Writes the note whole.
bool SaveNote(const DataDir& dir, const QString& text);

}  // namespace minutor
