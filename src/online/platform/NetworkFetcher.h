#pragma once

#include "online/Fetcher.h"

#include <QNetworkAccessManager>
#include <QObject>

namespace minutor {

// Fetches over http and https with Qt's network access, the certificates
// checked against the system's. Each fetch has its limits, so that a server
// that never answers, or answers without end, can't keep the program waiting.
class NetworkFetcher final : public QObject, public Fetcher {
 public:
  struct Limits {
    int silenceMs = 15000;        // to connect, and between two pieces of the answer
    int totalMs = 60000;          // for the whole fetch
    qint64 maxBytes = 1'000'000;  // an index or a tariff is far smaller
  };

  explicit NetworkFetcher(QObject* parent = nullptr) : NetworkFetcher(Limits{}, parent) {}
  explicit NetworkFetcher(Limits limits, QObject* parent = nullptr);

  void Fetch(const QString& address, QObject* context, Done done) override;
  void Abort(QObject* context) override;

 private:
  Limits limits_;
  QNetworkAccessManager manager_;
};

}  // namespace minutor
