// minutorctl: the program's own rules from the shell.

#include "cli/Commands.h"
#include "frame/datadir/DataDir.h"

#include <QGuiApplication>

#include <cstring>
#include <memory>

int main(int argc, char* argv[]) {
  // Only a chart's picture needs the GUI side of Qt, for its fonts; it is
  // painted without a display.
  bool paints = false;
  for (int i = 1; i < argc; ++i) {
    paints = paints || std::strcmp(argv[i], "--output") == 0;
  }
  std::unique_ptr<QCoreApplication> app;
  if (paints) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
      qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    app = std::make_unique<QGuiApplication>(argc, argv);
  } else {
    app = std::make_unique<QCoreApplication>(argc, argv);
  }
  QCoreApplication::setApplicationName(QStringLiteral("minutorctl"));
  QStringList args = QCoreApplication::arguments();
  args.removeFirst();
  return minutor::cli::Run(args, minutor::DataDir::DefaultLocation(QCoreApplication::applicationDirPath()),
                           stdin, stdout, stderr);
}
