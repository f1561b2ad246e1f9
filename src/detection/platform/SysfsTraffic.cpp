#include "detection/platform/SysfsTraffic.h"

#include <QFile>

#include <algorithm>
#include <utility>

namespace minutor {

namespace {

enum class Outcome { Read, Missing, Unreadable };

// A statistics file holds one decimal number and a line end. Anything else
// (an empty file, a sign, text, a number beyond 64 bits) isn't a count.
Outcome ReadCounter(const QString& path, quint64* value) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) {
    return QFile::exists(path) ? Outcome::Unreadable : Outcome::Missing;
  }
  const QByteArray text = file.read(32).trimmed();
  bool ok =
      !text.isEmpty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
  *value = ok ? text.toULongLong(&ok) : 0;
  return ok ? Outcome::Read : Outcome::Unreadable;
}

}  // namespace

SysfsTraffic::SysfsTraffic(QString interfaceName, QString root)
    : interface_(std::move(interfaceName)), root_(std::move(root)) {}

void SysfsTraffic::SetInterface(const QString& interfaceName) {
  interface_ = interfaceName;
  seen_ = false;
  gone_ = false;
}

double SysfsTraffic::Counter::Advance(quint64 value) {
  if (value < last) {
    origin = 0;
  }
  last = value;
  return static_cast<double>(value - origin);
}

std::optional<TrafficCount> SysfsTraffic::Read(qint32) {
  // No interface name holds a slash or is "." or "..": such a name would
  // read beside the interfaces' folders.
  if (interface_.isEmpty() || interface_.contains(QLatin1Char('/')) || interface_ == QStringLiteral(".") ||
      interface_ == QStringLiteral("..")) {
    return std::nullopt;
  }
  const QString statistics = root_ + QLatin1Char('/') + interface_ + QStringLiteral("/statistics/");
  quint64 rx = 0;
  quint64 tx = 0;
  const Outcome rxRead = ReadCounter(statistics + QStringLiteral("rx_bytes"), &rx);
  const Outcome txRead = ReadCounter(statistics + QStringLiteral("tx_bytes"), &tx);
  if (rxRead != Outcome::Read || txRead != Outcome::Read) {
    // Only a vanished interface makes the next one new; a bad read is passed
    // over.
    gone_ = gone_ || (seen_ && (rxRead == Outcome::Missing || txRead == Outcome::Missing));
    return std::nullopt;
  }
  if (!seen_) {
    received_ = Counter{rx, rx};
    sent_ = Counter{tx, tx};
    seen_ = true;
  } else if (gone_) {
    received_ = Counter{};
    sent_ = Counter{};
  }
  gone_ = false;
  return TrafficCount{received_.Advance(rx), sent_.Advance(tx)};
}

}  // namespace minutor
