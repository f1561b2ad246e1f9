#pragma once

#include "history/ChartDrawing.h"
#include "history/ChartPicture.h"
#include "history/NewestRun.h"

#include <QWidget>

#include <array>
#include <atomic>
#include <memory>

class QComboBox;
class QLabel;
class QToolButton;

namespace minutor {

class ChartView;
struct Services;

// The panel "Monatsdiagramm": one month of the records as a line or bar
// chart of duration, cost or transfer, or as a pie by tariff or by user.
// The figures are gathered on a worker while "Berechne Diagramm..." shows;
// a newer choice overtakes a calculation still running.
class ChartPanel : public QWidget {
  Q_OBJECT

 public:
  // Loads itself: the lists, the choices of Config/Chart.cfg, the first chart.
  explicit ChartPanel(Services& services, QWidget* parent = nullptr);
  ~ChartPanel() override;

  // The buttons 0 "Linien", 1 "Balken", 2 "Kreis", 3 "Anbieter",
  // 4 "Benutzer", 5 "Dauer", 6 "Kosten", 7 "Transfer", as a click does it.
  void ClickButton(int index);

  ChartMeasure Measure() const { return measure_; }
  ChartStyle Style() const { return style_; }
  bool IsCalculating() const;
  ChartView* View() const { return view_; }

 signals:
  // A calculation has ended and its chart shows.
  void drawn();

 private:
  void BuildControls();
  void Start();
  void GetTarife();
  void SetTarif();
  void ApplyChoice(int index);
  void MarkButtons();
  void DrawDiagramm();
  void RedrawAndSave();

  Services& services_;
  ChartMeasure measure_ = ChartMeasure::Dauer;
  ChartStyle style_ = ChartStyle::Balken;
  ChartStyle lastTimeStyle_ = ChartStyle::Balken;
  bool loading_ = true;
  NewestRun<ChartPicture> draw_;

  QComboBox* comZeitraum_ = nullptr;
  QComboBox* comJahr_ = nullptr;
  QComboBox* comUser_ = nullptr;
  QComboBox* comAnbieter_ = nullptr;
  QComboBox* comTarif_ = nullptr;
  ChartView* view_ = nullptr;
  QLabel* AxisX_ = nullptr;
  QLabel* AxisY_ = nullptr;
  QLabel* Label3_ = nullptr;
  std::array<QToolButton*, 8> buttons_{};
};

}  // namespace minutor
