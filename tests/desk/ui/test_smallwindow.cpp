#include "desk/ui/SmallWindow.h"
#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Services.h"
#include "support/RecordingPrompter.h"
#include "support/TempDataDir.h"

#include <QGuiApplication>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <QWindow>

using namespace minutor;

namespace {

const QString kFile = QStringLiteral("Config/Smallwindowpos.cfg");

struct Fixture {
  test::TempDataDir data;
  AppState state;
  FixedClock clock{QDateTime(QDate(2026, 3, 10), QTime(12, 0))};
  test::RecordingPrompter prompter;
  Services services{state, data.dir(), clock, prompter};
};

QLabel* Field(const SmallWindow& window, int i) {
  return window.findChild<QLabel*>(QStringLiteral("Label2_%1").arg(i));
}

QWidget* Slider(const SmallWindow& window) { return window.findChild<QWidget*>(QStringLiteral("Picture2")); }

}  // namespace

class TestSmallWindow : public QObject {
  Q_OBJECT

 private slots:
  void floatsOnTopAndShowsTheMeter() {
    Fixture f;
    QWidget main;
    main.show();
    auto* window = new SmallWindow(f.services, &main);
    window->Initialise();
    QVERIFY(QTest::qWaitForWindowExposed(window));

    QCOMPARE(window->objectName(), QStringLiteral("SmallWindow"));
    QVERIFY(window->isWindow());
    QCOMPARE(window->windowType(), Qt::Tool);
    QVERIFY(window->windowFlags() & Qt::FramelessWindowHint);
    QVERIFY(window->windowFlags() & Qt::WindowStaysOnTopHint);
    // Owned by the main window, but not its dialog: minimising the main window
    // must not take this one along.
    QVERIFY(window->windowHandle()->transientParent() == nullptr);
    QCOMPARE(window->windowOpacity(), 1.0);

    window->UpdateSmallWindow(QStringLiteral("00:01:05"), QStringLiteral("0,120 €"),
                              QStringLiteral("1235 KB "), QStringLiteral("3,4 KB/s"));
    QCOMPARE(Field(*window, 0)->text(), QStringLiteral("00:01:05"));
    QCOMPARE(Field(*window, 1)->text(), QStringLiteral("0,120 €"));
    QCOMPARE(Field(*window, 2)->text(), QStringLiteral("1235 KB "));
    QCOMPARE(Field(*window, 3)->text(), QStringLiteral("3,4 KB/s"));
  }

  void placeAndOpacityComeFromTheFileAndGoBackOnClose() {
    Fixture f;
    f.data.write(kFile, " 1500 \r\n 3000 \r\n 120 \r\n");
    {
      SmallWindow window(f.services);
      window.Initialise();
      QVERIFY(QTest::qWaitForWindowExposed(&window));
      QCOMPARE(window.pos(), QPoint(100, 200));
      QCOMPARE(window.windowOpacity(), 120 / 255.0);

      window.move(160, 90);
      QTRY_COMPARE(window.pos(), QPoint(160, 90));
      window.close();
      QCOMPARE(f.data.read(kFile), QByteArray(" 2400 \r\n 1350 \r\n 120 \r\n"));

      // Shown again by the check box: where it was closed.
      window.move(0, 0);
      window.Initialise();
      QTRY_COMPARE(window.pos(), QPoint(160, 90));
      window.move(200, 100);
      QTRY_COMPARE(window.pos(), QPoint(200, 100));
    }
    // Destroyed while shown, as when the main window goes.
    QCOMPARE(f.data.read(kFile), QByteArray(" 3000 \r\n 1500 \r\n 120 \r\n"));

    // Saved on a larger desktop, far off this one; an alpha the slider
    // can't reach comes up to its lowest.
    f.data.write(kFile, " 150000 \r\n 150000 \r\n 0 \r\n");
    SmallWindow far(f.services);
    far.Initialise();
    QVERIFY(QTest::qWaitForWindowExposed(&far));
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    QVERIFY(screen.contains(far.frameGeometry()));
    QCOMPARE(far.windowOpacity(), 39 / 255.0);
  }

  void sliderSetsOpacityAndSavesOnRelease() {
    Fixture f;
    SmallWindow window(f.services);
    window.Initialise();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const QPoint before = window.pos();
    QWidget* slider = Slider(window);
    QVERIFY(slider->isVisible());
    const int y = slider->height() / 2;

    QTest::mousePress(slider, Qt::LeftButton, {}, QPoint(3, y));
    QCOMPARE(window.windowOpacity(), 246 / 255.0);
    QTest::mouseMove(slider, QPoint(slider->width() + 40, y));
    QCOMPARE(window.windowOpacity(), 39 / 255.0);
    QVERIFY(f.data.read(kFile).isEmpty());
    QTest::mouseRelease(slider, Qt::LeftButton, {}, QPoint(slider->width() + 40, y));
    QVERIFY(f.data.read(kFile).endsWith("\r\n 39 \r\n"));
    QCOMPARE(window.pos(), before);  // the slider doesn't drag the window

    // Back at the left end: opaque, exactly.
    QTest::mousePress(slider, Qt::LeftButton, {}, QPoint(8, y));
    QTest::mouseMove(slider, QPoint(-10, y));
    QTest::mouseRelease(slider, Qt::LeftButton, {}, QPoint(-10, y));
    QCOMPARE(window.windowOpacity(), 1.0);
    QVERIFY(f.data.read(kFile).endsWith("\r\n 255 \r\n"));
  }

  void bodyDragsDoubleClickRestoresButtonMinimises() {
    Fixture f;
    f.data.write(kFile, " 1500 \r\n 1500 \r\n 255 \r\n");
    SmallWindow window(f.services);
    QSignalSpy restore(&window, &SmallWindow::restoreRequested);
    QSignalSpy minimise(&window, &SmallWindow::minimizeRequested);
    window.Initialise();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QCOMPARE(window.pos(), QPoint(100, 100));

    QLabel* cost = Field(window, 1);
    QTest::mousePress(cost, Qt::LeftButton, {}, QPoint(5, 5));
    QTest::mouseMove(cost, QPoint(35, 25));
    QTRY_COMPARE(window.pos(), QPoint(130, 120));
    QTest::mouseRelease(cost, Qt::LeftButton, {}, QPoint(5, 5));

    QWidget* body = window.findChild<QWidget*>(QStringLiteral("Picture1"));
    QTest::mousePress(body, Qt::LeftButton, {}, QPoint(2, 2));
    QTest::mouseMove(body, QPoint(12, 2));
    QTRY_COMPARE(window.pos(), QPoint(140, 120));
    QTest::mouseRelease(body, Qt::LeftButton, {}, QPoint(12, 2));

    QCOMPARE(restore.count(), 0);

    QTest::mouseDClick(Field(window, 2), Qt::LeftButton, {}, QPoint(3, 3));
    QCOMPARE(restore.count(), 1);
    QCOMPARE(window.pos(), QPoint(140, 120));

    QTest::mouseClick(window.findChild<QToolButton*>(QStringLiteral("Command1")), Qt::LeftButton);
    QCOMPARE(minimise.count(), 1);
    QVERIFY(window.isMinimized());
    QCOMPARE(restore.count(), 1);
  }
};

QTEST_MAIN(TestSmallWindow)
#include "test_smallwindow.moc"
