#pragma once

#include <QByteArray>

#include <functional>
#include <memory>

namespace ktr {

class SoundPlayer;

/// Plays one short sound, through a program of the system where the system itself cannot.
class Sound
{
public:
    /// `wav` is a whole WAV file. `fallback` runs in place of the sound where it cannot be heard.
    Sound(QByteArray wav, std::function<void()> fallback);
    ~Sound(); ///< ends the sound

    /// Begins to play and returns at once. While it plays already, nothing more happens.
    void play();

private:
    QByteArray m_wav;
    std::function<void()> m_fallback;
    std::unique_ptr<SoundPlayer> m_player;
};

} // namespace ktr
