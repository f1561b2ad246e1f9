#include "detection/MonitoringLoop.h"
#include "detection/SimulatedRemoteAccess.h"
#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Services.h"
#include "frame/StartUp.h"
#include "frame/ui/MainWindow.h"
#include "frame/ui/SideBar.h"
#include "metering/TrafficSource.h"
#include "support/FakeProbes.h"
#include "support/RecordFiles.h"
#include "support/RecordingPrompter.h"
#include "support/TempDataDir.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QMenu>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSystemTrayIcon>
#include <QTest>
#include <QToolButton>
#include <QWheelEvent>

#include <memory>

using namespace minutor;

namespace {

// A program on a data directory of its own, with a tariff chosen on the
// Overview, as a user leaves it between two starts. With detection, the
// machine's connections are simulated and the IP method watches them.
struct Program {
  test::TempDataDir data;
  AppState state;
  SystemClock clock;
  test::RecordingPrompter prompter;
  Services services{state, data.dir(), clock, prompter};
  NoTrafficSource traffic;
  SimulatedRemoteAccess remote;
  test::FakeNetwork network;
  test::FakeHost host;
  MonitoringLoop loop{services, remote, network, host};
  std::unique_ptr<MainWindow> window;

  // With budgets, the rests show their widest texts: the day's overspent,
  // the month's not set, the period's lasting.
  explicit Program(bool withDetection = false, bool withBudgets = false) {
    data.write(QStringLiteral("Config/Overview.cfg"),
               "\r\nSupervisor\r\nFunkwelle\r\nFunkwelle - Tag und Nacht.tel\r\n");
    if (withBudgets) {
      data.write(QStringLiteral("Benutzer/Supervisor.bdg"), "5\r\n0\r\n500\r\n1.1.2000\r\n31.12.2099\r\n");
      const QDate today = clock.Now().date();
      test::WriteRecord(data, today.toString(QStringLiteral("ddMMyyyy")) + QStringLiteral("-080000.con"),
                        test::RecordLines(today.toString(QStringLiteral("dd.MM.yyyy")).toLatin1(), "08:00:00",
                                          "01:00:00", "6,00", "Funkwelle - Tag und Nacht.tel", "Supervisor"));
    }
    if (withDetection) {
      data.write(QStringLiteral("Config/ConCheck.cfg"), " 1 \r\n 0 \r\n 0 \r\n 0 \r\n 1 \r\n");
      data.write(QStringLiteral("Config/IgnoredIPs.cfg"), "127.*.*.*\r\n");
    }
    RunStartSteps(data.dir(), test::TempDataDir::shippedDir(), state);
    window = std::make_unique<MainWindow>(services, traffic);
    if (withDetection) {
      window->SetDetection({&loop, &remote, nullptr, nullptr});
    }
    window->Start();
  }

  QStringList records() const {
    return QDir(data.path(QStringLiteral("Verbindungen"))).entryList(QStringList{"*.con"}, QDir::Files);
  }
};

bool Loaded(const MainWindow& w, const char* form) { return w.IsFormLoaded(QString::fromLatin1(form)); }

QScrollArea* Panel(const MainWindow& w, int entry) { return qobject_cast<QScrollArea*>(w.sidePanel(entry)); }

QStringList TrayTexts(MainWindow& w) {
  QStringList all;
  for (QAction* action : w.BuildTrayMenu()->actions()) {
    all.append(action->isSeparator() ? QStringLiteral("-") : action->text());
  }
  return all;
}

}  // namespace

class TestMainWindow : public QObject {
  Q_OBJECT

 private slots:
  void startEndsOnTheIdleOverview() {
    Program p;
    MainWindow& w = *p.window;
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    QCOMPARE(w.size(), QSize(MainWindow::kWidth, MainWindow::kHeight));
    const QPoint centre = w.frameGeometry().center();
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    QVERIFY(qAbs(centre.x() - screen.center().x()) <= 1 && qAbs(centre.y() - screen.center().y()) <= 1);

    QVERIFY(Loaded(w, "Overview") && w.overview()->isVisible() && !Loaded(w, "Connection"));
    QVERIFY(w.IsOnlineCheckActive());
    QCOMPARE(w.statusField(2)->text(), QStringLiteral("Aktiver Benutzer: Supervisor"));
    for (int index = 0; index < SideBar::kEntries; ++index) {
      // Only the panels that exist can be opened.
      QVERIFY(w.sideBar()->IsEntryEnabled(index));
    }
    QCOMPARE(p.state.AktuellerTarif, QStringLiteral("Funkwelle - Tag und Nacht.tel"));

    // A maximise command leaves the window at its size.
    w.setWindowState(Qt::WindowMaximized);
    QApplication::processEvents();
    QCOMPARE(w.size(), QSize(MainWindow::kWidth, MainWindow::kHeight));
  }

  void navigationAndTheGroupPages() {
    Program p;
    MainWindow& w = *p.window;
    w.sideBar()->HeaderButton(2)->click();
    QVERIFY(w.sideBar()->EntryButton(6)->isVisible() && !w.sideBar()->EntryButton(0)->isVisible());
    w.sideBar()->HeaderButton(0)->click();
    // Another panel takes the Overview's place; a second click changes nothing.
    w.sideBar()->EntryButton(6)->click();
    QVERIFY(Loaded(w, "ConnectionCheck") && !Loaded(w, "Overview"));
    QWidget* monitoring = w.sidePanel(6);
    w.sideBar()->EntryButton(6)->click();
    QCOMPARE(w.sidePanel(6), monitoring);
    w.sideBar()->EntryButton(3)->click();
    QVERIFY(Loaded(w, "DialUp") && !Loaded(w, "ConnectionCheck"));
    w.sideBar()->EntryButton(7)->click();
    QVERIFY(Loaded(w, "Options") && !Loaded(w, "DialUp"));
    // The wheel over a selection box the user hasn't clicked leaves the
    // selection alone.
    auto* currency = Panel(w, 7)->widget()->findChild<QComboBox*>();
    QVERIFY(currency && currency->count() > 1);
    currency->setCurrentIndex(0);
    QWheelEvent wheel(QPointF(5, 5), currency->mapToGlobal(QPointF(5, 5)), QPoint(), QPoint(0, -120),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(currency, &wheel);
    QCOMPARE(currency->currentIndex(), 0);
    // The analysis fits the frame's width (the other panels' fit has a test
    // of its own).
    w.sideBar()->ShowPage(1);
    w.sideBar()->EntryButton(8)->click();
    QVERIFY(Loaded(w, "Chart") && !Loaded(w, "Options"));
    w.sideBar()->EntryButton(9)->click();
    QVERIFY(Loaded(w, "Report") && !Loaded(w, "Chart"));
    QCOMPARE(Panel(w, 9)->horizontalScrollBar()->maximum(), 0);
    w.sideBar()->EntryButton(0)->click();
    QVERIFY(Loaded(w, "Overview") && !Loaded(w, "Report"));

    w.sideBar()->SetLabel(0, QStringLiteral("[Gesperrt]"));
    w.HideWindows();
    w.sideBar()->EntryButton(0)->click();  // barred: leads nowhere
    QVERIFY(!Loaded(w, "Overview"));
  }

  // Every panel of the side bar shows whole in the window of fixed size, at
  // 96 and at 120 dpi (the same font in points, a quarter more pixels): no
  // scrolling, no control outside the frame or squeezed below its height,
  // and a picture for every entry.
  void everyPanelShowsWholeInTheFrame() {
    const QFont original = QApplication::font();
    for (const qreal scale : {1.0, 1.25}) {
      QFont font = original;
      font.setPointSizeF(original.pointSizeF() * scale);
      QApplication::setFont(font);
      Program p(true, true);
      MainWindow& w = *p.window;
      QVERIFY(QTest::qWaitForWindowExposed(&w));
      for (int field = 0; field < 3; ++field) {
        const QLabel* status = w.statusField(field);
        QVERIFY2(status->fontMetrics().horizontalAdvance(status->text()) <= status->contentsRect().width(),
                 qPrintable(status->text()));
      }
      const QWidget* client = w.findChild<QWidget*>(QStringLiteral("Picture2"));
      const QRect frame(client->mapTo(&w, QPoint(0, 0)), client->size());
      for (int index = 0; index < SideBar::kEntries; ++index) {
        QVERIFY(!w.sideBar()->EntryButton(index)->icon().pixmap(32, 32).isNull());
        const QToolButton* entry = w.sideBar()->EntryButton(index);
        QVERIFY2(entry->fontMetrics().horizontalAdvance(entry->text()) <= entry->width() - 8,
                 qPrintable(entry->text()));
        if (!w.sideBar()->IsEntryEnabled(index)) {
          continue;
        }
        // The analysis' sentences with the comparison table below them are
        // longer than the frame by nature: they scroll down, never sideways.
        if (index == 9) {
          continue;
        }
        w.sideBar()->EntryButton(index)->click();
        QWidget* panel = index == 0 ? static_cast<QWidget*>(w.overview()) : w.sidePanel(index);
        QVERIFY(panel != nullptr);
        QApplication::processEvents();
        if (index == 0) {
          // The Overview's projection gives the amount per day where there is room.
          const QString projection = panel->findChild<QLabel*>(QStringLiteral("lblProjection(2)"))->text();
          QVERIFY2(projection.startsWith(QStringLiteral("bis ")) &&
                       projection.contains(QStringLiteral("/Tag")) == (scale == 1.0),
                   qPrintable(projection));
        }
        const QString dpi = QStringLiteral("%1 at %2 dpi").arg(panel->objectName()).arg(96 * scale);
        if (const QScrollArea* scroll = Panel(w, index)) {
          QVERIFY2(scroll->verticalScrollBar()->maximum() + scroll->horizontalScrollBar()->maximum() == 0,
                   qPrintable(dpi));
        }
        for (const QWidget* control : panel->findChildren<QWidget*>()) {
          // A selection box's own text field is the box's business.
          if (!control->isVisibleTo(panel) || control->inherits("QScrollBar") ||
              qobject_cast<const QComboBox*>(control->parentWidget())) {
            continue;
          }
          const QString where =
              QStringLiteral("%1 at %2 dpi: %3 \"%4\"")
                  .arg(panel->objectName())
                  .arg(96 * scale)
                  .arg(QString::fromLatin1(control->metaObject()->className()), control->objectName());
          QVERIFY2(frame.contains(QRect(control->mapTo(&w, QPoint(0, 0)), control->size())),
                   qPrintable(where));
          const bool leaf =
              qobject_cast<const QComboBox*>(control) || qobject_cast<const QLineEdit*>(control) ||
              qobject_cast<const QAbstractButton*>(control) || qobject_cast<const QLabel*>(control);
          const int needed = control->hasHeightForWidth() ? control->heightForWidth(control->width())
                                                          : control->minimumSizeHint().height();
          QVERIFY2(!leaf || control->height() >= needed, qPrintable(where));
        }
      }
    }
    QApplication::setFont(original);
  }

  void manualRecordingFromStartToReturn() {
    Program p;
    MainWindow& w = *p.window;
    w.StartManualRecording();
    QVERIFY(Loaded(w, "Connection") && w.connection()->isVisible() && !Loaded(w, "Overview"));
    QCOMPARE(w.statusField(1)->text(), QStringLiteral("Aufzeichnung aktiv"));
    QCOMPARE(w.sideBar()->Label(0), QStringLiteral("Verbindung"));
    QVERIFY(!w.IsOnlineCheckActive());
    QTRY_VERIFY_WITH_TIMEOUT(w.connection()->TickCount() >= 2, 5000);
    QVERIFY(w.windowTitle().contains(QStringLiteral(" | ")));

    // Navigation hides the recording's panel but never closes it.
    ConnectionPanel* panel = w.connection();
    w.HideWindows();
    QVERIFY(!panel->isVisible());
    const int ticks = panel->TickCount();
    QTRY_VERIFY_WITH_TIMEOUT(panel->TickCount() > ticks, 3000);
    w.sideBar()->EntryButton(0)->click();
    QVERIFY(w.connection() == panel && panel->isVisible());

    w.StopManualRecording();
    QCOMPARE(p.records().size(), 1);
    QTRY_VERIFY(!Loaded(w, "Connection"));
    QVERIFY(Loaded(w, "Overview") && w.overview()->isVisible() && w.IsOnlineCheckActive());
    QCOMPARE(w.windowTitle(), QStringLiteral("Minutor 3.3"));
    QCOMPARE(w.statusField(1)->text(), QStringLiteral("Aufzeichnung ist nicht aktiv"));
    QCOMPARE(w.sideBar()->Label(0), QStringLiteral("Übersicht"));

    // A recording that ends behind another panel leaves the user where they work.
    w.StartManualRecording();
    w.sideBar()->EntryButton(6)->click();
    QVERIFY(!w.connection()->isVisible());
    w.StopManualRecording();
    QTRY_VERIFY(!Loaded(w, "Connection"));
    QVERIFY(Loaded(w, "ConnectionCheck") && !Loaded(w, "Overview"));
  }

  void aConnectionIsNoticedMeteredAndEnded() {
    Program p(true);
    MainWindow& w = *p.window;
    p.remote.AddEntry(QStringLiteral("Mobilfunk"));
    p.data.write(QStringLiteral("DialUp/Mobilfunk.trf"), "Netzfalke\r\nM - Volumen 500\r\n");
    QTest::qWait(1500);
    QVERIFY(!Loaded(w, "Connection"));  // only the ignored loopback is up

    p.remote.BringUp(QStringLiteral("Mobilfunk"), QStringLiteral("ttyUSB0"), QStringLiteral("wwan0"));
    p.host.addresses->append(QStringLiteral("10.64.3.7"));
    QTRY_VERIFY_WITH_TIMEOUT(Loaded(w, "Connection"), 4000);
    QVERIFY(w.connection()->isVisible() && !Loaded(w, "Overview"));
    QCOMPARE(p.state.DetectionSource, 3);
    QCOMPARE(w.connection()->LabelText(QStringLiteral("lblTarifname.Tag")),
             QStringLiteral("Netzfalke - Volumen 500.tel"));
    QCOMPARE(w.connection()->LabelText(QStringLiteral("lblConnectionName")), QStringLiteral("Mobilfunk"));
    QTRY_VERIFY_WITH_TIMEOUT(w.connection()->TickCount() >= 2, 4000);

    // The line goes down: the next tick ends the recording.
    p.remote.TakeDown(p.remote.GetRasConnections().first().handle);
    p.host.addresses = QStringList{"127.0.0.1"};
    QTRY_VERIFY_WITH_TIMEOUT(!Loaded(w, "Connection"), 4000);
    QCOMPARE(p.records().size(), 1);
    QVERIFY(Loaded(w, "Overview") && w.IsOnlineCheckActive());
    QVERIFY(p.prompter.messages.isEmpty());
  }

  void closingAsksDuringARecordingAndNotALockedUser() {
    {  // Cancel: the recording goes on without a gap.
      Program p;
      p.prompter.answers = {Prompter::Answer::Cancel};
      p.window->StartManualRecording();
      const int ticks = p.window->connection()->TickCount();
      QVERIFY(!p.window->close());
      QCOMPARE(p.prompter.messages.last(),
               QStringLiteral("Es wird gerade eine Verbindung aufgezeichnet. Sollen die ermittelten Daten "
                              "gespeichert werden?"));
      QVERIFY(p.window->isVisible() && p.window->connection()->IsRecording());
      QTRY_VERIFY_WITH_TIMEOUT(p.window->connection()->TickCount() > ticks, 3000);
      QVERIFY(p.records().isEmpty());
    }
    // No loses the record on purpose, Yes saves it.
    for (const auto& [answer, records] : {std::pair{Prompter::Answer::No, 0}, {Prompter::Answer::Yes, 1}}) {
      Program p;
      p.prompter.answers = {answer};
      p.window->StartManualRecording();
      QVERIFY(p.window->close());
      QCOMPARE(p.records().size(), records);
    }
    // A locked user can't quit, but the end of the session ends the program
    // for everyone, and keeps the recording without a question.
    for (const bool locked : {false, true}) {
      Program p;
      p.state.QuitLocked = locked;
      p.window->StartManualRecording();
      QVERIFY(!p.window->close());  // asked and cancelled, or refused
      QCOMPARE(p.prompter.messages.size(), 1);
      QVERIFY(p.prompter.messages.first().startsWith(
          locked ? QStringLiteral("Minutor kann nicht beendet werden") : QStringLiteral("Es wird gerade")));
      QSignalSpy closed(p.window.get(), &MainWindow::closed);
      p.window->CloseFor(MainWindow::UnloadMode::SessionEnd);
      QVERIFY(!p.window->isVisible() && p.prompter.messages.size() == 1 && closed.size() == 1);
      QCOMPARE(p.records().size(), 1);
    }
    // The session ends while the question of a close is open.
    Program p;
    p.window->StartManualRecording();
    QSignalSpy closed(p.window.get(), &MainWindow::closed);
    p.prompter.whileAsking = [&p] { p.window->CloseFor(MainWindow::UnloadMode::SessionEnd); };
    p.window->close();
    QCOMPARE(closed.size(), 1);
    QCOMPARE(p.records().size(), 1);
  }

  void trayMenuIsBuiltForTheMoment() {
    Program p;
    MainWindow& w = *p.window;
    w.BuildTrayMenu()->actions().at(2)->trigger();
    QVERIFY(!p.state.MonitoringOn);
    QCOMPARE(p.data.read(QStringLiteral("Config/Monitoring.cfg")).trimmed(), QByteArray("0"));
    w.StartManualRecording();
    QCOMPARE(w.BuildTrayMenu()->actions().at(2)->text(), QStringLiteral("Überwachung"));
    w.BuildTrayMenu()->actions().at(3)->trigger();
    QCOMPARE(p.records().size(), 1);

    // With nowhere to hide to, minimising leaves the window in the task bar.
    QVERIFY(!QSystemTrayIcon::isSystemTrayAvailable());
    p.state.HideToTray = true;
    w.showMinimized();
    QTest::qWait(50);
    QVERIFY(w.isVisible());
  }

  void trayAndSmallWindowStartStopAndRestore() {
    Program p(true);
    MainWindow& w = *p.window;
    // The middle button's double click starts as monitoring would: a single
    // click does nothing, and the guard refuses a line the system doesn't name.
    p.state.OnlyMarkedEntries = true;
    w.OnTrayEvent(QSystemTrayIcon::MiddleClick);
    w.OnTrayEvent(QSystemTrayIcon::MiddleClick);
    QVERIFY(!Loaded(w, "Connection"));
    p.state.OnlyMarkedEntries = false;
    p.state.DetectionSource = 3;
    w.OnTrayEvent(QSystemTrayIcon::MiddleClick);
    QVERIFY(!Loaded(w, "Connection"));
    w.OnTrayEvent(QSystemTrayIcon::MiddleClick);
    QVERIFY(Loaded(w, "Connection"));
    QCOMPARE(p.state.DetectionSource, 0);

    // The small window's "_" takes both windows away; its double click
    // brings both back.
    emit w.connection()->smallWindowWanted(true);
    SmallWindow* small = w.smallWindow();
    QVERIFY(small != nullptr && small->isVisible());
    emit small->minimizeRequested();
    QVERIFY(w.isMinimized() && !small->isVisible());
    emit small->restoreRequested();
    QVERIFY(!w.isMinimized() && small->isVisible());

    w.OnTrayEvent(QSystemTrayIcon::MiddleClick);
    w.OnTrayEvent(QSystemTrayIcon::MiddleClick);
    QTRY_VERIFY(!Loaded(w, "Connection"));
    QCOMPARE(p.records().size(), 1);
  }

  void trayMenuDialsAndHangsUp() {
    Program p(true);
    MainWindow& w = *p.window;
    p.remote.AddEntry(QStringLiteral("T-Online"));
    p.remote.AddEntry(QStringLiteral("Arcor"));
    QCOMPARE(TrayTexts(w), (QStringList{"&Beenden", "-", "Über&wachung", "Aufzeichnung &starten", "-",
                                        "\"T-Online\" wählen", "\"Arcor\" wählen"}));

    // The box follows the dial and closes once the line is up.
    p.prompter.passwords = {QStringLiteral("geheim")};
    w.BuildTrayMenu()->actions().at(6)->trigger();
    QCOMPARE(p.remote.dials.value(0).entry, QStringLiteral("Arcor"));
    QVERIFY(p.state.DialedByProgram);
    QCOMPARE(p.remote.GetRasConnections().size(), 1);

    // While recording: the last connection is the one hung up.
    const QString last = p.remote.BringUp(QStringLiteral("T-Online"));
    w.StartManualRecording();
    QCOMPARE(TrayTexts(w), (QStringList{"&Beenden", "-", "Über&wachung", "Aufzeichnung &stoppen", "-",
                                        "Verbindung trennen"}));
    w.BuildTrayMenu()->actions().at(5)->trigger();
    QCOMPARE(p.remote.hangUps, QStringList{last});
    QCOMPARE(p.remote.GetRasConnections().size(), 1);
  }
};

QTEST_MAIN(TestMainWindow)
#include "test_mainwindow.moc"
