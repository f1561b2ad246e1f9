#include "tariffs/TariffLines.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace minutor {

namespace {

char LowerAscii(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

double Clamped(double value, double low, double high) {
  if (std::isnan(value)) {
    return 0.0;
  }
  return std::clamp(value, low, high);
}

}  // namespace

QString TarifPfad(const QString& file) { return QStringLiteral("Tarife/") + file; }

std::optional<QList<QByteArray>> ReadTarifLines(const DataDir& dir, const QString& file) {
  if (file.isEmpty()) {
    return std::nullopt;
  }
  // Tariffs may be larger than settings: as large as the update takes them.
  constexpr qsizetype kTariffFileLimit = 1000000;
  return dir.ReadLines(TarifPfad(file), kTariffFileLimit);
}

QByteArray ValueBehind(const QByteArray& line, qsizetype position) {
  return line.size() > position ? line.mid(position) : QByteArray();
}

bool EqualsLower(QByteArrayView line, QByteArrayView lower) {
  return line.size() == lower.size() && StartsWithLower(line, lower);
}

bool StartsWithLower(QByteArrayView line, QByteArrayView lower) {
  if (line.size() < lower.size()) {
    return false;
  }
  for (qsizetype i = 0; i < lower.size(); ++i) {
    if (LowerAscii(line[i]) != lower[i]) {
      return false;
    }
  }
  return true;
}

QByteArray TrimBlanks(const QByteArray& text) {
  qsizetype begin = 0;
  qsizetype end = text.size();
  while (begin < end && text.at(begin) == ' ') {
    ++begin;
  }
  while (end > begin && text.at(end - 1) == ' ') {
    --end;
  }
  return text.mid(begin, end - begin);
}

bool IsJa(const QByteArray& value) { return EqualsLower(TrimBlanks(value), "ja"); }

float ToSingle(double value) {
  const double limit = std::numeric_limits<float>::max();
  return static_cast<float>(Clamped(value, -limit, limit));
}

qint16 RoundToInt16(double value) {
  // Half-way values go to the even neighbour, as the old conversion did.
  return static_cast<qint16>(std::nearbyint(Clamped(value, -32768.0, 32767.0)));
}

qint16 CutToInt16(double value) { return static_cast<qint16>(std::trunc(Clamped(value, -32768.0, 32767.0))); }

quint8 RoundToByte(double value) { return static_cast<quint8>(std::nearbyint(Clamped(value, 0.0, 255.0))); }

}  // namespace minutor
