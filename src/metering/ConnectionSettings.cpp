#include "metering/ConnectionSettings.h"

#include "frame/datadir/AnsiText.h"
#include "frame/datadir/ClockText.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/NumberText.h"
#include "online/UpdateFiles.h"

namespace minutor {

namespace {

const QString kUpdate = QStringLiteral("Config/Update.cfg");
const QString kTimesync = QStringLiteral("Config/Timesync.cfg");
const QString kSmallwindow = QStringLiteral("Config/Smallwindow.cfg");

QByteArray Line(const DataDir& dir, const QString& file, int index) {
  const auto lines = dir.ReadLines(file);
  return lines && lines->size() > index ? lines->at(index) : QByteArray();
}

bool FirstLineIsOne(const DataDir& dir, const QString& file) { return IsOne(Line(dir, file, 0)); }

void WriteBox(const DataDir& dir, const QString& file, bool on) {
  dir.WriteLines(file, {PrintedNumber(on ? 1 : 0)});
}

}  // namespace

bool LoadAutoupdateState(const DataDir& dir, const QDate& today) {
  const AutoupdateSettings settings = ReadAutoupdateSettings(dir);
  if (!settings.on) {
    return false;
  }
  const int days = settings.days;
  if (!dir.FileExists(kUpdate)) {
    return true;
  }
  const QString stored = FromAnsi(Line(dir, kUpdate, 1));
  QDate last = today;
  if (stored.size() > 7) {
    last = QDate::fromString(stored.trimmed(), QStringLiteral("dd.MM.yyyy"));
    if (!last.isValid()) {
      last = ParseShortDate(stored);
    }
    if (!last.isValid()) {
      return true;
    }
  }
  const qint64 since = last.daysTo(today);
  return !(since >= 0 && since < days);
}

bool LoadTimesyncState(const DataDir& dir) { return FirstLineIsOne(dir, kTimesync); }

void SaveTimesyncState(const DataDir& dir, bool on) { WriteBox(dir, kTimesync, on); }

bool LoadSmallWindowState(const DataDir& dir) { return FirstLineIsOne(dir, kSmallwindow); }

void SaveSmallWindowState(const DataDir& dir, bool on) { WriteBox(dir, kSmallwindow, on); }

}  // namespace minutor
