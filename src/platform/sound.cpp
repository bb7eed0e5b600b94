#include "platform/sound.h"

#include "platform/sound_player.h"

namespace ktr {

Sound::Sound(QByteArray wav, std::function<void()> fallback)
    : m_wav(std::move(wav)), m_fallback(std::move(fallback)), m_player(SoundPlayer::create())
{}

Sound::~Sound() = default;

void Sound::play()
{
    m_player->play(m_wav, m_fallback);
}

} // namespace ktr
