#pragma once

#include <QLabel>
#include <QPoint>
#include <QWidget>

namespace minutor {

struct Services;

// The floating window that shows the running meter over other applications
// while the main window stays minimised: frameless, always on top, dragged by
// its body, its opacity set with a small slider.
class SmallWindow : public QWidget {
  Q_OBJECT

 public:
  // A top-level tool window; the parent only owns it.
  explicit SmallWindow(Services& services, QWidget* parent = nullptr);
  ~SmallWindow() override;

  // Puts the window at its saved place with its saved opacity and shows it on
  // top of the others.
  void Initialise();

  // Each meter tick: the duration and cost labels' texts, the volume and
  // rate texts (SmallWindowVolumeText, SmallWindowRateText).
  void UpdateSmallWindow(const QString& dauer, const QString& kosten, const QString& volumen,
                         const QString& rate);

  static constexpr int kSliderWidth = 28;
  static constexpr int kSliderHeight = 12;

 signals:
  // A double click on the body: back to the main window.
  void restoreRequested();
  // The button: the main window is to be minimised along with this one.
  void minimizeRequested();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void SetAlpha(int alpha);
  void ApplyTransparency();
  void SavePos() const;
  void PaintSlider();

  Services& services_;
  QLabel* fields_[4] = {};
  QWidget* slider_ = nullptr;
  int alpha_ = 255;
  bool translucent_ = true;  // whether the window system can make the window see-through
  bool sliding_ = false;
  bool pressed_ = false;  // left button down on the body, not yet dragging
  bool dragging_ = false;
  QPoint grabOffset_;
};

}  // namespace minutor
