#pragma once

#include "online/ClockSetter.h"
#include "online/Fetcher.h"

#include <QHash>
#include <QTimer>

namespace minutor::test {

// Answers each address from a table, a moment later as the network would;
// an address not in the table fails.
class FakeFetcher final : public Fetcher {
 public:
  void Fetch(const QString& address, QObject* context, Done done) override {
    asked.append(address);
    QTimer::singleShot(0, context, [this, address, done] {
      done(pages.contains(address) ? std::optional(pages.value(address)) : std::nullopt);
    });
  }
  void Abort(QObject*) override {}

  QHash<QString, QByteArray> pages;
  QStringList asked;
};

// Remembers the moments it was asked to set and answers with `outcome`.
class FakeClockSetter final : public ClockSetter {
 public:
  void SetClock(const QDateTime& moment, QObject*, Done done) override {
    moments.append(moment);
    done(outcome);
  }
  QList<QDateTime> moments;
  Outcome outcome = Outcome::Set;
};

}  // namespace minutor::test
