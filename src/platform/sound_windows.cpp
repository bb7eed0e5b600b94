#include "platform/sound_player.h"

#include <windows.h>
// after windows.h
#include <mmsystem.h>

namespace ktr {

namespace {

class SystemPlayer : public SoundPlayer
{
public:
    ~SystemPlayer() override { PlaySoundA(nullptr, nullptr, 0); }

    void play(const QByteArray &wav, const std::function<void()> &fallback) override
    {
        constexpr DWORD how = SND_MEMORY | SND_ASYNC | SND_NODEFAULT | SND_NOSTOP;
        if (PlaySoundA(wav.constData(), nullptr, how) == FALSE && waveOutGetNumDevs() == 0) {
            fallback();
        }
    }
};

} // namespace

std::unique_ptr<SoundPlayer> SoundPlayer::create()
{
    return std::make_unique<SystemPlayer>();
}

} // namespace ktr
