// Takes the pictures of the README: the Overview, a running recording and the
// small window, made by the real program's windows on a sample data directory.
//
//   minutor_screenshots OUTDIR
//
// Run it under an X server (scripts/screenshots.sh starts Xvfb for it).

#include "desk/ui/SmallWindow.h"
#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Services.h"
#include "frame/StartUp.h"
#include "frame/datadir/DataDir.h"
#include "frame/ui/MainWindow.h"
#include "frame/ui/MessageBoxPrompter.h"
#include "metering/TrafficSource.h"
#include "metering/ui/ConnectionPanel.h"

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>

using namespace minutor;

namespace {

void Wait(int milliseconds) {
  QElapsedTimer timer;
  timer.start();
  while (timer.elapsed() < milliseconds) {
    QApplication::processEvents(QEventLoop::AllEvents, 50);
  }
}

bool Save(QWidget* widget, const QString& path) {
  const bool ok = widget->grab().save(path);
  std::printf("%s %s\n", ok ? "wrote" : "FAILED", qPrintable(path));
  return ok;
}

}  // namespace

int main(int argc, char* argv[]) {
  QApplication app(argc, argv);
  if (argc < 2) {
    std::fprintf(stderr, "usage: minutor_screenshots OUTDIR\n");
    return 2;
  }
  const QString out = QString::fromLocal8Bit(argv[1]);
  QDir().mkpath(out);

  QTemporaryDir temp;
  const DataDir dir(temp.path());
  dir.WriteLines(QStringLiteral("Config/Overview.cfg"),
                 {"", "Supervisor", "Mobilnetz Plus", "M - Freiminuten 100"});
  dir.WriteLines(QStringLiteral("Benutzer/Supervisor.bdg"), {"3", "25", "0", "1.1.2002", "31.1.2002"});
  dir.WriteLines(QStringLiteral("Config/Smallwindow.cfg"), {" 1 "});
  dir.WriteLines(QStringLiteral("Note.dat"), {"Vertrag endet am 31.12.", "Stick: 0171 1234567"});

  AppState state;
  RunStartSteps(dir, DataDir::ShippedLocation(QApplication::applicationDirPath()), state);
  SystemClock clock;
  MessageBoxPrompter prompter;
  Services services{state, dir, clock, prompter};
  NoTrafficSource traffic;

  MainWindow window(services, traffic);
  window.Start();
  Wait(800);
  bool ok = Save(&window, out + QStringLiteral("/overview.png"));

  window.StartManualRecording();
  Wait(3500);
  ok = Save(&window, out + QStringLiteral("/connection.png")) && ok;
  if (window.smallWindow() != nullptr) {
    ok = Save(window.smallWindow(), out + QStringLiteral("/smallwindow.png")) && ok;
  } else {
    std::printf("FAILED no small window\n");
    ok = false;
  }
  if (window.connection() != nullptr) {
    window.connection()->CounterStop();
  }
  Wait(300);
  return ok ? 0 : 1;
}
