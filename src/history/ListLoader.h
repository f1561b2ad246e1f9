#pragma once

#include "frame/datadir/DataDir.h"
#include "history/ConnectionList.h"
#include "history/ListSort.h"

#include <QList>
#include <QObject>

#include <atomic>
#include <memory>

class QThread;

namespace minutor {

// Reads the list on a thread of its own, so that the panel stays responsive
// over a long history. A newer request cancels the one in flight; only the
// newest result is handed over.
class ListLoader : public QObject {
  Q_OBJECT

 public:
  explicit ListLoader(DataDir dir, QObject* parent = nullptr);
  ~ListLoader() override;

  void Load(const ListQuery& query, const ListSort& sort);
  bool IsLoading() const;

 signals:
  // The rows come sorted.
  void loaded(const minutor::ListResult& result);

 private:
  struct Job {
    QThread* thread = nullptr;
    std::shared_ptr<std::atomic<bool>> cancel;
    std::shared_ptr<ListResult> result;
    quint64 generation = 0;
  };

  void Finished(quint64 generation);

  DataDir dir_;
  QList<Job> jobs_;
  quint64 generation_ = 0;
};

}  // namespace minutor
