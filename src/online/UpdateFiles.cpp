#include "online/UpdateFiles.h"

#include "frame/datadir/AnsiText.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/NumberText.h"

#include <algorithm>

namespace minutor {

namespace {

const QString kServers = QStringLiteral("Servers.dat");
const QString kRevision = QStringLiteral("Revision.dat");
const QString kUpdate = QStringLiteral("Config/Update.cfg");
const QString kAutoupdate = QStringLiteral("Config/Autoupdate.cfg");
const QString kOnline = QStringLiteral("Online.dat");

QByteArray Line(const DataDir& dir, const QString& file, int index) {
  const auto lines = dir.ReadLines(file);
  return lines && lines->size() > index ? lines->at(index) : QByteArray();
}

}  // namespace

std::optional<QStringList> ReadServers(const DataDir& dir) {
  const auto lines = dir.ReadLines(kServers);
  if (!lines) {
    return std::nullopt;
  }
  QStringList servers;
  for (const QByteArray& line : *lines) {
    servers.append(FromAnsi(line));
  }
  return servers;
}

std::optional<double> ReadRevision(const DataDir& dir) {
  const auto lines = dir.ReadLines(kRevision);
  if (!lines) {
    return std::nullopt;
  }
  return LeadingNumber(lines->value(0));
}

int ReadLastBatch(const DataDir& dir) {
  return static_cast<int>(std::clamp(LeadingNumber(Line(dir, kUpdate, 0)), 0.0, 1e9));
}

bool WriteUpdateCfg(const DataDir& dir, int letzteSerie, const QDate& today) {
  return dir.WriteLines(
      kUpdate, {PrintedNumber(letzteSerie), today.toString(QStringLiteral("dd.MM.yyyy")).toLatin1()});
}

AutoupdateSettings ReadAutoupdateSettings(const DataDir& dir) {
  AutoupdateSettings settings;
  settings.on = IsOne(Line(dir, kAutoupdate, 0));
  settings.days = static_cast<int>(std::clamp(LeadingNumber(Line(dir, kAutoupdate, 1)), 7.0, 255.0));
  return settings;
}

bool WriteAutoupdateSettings(const DataDir& dir, bool on, int comboIndex) {
  static const int kDays[] = {7, 14, 30};
  const int days = comboIndex >= 0 && comboIndex < 3 ? kDays[comboIndex] : 7;
  return dir.WriteLines(kAutoupdate, {PrintedNumber(on ? 1 : 0), PrintedNumber(days)});
}

OnlineAddresses ReadOnlineAddresses(const DataDir& dir) {
  return {FromAnsi(Line(dir, kOnline, 0)).trimmed(), FromAnsi(Line(dir, kOnline, 1)).trimmed()};
}

QString TimePageAddress(const QString& host) {
  return host.isEmpty() ? QString() : host + QStringLiteral("/xdate?Etc/GMT");
}

}  // namespace minutor
