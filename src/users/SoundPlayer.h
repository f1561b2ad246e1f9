#pragma once

#include <QString>

namespace minutor {

// Plays the warning sounds. Playing waits until the sound has ended, but
// never much longer than the sound lasts; without a sound server or a
// readable file nothing is heard and nothing is said.
class SoundPlayer {
 public:
  virtual ~SoundPlayer() = default;
  virtual void Play(const QString& path) = 0;
};

}  // namespace minutor
