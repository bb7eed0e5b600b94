#pragma once

#include "platform/sound.h"

namespace ktr {

/// How the system plays a sound.
class SoundPlayer
{
public:
    SoundPlayer() = default;
    SoundPlayer(const SoundPlayer &) = delete;
    SoundPlayer &operator=(const SoundPlayer &) = delete;
    virtual ~SoundPlayer() = default; ///< ends the sound

    virtual bool isPlaying() const = 0;
    /// `wav` stays as it is until it was told what became of it.
    virtual void play(const QByteArray &wav, const Sound::Told &told) = 0;

    static std::unique_ptr<SoundPlayer> create(Timers &timers, const QString &name);
};

} // namespace ktr
