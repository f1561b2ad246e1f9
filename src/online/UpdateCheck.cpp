#include "online/UpdateCheck.h"

#include "frame/Prompter.h"
#include "online/Fetcher.h"
#include "online/UpdateFiles.h"

namespace minutor {

UpdateCheck::UpdateCheck(const DataDir& dir, Prompter& prompter, Fetcher& fetcher, QObject* parent)
    : QObject(parent), dir_(dir), prompter_(prompter), fetcher_(fetcher) {}

void UpdateCheck::Start() {
  const auto servers = ReadServers(dir_);
  if (!servers) {
    prompter_.Message(QStringLiteral("Kann die Datei 'Servers.dat' nicht finden. Diese ist nötig um "
                                     "Tarifupdates durchführen zu können. Sie wird bei der Installation "
                                     "erstellt."),
                      Prompter::Icon::Warning);
    emit finished();
    return;
  }
  StartWith(*servers);
}

void UpdateCheck::StartWith(const QStringList& servers) {
  servers_ = servers;
  AskNext();
}

void UpdateCheck::AskNext() {
  if (servers_.isEmpty()) {
    emit finished();
    return;
  }
  const QString base = servers_.takeFirst();
  fetcher_.Fetch(base + QStringLiteral("/update.txt"), this, [this, base](std::optional<QByteArray> body) {
    const auto index = body ? ParseUpdateIndex(*body, base, ReadLastBatch(dir_)) : std::nullopt;
    if (index) {
      const auto revision = ReadRevision(dir_);
      newerRevision_ = newerRevision_ || (revision && *revision < index->revision);
      entries_ = index->entries;
      letzteSerie_ = index->letzteSerie;
      if (!entries_.isEmpty()) {
        emit finished();
        return;
      }
    }
    AskNext();
  });
}

}  // namespace minutor
