#pragma once

#include "online/UpdateIndex.h"

#include <QObject>
#include <QStringList>

namespace minutor {

class Clock;
class DataDir;
class Fetcher;

// "Jetzt herunterladen": fetches the marked tariffs one after the other into
// "Tarife", and when all are through writes "Config/Update.cfg", so that
// those not marked or not fetched aren't offered again. A tariff is written
// only once it has come whole; a cancel leaves the ones already written and
// "Update.cfg" as it was.
class UpdateDownload : public QObject {
  Q_OBJECT

 public:
  UpdateDownload(const DataDir& dir, const Clock& clock, Fetcher& fetcher, QList<UpdateEntry> marked,
                 int letzteSerie, QObject* parent = nullptr);

  void Start();
  void Cancel();

  // The files written so far, as "Tarife/<name>".
  const QStringList& Written() const { return written_; }

 signals:
  // Before each file: "Aktuell: <name>". After each: done of total.
  void status(const QString& text);
  void progress(int done, int total);
  // All files were tried and "Update.cfg" is written.
  void finished();

 private:
  void FetchNext();

  const DataDir& dir_;
  const Clock& clock_;
  Fetcher& fetcher_;
  QList<UpdateEntry> marked_;
  int letzteSerie_;
  qsizetype next_ = 0;
  bool cancelled_ = false;
  QStringList written_;
};

}  // namespace minutor
