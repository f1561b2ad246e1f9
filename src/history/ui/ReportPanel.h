#pragma once

#include "history/NewestRun.h"
#include "history/Report.h"

#include <QWidget>

#include <array>
#include <atomic>
#include <memory>

class QComboBox;
class QLabel;

namespace minutor {

struct Services;
class TariffComparisonView;

// The panel "Analyse": eleven sentences on the habits of one user in one
// period, and the totals of duration, cost and transfer. Each choice reads
// the records afresh on a worker; a newer choice overtakes a run in flight.
class ReportPanel : public QWidget {
  Q_OBJECT

 public:
  explicit ReportPanel(Services& services, QWidget* parent = nullptr);
  ~ReportPanel() override;

  bool IsCalculating() const;

 signals:
  // A run has ended and its texts show.
  void built();

 private:
  void BuildControls();
  void BuildReport();
  void Show(const ReportTexts& texts);

  Services& services_;
  NewestRun<ReportTexts> build_;

  QComboBox* comZeitraum_ = nullptr;
  QComboBox* comUser_ = nullptr;
  QLabel* lblGesamtKosten_ = nullptr;
  QLabel* lblGesamtDauer_ = nullptr;
  QLabel* lblGesamtTransfer_ = nullptr;
  QLabel* busy_ = nullptr;
  TariffComparisonView* comparison_ = nullptr;
  std::array<QLabel*, 11> Label2_{};
};

}  // namespace minutor
