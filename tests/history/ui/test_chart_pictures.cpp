#include "history/ChartDrawing.h"
#include "history/ui/ChartPainter.h"

#include <QDir>
#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;

namespace {

// A month with gaps, a short day and a long one, and a pie of seven names.
ChartData SampleMonth() {
  ChartData data;
  for (int day = 1; day <= 31; ++day) {
    data.days[static_cast<std::size_t>(day - 1)] =
        day % 6 == 0 ? 0.0f : static_cast<float>((day * 37) % 23) * 45.5f;
  }
  const char* names[] = {"Anna", "Bert", "Carla", "Dieter", "Emil", "Frieda", "Defekte Aufzeichnungen"};
  for (int i = 0; i < 7; ++i) {
    data.pie.append({QString::fromUtf8(names[i]), static_cast<float>(7 - i)});
    data.total += 7 - i;
  }
  return data;
}

// Pixels whose colour is clearly another; glyphs that a different build of
// the same font places a pixel aside stay within the allowance.
int Differing(const QImage& a, const QImage& b) {
  int count = 0;
  for (int y = 0; y < a.height(); ++y) {
    for (int x = 0; x < a.width(); ++x) {
      const QRgb p = a.pixel(x, y);
      const QRgb q = b.pixel(x, y);
      if (std::max({std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                    std::abs(qBlue(p) - qBlue(q))}) > 64) {
        ++count;
      }
    }
  }
  return count;
}

}  // namespace

class TestChartPictures : public QObject {
  Q_OBJECT

 private slots:
  // MINUTOR_UPDATE_REFERENCES=1 writes the pictures anew (look at them first).
  void chartsLookAsTheReferences() {
    const std::tuple<const char*, ChartMeasure, ChartStyle> cases[] = {
        {"line.png", ChartMeasure::Dauer, ChartStyle::Linien},
        {"bar.png", ChartMeasure::Kosten, ChartStyle::Balken},
        {"pie.png", ChartMeasure::Benutzer, ChartStyle::Kreis}};
    const QString folder = qEnvironmentVariable("MINUTOR_SOURCE_DIR") + u"/tests/history/ui/reference/"_s;
    for (const auto& [file, measure, style] : cases) {
      const QImage image = RenderChart(DrawDiagramm(SampleMonth(), measure, style, u"€"_s))
                               .convertToFormat(QImage::Format_RGB32);
      const QString path = folder + QString::fromUtf8(file);
      if (qEnvironmentVariableIsSet("MINUTOR_UPDATE_REFERENCES")) {
        QVERIFY(image.save(path));
      }
      const QImage reference = QImage(path).convertToFormat(QImage::Format_RGB32);
      QVERIFY2(!reference.isNull(), qPrintable(path));
      QCOMPARE(reference.size(), image.size());
      const int differing = Differing(image, reference);
      const QString actual = QDir::temp().filePath(u"actual-"_s + QString::fromUtf8(file));
      if (differing > image.width() * image.height() / 200) {
        image.save(actual);
      }
      QVERIFY2(differing <= image.width() * image.height() / 200,
               qPrintable(
                   u"%1 pixels differ from %2; the picture drawn is %3"_s.arg(differing).arg(path, actual)));
    }
  }
};

QTEST_MAIN(TestChartPictures)
#include "test_chart_pictures.moc"
