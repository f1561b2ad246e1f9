#include "history/ListLoader.h"

#include <QThread>

#include <algorithm>

namespace minutor {

ListLoader::ListLoader(DataDir dir, QObject* parent) : QObject(parent), dir_(std::move(dir)) {}

ListLoader::~ListLoader() {
  for (const Job& job : jobs_) {
    job.cancel->store(true);
  }
  for (const Job& job : jobs_) {
    job.thread->wait();
    delete job.thread;
  }
}

void ListLoader::Load(const ListQuery& query, const ListSort& sort) {
  for (const Job& job : jobs_) {
    job.cancel->store(true);
  }
  Job job;
  job.generation = ++generation_;
  job.cancel = std::make_shared<std::atomic<bool>>(false);
  job.result = std::make_shared<ListResult>();
  job.thread = QThread::create([dir = dir_, query, sort, cancel = job.cancel, result = job.result] {
    *result = GetConnections(dir, query, cancel.get());
    if (!cancel->load()) {
      SortRows(result->rows, sort);
    }
  });
  const quint64 generation = job.generation;
  connect(job.thread, &QThread::finished, this, [this, generation] { Finished(generation); });
  jobs_.append(job);
  job.thread->start();
}

bool ListLoader::IsLoading() const {
  return std::any_of(jobs_.begin(), jobs_.end(),
                     [this](const Job& job) { return job.generation == generation_; });
}

void ListLoader::Finished(quint64 generation) {
  for (qsizetype i = 0; i < jobs_.size(); ++i) {
    if (jobs_[i].generation != generation) {
      continue;
    }
    const Job job = jobs_.takeAt(i);
    job.thread->wait();
    job.thread->deleteLater();
    if (generation == generation_) {
      emit loaded(*job.result);
    }
    return;
  }
}

}  // namespace minutor
