// Renders an SVG picture to PNG files of the given sizes, square:
//   minutor_render_icon picture.svg OUTDIR SIZE...
// writes OUTDIR/SIZExSIZE/apps/<name>.png, as an icon theme lays them out.

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QIcon>
#include <QPixmap>

#include <cstdio>

int main(int argc, char* argv[]) {
  QGuiApplication app(argc, argv);
  const QStringList args = QGuiApplication::arguments();
  if (args.size() < 4) {
    std::fputs("usage: minutor_render_icon picture.svg OUTDIR SIZE...\n", stderr);
    return 2;
  }
  const QIcon icon(args.at(1));
  const QString name = QFileInfo(args.at(1)).completeBaseName();
  for (const QString& sizeText : args.mid(3)) {
    const int size = sizeText.toInt();
    const QString folder = QStringLiteral("%1/%2x%2/apps").arg(args.at(2)).arg(size);
    const QPixmap pixmap = icon.pixmap(size, size);
    if (size <= 0 || pixmap.isNull() || !QDir().mkpath(folder) ||
        !pixmap.save(folder + QLatin1Char('/') + name + QStringLiteral(".png"))) {
      std::fprintf(stderr, "minutor_render_icon: cannot render %s at %s\n", qPrintable(args.at(1)),
                   qPrintable(sizeText));
      return 1;
    }
  }
  return 0;
}
