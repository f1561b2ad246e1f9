#include "desk/SmallWindowSettings.h"
#include "support/TempDataDir.h"

#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;

namespace {

const QString kFile = u"Config/Smallwindowpos.cfg"_s;

}  // namespace

class TestSmallWindowSettings : public QObject {
  Q_OBJECT

 private slots:
  void readingFallsBackOnDefaults() {
    test::TempDataDir data;
    SmallWindowSettings s = ReadSmallWindowSettings(data.dir());
    QVERIFY(!s.pos);
    QCOMPARE(s.alpha, 255);

    const std::tuple<QByteArray, std::optional<QPoint>, int> cases[] = {
        {"-1500\n0\n0\n", QPoint(-100, 0), 0},  // LF only; 0 is a valid byte
        {"1507,5\r\n2992.5\r\n99.6\r\n", QPoint(101, 200), 100},
        {"Fenster\r\nlinks\r\nklar\r\n", std::nullopt, 255},
        {"1500\r\n\r\n77\r\n", std::nullopt, 77},
        {"1500abc\r\n3000\r\n256\r\n", std::nullopt, 255},
        {"1e400\r\n3000\r\nnan\r\n", std::nullopt, 255},
    };
    for (const auto& [file, pos, alpha] : cases) {
      data.write(kFile, file);
      s = ReadSmallWindowSettings(data.dir());
      QVERIFY2(s.pos == pos, file.constData());
      QVERIFY2(s.alpha == alpha, file.constData());
    }
  }

  void writingMakesTheFolderAndReadsBack() {
    test::TempDataDir data;
    QVERIFY(WriteSmallWindowSettings(data.dir(), QPoint(100, -40), 39));
    QCOMPARE(data.read(kFile), QByteArray(" 1500 \r\n-600 \r\n 39 \r\n"));
    const SmallWindowSettings s = ReadSmallWindowSettings(data.dir());
    QVERIFY(s.pos == QPoint(100, -40) && s.alpha == 39);
  }

  void sliderRule() {
    const int w = 28;
    // Position, slider width, alpha; a slider wide enough to go past
    // transparent stops at 0.
    for (const auto& [x, width, alpha] : {std::tuple{2, w, 255},
                                          {-5, w, 255},
                                          {3, w, 246},
                                          {26, w, 39},
                                          {400, w, 39},
                                          {30, 40, 3},
                                          {38, 40, 0}}) {
      QCOMPARE(SliderAlpha(x, width), alpha);
    }
    for (int x = 2; x <= w - 2; ++x) {
      QCOMPARE(SliderMarkX(SliderAlpha(x, w), w), x);
    }
    QCOMPARE(SliderMarkX(250, w), 3);  // between two steps: the nearer one
    QCOMPARE(SliderMarkX(0, w), w - 2);

    // The fields' texts.
    QCOMPARE(SmallWindowVolumeText(0), u"0 KB "_s);
    QCOMPARE(SmallWindowVolumeText(1499), u"1 KB "_s);
    QCOMPARE(SmallWindowVolumeText(123456789), u"123457 KB "_s);
    QCOMPARE(SmallWindowRateText(u"1,2"_s), u"1,2 KB/s"_s);
  }

  void positionIsKeptOnAScreenAndBroughtBackOtherwise() {
    const QList<QRect> one = {QRect(0, 0, 1280, 1000)};
    const QList<QRect> two = {QRect(0, 0, 1920, 1080), QRect(1920, 0, 1280, 1024)};
    const std::tuple<QPoint, QList<QRect>, QPoint> cases[] = {
        {{100, 100}, one, {100, 100}},    {{1200, 100}, one, {1200, 100}},  // its corner still shows
        {{1250, 500}, one, {1050, 500}},  {{3000, 2000}, one, {1050, 950}},  {{-500, -20}, one, {0, 0}},
        {{-500, -20}, {}, {-500, -20}},   {{2500, 100}, two, {2500, 100}},   {{3300, 500}, two, {2970, 500}},
        {{2500, 1020}, two, {2500, 974}}, {{1900, 1050}, two, {1690, 1030}},
    };
    for (const auto& [at, screens, placed] : cases) {
      QCOMPARE(PlaceOnScreen(QRect(at, QSize(230, 50)), screens), placed);
    }
    QCOMPARE(PlaceOnScreen(QRect(3000, 500, 2000, 1200), one), QPoint(0, 0));
  }
};

QTEST_APPLESS_MAIN(TestSmallWindowSettings)
#include "test_smallwindowsettings.moc"
