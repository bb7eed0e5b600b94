#include "platform/sound_player.h"

#include <QCoreApplication>

#include <windows.h>
// after windows.h
#include <mmsystem.h>

namespace ktr {

namespace {

class SystemPlayer : public SoundPlayer
{
public:
    explicit SystemPlayer(Timers &timers) : m_end(timers.create()) {}
    ~SystemPlayer() override { PlaySoundA(nullptr, nullptr, 0); }

    bool isPlaying() const override { return m_end->isRunning(); }

    void play(const QByteArray &wav, const Sound::Told &told) override
    {
        if (waveOutGetNumDevs() == 0) {
            told({Status::failed(
                QCoreApplication::translate("Sound", "the system has no device that plays sounds"))});
            return;
        }
        constexpr DWORD how = SND_MEMORY | SND_ASYNC | SND_NODEFAULT;
        if (PlaySoundA(wav.constData(), nullptr, how) == FALSE) {
            told({Status::failed(QCoreApplication::translate("Sound", "the system does not play it"))});
            return;
        }
        m_end->start(longest, [told] { told({Status::done(), QStringLiteral("PlaySound")}); });
    }

private:
    static constexpr Milliseconds longest{1'000}; ///< the system does not tell when it is over

    std::unique_ptr<OneShotTimer> m_end;
};

} // namespace

std::unique_ptr<SoundPlayer> SoundPlayer::create(Timers &timers, const QString &)
{
    return std::make_unique<SystemPlayer>(timers);
}

} // namespace ktr
