#pragma once

#include <QByteArray>

#include <functional>
#include <memory>

namespace ktr {

/// How the system plays a sound.
class SoundPlayer
{
public:
    SoundPlayer() = default;
    SoundPlayer(const SoundPlayer &) = delete;
    SoundPlayer &operator=(const SoundPlayer &) = delete;
    virtual ~SoundPlayer() = default; ///< ends the sound

    virtual void play(const QByteArray &wav, const std::function<void()> &fallback) = 0;

    static std::unique_ptr<SoundPlayer> create();
};

} // namespace ktr
