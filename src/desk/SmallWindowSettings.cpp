#include "desk/SmallWindowSettings.h"

#include "frame/datadir/DataDir.h"
#include "frame/datadir/NumberText.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace minutor {

namespace {

const QString kFile = QStringLiteral("Config/Smallwindowpos.cfg");

// 1000 twips of the window must show for a saved place to be kept.
constexpr int kCornerPixels = (1000 + kTwipsPerPixel - 1) / kTwipsPerPixel;

// A whole line that is a number, with either decimal sign; nothing else.
std::optional<double> LineNumber(const QByteArray& line) {
  QByteArray text = line.trimmed();
  text.replace(',', '.');
  bool ok = false;
  const double value = text.toDouble(&ok);
  if (!ok || !std::isfinite(value) || std::abs(value) > 1e9) {
    return std::nullopt;
  }
  return value;
}

qint64 SquaredDistance(const QPoint& point, const QRect& rect) {
  const qint64 dx = point.x() < rect.left() ? rect.left() - point.x() : std::max(0, point.x() - rect.right());
  const qint64 dy = point.y() < rect.top() ? rect.top() - point.y() : std::max(0, point.y() - rect.bottom());
  return dx * dx + dy * dy;
}

int ClampInto(int value, int low, int length, int windowLength) {
  return std::max(low, std::min(value, low + length - windowLength));
}

}  // namespace

SmallWindowSettings ReadSmallWindowSettings(const DataDir& dir) {
  SmallWindowSettings settings;
  const auto lines = dir.ReadLines(kFile);
  if (!lines) {
    return settings;
  }
  auto line = [&](qsizetype i) { return i < lines->size() ? LineNumber(lines->at(i)) : std::nullopt; };
  const auto left = line(0);
  const auto top = line(1);
  if (left && top) {
    settings.pos = QPoint(static_cast<int>(std::lround(*left / kTwipsPerPixel)),
                          static_cast<int>(std::lround(*top / kTwipsPerPixel)));
  }
  const auto alpha = line(2);
  if (alpha && *alpha >= 0 && *alpha <= 255) {
    settings.alpha = static_cast<int>(std::lround(*alpha));
  }
  return settings;
}

bool WriteSmallWindowSettings(const DataDir& dir, const QPoint& pos, int alpha) {
  return dir.WriteLines(kFile, {PrintedNumber(double(pos.x()) * kTwipsPerPixel),
                                PrintedNumber(double(pos.y()) * kTwipsPerPixel), PrintedNumber(alpha)});
}

int SliderAlpha(int x, int width) {
  const int clamped = std::clamp(x, 2, std::max(2, width - 2));
  return std::max(0, 255 - (clamped - 2) * 9);
}

int SliderMarkX(int alpha, int width) {
  const int x = 2 + (255 - std::clamp(alpha, 0, 255) + 4) / 9;
  return std::min(x, std::max(2, width - 2));
}

QPoint PlaceOnScreen(const QRect& window, const QList<QRect>& screens) {
  if (screens.isEmpty()) {
    return window.topLeft();
  }
  const QRect corner(window.topLeft(), QSize(std::min(kCornerPixels, window.width()),
                                             std::min(kCornerPixels, window.height())));
  for (const QRect& screen : screens) {
    if (screen.contains(corner)) {
      return window.topLeft();
    }
  }
  const QRect* nearest = &screens.first();
  qint64 best = std::numeric_limits<qint64>::max();
  for (const QRect& screen : screens) {
    const qint64 distance = SquaredDistance(corner.center(), screen);
    if (distance < best) {
      best = distance;
      nearest = &screen;
    }
  }
  return QPoint(ClampInto(window.left(), nearest->left(), nearest->width(), window.width()),
                ClampInto(window.top(), nearest->top(), nearest->height(), window.height()));
}

QString SmallWindowVolumeText(double bytesTotal) {
  return FixedText(bytesTotal / 1000.0, 0) + QStringLiteral(" KB ");
}

QString SmallWindowRateText(const QString& rateLabel) { return rateLabel + QStringLiteral(" KB/s"); }

}  // namespace minutor
