#include "cli/Commands.h"

#include "frame/Clock.h"
#include "frame/datadir/AnsiText.h"
#include "frame/datadir/DataDir.h"
#include "metering/ConnectionRecord.h"
#include "tariffs/RateLookup.h"
#include "tariffs/TariffNames.h"
#include "users/FieldCipher.h"

#include <QDateTime>
#include <QFileInfo>

#include <algorithm>

namespace minutor::cli {

namespace {

const char* const kUsageText =
    "usage: minutorctl [--datadir DIR] COMMAND\n"
    "\n"
    "commands:\n"
    "  field encrypt [TEXT...]     encipher each TEXT (or each line of standard input) as a stored field\n"
    "  field decrypt               decipher each line of standard input\n"
    "  record show FILE            the lines of a connection record in plain text\n"
    "  tariff list                 provider, label and file name of every tariff\n"
    "  tariff price FILE [--at \"YYYY-MM-DD HH:MM:SS\"] [--holiday]\n"
    "                              the price of a tariff at a moment, in hundredths\n";

struct Io {
  std::FILE* in;
  std::FILE* out;
  std::FILE* err;

  void Write(const QByteArray& bytes) const { std::fwrite(bytes.constData(), 1, bytes.size(), out); }
  void Line(const QString& text) const { Write(text.toUtf8() + '\n'); }
  int Fail(const QString& message) const {
    std::fputs(("minutorctl: " + message + '\n').toUtf8().constData(), err);
    return kError;
  }
  int Usage(const QString& message = {}) const {
    if (!message.isEmpty()) {
      std::fputs(("minutorctl: " + message + "\n\n").toUtf8().constData(), err);
    }
    std::fputs(kUsageText, err);
    return kUsage;
  }

  // The lines of standard input without their line ends.
  QList<QByteArray> InputLines() const {
    QByteArray all;
    char buffer[65536];
    size_t got = 0;
    while ((got = std::fread(buffer, 1, sizeof buffer, in)) > 0) {
      all.append(buffer, static_cast<qsizetype>(got));
    }
    return SplitLines(all);
  }
};

int FieldEncrypt(const QStringList& texts, const Io& io) {
  QList<QByteArray> plain;
  if (texts.isEmpty()) {
    for (const QByteArray& line : io.InputLines()) {
      plain.append(ToAnsi(QString::fromUtf8(line)));
    }
  } else {
    for (const QString& text : texts) {
      plain.append(ToAnsi(text));
    }
  }
  for (const QByteArray& value : plain) {
    io.Write(EncryptField(value) + '\n');
  }
  return kOk;
}

int FieldDecrypt(const Io& io) {
  for (const QByteArray& line : io.InputLines()) {
    io.Write(FromAnsi(DecryptField(line)).toUtf8() + '\n');
  }
  return kOk;
}

int RecordShow(const DataDir& dir, const QString& file, const Io& io) {
  QString path = file;
  if (!QFileInfo(path).isFile()) {
    path = dir.Resolve(kRecordFolder + QLatin1Char('/') + file);
  }
  const auto fields = ReadRecordFields(path);
  if (!fields) {
    return io.Fail(QStringLiteral("cannot read the record %1").arg(file));
  }
  for (qsizetype i = 0; i < fields->size(); ++i) {
    io.Line(QString::number(i + 1) + QLatin1Char('\t') + FromAnsi(fields->at(i)));
  }
  return kOk;
}

int TariffList(const DataDir& dir, const Io& io) {
  for (const QString& file : dir.ListFiles(QStringLiteral("Tarife"))) {
    const auto anbieter = GetAnbieter(file);
    const QString label = anbieter ? TarifLabel(*anbieter, file) : QString();
    if (!label.isEmpty()) {
      io.Line(*anbieter + QLatin1Char('\t') + label + QLatin1Char('\t') + file);
    }
  }
  return kOk;
}

int TariffPrice(const DataDir& dir, QStringList args, const Io& io) {
  bool holiday = false;
  QDateTime at = SystemClock().Now();
  QString file;
  while (!args.isEmpty()) {
    const QString arg = args.takeFirst();
    if (arg == QLatin1String("--holiday")) {
      holiday = true;
    } else if (arg == QLatin1String("--at")) {
      if (args.isEmpty()) {
        return io.Usage(QStringLiteral("--at needs a moment"));
      }
      at = QDateTime::fromString(args.takeFirst(), QStringLiteral("yyyy-MM-dd HH:mm:ss"));
      if (!at.isValid()) {
        return io.Usage(QStringLiteral("--at takes \"YYYY-MM-DD HH:MM:SS\""));
      }
    } else if (file.isEmpty() && !arg.startsWith(QLatin1String("--"))) {
      file = arg;
    } else {
      return io.Usage(QStringLiteral("unexpected argument %1").arg(arg));
    }
  }
  if (file.isEmpty()) {
    return io.Usage(QStringLiteral("tariff price needs a tariff file"));
  }
  if (file.contains(QLatin1Char('/')) || file.contains(QLatin1Char('\\')) ||
      !dir.FileExists(QStringLiteral("Tarife/") + file)) {
    return io.Fail(QStringLiteral("no tariff %1 in %2").arg(file, dir.Resolve(QStringLiteral("Tarife"))));
  }
  const double price = GetTarifPreis(dir, file, at, holiday);
  io.Line(QString::number(price, 'g', 15));
  return kOk;
}

}  // namespace

int Run(const QStringList& arguments, const QString& defaultDataDir, std::FILE* in, std::FILE* out,
        std::FILE* err) {
  const Io io{in, out, err};
  QStringList args = arguments;
  QString dataDir = defaultDataDir;
  if (!args.isEmpty() && args.first() == QLatin1String("--datadir")) {
    if (args.size() < 2) {
      return io.Usage(QStringLiteral("--datadir needs a folder"));
    }
    dataDir = args.at(1);
    args = args.mid(2);
  }
  if (args.size() < 2) {
    return io.Usage(args.isEmpty() ? QString() : QStringLiteral("incomplete command"));
  }
  const DataDir dir(dataDir);
  const QString group = args.takeFirst();
  const QString command = args.takeFirst();

  if (group == QLatin1String("field") && command == QLatin1String("encrypt")) {
    return FieldEncrypt(args, io);
  }
  if (group == QLatin1String("field") && command == QLatin1String("decrypt") && args.isEmpty()) {
    return FieldDecrypt(io);
  }
  if (group == QLatin1String("record") && command == QLatin1String("show") && args.size() == 1) {
    return RecordShow(dir, args.first(), io);
  }
  if (group == QLatin1String("tariff") && command == QLatin1String("list") && args.isEmpty()) {
    return TariffList(dir, io);
  }
  if (group == QLatin1String("tariff") && command == QLatin1String("price")) {
    return TariffPrice(dir, args, io);
  }
  return io.Usage(QStringLiteral("unknown command: %1").arg((QStringList{group, command} + args).join(' ')));
}

}  // namespace minutor::cli
