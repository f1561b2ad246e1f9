#include "online/platform/NetworkFetcher.h"

#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>
#include <QUrl>

namespace minutor {

NetworkFetcher::NetworkFetcher(Limits limits, QObject* parent) : QObject(parent), limits_(limits) {}

void NetworkFetcher::Fetch(const QString& address, Done done) {
  const QUrl url(address.trimmed());
  const QString scheme = url.scheme().toLower();
  if (!url.isValid() || url.host().isEmpty() ||
      (scheme != QLatin1String("http") && scheme != QLatin1String("https"))) {
    QTimer::singleShot(0, this, [done = std::move(done)] { done(std::nullopt); });
    return;
  }
  QNetworkRequest request(url);
  request.setTransferTimeout(limits_.silenceMs);
  request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
  QNetworkReply* reply = manager_.get(request);

  auto* deadline = new QTimer(reply);
  deadline->setSingleShot(true);
  connect(deadline, &QTimer::timeout, reply, &QNetworkReply::abort);
  deadline->start(limits_.totalMs);

  const qint64 maxBytes = limits_.maxBytes;
  connect(reply, &QNetworkReply::downloadProgress, reply, [reply, maxBytes](qint64 received, qint64 total) {
    if (received > maxBytes || total > maxBytes) {
      reply->abort();
    }
  });
  connect(reply, &QNetworkReply::finished, this, [reply, maxBytes, done = std::move(done)] {
    reply->deleteLater();
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (reply->error() != QNetworkReply::NoError || status < 200 || status > 299) {
      done(std::nullopt);
      return;
    }
    const QByteArray body = reply->readAll();
    done(body.size() <= maxBytes ? std::optional(body) : std::nullopt);
  });
}

void NetworkFetcher::Abort() {
  for (QNetworkReply* reply : manager_.findChildren<QNetworkReply*>()) {
    disconnect(reply, nullptr, this, nullptr);
    reply->abort();
    reply->deleteLater();
  }
}

}  // namespace minutor
