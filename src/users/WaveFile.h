#pragma once

#include <QByteArray>

#include <optional>

namespace minutor {

// The samples of a PCM wave file and how to play them.
struct WaveSound {
  int channels = 0;
  int sampleRate = 0;
  int bitsPerSample = 0;  // 8 (unsigned) or 16 (signed, little endian)
  QByteArray samples;

  // How long the samples last, in milliseconds.
  qint64 DurationMs() const;
};

// Reads a RIFF/WAVE file of uncompressed PCM in 8 or 16 bits; nullopt for
// anything else.
std::optional<WaveSound> ParseWave(const QByteArray& bytes);

}  // namespace minutor
