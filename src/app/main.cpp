// Minutor: the connection cost meter. This is the one place where the real
// parts are wired together.

#include "app/SignalQuit.h"
#include "detection/ConCheck.h"
#include "detection/MonitoringLoop.h"
#include "detection/Probes.h"
#include "detection/RemoteAccess.h"
#include "detection/platform/HostAddresses.h"
#include "detection/platform/ProbesBusServices.h"
#include "detection/platform/ProbesModemManager.h"
#include "detection/platform/ProbesNetworkManager.h"
#include "detection/platform/RemoteAccessFactory.h"
#include "detection/platform/SysfsTraffic.h"
#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Services.h"
#include "frame/SingleInstance.h"
#include "frame/StartUp.h"
#include "frame/datadir/DataDir.h"
#include "frame/ui/MainWindow.h"
#include "frame/ui/MessageBoxPrompter.h"
#include "metering/RecordingCheckpoint.h"
#include "users/UserAccounts.h"
#include "users/platform/DBusNotifier.h"
#include "users/platform/PulseSoundPlayer.h"
#include "users/ui/LoginDialog.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDir>
#include <QLibraryInfo>
#include <QLocale>
#include <QPointer>
#include <QTranslator>

int main(int argc, char* argv[]) {
  QApplication app(argc, argv);
  QApplication::setApplicationName(QStringLiteral("Minutor"));
  QApplication::setApplicationVersion(QStringLiteral("3.3"));
  QApplication::setDesktopFileName(QStringLiteral("minutor"));
  // The window hides to the tray; only closing it ends the program.
  QApplication::setQuitOnLastWindowClosed(false);
  // The program speaks German whatever the desktop's language is; so do the
  // buttons of Qt's own boxes ("Ja", "Abbrechen").
  QTranslator qtTexts;
  if (qtTexts.load(QLocale(QLocale::German, QLocale::Germany), QStringLiteral("qtbase"), QStringLiteral("_"),
                   QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
    QApplication::installTranslator(&qtTexts);
  }
  // The end of the session (SIGTERM) ends the program at any moment: a box
  // that is open gives way at once, and once the window exists it closes as
  // the session's end closes it, keeping a running recording.
  minutor::SignalQuit signalQuit;
  bool sessionEnded = false;
  QPointer<minutor::MainWindow> mainWindow;
  QObject::connect(&signalQuit, &minutor::SignalQuit::quitRequested, &app, [&] {
    sessionEnded = true;
    if (mainWindow) {
      mainWindow->CloseFor(minutor::MainWindow::UnloadMode::SessionEnd);
    }
    QApplication::exit(0);
  });

  const QString exeDir = QApplication::applicationDirPath();
  const minutor::DataDir dir(minutor::DataDir::DefaultLocation(exeDir));
  minutor::MessageBoxPrompter prompter;

  if (!dir.MakeRoot()) {
    prompter.Message(QStringLiteral("Das Datenverzeichnis %1 kann nicht angelegt werden.")
                         .arg(QDir::toNativeSeparators(dir.Root())),
                     minutor::Prompter::Icon::Critical);
    return 1;
  }
  minutor::SingleInstance instance(dir.Root());
  if (!instance.TryAcquire()) {
    prompter.Message(QStringLiteral("Minutor wurde bereits gestartet."),
                     minutor::Prompter::Icon::Information);
    return 0;
  }

  // The system behind detection: NetworkManager where it runs, else pppd and
  // the kernel; ModemManager for the modem's line.
  const QDBusConnection bus = QDBusConnection::systemBus();
  const minutor::ProbesBusServices busServices(bus);
  minutor::PresetConCheck(dir, busServices);

  minutor::AppState state;
  minutor::RunStartSteps(dir, minutor::DataDir::ShippedLocation(exeDir), state);
  minutor::RecoverCheckpoint(dir, prompter);
  if (sessionEnded) {
    return 0;
  }
  minutor::SystemClock clock;
  minutor::Services services{state, dir, clock, prompter};

  // The last user's password, unless the desktop login chooses the user.
  if (const auto user = minutor::CheckUser(dir)) {
    minutor::LoginDialog login(services, *user);
    if (login.HasUsers() && login.exec() != QDialog::Accepted) {
      return 0;
    }
  }

  if (sessionEnded) {
    return 0;
  }

  minutor::ProbesNetworkManager network(bus);
  minutor::ProbesModemManager modem(bus, state);
  const minutor::HostAddresses host;
  std::unique_ptr<minutor::RemoteAccess> remote = minutor::CreateRemoteAccess(bus);
  minutor::SysfsTraffic traffic;
  minutor::MonitoringLoop loop(services, *remote, network, host);

  minutor::MainWindow window(services, traffic);
  mainWindow = &window;
  minutor::PulseSoundPlayer sound;
  minutor::DBusNotifier notifier(QDBusConnection::sessionBus());
  window.alarms().SetSoundPlayer(&sound);
  window.alarms().SetNotifier(&notifier);
  prompter.setParent(&window);
  // A close can come while a box of the start is still open; then the
  // program ends as soon as that box is gone.
  bool closed = false;
  QObject::connect(&window, &minutor::MainWindow::closed, &app, [&closed] {
    closed = true;
    QApplication::exit(0);
  });

  minutor::CheckServicesAtStart(state, busServices, prompter);
  if (state.MethodTAPI) {
    minutor::StartTapi(state, modem, prompter);
  }
  window.SetDetection({&loop, remote.get(), &busServices, &modem});
  if (closed || sessionEnded) {
    return 0;
  }
  window.Start();
  return closed || sessionEnded ? 0 : QApplication::exec();
}
