#include "frame/datadir/AnsiText.h"

#include <array>

namespace minutor {

namespace {

// 0x80 to 0x9F of Windows-1252; the five unassigned codes map through as C1
// controls so that no byte is ever lost on a round trip.
constexpr std::array<char16_t, 32> kHighBlock = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

}  // namespace

QString FromAnsi(const QByteArray& bytes) {
  QString text;
  AppendAnsi(text, bytes);
  return text;
}

void AppendAnsi(QString& text, QByteArrayView bytes) {
  const qsizetype start = text.size();
  text.resize(start + bytes.size());
  QChar* out = text.data() + start;
  for (const char c : bytes) {
    const auto b = static_cast<unsigned char>(c);
    *out++ = (b >= 0x80 && b <= 0x9F) ? QChar(kHighBlock[b - 0x80]) : QChar(char16_t(b));
  }
}

QByteArray ToAnsi(const QString& text) {
  QByteArray bytes;
  bytes.reserve(text.size());
  for (const QChar ch : text) {
    const char16_t u = ch.unicode();
    if (u < 0x80 || (u >= 0xA0 && u <= 0xFF)) {
      bytes.append(static_cast<char>(u));
      continue;
    }
    char mapped = '?';
    for (std::size_t i = 0; i < kHighBlock.size(); ++i) {
      if (kHighBlock[i] == u) {
        mapped = static_cast<char>(0x80 + i);
        break;
      }
    }
    bytes.append(mapped);
  }
  return bytes;
}

}  // namespace minutor
