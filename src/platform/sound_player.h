#pragma once

#include "platform/sound.h"

namespace ktr {

/// How the system plays a sound.
class Sound::Player
{
public:
    Player() = default;
    Player(const Player &) = delete;
    Player &operator=(const Player &) = delete;
    virtual ~Player() = default; ///< ends the sound

    virtual void play(const QByteArray &wav, const std::function<void()> &fallback) = 0;

    static std::unique_ptr<Player> create();
};

} // namespace ktr
