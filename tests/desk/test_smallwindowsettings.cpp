#include "desk/SmallWindowSettings.h"
#include "support/TempDataDir.h"

#include <QTest>

using namespace minutor;

namespace {

const QString kFile = QStringLiteral("Config/Smallwindowpos.cfg");

}  // namespace

class TestSmallWindowSettings : public QObject {
  Q_OBJECT

 private slots:
  void readingFallsBackOnDefaults() {
    test::TempDataDir data;
    SmallWindowSettings s = ReadSmallWindowSettings(data.dir());
    QVERIFY(!s.pos);
    QCOMPARE(s.alpha, 255);

    struct Case {
      QByteArray file;
      std::optional<QPoint> pos;
      int alpha;
    };
    const Case cases[] = {
        {"-1500\n0\n0\n", QPoint(-100, 0), 0},  // LF only; 0 is a valid byte
        {"1507,5\r\n2992.5\r\n99.6\r\n", QPoint(101, 200), 100},
        {"Fenster\r\nlinks\r\nklar\r\n", std::nullopt, 255},
        {"1500\r\n\r\n77\r\n", std::nullopt, 77},
        {"1500abc\r\n3000\r\n256\r\n", std::nullopt, 255},
        {"1e400\r\n3000\r\nnan\r\n", std::nullopt, 255},
    };
    for (const Case& c : cases) {
      data.write(kFile, c.file);
      s = ReadSmallWindowSettings(data.dir());
      QVERIFY2(s.pos == c.pos, c.file.constData());
      QVERIFY2(s.alpha == c.alpha, c.file.constData());
    }
  }

  void writingMakesTheFolderAndReadsBack() {
    test::TempDataDir data;
    QVERIFY(WriteSmallWindowSettings(data.dir(), QPoint(100, -40), 39));
    QCOMPARE(data.read(kFile), QByteArray(" 1500 \r\n-600 \r\n 39 \r\n"));
    const SmallWindowSettings s = ReadSmallWindowSettings(data.dir());
    QCOMPARE(s.pos, std::optional<QPoint>(QPoint(100, -40)));
    QCOMPARE(s.alpha, 39);
  }

  void sliderRule() {
    const int w = 28;
    QCOMPARE(SliderAlpha(2, w), 255);
    QCOMPARE(SliderAlpha(-5, w), 255);
    QCOMPARE(SliderAlpha(3, w), 246);
    QCOMPARE(SliderAlpha(26, w), 39);
    QCOMPARE(SliderAlpha(400, w), 39);
    // A slider wide enough to go past transparent stops at 0.
    QCOMPARE(SliderAlpha(30, 40), 3);
    QCOMPARE(SliderAlpha(38, 40), 0);

    for (int x = 2; x <= w - 2; ++x) {
      QCOMPARE(SliderMarkX(SliderAlpha(x, w), w), x);
    }
    QCOMPARE(SliderMarkX(250, w), 3);  // between two steps: the nearer one
    QCOMPARE(SliderMarkX(0, w), w - 2);
  }

  void positionIsKeptOnAScreenAndBroughtBackOtherwise() {
    const QSize size(230, 50);
    const QList<QRect> one = {QRect(0, 0, 1280, 1000)};
    auto place = [&](QPoint at, const QList<QRect>& screens) {
      return PlaceOnScreen(QRect(at, size), screens);
    };

    QCOMPARE(place({100, 100}, one), QPoint(100, 100));
    QCOMPARE(place({1200, 100}, one), QPoint(1200, 100));  // its corner still shows
    QCOMPARE(place({1250, 500}, one), QPoint(1050, 500));
    QCOMPARE(place({3000, 2000}, one), QPoint(1050, 950));
    QCOMPARE(place({-500, -20}, one), QPoint(0, 0));
    QCOMPARE(place({-500, -20}, {}), QPoint(-500, -20));
    QCOMPARE(PlaceOnScreen(QRect(3000, 500, 2000, 1200), one), QPoint(0, 0));

    const QList<QRect> two = {QRect(0, 0, 1920, 1080), QRect(1920, 0, 1280, 1024)};
    QCOMPARE(place({2500, 100}, two), QPoint(2500, 100));
    QCOMPARE(place({3300, 500}, two), QPoint(2970, 500));
    QCOMPARE(place({2500, 1020}, two), QPoint(2500, 974));
    QCOMPARE(place({1900, 1050}, two), QPoint(1690, 1030));
  }

  void fieldTexts() {
    QCOMPARE(SmallWindowVolumeText(0), QStringLiteral("0 KB "));
    QCOMPARE(SmallWindowVolumeText(1499), QStringLiteral("1 KB "));
    QCOMPARE(SmallWindowVolumeText(123456789), QStringLiteral("123457 KB "));
    QCOMPARE(SmallWindowRateText(QStringLiteral("1,2")), QStringLiteral("1,2 KB/s"));
  }
};

QTEST_APPLESS_MAIN(TestSmallWindowSettings)
#include "test_smallwindowsettings.moc"
