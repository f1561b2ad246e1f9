#include "online/UpdateDownload.h"

#include "frame/Clock.h"
#include "frame/datadir/DataDir.h"
#include "online/Fetcher.h"
#include "online/UpdateFiles.h"

namespace minutor {

UpdateDownload::UpdateDownload(const DataDir& dir, const Clock& clock, Fetcher& fetcher,
                               QList<UpdateEntry> marked, int letzteSerie, QObject* parent)
    : QObject(parent),
      dir_(dir),
      clock_(clock),
      fetcher_(fetcher),
      marked_(std::move(marked)),
      letzteSerie_(letzteSerie) {}

void UpdateDownload::Start() { FetchNext(); }

void UpdateDownload::Cancel() {
  cancelled_ = true;
  fetcher_.Abort(this);
}

void UpdateDownload::FetchNext() {
  if (cancelled_) {
    return;
  }
  if (next_ >= marked_.size()) {
    WriteUpdateCfg(dir_, letzteSerie_, clock_.Now().date());
    emit finished();
    return;
  }
  const UpdateEntry entry = marked_.at(next_);
  emit status(QStringLiteral("Aktuell: ") + entry.fileName);
  fetcher_.Fetch(entry.address, this, [this, entry](std::optional<QByteArray> body) {
    // A tariff from a Unix server gets CR LF line ends, as every file here has.
    const QString target = QStringLiteral("Tarife/") + entry.fileName;
    if (body && IsUpdateFileName(entry.fileName) && dir_.WriteLines(target, SplitLines(*body))) {
      written_.append(target);
    }
    ++next_;
    emit progress(static_cast<int>(next_), static_cast<int>(marked_.size()));
    FetchNext();
  });
}

}  // namespace minutor
