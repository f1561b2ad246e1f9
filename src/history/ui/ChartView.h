#pragma once

#include "history/ChartPicture.h"

#include <QWidget>

namespace minutor {

// The chart's drawing surface: white, at most of the chart's size.
class ChartView : public QWidget {
  Q_OBJECT

 public:
  explicit ChartView(QWidget* parent = nullptr);

  void SetPicture(ChartPicture picture);
  const ChartPicture& Picture() const { return picture_; }
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  ChartPicture picture_;
};

}  // namespace minutor
