#include "history/ChartDrawing.h"

#include <QTest>

#include <cmath>
#include <numbers>

using namespace minutor;
using namespace Qt::StringLiterals;

namespace {

constexpr quint32 kValueColour = 0x0064B4;
constexpr quint32 kAverageColour = 0x008000;

QList<ChartShape> Shapes(const ChartPicture& picture, ChartShape::Kind kind, quint32 rgb) {
  QList<ChartShape> found;
  for (const ChartShape& shape : picture.shapes) {
    if (shape.kind == kind && shape.rgb == rgb) {
      found.append(shape);
    }
  }
  return found;
}

// The scale label printed at the height of the axis' top tick.
QString TopLabel(const ChartPicture& picture) {
  for (const ChartShape& shape : picture.shapes) {
    if (shape.kind == ChartShape::Kind::Text && shape.alignRight && shape.a == QPointF(35, 11)) {
      return shape.text;
    }
  }
  return {};
}

ChartData Days(std::initializer_list<std::pair<int, float>> values) {
  ChartData data;
  for (const auto& [day, value] : values) {
    data.days[static_cast<std::size_t>(day - 1)] = value;
  }
  return data;
}

}  // namespace

class TestChartDrawing : public QObject {
  Q_OBJECT

 private slots:
  void anEmptyMonthHasEmptyBarsAndTheAverageNearTheAxis() {
    const ChartPicture picture = DrawDiagramm({}, ChartMeasure::Kosten, ChartStyle::Balken, u"€"_s);
    QCOMPARE(picture.axisX, u"X: Tage"_s);
    QCOMPARE(picture.axisY, u"Y: Kosten (€)"_s);
    const QList<ChartShape> bars = Shapes(picture, ChartShape::Kind::Box, kValueColour);
    QCOMPARE(bars.size(), 31);
    for (const ChartShape& bar : bars) {
      QCOMPARE(bar.a.y(), 235.0);
    }
    const QList<ChartShape> average = Shapes(picture, ChartShape::Kind::Line, kAverageColour);
    QCOMPARE(average.size(), 1);
    QCOMPARE(average[0].a.y(), 235 - 220.0 / 31);
    QCOMPARE(TopLabel(picture), u"1,00"_s);
  }

  void scaleLabelsCarryDecimalsBelowAHundred() {
    const std::tuple<ChartMeasure, float, const char*, const char*> cases[] = {
        {ChartMeasure::Dauer, 90, "1,5", "Y: Dauer (Min)"},  // seconds, shown in minutes
        {ChartMeasure::Dauer, 6600, "110", "Y: Dauer (Min)"},
        {ChartMeasure::Kosten, 99.5f, "99,50", "Y: Kosten (DM)"},
        {ChartMeasure::Transfer, 100, "100", "Y: Transfer (MB)"},
    };
    for (const auto& [measure, max, top, axis] : cases) {
      const ChartPicture picture = DrawDiagramm(Days({{5, max}}), measure, ChartStyle::Linien, u"DM"_s);
      QCOMPARE(TopLabel(picture), QString::fromUtf8(top));
      QCOMPARE(picture.axisY, QString::fromUtf8(axis));
    }
  }

  // Where each shape stands is the reference pictures' business; these are
  // the values behind them.
  void daysStandThirteenPixelsApart() {
    const ChartData data = Days({{3, 10}, {4, 5}});
    const ChartPicture bars = DrawDiagramm(data, ChartMeasure::Transfer, ChartStyle::Balken, {});
    const QList<ChartShape> boxes = Shapes(bars, ChartShape::Kind::Box, kValueColour);
    QCOMPARE(boxes[3].a - boxes[2].a, QPointF(13, 110));
    QCOMPARE(Shapes(bars, ChartShape::Kind::Line, kAverageColour)[0].a.y(), 235 - 15 * 220.0 / (10 * 31));
    const ChartPicture lines = DrawDiagramm(data, ChartMeasure::Transfer, ChartStyle::Linien, {});
    QCOMPARE(Shapes(lines, ChartShape::Kind::Line, kValueColour).size(), 30);
  }

  void piesShareTheFullTurn() {
    ChartData data;
    data.pie = {{u"Anna"_s, 1}, {u"Defekte Aufzeichnungen"_s, 3}};
    data.total = 4;
    const ChartPicture pie = DrawDiagramm(data, ChartMeasure::Benutzer, ChartStyle::Kreis, {});
    QCOMPARE(pie.axisX + ' ' + pie.axisY, u"Gesamt: 4 Verbind."_s);
    QCOMPARE(pie.shapes.size(), 4);
    QVERIFY(std::abs(pie.shapes[0].end - std::numbers::pi / 2) < 1e-6);
    QVERIFY(std::abs(pie.shapes[2].start - std::numbers::pi / 2) < 1e-6 &&
            std::abs(pie.shapes[2].end - 2 * std::numbers::pi) < 1e-6);
    QCOMPARE(pie.shapes[1].text, u"Anna                      (1)"_s);
    QCOMPARE(pie.shapes[3].text, u"Defekte Aufzeichnungen    (3)"_s);

    data.pie = {{u"Ein Benutzer mit einem sehr langen Namen"_s, 4}};
    const ChartPicture whole = DrawDiagramm(data, ChartMeasure::Benutzer, ChartStyle::Kreis, {});
    QCOMPARE(whole.shapes[0].kind, ChartShape::Kind::Circle);
    QCOMPARE(whole.shapes[1].text, u"Ein Benutzer mit einem se (4)"_s);
  }
};

QTEST_APPLESS_MAIN(TestChartDrawing)
#include "test_chart_drawing.moc"
