// Minutor: the connection cost meter. This is the one place where the real
// parts are wired together.

#include "app/SignalQuit.h"
#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Services.h"
#include "frame/SingleInstance.h"
#include "frame/StartUp.h"
#include "frame/datadir/DataDir.h"
#include "frame/ui/MainWindow.h"
#include "frame/ui/MessageBoxPrompter.h"
#include "metering/TrafficSource.h"

#include <QApplication>
#include <QDir>

int main(int argc, char* argv[]) {
  QApplication app(argc, argv);
  QApplication::setApplicationName(QStringLiteral("Minutor"));
  QApplication::setApplicationVersion(QStringLiteral("3.3"));
  QApplication::setDesktopFileName(QStringLiteral("minutor"));
  // The window hides to the tray; only closing it ends the program.
  QApplication::setQuitOnLastWindowClosed(false);
  // Listen for the end of the session from the very start; a signal that
  // comes before the window exists waits until the window can close.
  minutor::SignalQuit signalQuit;

  const QString exeDir = QApplication::applicationDirPath();
  const minutor::DataDir dir(minutor::DataDir::DefaultLocation(exeDir));
  minutor::MessageBoxPrompter prompter;

  minutor::SingleInstance instance(dir.Root());
  if (!instance.TryAcquire()) {
    prompter.Message(QStringLiteral("Minutor wurde bereits gestartet."),
                     minutor::Prompter::Icon::Information);
    return 0;
  }
  if (!QDir().mkpath(dir.Root())) {
    prompter.Message(QStringLiteral("Das Datenverzeichnis %1 kann nicht angelegt werden.")
                         .arg(QDir::toNativeSeparators(dir.Root())),
                     minutor::Prompter::Icon::Critical);
    return 1;
  }

  minutor::AppState state;
  minutor::RunStartSteps(dir, minutor::DataDir::ShippedLocation(exeDir), state);
  minutor::SystemClock clock;
  minutor::Services services{state, dir, clock, prompter};
  // Traffic counters of the system come with the detection of connections.
  minutor::NoTrafficSource traffic;

  minutor::MainWindow window(services, traffic);
  prompter.setParent(&window);
  QObject::connect(&window, &minutor::MainWindow::closed, &app, &QApplication::quit);

  QObject::connect(&signalQuit, &minutor::SignalQuit::quitRequested, &window,
                   [&window] { window.CloseFor(minutor::MainWindow::UnloadMode::SessionEnd); });

  window.Start();
  return QApplication::exec();
}
