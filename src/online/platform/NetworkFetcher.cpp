#include "online/platform/NetworkFetcher.h"

#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>
#include <QUrl>

namespace minutor {

NetworkFetcher::NetworkFetcher(Limits limits, QObject* parent) : QObject(parent), limits_(limits) {}

namespace {

// The object a reply was fetched for, kept on the reply.
const char* const kContextProperty = "minutorContext";

}  // namespace

void NetworkFetcher::Fetch(const QString& address, QObject* context, Done done) {
  const QUrl url(address.trimmed());
  const QString scheme = url.scheme().toLower();
  if (!url.isValid() || url.host().isEmpty() ||
      (scheme != QLatin1String("http") && scheme != QLatin1String("https"))) {
    QTimer::singleShot(0, context, [done = std::move(done)] { done(std::nullopt); });
    return;
  }
  QNetworkRequest request(url);
  request.setTransferTimeout(limits_.silenceMs);
  request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
  QNetworkReply* reply = manager_.get(request);
  reply->setProperty(kContextProperty, QVariant::fromValue(static_cast<void*>(context)));
  connect(context, &QObject::destroyed, reply, &QNetworkReply::abort);
  connect(reply, &QNetworkReply::finished, reply, &QObject::deleteLater);

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
  connect(reply, &QNetworkReply::finished, context, [reply, maxBytes, done = std::move(done)] {
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (reply->error() != QNetworkReply::NoError || status < 200 || status > 299) {
      done(std::nullopt);
      return;
    }
    const QByteArray body = reply->readAll();
    done(body.size() <= maxBytes ? std::optional(body) : std::nullopt);
  });
}

void NetworkFetcher::Abort(QObject* context) {
  for (QNetworkReply* reply : manager_.findChildren<QNetworkReply*>()) {
    if (reply->property(kContextProperty).value<void*>() == context) {
      disconnect(reply, &QNetworkReply::finished, context, nullptr);
      reply->abort();
    }
  }
}

}  // namespace minutor
