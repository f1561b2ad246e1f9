// Minutor: the connection cost meter. This is the one place where the real
// parts are wired together.

#include "app/SignalQuit.h"
#include "frame/AppState.h"
#include "frame/SingleInstance.h"
#include "frame/StartUp.h"
#include "frame/datadir/DataDir.h"
#include "frame/ui/MainWindow.h"
#include "frame/ui/MessageBoxPrompter.h"

#include <QApplication>
#include <QDir>

int main(int argc, char* argv[]) {
  QApplication app(argc, argv);
  QApplication::setApplicationName(QStringLiteral("Minutor"));
  QApplication::setApplicationVersion(QStringLiteral("3.3"));
  QApplication::setDesktopFileName(QStringLiteral("minutor"));

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

  minutor::MainWindow window(state);
  prompter.setParent(&window);
  minutor::SignalQuit signalQuit;
  QObject::connect(&signalQuit, &minutor::SignalQuit::quitRequested, &window, &QWidget::close);
  if (state.StartMinimized) {
    window.showMinimized();
  } else {
    window.show();
  }
  // Centred once shown, when the size of the window's frame is known.
  window.CenterOnScreen();
  return QApplication::exec();
}
