#include "frame/datadir/DataDir.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>
#include <QStandardPaths>

#include <algorithm>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace minutor {

namespace {

// The shipped files offered to this data directory so far, one relative path
// in lower case a line.
const QString kShippedNote = QStringLiteral("Config/Shipped.cfg");

QStringList Components(QStringView relative) {
  QString path = relative.toString();
  path.replace(QLatin1Char('\\'), QLatin1Char('/'));
  return path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
}

// A relative path may name nothing outside the data directory, however it
// was put together: no "..", and none of the control characters that a name
// read from a damaged or hostile file can bring.
bool IsInside(const QStringList& components) {
  return std::none_of(components.begin(), components.end(), [](const QString& component) {
    return component == QLatin1String("..") || std::any_of(component.begin(), component.end(), [](QChar c) {
             return c.category() == QChar::Other_Control;
           });
  });
}

// Users' files and stored credentials: passwords and dial-in data.
bool IsPrivate(const QStringList& components) {
  if (components.size() != 2) {
    return false;
  }
  const QString folder = components.first().toLower();
  return folder == QLatin1String("benutzer") ||
         (folder == QLatin1String("dialup") &&
          components.last().endsWith(QLatin1String(".dat"), Qt::CaseInsensitive));
}

bool PathExists(const QString& path, bool* isDir = nullptr) {
  struct stat st {};
  if (::stat(QFile::encodeName(path).constData(), &st) != 0) {
    return false;
  }
  if (isDir != nullptr) {
    *isDir = S_ISDIR(st.st_mode);
  }
  return true;
}

// The real name of `name` in `folder`, compared in lower case; empty when none.
QString FindCaseBlind(const QString& folder, const QString& name) {
  const QString wanted = name.toLower();
  QDirIterator it(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
  while (it.hasNext()) {
    it.next();
    if (it.fileName().toLower() == wanted) {
      return it.fileName();
    }
  }
  return {};
}

}  // namespace

DataDir::DataDir(QString root) : root_(std::move(root)) {
  while (root_.size() > 1 && root_.endsWith(QLatin1Char('/'))) {
    root_.chop(1);
  }
}

QString DataDir::Resolve(QStringView relative) const {
  const QStringList components = Components(relative);
  if (!IsInside(components)) {
    return {};
  }
  QString path = root_;
  bool stillExists = true;
  for (const QString& component : components) {
    QString candidate = path + QLatin1Char('/') + component;
    if (stillExists && !PathExists(candidate)) {
      const QString real = FindCaseBlind(path, component);
      if (real.isEmpty()) {
        stillExists = false;
      } else {
        candidate = path + QLatin1Char('/') + real;
      }
    }
    path = candidate;
  }
  return path;
}

bool DataDir::FileExists(QStringView relative) const {
  bool isDir = false;
  return PathExists(Resolve(relative), &isDir) && !isDir;
}

bool DataDir::DirExists(QStringView relative) const {
  bool isDir = false;
  return PathExists(Resolve(relative), &isDir) && isDir;
}

bool DataDir::MakeDir(QStringView relative) const {
  if (DirExists(relative)) {
    return true;
  }
  const QString path = Resolve(relative);
  return !path.isEmpty() && QDir().mkpath(path);
}

bool DataDir::MakeRoot() const {
  if (QFileInfo(root_).isDir()) {
    return true;
  }
  if (!QDir().mkpath(QFileInfo(root_).absolutePath())) {
    return false;
  }
  return ::mkdir(QFile::encodeName(root_).constData(), 0700) == 0 || QFileInfo(root_).isDir();
}

std::optional<QList<QByteArray>> DataDir::ReadLines(QStringView relative, qsizetype limit) const {
  const QString path = Resolve(relative);
  if (path.isEmpty()) {
    return std::nullopt;
  }
  const auto bytes = ReadFileBytes(path, limit);
  if (!bytes) {
    return std::nullopt;
  }
  return SplitLines(*bytes);
}

bool DataDir::WriteLines(QStringView relative, const QList<QByteArray>& lines, WriteStage* stage) const {
  qsizetype size = 0;
  for (const QByteArray& line : lines) {
    size += line.size() + 2;
  }
  QByteArray bytes;
  bytes.reserve(size);
  for (const QByteArray& line : lines) {
    bytes.append(line);
    bytes.append("\r\n", 2);
  }
  return WriteBytes(relative, bytes, stage);
}

bool DataDir::WriteBytes(QStringView relative, const QByteArray& bytes, WriteStage* stage) const {
  if (stage != nullptr) {
    *stage = WriteStage::Open;
  }
  QStringList parts = Components(relative);
  if (parts.isEmpty() || !IsInside(parts)) {
    return false;
  }
  const bool isPrivate = IsPrivate(parts);
  parts.removeLast();
  if (!parts.isEmpty() && !MakeDir(parts.join(QLatin1Char('/')))) {
    return false;
  }
  QSaveFile file(Resolve(relative));
  if (!file.open(QIODevice::WriteOnly)) {
    return false;
  }
  if (isPrivate && ::fchmod(file.handle(), S_IRUSR | S_IWUSR) != 0) {
    file.cancelWriting();
    return false;
  }
  if (file.write(bytes) != bytes.size()) {
    file.cancelWriting();
    return false;
  }
  if (stage != nullptr) {
    *stage = WriteStage::Commit;
  }
  return file.commit();
}

bool DataDir::Remove(QStringView relative) const {
  const QString path = Resolve(relative);
  return !path.isEmpty() && QFile::remove(path);
}

QStringList DataDir::ListFiles(QStringView folder, const QString& pattern) const {
  const QString path = folder.isEmpty() ? root_ : Resolve(folder);
  if (path.isEmpty()) {
    return {};
  }
  const bool all = pattern == QLatin1String("*");
  const QRegularExpression match(all ? QString() : QRegularExpression::wildcardToRegularExpression(pattern),
                                 QRegularExpression::CaseInsensitiveOption);
  QStringList names;
  // The records' folder holds a file per connection, a hundred thousand after
  // some years: read it plainly, and ask the file system about an entry only
  // when the folder listing doesn't tell its type.
  const QByteArray base = QFile::encodeName(path) + '/';
  DIR* listing = ::opendir(base.constData());
  if (listing == nullptr) {
    return names;
  }
  while (const dirent* entry = ::readdir(listing)) {
    bool isFile = entry->d_type == DT_REG;
    if (entry->d_type == DT_UNKNOWN || entry->d_type == DT_LNK) {
      struct stat info {};
      isFile = ::stat((base + entry->d_name).constData(), &info) == 0 && S_ISREG(info.st_mode);
    }
    if (!isFile) {
      continue;
    }
    const QString name = QFile::decodeName(entry->d_name);
    if (IsSaveLeftover(name)) {
      continue;
    }
    if (all || match.match(name).hasMatch()) {
      names.append(name);
    }
  }
  ::closedir(listing);
  std::sort(names.begin(), names.end());
  return names;
}

void DataDir::RemoveSaveLeftovers() const {
  QStringList folders{QString()};
  const QByteArray base = QFile::encodeName(root_) + '/';
  if (DIR* listing = ::opendir(base.constData())) {
    while (const dirent* entry = ::readdir(listing)) {
      const QString name = QFile::decodeName(entry->d_name);
      if (name != QLatin1String(".") && name != QLatin1String("..") && DirExists(name)) {
        folders.append(name);
      }
    }
    ::closedir(listing);
  }
  for (const QString& folder : folders) {
    const QString path = folder.isEmpty() ? root_ : root_ + QLatin1Char('/') + folder;
    QDirIterator it(path, QDir::Files | QDir::Hidden | QDir::System);
    while (it.hasNext()) {
      it.next();
      if (IsSaveLeftover(it.fileName())) {
        QFile::remove(it.filePath());
      }
    }
  }
}

QString DataDir::DefaultLocation(const QString& executableDir) {
  if (QFileInfo::exists(executableDir + QStringLiteral("/portable"))) {
    return executableDir;
  }
  QString base = qEnvironmentVariable("XDG_DATA_HOME");
  if (base.isEmpty() || !QDir::isAbsolutePath(base)) {
    base = QDir::homePath() + QStringLiteral("/.local/share");
  }
  return base + QStringLiteral("/minutor");
}

QString DataDir::ShippedLocation(const QString& executableDir) {
  const QStringList candidates = {
      executableDir + QStringLiteral("/../share/minutor"),
      QStringLiteral(MINUTOR_INSTALLED_DATA_DIR),
      QStringLiteral(MINUTOR_BUILD_DATA_DIR),
  };
  for (const QString& candidate : candidates) {
    if (QFileInfo::exists(candidate + QStringLiteral("/Tarife"))) {
      return QDir::cleanPath(candidate);
    }
  }
  return {};
}

void DataDir::CopyShippedFiles(const QString& shippedDir) const {
  if (shippedDir.isEmpty()) {
    return;
  }
  // Each shipped file is offered once: one the user has deleted stays
  // deleted, and a later version adds only what it newly ships.
  QList<QByteArray> offered = ReadLines(kShippedNote).value_or(QList<QByteArray>());
  const qsizetype before = offered.size();
  const QDir source(shippedDir);
  QDirIterator it(shippedDir, QDir::Files, QDirIterator::Subdirectories);
  while (it.hasNext()) {
    const QString from = it.next();
    const QString relative = source.relativeFilePath(from);
    const QByteArray note = relative.toLower().toUtf8();
    if (offered.contains(note)) {
      continue;
    }
    if (!FileExists(relative)) {
      const auto bytes = ReadFileBytes(from);
      if (!bytes || !WriteBytes(relative, *bytes)) {
        // Offered again at the next start.
        continue;
      }
    }
    offered.append(note);
  }
  if (offered.size() != before) {
    WriteLines(kShippedNote, offered);
  }
}

bool IsSaveLeftover(QStringView name) {
  static const QRegularExpression leftover(QStringLiteral("^[^.].*\\.[^.]+\\.[A-Za-z0-9]{6}$"));
  return leftover.match(name.toString()).hasMatch();
}

QList<QByteArray> SplitLines(const QByteArray& bytes) {
  QList<QByteArray> lines;
  qsizetype start = 0;
  const qsizetype size = bytes.size();
  while (start < size) {
    qsizetype end = bytes.indexOf('\n', start);
    const qsizetype next = end < 0 ? size : end + 1;
    if (end < 0) {
      end = size;
    }
    qsizetype stop = end;
    if (stop > start && bytes.at(stop - 1) == '\r') {
      --stop;
    }
    lines.append(bytes.mid(start, stop - start));
    start = next;
  }
  return lines;
}

std::optional<QByteArray> ReadFileBytes(const QString& absolutePath, qsizetype limit) {
  // Without O_NONBLOCK the open of a FIFO waits for a writer, for ever.
  const int fd = ::open(QFile::encodeName(absolutePath).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (fd < 0) {
    return std::nullopt;
  }
  struct stat st {};
  if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
    ::close(fd);
    return std::nullopt;
  }
  QByteArray bytes;
  char buffer[4096];
  while (limit < 0 || bytes.size() < limit) {
    const size_t want =
        limit < 0 ? sizeof buffer : std::min<size_t>(sizeof buffer, size_t(limit - bytes.size()));
    const ssize_t got = ::read(fd, buffer, want);
    if (got < 0) {
      ::close(fd);
      return std::nullopt;
    }
    if (got == 0) {
      break;
    }
    bytes.append(buffer, got);
  }
  ::close(fd);
  return bytes;
}

}  // namespace minutor
