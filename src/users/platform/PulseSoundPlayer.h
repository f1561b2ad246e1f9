#pragma once

#include "users/SoundPlayer.h"

namespace minutor {

// Plays a wave file through the PulseAudio client library, which reaches
// PipeWire as well. The server named by the usual environment (or the
// user's own) plays it; without one the sound is skipped at once.
class PulseSoundPlayer final : public SoundPlayer {
 public:
  void Play(const QString& path) override;
};

}  // namespace minutor
