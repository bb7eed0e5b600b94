#include "platform/sound.h"

#include "platform/sound_player.h"

#include <utility>

namespace ktr {

Sound::Sound(Timers &timers, const QString &name, QByteArray wav)
    : m_wav(std::move(wav)), m_player(SoundPlayer::create(timers, name))
{}

Sound::~Sound() = default;

void Sound::play(const Told &told)
{
    m_told += told;
    if (!isPlaying()) {
        m_player->play(m_wav, [this](const SoundOutcome &outcome) { tell(outcome); });
    }
}

bool Sound::isPlaying() const
{
    return m_player->isPlaying();
}

void Sound::tell(const SoundOutcome &outcome)
{
    for (const Told &told : std::exchange(m_told, {})) {
        told(outcome);
    }
}

} // namespace ktr
