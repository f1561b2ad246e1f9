#pragma once

#include <QString>

namespace minutor {

class DataDir;

// The note of the Overview, "Note.dat": its lines joined by line breaks, none
// after the last. Empty when there is no file.
QString LoadNote(const DataDir& dir);

// Writes the note whole.
bool SaveNote(const DataDir& dir, const QString& text);

}  // namespace minutor
