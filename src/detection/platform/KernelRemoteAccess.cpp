#include "detection/platform/KernelRemoteAccess.h"

#include "detection/RasStates.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTimer>

#include <fcntl.h>
#include <unistd.h>

namespace minutor {

namespace {

const QString kDialPrefix = QStringLiteral("peer:");
constexpr quint32 kArphrdPpp = 512;
constexpr int kDialPollMs = 250;

QString ReadSmallFile(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) {
    return {};
  }
  return QString::fromLocal8Bit(file.read(1 << 16));
}

// pppd's option files: words, with double quotes around words that hold blanks.
QStringList Words(const QString& line) {
  QStringList words;
  static const QRegularExpression word(QStringLiteral(R"re("([^"]*)"|(\S+))re"));
  for (auto it = word.globalMatch(line); it.hasNext();) {
    const QRegularExpressionMatch match = it.next();
    if (match.captured(2).startsWith(QLatin1Char('#'))) {
      break;
    }
    words.append(match.hasCaptured(1) && match.capturedStart(1) >= 0 ? match.captured(1) : match.captured(2));
  }
  return words;
}

qint64 NowMs() { return QDateTime::currentMSecsSinceEpoch(); }

}  // namespace

KernelRemoteAccess::KernelRemoteAccess(const Paths& paths, QObject* parent)
    : RemoteAccess(parent), paths_(paths), dialTimer_(new QTimer(this)) {
  dialTimer_->setInterval(kDialPollMs);
  connect(dialTimer_, &QTimer::timeout, this, &KernelRemoteAccess::CheckDials);
}

QStringList KernelRemoteAccess::GetEntries() {
  QStringList entries;
  const QStringList files = QDir(paths_.peers).entryList(QDir::Files | QDir::Readable, QDir::Name);
  for (const QString& name : files) {
    // Editors and dpkg leave their copies beside the peers.
    if (name.startsWith(QLatin1Char('.')) || name.endsWith(QLatin1Char('~')) ||
        name.contains(QLatin1String(".dpkg-"))) {
      continue;
    }
    entries.append(name);
  }
  return entries;
}

QString KernelRemoteAccess::PeerConnectLine(const QString& entry) const {
  const QStringList lines = ReadSmallFile(paths_.peers + QLatin1Char('/') + entry).split(QLatin1Char('\n'));
  for (const QString& line : lines) {
    const QStringList words = Words(line);
    if (words.value(0) == QLatin1String("connect")) {
      return words.value(1);
    }
  }
  return {};
}

bool KernelRemoteAccess::IsEntry(const QString& entry) const {
  return !entry.isEmpty() && !entry.contains(QLatin1Char('/')) &&
         QFile::exists(paths_.peers + QLatin1Char('/') + entry);
}

QStringList KernelRemoteAccess::UpInterfaces() const {
  QStringList up;
  const QStringList names = QDir(paths_.net).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
  for (const QString& name : names) {
    const QString base = paths_.net + QLatin1Char('/') + name + QLatin1Char('/');
    bool ok = false;
    const uint flags = ReadSmallFile(base + QStringLiteral("flags")).trimmed().toUInt(&ok, 16);
    if (ReadSmallFile(base + QStringLiteral("type")).trimmed().toUInt() == kArphrdPpp && ok && (flags & 1u)) {
      up.append(name);
    }
  }
  return up;
}

QString KernelRemoteAccess::EntryOfInterface(const QString& interfaceName) const {
  // With "linkname", pppd leaves ppp-<name>.pid holding the pid and the
  // interface; that outlasts the program's own memory of what it dialled.
  const QStringList pidFiles =
      QDir(paths_.run).entryList({QStringLiteral("ppp-*.pid")}, QDir::Files, QDir::Name);
  for (const QString& file : pidFiles) {
    const QStringList lines = ReadSmallFile(paths_.run + QLatin1Char('/') + file).split(QLatin1Char('\n'));
    if (lines.value(1).trimmed() == interfaceName) {
      return file.mid(4, file.size() - 8);
    }
  }
  // Without it, pppd still leaves <interface>.pid, and its command line
  // (pon's "pppd call <peer>") names the peer.
  const QString pid = ReadSmallFile(paths_.run + QLatin1Char('/') + interfaceName + QStringLiteral(".pid"))
                          .section(QLatin1Char('\n'), 0, 0)
                          .trimmed();
  bool isNumber = false;
  pid.toUInt(&isNumber);
  if (isNumber) {
    const QStringList arguments =
        ReadSmallFile(paths_.proc + QLatin1Char('/') + pid + QStringLiteral("/cmdline")).split(QChar(u'\0'));
    const qsizetype call = arguments.indexOf(QStringLiteral("call"));
    if (QFileInfo(arguments.value(0)).fileName() == QLatin1String("pppd") && call > 0 &&
        IsEntry(arguments.value(call + 1))) {
      return arguments.value(call + 1);
    }
  }
  return dialledEntries_.value(interfaceName);
}

QList<RasConnection> KernelRemoteAccess::GetRasConnections() {
  QList<RasConnection> connections;
  for (const QString& interfaceName : UpInterfaces()) {
    connections.append({interfaceName, EntryOfInterface(interfaceName), QStringLiteral("ppp"), interfaceName,
                        interfaceName});
  }
  return connections;
}

std::optional<RasDialParams> KernelRemoteAccess::GetDialParams(const QString& entry) {
  if (!IsEntry(entry)) {
    return std::nullopt;
  }
  RasDialParams record;
  record.Eintrag = entry;
  QString dialText = ReadSmallFile(paths_.peers + QLatin1Char('/') + entry);
  const QStringList lines = dialText.split(QLatin1Char('\n'));
  for (const QString& line : lines) {
    const QStringList words = Words(line);
    if (words.value(0) == QLatin1String("user")) {
      record.Benutzer = words.value(1);
    } else if (words.value(0) == QLatin1String("connect")) {
      // The number usually sits in the chat script the connect line names.
      const QStringList chat = Words(words.value(1));
      const qsizetype f = chat.indexOf(QStringLiteral("-f"));
      if (f >= 0) {
        dialText += QLatin1Char('\n') + ReadSmallFile(chat.value(f + 1));
      }
    }
  }
  static const QRegularExpression number(QStringLiteral(R"(ATD[TP]?([0-9*#+, ]+))"),
                                         QRegularExpression::CaseInsensitiveOption);
  record.Telefon = number.match(dialText).captured(1).remove(QLatin1Char(' '));
  if (!record.Benutzer.isEmpty()) {
    const QString secretsDir = QFileInfo(paths_.peers).absolutePath();
    for (const QString& secrets : {QStringLiteral("pap-secrets"), QStringLiteral("chap-secrets")}) {
      const QStringList secretLines =
          ReadSmallFile(secretsDir + QLatin1Char('/') + secrets).split(QLatin1Char('\n'));
      for (const QString& line : secretLines) {
        const QStringList words = Words(line);
        if (words.size() >= 3 && words.at(0) == record.Benutzer && !words.at(2).isEmpty()) {
          record.Passwort = words.at(2);
          record.passwordStored = true;
          return record;
        }
      }
    }
  }
  return record;
}

QString KernelRemoteAccess::DialEntry(const QString& entry, const RasDialParams& params) {
  const std::optional<RasDialParams> stored = GetDialParams(entry);
  if (!stored) {
    return {};
  }
  QStringList arguments{entry};
  if (!params.Benutzer.isEmpty() && params.Benutzer != stored->Benutzer) {
    arguments << QStringLiteral("user") << params.Benutzer;
  }
  // Another number goes to the peer's chat script as its \T. pppd runs the
  // connect line through a shell, so only a plain dial string is passed on.
  static const QRegularExpression dialString(QStringLiteral("^[0-9*#+,]+$"));
  const QString number = QString(params.Telefon).remove(QLatin1Char(' '));
  const QString connectLine = PeerConnectLine(entry);
  if (!number.isEmpty() && number != stored->Telefon && !connectLine.isEmpty() &&
      dialString.match(number).hasMatch()) {
    arguments << QStringLiteral("connect") << connectLine + QStringLiteral(" -T ") + number;
  }
  // A password on the command line could be read by every user of the
  // machine: pppd's passwordfd plugin reads it from a pipe instead, whose
  // other end is closed before pppd starts.
  int passwordPipe[2] = {-1, -1};
  const bool ownPassword =
      !params.Passwort.isEmpty() && (!stored->passwordStored || params.Passwort != stored->Passwort);
  if (ownPassword && ::pipe2(passwordPipe, O_CLOEXEC) == 0) {
    const QByteArray password = params.Passwort.toLocal8Bit();
    const bool written = ::write(passwordPipe[1], password.constData(), password.size()) == password.size();
    ::close(passwordPipe[1]);
    if (!written || ::fcntl(passwordPipe[0], F_SETFD, 0) != 0) {
      ::close(passwordPipe[0]);
      return {};
    }
    arguments << QStringLiteral("plugin") << QStringLiteral("passwordfd.so") << QStringLiteral("passwordfd")
              << QString::number(passwordPipe[0]);
  }
  const bool started = QProcess::startDetached(paths_.pon, arguments);
  if (passwordPipe[0] >= 0) {
    ::close(passwordPipe[0]);
  }
  if (!started) {
    return {};
  }
  const QStringList before = UpInterfaces();
  pending_.insert(entry, {QSet<QString>(before.begin(), before.end()), NowMs()});
  dialTimer_->start();
  const QString handle = kDialPrefix + entry;
  QTimer::singleShot(0, this, [this, handle] { emit DialProgress(handle, RasState::OpenPort); });
  return handle;
}

void KernelRemoteAccess::CheckDials() {
  const QStringList up = UpInterfaces();
  const QStringList entries = pending_.keys();
  for (const QString& entry : entries) {
    const PendingDial dial = pending_.value(entry);
    QString found;
    for (const QString& interfaceName : up) {
      if (EntryOfInterface(interfaceName) == entry ||
          (!dial.interfacesBefore.contains(interfaceName) && EntryOfInterface(interfaceName).isEmpty())) {
        found = interfaceName;
        break;
      }
    }
    if (!found.isEmpty()) {
      dialledEntries_.insert(found, entry);
      pending_.remove(entry);
      emit DialProgress(kDialPrefix + entry, RasState::Connected);
      emit ConnectionsChanged();
    } else if (NowMs() - dial.startedMs > dialTimeoutMs_) {
      pending_.remove(entry);
      emit DialProgress(kDialPrefix + entry, RasState::Disconnected);
    }
  }
  if (pending_.isEmpty()) {
    dialTimer_->stop();
  }
}

std::optional<RasConnStatus> KernelRemoteAccess::GetConnectState(const QString& handle) {
  if (handle.isEmpty()) {
    return std::nullopt;
  }
  for (const RasConnection& connection : GetRasConnections()) {
    const bool match = handle.startsWith(kDialPrefix) ? connection.entryName == handle.mid(kDialPrefix.size())
                                                      : connection.handle == handle;
    if (match) {
      return RasConnStatus{RasState::Connected, 0, connection.deviceType, connection.deviceName, {}};
    }
  }
  if (handle.startsWith(kDialPrefix) && pending_.contains(handle.mid(kDialPrefix.size()))) {
    return RasConnStatus{RasState::OpenPort, 0, QStringLiteral("ppp"), {}, {}};
  }
  return std::nullopt;
}

void KernelRemoteAccess::RequestHangUp(const QString& handle) {
  QString entry = handle.startsWith(kDialPrefix) ? handle.mid(kDialPrefix.size()) : EntryOfInterface(handle);
  pending_.remove(entry);
  // Without a known peer, poff ends the one pppd there is.
  QProcess::startDetached(paths_.poff, entry.isEmpty() ? QStringList() : QStringList{entry});
}

}  // namespace minutor
