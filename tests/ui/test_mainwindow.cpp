#include "frame/AppState.h"
#include "frame/ui/MainWindow.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTest>

using namespace minutor;

class TestMainWindow : public QObject {
  Q_OBJECT

 private slots:
  void frameHasItsTitleSizeAndPlace() {
    AppState state;
    state.ActiveUser = QStringLiteral("Anna B");
    MainWindow window(state);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.CenterOnScreen();

    QCOMPARE(window.windowTitle(), QStringLiteral("Minutor 3.3"));
    QCOMPARE(window.size(), QSize(MainWindow::kWidth, MainWindow::kHeight));
    QCOMPARE(window.minimumSize(), window.maximumSize());
    QVERIFY(!(window.windowFlags() & Qt::WindowMaximizeButtonHint));

    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    const QPoint centre = window.frameGeometry().center();
    QVERIFY(qAbs(centre.x() - screen.center().x()) <= 1);
    QVERIFY(qAbs(centre.y() - screen.center().y()) <= 1);

    QCOMPARE(window.statusField(1)->text(), QStringLiteral("Aufzeichnung ist nicht aktiv"));
    QCOMPARE(window.statusField(2)->text(), QStringLiteral("Aktiver Benutzer: Anna B"));
  }
};

QTEST_MAIN(TestMainWindow)
#include "test_mainwindow.moc"
