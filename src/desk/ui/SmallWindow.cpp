#include "desk/ui/SmallWindow.h"

#include "desk/SmallWindowSettings.h"
#include "frame/Services.h"

#include <QFrame>
#include <QGridLayout>
#include <QGuiApplication>
#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWindow>

#include <algorithm>

namespace minutor {

namespace {

QList<QRect> AvailableScreens() {
  QList<QRect> rects;
  for (const QScreen* screen : QGuiApplication::screens()) {
    rects.append(screen->availableGeometry());
  }
  return rects;
}

}  // namespace

SmallWindow::SmallWindow(Services& services, QWidget* parent)
    : QWidget(parent, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint), services_(services) {
  setObjectName(QStringLiteral("SmallWindow"));
  setWindowTitle(QStringLiteral("Minutor"));
  // Wayland gives a client no say over a window's opacity; there the slider
  // would move and nothing would happen.
  translucent_ = !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));

  auto* body = new QFrame(this);
  body->setObjectName(QStringLiteral("Picture1"));
  body->setFrameStyle(QFrame::Box | QFrame::Plain);
  body->setCursor(Qt::SizeAllCursor);
  body->setToolTip(QStringLiteral("Doppelklick: zurück zum Hauptfenster"));

  const QString widest[4] = {QStringLiteral("000:00:00"), QStringLiteral("0 (0000,000 sFr)"),
                             QStringLiteral("0000000 KB "), QStringLiteral("0000,0 KB/s")};
  auto* grid = new QGridLayout(body);
  grid->setContentsMargins(6, 3, 4, 3);
  grid->setHorizontalSpacing(10);
  grid->setVerticalSpacing(1);
  for (int i = 0; i < 4; ++i) {
    fields_[i] = new QLabel(body);
    fields_[i]->setObjectName(QStringLiteral("Label2_%1").arg(i));
    fields_[i]->setTextFormat(Qt::PlainText);
    fields_[i]->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    fields_[i]->setMinimumWidth(fields_[i]->fontMetrics().horizontalAdvance(widest[i]));
    grid->addWidget(fields_[i], i / 2, i % 2);
  }

  auto* minimize = new QToolButton(body);
  minimize->setObjectName(QStringLiteral("Command1"));
  minimize->setText(QStringLiteral("_"));
  minimize->setToolTip(QStringLiteral("Minimieren"));
  minimize->setAutoRaise(true);
  minimize->setCursor(Qt::ArrowCursor);
  grid->addWidget(minimize, 0, 2, Qt::AlignRight | Qt::AlignTop);

  slider_ = new QWidget(body);
  slider_->setObjectName(QStringLiteral("Picture2"));
  slider_->setFixedSize(kSliderWidth, kSliderHeight);
  slider_->setCursor(Qt::PointingHandCursor);
  slider_->setToolTip(QStringLiteral("Transparenz"));
  slider_->installEventFilter(this);
  slider_->setVisible(translucent_);
  grid->addWidget(slider_, 1, 2, Qt::AlignRight | Qt::AlignVCenter);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  layout->addWidget(body);

  connect(minimize, &QToolButton::clicked, this, [this] {
    // The main window first: its own change of state may set this one back to
    // normal, and this window is to end up minimised as well.
    emit minimizeRequested();
    showMinimized();
  });
}

SmallWindow::~SmallWindow() {
  if (isVisible()) {
    SavePos();
  }
}

void SmallWindow::Initialise() {
  const SmallWindowSettings settings = ReadSmallWindowSettings(services_.dir);
  // Never below what the slider can reach: a window made invisible by a
  // hand-edited file couldn't be found to set it back.
  alpha_ = std::max(settings.alpha, SliderAlpha(kSliderWidth - 2, kSliderWidth));
  adjustSize();
  if (settings.pos) {
    move(PlaceOnScreen(QRect(*settings.pos, size()), AvailableScreens()));
  }
  ApplyTransparency();
  // Given a parent, the window system would treat this window as the main
  // window's dialog and take it away whenever the main window is minimised,
  // which is when it is wanted most.
  winId();
  if (QWindow* window = windowHandle()) {
    window->setTransientParent(nullptr);
  }
  showNormal();
  raise();
}

void SmallWindow::UpdateSmallWindow(const QString& dauer, const QString& kosten, const QString& volumen,
                                    const QString& rate) {
  fields_[0]->setText(dauer);
  fields_[1]->setText(kosten);
  fields_[2]->setText(volumen);
  fields_[3]->setText(rate);
}

bool SmallWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched != slider_) {
    return QWidget::eventFilter(watched, event);
  }
  switch (event->type()) {
    case QEvent::Paint:
      PaintSlider();
      return true;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: {
      auto* mouse = static_cast<QMouseEvent*>(event);
      if (mouse->button() == Qt::LeftButton) {
        sliding_ = true;
        SetAlpha(SliderAlpha(mouse->position().toPoint().x(), slider_->width()));
      }
      return true;
    }
    case QEvent::MouseMove:
      if (sliding_) {
        SetAlpha(SliderAlpha(static_cast<QMouseEvent*>(event)->position().toPoint().x(), slider_->width()));
      }
      return true;
    case QEvent::MouseButtonRelease:
      if (sliding_ && static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
        sliding_ = false;
        SavePos();
      }
      return true;
    default:
      return false;
  }
}

// The labels don't take the mouse, so presses on them arrive here through the
// body just like presses on the body itself.
void SmallWindow::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) {
    QWidget::mousePressEvent(event);
    return;
  }
  pressed_ = true;
  dragging_ = false;
  grabOffset_ = event->globalPosition().toPoint() - pos();
}

// The window system moves the window where it can (and must, on Wayland); the
// move is handed over only once the mouse moves, so that a double click stays
// a double click.
void SmallWindow::mouseMoveEvent(QMouseEvent* event) {
  if (!pressed_ || !(event->buttons() & Qt::LeftButton)) {
    QWidget::mouseMoveEvent(event);
    return;
  }
  if (!dragging_) {
    if (windowHandle() && windowHandle()->startSystemMove()) {
      pressed_ = false;
      return;
    }
    dragging_ = true;
  }
  move(event->globalPosition().toPoint() - grabOffset_);
}

void SmallWindow::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    pressed_ = false;
    dragging_ = false;
  }
  QWidget::mouseReleaseEvent(event);
}

void SmallWindow::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    pressed_ = false;
    emit restoreRequested();
  }
}

void SmallWindow::hideEvent(QHideEvent* event) {
  // Closing and hiding are this window's unload; a minimise by the window
  // system is not.
  if (!event->spontaneous()) {
    SavePos();
  }
  QWidget::hideEvent(event);
}

void SmallWindow::SetAlpha(int alpha) {
  if (alpha == alpha_) {
    return;
  }
  alpha_ = alpha;
  ApplyTransparency();
  slider_->update();
}

void SmallWindow::ApplyTransparency() {
  // 255 gives exactly 1, which takes the window out of blending.
  setWindowOpacity(translucent_ ? alpha_ / 255.0 : 1.0);
}

void SmallWindow::SavePos() const { WriteSmallWindowSettings(services_.dir, pos(), alpha_); }

void SmallWindow::PaintSlider() {
  QPainter painter(slider_);
  const QRect face = slider_->rect();
  QLinearGradient shade(face.topLeft(), face.topRight());
  shade.setColorAt(0, palette().color(QPalette::WindowText));
  shade.setColorAt(1, palette().color(QPalette::Window));
  painter.fillRect(face, shade);
  painter.setPen(palette().color(QPalette::Mid));
  painter.drawRect(face.adjusted(0, 0, -1, -1));
  const int mark = SliderMarkX(alpha_, face.width());
  painter.fillRect(QRect(mark - 1, 0, 3, face.height()), palette().color(QPalette::Highlight));
}

}  // namespace minutor
