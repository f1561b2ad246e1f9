#pragma once

#include "history/NewestRun.h"
#include "history/TariffComparison.h"

#include <QGroupBox>

#include <atomic>
#include <memory>

class QLabel;
class QProgressBar;
class QPushButton;
class QTableWidget;

namespace minutor {

struct Services;
struct TariffComparison;

// The analysis' section "Was hätte es gekostet?": on request, the period and
// user of the analysis priced under every tariff of the catalogue, on a
// worker, with its progress and a button that cancels it. The table lists
// the tariffs cheapest first with the difference to what the period did cost.
class TariffComparisonView : public QGroupBox {
  Q_OBJECT

 public:
  explicit TariffComparisonView(Services& services, QWidget* parent = nullptr);
  ~TariffComparisonView() override;

  // The analysis' choice: a table of another choice is taken away, and a
  // comparison in flight is cancelled.
  void SetSelection(const QString& period, const QString& user);

  bool IsComparing() const;

 public slots:
  void Compare();
  void Cancel();

 signals:
  // A comparison has ended: shown, or cancelled.
  void finished();

 private:
  void Show(const TariffComparison& comparison);
  void SetRunning(bool running);

  Services& services_;
  QString period_;
  QString user_;
  NewestRun<TariffComparison> compare_;

  QPushButton* cmdVergleichen_ = nullptr;
  QPushButton* cmdAbbrechen_ = nullptr;
  QProgressBar* progress_ = nullptr;
  QLabel* lblVergleich_ = nullptr;
  QTableWidget* tblVergleich_ = nullptr;
};

}  // namespace minutor
