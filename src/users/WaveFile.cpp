#include "users/WaveFile.h"

#include <QtEndian>

namespace minutor {

namespace {

quint32 U32(const QByteArray& bytes, qsizetype at) {
  return qFromLittleEndian<quint32>(bytes.constData() + at);
}
quint16 U16(const QByteArray& bytes, qsizetype at) {
  return qFromLittleEndian<quint16>(bytes.constData() + at);
}

}  // namespace

qint64 WaveSound::DurationMs() const {
  const qint64 frameBytes = qint64{channels} * (bitsPerSample / 8);
  if (frameBytes <= 0 || sampleRate <= 0) {
    return 0;
  }
  return samples.size() / frameBytes * 1000 / sampleRate;
}

std::optional<WaveSound> ParseWave(const QByteArray& bytes) {
  if (bytes.size() < 12 || !bytes.startsWith("RIFF") || bytes.mid(8, 4) != "WAVE") {
    return std::nullopt;
  }
  WaveSound sound;
  bool haveFormat = false;
  qsizetype at = 12;
  while (at + 8 <= bytes.size()) {
    const QByteArray id = bytes.mid(at, 4);
    const qint64 size = U32(bytes, at + 4);
    const qsizetype body = at + 8;
    const qsizetype available = std::min<qint64>(size, bytes.size() - body);
    if (id == "fmt " && available >= 16) {
      if (U16(bytes, body) != 1) {
        return std::nullopt;  // compressed
      }
      sound.channels = U16(bytes, body + 2);
      sound.sampleRate = static_cast<int>(U32(bytes, body + 4));
      sound.bitsPerSample = U16(bytes, body + 14);
      haveFormat = true;
    } else if (id == "data" && haveFormat) {
      sound.samples = bytes.mid(body, available);
      const bool usable = sound.channels >= 1 && sound.channels <= 8 && sound.sampleRate >= 1000 &&
                          sound.sampleRate <= 192000 &&
                          (sound.bitsPerSample == 8 || sound.bitsPerSample == 16);
      return usable ? std::optional<WaveSound>(sound) : std::nullopt;
    }
    // Chunks are padded to even sizes.
    at = body + size + (size & 1);
  }
  return std::nullopt;
}

}  // namespace minutor
