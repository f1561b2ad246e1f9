#pragma once

#include <QDate>
#include <QList>
#include <QString>

#include <atomic>
#include <functional>

namespace minutor {

class DataDir;

struct TariffCost {
  QString file;  // the tariff's file name
  double cost = 0;
};

struct TariffComparison {
  QList<TariffCost> tariffs;  // cheapest first, equal costs by file name
  double actual = 0;          // what the records say the period cost
  int connections = 0;
  bool cancelled = false;
};

// "Was hätte es gekostet?": every connection of the analysis' period and
// user ("[Alle]" for everybody) priced again under every tariff in Tarife,
// as the meter would have charged it (see TariffRepricer), and summed as the
// records would hold it. `progress` hears the percentage done now and then.
// Stops early, cancelled, once `cancel` is set.
TariffComparison CompareTariffs(const DataDir& dir, const QString& period, const QString& user,
                                const QDate& today, const std::atomic<bool>* cancel = nullptr,
                                const std::function<void(int percent)>& progress = {});

}  // namespace minutor
