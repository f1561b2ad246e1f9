#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace minutor {

// The index "update.txt" of an update server:
//
//   *U* 330                         the newest program revision, from the 5th character
//   [0001]                          a batch head, numbered upwards
//   <tel/0001/A - B.atl|A - B.atl>  an entry: path below the server, "|", file name
//
// Line ends may be CR LF or LF. Other lines are ignored.

struct UpdateEntry {
  QString address;  // the server's base + "/" + the entry's path
  QString fileName;

  friend bool operator==(const UpdateEntry&, const UpdateEntry&) = default;
};

struct UpdateIndex {
  double revision = 0;
  QList<UpdateEntry> entries;  // those of every batch after the last one taken
  int letzteSerie = 0;         // the highest batch seen
};

// The file name under which an entry may go to "Tarife": a plain name (no
// folder, no "..", no control character, a valid file name) ending in ".atl".
// Whatever a server says, nothing lands outside the tariff folder.
bool IsUpdateFileName(QStringView name);

// Reads an index fetched from `base` after the batch `lastBatch` was taken.
// nullopt when the first line doesn't begin with "*U*": not an index. The
// entries start at the head of batch lastBatch + 1; without that head there
// is nothing new. Entries whose file name IsUpdateFileName refuses are left
// out.
std::optional<UpdateIndex> ParseUpdateIndex(const QByteArray& bytes, const QString& base, int lastBatch);

// The index of a server folder. Each sub-folder of "<folder>/tel" named by a
// number is a batch of that number, and its ".atl" files are the batch's
// entries; the batches must run 1, 2, 3, ... without a gap, as a reader
// looks for the batch after its last one. `skipped` gets the files left out
// for their names. nullopt with `error` set when the folder can't be indexed.
std::optional<QByteArray> MakeUpdateIndex(const QString& folder, double revision, QStringList* skipped,
                                          QString* error);

}  // namespace minutor
