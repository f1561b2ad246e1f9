// minutorctl: the program's own rules from the shell.

#include "cli/Commands.h"
#include "frame/datadir/DataDir.h"

#include <QCoreApplication>

int main(int argc, char* argv[]) {
  QCoreApplication app(argc, argv);
  QCoreApplication::setApplicationName(QStringLiteral("minutorctl"));
  QStringList args = QCoreApplication::arguments();
  args.removeFirst();
  return minutor::cli::Run(args, minutor::DataDir::DefaultLocation(QCoreApplication::applicationDirPath()),
                           stdin, stdout, stderr);
}
