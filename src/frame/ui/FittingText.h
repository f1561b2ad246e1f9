#pragma once

#include <QFont>
#include <QLabel>
#include <QString>
#include <QStringList>
#include <QToolButton>

namespace minutor {

// The font in which `text` fits into `room` pixels: `base` itself, or as
// little smaller as needed, down to 70 % of it. A font sized in pixels rather
// than points is left as it is.
QFont FittingFont(const QFont& base, const QString& text, int room);

// A label or button that sets a text too long for it at a large font a
// little smaller rather than cutting it short. The font it starts from is
// its parent's; `Slack` is what the widget's own margins take of its contents.
template <typename Widget, int Slack>
class Fitting final : public Widget {
 public:
  using Widget::Widget;

  void SetText(const QString& text) {
    Widget::setText(text);
    Fit();
  }

 protected:
  void resizeEvent(QResizeEvent* event) override {
    Widget::resizeEvent(event);
    Fit();
  }

 private:
  void Fit() {
    const QWidget* parent = Widget::parentWidget();
    const QFont fitting = FittingFont(parent != nullptr ? parent->font() : QFont(), Widget::text(),
                                      Widget::contentsRect().width() - Slack);
    if (Widget::font() != fitting) {
      Widget::setFont(fitting);
    }
  }
};

// A label that shows the longest of its texts that fits its width, and the
// last, shortest, one where none does. It asks the layout for room for the
// longest and makes do with room for the shortest.
class ShorteningLabel final : public QLabel {
 public:
  using QLabel::QLabel;

  void SetTexts(const QStringList& longestFirst);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  int WidthFor(const QString& text) const;
  void Choose();

  QStringList texts_;
};

// A label, as the status bar's fields, and a side-bar entry with its icon
// above the text.
using FittingLabel = Fitting<QLabel, 2>;
using FittingButton = Fitting<QToolButton, 8>;

}  // namespace minutor
