#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace minutor {

// The data directory and the one place that reads and writes its text files.
//
// Paths are given relative to the root, with "/" or "\" between components
// ("Config/Options.cfg", "\Config\Options.cfg"). Every component is looked up
// without regard to case, because the files are exchanged with installations
// on systems whose file names are case-blind: "config/options.CFG" finds
// "Config/Options.cfg". A component that doesn't exist keeps the spelling given.
class DataDir {
 public:
  explicit DataDir(QString root);

  const QString& Root() const { return root_; }

  // Absolute path of a relative one, existing components in their real case.
  QString Resolve(QStringView relative) const;

  bool FileExists(QStringView relative) const;
  bool DirExists(QStringView relative) const;

  // Makes the folder (and the folders above it) when the lookup doesn't find it.
  bool MakeDir(QStringView relative) const;

  // Makes the data directory itself where it is missing, readable by this
  // account only: it holds passwords and credentials.
  bool MakeRoot() const;

  // The lines of a text file without their CR LF or LF; nullopt when the file
  // can't be read. A last line without a line end counts as a line. Only the
  // first `limit` bytes count: the settings files are a few lines long, and
  // a huge one must not hold the program up.
  static constexpr qsizetype kSmallFileLimit = 64 * 1024;
  std::optional<QList<QByteArray>> ReadLines(QStringView relative, qsizetype limit = kSmallFileLimit) const;

  // Writes each line followed by CR LF, replacing the file whole. The new
  // content appears under the name only once it is completely on disk, so a
  // crash leaves either the old file or the new one (and perhaps a leftover,
  // see IsSaveLeftover). Makes the folder first. Users' files and stored
  // credentials are readable by this account only.
  // On failure, `stage` tells whether the file couldn't be opened or written
  // (Open) or the finished file couldn't take the place of the old (Commit).
  enum class WriteStage { Open, Commit };
  bool WriteLines(QStringView relative, const QList<QByteArray>& lines, WriteStage* stage = nullptr) const;

  // Writes raw bytes the same way.
  bool WriteBytes(QStringView relative, const QByteArray& bytes, WriteStage* stage = nullptr) const;

  bool Remove(QStringView relative) const;

  // File names in a folder that match a wildcard pattern ("*.con",
  // "Foo*.*"), compared without case, sorted by name. Empty when the folder is
  // missing. The leftovers of interrupted saves are passed over.
  QStringList ListFiles(QStringView folder, const QString& pattern = QStringLiteral("*")) const;

  // Removes the leftovers of saves that a crash interrupted, in the data
  // directory and its folders.
  void RemoveSaveLeftovers() const;

  // The data directory of this user: the executable's own folder when a file
  // named "portable" lies beside it, else $XDG_DATA_HOME/minutor.
  static QString DefaultLocation(const QString& executableDir);

  // Where the shipped files (tariffs, sounds, server list) are found: the
  // installation's data folder, or the source tree when run from a build.
  static QString ShippedLocation(const QString& executableDir);

  // Copies the shipped files that haven't been offered to this data directory
  // before and that it lacks. Files that exist, in whatever case, are never
  // overwritten.
  void CopyShippedFiles(const QString& shippedDir) const;

 private:
  QString root_;
};

// Whether a file name is the temporary file of a save that never finished:
// the name of the file being written, a point and six letters or digits
// ("01032026-120000.con.a1B2c3").
bool IsSaveLeftover(QStringView name);

// Splits the bytes of a text file into lines (CR LF or LF).
QList<QByteArray> SplitLines(const QByteArray& bytes);

// Reads a file with plain system calls, at most `limit` bytes; nullopt when
// it can't be opened or isn't a regular file. A pipe or a device in a file's
// place is never waited on.
std::optional<QByteArray> ReadFileBytes(const QString& absolutePath, qsizetype limit = -1);

}  // namespace minutor
