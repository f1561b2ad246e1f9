#include "history/ChartDrawing.h"

#include "frame/datadir/AnsiText.h"
#include "frame/datadir/NumberText.h"

#include <algorithm>
#include <cmath>

namespace minutor {

namespace {

constexpr quint32 kAxisColour = 0x404040;
constexpr quint32 kLabelColour = 0x808080;
constexpr quint32 kAverageColour = 0x008000;
constexpr quint32 kValueColour = 0x0064B4;

// Plot area of the time charts: 220 pixels of height above the x axis at 235,
// a day every 13 pixels from x = 40.
constexpr double kBottom = 235;
constexpr double kHeight = 220;
constexpr double kLeft = 40;
constexpr double kDayStep = 13;

constexpr double kPi = 3.14159265;
constexpr double kPieCentreX = 130;
constexpr double kPieCentreY = 129;
constexpr double kPieRadius = 120;
constexpr int kLegendX = 264;
constexpr int kLegendLine = 12;
constexpr int kLegendWidth = 25;

// The sectors' colours by index; 260 of the tenth is held to 255.
constexpr std::array<quint32, 21> kSectorColours = {
    0x0096F0, 0x9BEB00, 0x1E05A0, 0xFA6969, 0xAA055A, 0x145A0A, 0x5F5F0A,
    0x5A0A46, 0x05A0AA, 0xFFBE6E, 0xC882FA, 0x00C832, 0x0014DC, 0xDCDC00,
    0x0A6473, 0xFA0082, 0x91FF82, 0x3CFA82, 0x28FA82, 0xFA6478, 0x646478};

ChartShape Line(double x1, double y1, double x2, double y2, quint32 rgb) {
  ChartShape s;
  s.kind = ChartShape::Kind::Line;
  s.a = {x1, y1};
  s.b = {x2, y2};
  s.rgb = rgb;
  return s;
}

ChartShape Box(double x1, double y1, double x2, double y2, quint32 rgb) {
  ChartShape s = Line(x1, y1, x2, y2, rgb);
  s.kind = ChartShape::Kind::Box;
  return s;
}

ChartShape Text(double x, double y, const QString& text, quint32 rgb, bool alignRight = false) {
  ChartShape s;
  s.kind = ChartShape::Kind::Text;
  s.a = {x, y};
  s.text = text;
  s.rgb = rgb;
  s.alignRight = alignRight;
  return s;
}

QString ScaleLabel(ChartMeasure measure, double value, double max) {
  const int decimals = max < 100 ? (measure == ChartMeasure::Dauer ? 1 : 2) : 0;
  return FixedText(measure == ChartMeasure::Dauer ? value / 60 : value, decimals);
}

ChartPicture DrawTimeChart(const ChartData& data, ChartMeasure measure, ChartStyle style,
                           const QString& currency) {
  ChartPicture picture;
  QList<ChartShape>& shapes = picture.shapes;
  picture.axisX = QStringLiteral("X: Tage");
  if (measure == ChartMeasure::Dauer) {
    picture.axisY = QStringLiteral("Y: Dauer (Min)");
  } else if (measure == ChartMeasure::Kosten) {
    picture.axisY = QStringLiteral("Y: Kosten (") + currency + QLatin1Char(')');
  } else {
    picture.axisY = QStringLiteral("Y: Transfer (MB)");
  }

  double max = 0;
  double sum = 0;
  for (const float value : data.days) {
    max = std::max(max, static_cast<double>(value));
    sum += static_cast<double>(value);
  }
  if (max == 0) {
    max = 1;
    sum = 1;
  }
  const double step = max / 11;

  shapes.append(Line(kLeft, 15, kLeft, kBottom, kAxisColour));
  for (int k = 11; k >= 0; --k) {
    const double y = kBottom - 20.0 * k;
    shapes.append(Line(39, y, 42, y, kAxisColour));
    shapes.append(Text(35, y - 4, ScaleLabel(measure, k * step, max), kLabelColour, true));
  }

  // The average is taken over 31 days in every month, short ones too.
  const double average = kBottom - sum * kHeight / (max * 31);
  shapes.append(Line(41, average, 444, average, kAverageColour));
  ChartShape symbol = Text(449, average - 8, FromAnsi(QByteArray(1, '\xF8')), kAverageColour);
  symbol.font = ChartShape::Font::Symbol;
  shapes.append(symbol);

  shapes.append(Line(kLeft, kBottom, 443, kBottom, kAxisColour));
  double previous = kBottom;
  for (int d = 1; d <= 32; ++d) {
    const double x = kLeft + kDayStep * (d - 1);
    shapes.append(Line(x, 234, x, 237, kAxisColour));
    if (d % 2 == 1 && d < 32) {
      shapes.append(Text(d < 10 ? x - 2 : x - 6, 240, QString::number(d), kLabelColour));
    }
    // The last tick closes the axis; it has no day of its own.
    if (d == 32) {
      break;
    }
    const double y =
        kBottom - static_cast<double>(data.days[static_cast<std::size_t>(d - 1)]) * kHeight / max;
    if (style == ChartStyle::Linien) {
      if (d > 1) {
        shapes.append(Line(x - 6.5, previous, x + 6.5, y, kValueColour));
      }
      shapes.append(Box(x + 5, y - 2, x + 8, y + 2, kValueColour));
    } else {
      shapes.append(Box(x + 2, y, x + 11, kBottom, kValueColour));
    }
    previous = y;
  }
  return picture;
}

ChartPicture DrawPie(const ChartData& data) {
  ChartPicture picture;
  picture.axisX = QStringLiteral("Gesamt:");
  picture.axisY = GeneralText(data.total) + QStringLiteral(" Verbind.");
  double start = -1e-25;
  for (qsizetype i = 0; i < data.pie.size() && i < qsizetype(kSectorColours.size()); ++i) {
    const PieEntry& entry = data.pie[i];
    const quint32 colour = kSectorColours[static_cast<std::size_t>(i)];
    const double share = 2 * static_cast<double>(entry.count) / data.total;
    // Rounding can carry the last sector's end a hair past the full turn.
    const double end = std::max(-(kPi * share) + start, -2 * kPi);
    ChartShape sector;
    sector.kind = share < 2 ? ChartShape::Kind::Sector : ChartShape::Kind::Circle;
    sector.a = {kPieCentreX, kPieCentreY};
    sector.radius = kPieRadius;
    sector.start = -start;
    sector.end = -end;
    sector.rgb = colour;
    picture.shapes.append(sector);
    start = end;

    QString name = entry.name.left(kLegendWidth).leftJustified(kLegendWidth, QLatin1Char(' '));
    picture.shapes.append(Text(kLegendX, kLegendLine * (i + 1),
                               name + QStringLiteral(" (") + GeneralText(entry.count) + QLatin1Char(')'),
                               colour));
  }
  return picture;
}

}  // namespace

ChartPicture DrawDiagramm(const ChartData& data, ChartMeasure measure, ChartStyle style,
                          const QString& currency) {
  if (style == ChartStyle::Kreis) {
    return DrawPie(data);
  }
  return DrawTimeChart(data, measure, style, currency);
}

}  // namespace minutor
