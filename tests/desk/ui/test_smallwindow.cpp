#include "desk/ui/SmallWindow.h"
#include "support/TestServices.h"

#include <QFile>
#include <QGuiApplication>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <QWindow>

using namespace minutor;
using namespace Qt::StringLiterals;

namespace {

// Left and top in twips, fifteen to a pixel here, and the alpha.
const QString kFile = u"Config/Smallwindowpos.cfg"_s;

QLabel* Field(const SmallWindow& window, int i) { return window.findChild<QLabel*>(u"Label2_%1"_s.arg(i)); }

void Drag(QWidget* part, QPoint from, QPoint to) {
  QTest::mousePress(part, Qt::LeftButton, {}, from);
  QTest::mouseMove(part, to);
  QTest::mouseRelease(part, Qt::LeftButton, {}, to);
}

}  // namespace

class TestSmallWindow : public QObject {
  Q_OBJECT

 private slots:
  void placeAndOpacityComeFromTheFileAndGoBackOnClose() {
    test::TestServices t;
    t.data.write(kFile, " 1500 \r\n 3000 \r\n 120 \r\n");
    {
      SmallWindow window(t.services);
      window.Initialise();
      QVERIFY(QTest::qWaitForWindowExposed(&window));
      QCOMPARE(window.pos(), QPoint(100, 200));
      QCOMPARE(window.windowOpacity(), 120 / 255.0);
      window.move(160, 90);
      QTRY_COMPARE(window.pos(), QPoint(160, 90));
      window.close();
      QCOMPARE(t.data.read(kFile), QByteArray(" 2400 \r\n 1350 \r\n 120 \r\n"));

      // Shown again by the check box: where it was closed.
      window.move(0, 0);
      window.Initialise();
      QTRY_COMPARE(window.pos(), QPoint(160, 90));
      QVERIFY(QFile::remove(t.data.path(kFile)));
    }
    // Destroyed while shown, as when the main window goes.
    QCOMPARE(t.data.read(kFile), QByteArray(" 2400 \r\n 1350 \r\n 120 \r\n"));

    // Saved on a larger desktop, far off this one.
    t.data.write(kFile, " 150000 \r\n 150000 \r\n 120 \r\n");
    SmallWindow far(t.services);
    far.Initialise();
    QVERIFY(QTest::qWaitForWindowExposed(&far));
    QVERIFY(QGuiApplication::primaryScreen()->availableGeometry().contains(far.frameGeometry()));
  }

  void floatsOnTopAndFollowsTheMouse() {
    test::TestServices t;
    t.data.write(kFile, " 1500 \r\n 1500 \r\n 255 \r\n");
    QWidget main;
    main.show();
    auto* window = new SmallWindow(t.services, &main);
    QSignalSpy restore(window, &SmallWindow::restoreRequested);
    QSignalSpy minimise(window, &SmallWindow::minimizeRequested);
    window->Initialise();
    QVERIFY(QTest::qWaitForWindowExposed(window));
    QCOMPARE(window->windowType(), Qt::Tool);
    QVERIFY(window->windowFlags() & Qt::FramelessWindowHint &&
            window->windowFlags() & Qt::WindowStaysOnTopHint);
    // Owned by the main window, but not its dialog: minimising the main window
    // must not take this one along.
    QVERIFY(window->windowHandle()->transientParent() == nullptr);

    const QStringList shown{"00:01:05", "0,120 €", "1235 KB ", "3,4 KB/s"};
    window->UpdateSmallWindow(shown[0], shown[1], shown[2], shown[3]);
    QCOMPARE(QStringList({Field(*window, 0)->text(), Field(*window, 1)->text(), Field(*window, 2)->text(),
                          Field(*window, 3)->text()}),
             shown);

    // The slider sets the opacity as it moves, saves it on release and never
    // drags the window.
    QWidget* slider = window->findChild<QWidget*>(u"Picture2"_s);
    const int y = slider->height() / 2;
    QTest::mousePress(slider, Qt::LeftButton, {}, QPoint(3, y));
    QTest::mouseMove(slider, QPoint(slider->width() + 40, y));
    QCOMPARE(window->windowOpacity(), 39 / 255.0);
    QVERIFY(t.data.read(kFile).endsWith(" 255 \r\n"));
    QTest::mouseRelease(slider, Qt::LeftButton, {}, QPoint(slider->width() + 40, y));
    QCOMPARE(t.data.read(kFile), QByteArray(" 1500 \r\n 1500 \r\n 39 \r\n"));
    Drag(slider, QPoint(8, y), QPoint(-10, y));  // back at the left end: opaque, exactly
    QCOMPARE(window->windowOpacity(), 1.0);
    QVERIFY(t.data.read(kFile).endsWith("\r\n 255 \r\n"));

    Drag(Field(*window, 1), QPoint(5, 5), QPoint(35, 25));
    QTRY_COMPARE(window->pos(), QPoint(130, 120));
    Drag(window->findChild<QWidget*>(u"Picture1"_s), QPoint(2, 2), QPoint(12, 2));
    QTRY_COMPARE(window->pos(), QPoint(140, 120));

    QTest::mouseDClick(Field(*window, 2), Qt::LeftButton, {}, QPoint(3, 3));
    QCOMPARE(restore.count(), 1);
    QCOMPARE(window->pos(), QPoint(140, 120));
    QTest::mouseClick(window->findChild<QToolButton*>(u"Command1"_s), Qt::LeftButton);
    QCOMPARE(minimise.count(), 1);
    QVERIFY(window->isMinimized());
  }
};

QTEST_MAIN(TestSmallWindow)
#include "test_smallwindow.moc"
