#pragma once

#include <QList>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>

#include <optional>

namespace minutor {

class DataDir;

// Where the small window stands and how opaque it is, as kept in
// "Config/Smallwindowpos.cfg": three lines, left and top in twips (15 to a
// pixel, as the form measured them), then the alpha byte, 255 being opaque.
struct SmallWindowSettings {
  std::optional<QPoint> pos;  // in pixels; none when the file doesn't give both
  int alpha = 255;
};

constexpr int kTwipsPerPixel = 15;

// A missing file leaves the window at its default place and opaque. A line
// that isn't a number, or a position of which one half is missing, leaves the
// position unset; an alpha that isn't a number from 0 to 255 reads as 255.
SmallWindowSettings ReadSmallWindowSettings(const DataDir& dir);
bool WriteSmallWindowSettings(const DataDir& dir, const QPoint& pos, int alpha);

// The transparency slider: x is the mouse position in a slider `width` pixels
// wide; its left end (x = 2) is opaque and each pixel to the right takes
// 9 away, never below 0.
int SliderAlpha(int x, int width);
// Where the slider's mark stands for an alpha.
int SliderMarkX(int alpha, int width);

// Where the window goes: `window` is the saved place with the window's size,
// `screens` the available rectangles of the screens. The place stays when its
// top-left corner (1000 twips square, or the window if smaller) lies on one
// screen; otherwise the whole window is moved onto the screen nearest to it,
// so that a position saved on a larger desktop doesn't lose the window.
QPoint PlaceOnScreen(const QRect& window, const QList<QRect>& screens);

// The texts of the volume and rate fields: the bytes so far in kilobytes,
// whole, followed by " KB ", and the rate label's text followed by " KB/s".
QString SmallWindowVolumeText(double bytesTotal);
QString SmallWindowRateText(const QString& rateLabel);

}  // namespace minutor
