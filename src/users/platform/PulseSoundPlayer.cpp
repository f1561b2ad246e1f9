#include "users/platform/PulseSoundPlayer.h"

#include "frame/datadir/DataDir.h"
#include "users/WaveFile.h"

#include <pulse/error.h>
#include <pulse/simple.h>

#include <chrono>
#include <future>
#include <thread>

namespace minutor {

namespace {

void PlayToEnd(const WaveSound& sound) {
  pa_sample_spec spec{};
  spec.format = sound.bitsPerSample == 8 ? PA_SAMPLE_U8 : PA_SAMPLE_S16LE;
  spec.rate = static_cast<uint32_t>(sound.sampleRate);
  spec.channels = static_cast<uint8_t>(sound.channels);
  int error = 0;
  pa_simple* stream = pa_simple_new(nullptr, "Minutor", PA_STREAM_PLAYBACK, nullptr, "Warnton", &spec,
                                    nullptr, nullptr, &error);
  if (stream == nullptr) {
    return;
  }
  if (pa_simple_write(stream, sound.samples.constData(), static_cast<size_t>(sound.samples.size()), &error) ==
      0) {
    pa_simple_drain(stream, &error);
  }
  pa_simple_free(stream);
}

}  // namespace

void PulseSoundPlayer::Play(const QString& path) {
  const auto bytes = ReadFileBytes(path);
  const auto sound = bytes ? ParseWave(*bytes) : std::nullopt;
  if (!sound || sound->samples.isEmpty()) {
    return;
  }
  // The warning is heard before the program goes on, but a server that
  // stalls doesn't hold it longer than the sound and a second.
  std::packaged_task<void()> task([played = *sound] { PlayToEnd(played); });
  std::future<void> done = task.get_future();
  std::thread(std::move(task)).detach();
  done.wait_for(std::chrono::milliseconds(sound->DurationMs() + 1000));
}

}  // namespace minutor
