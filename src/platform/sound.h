#pragma once

#include "platform/status.h"
#include "platform/timers.h"

#include <QByteArray>
#include <QList>

#include <functional>
#include <memory>

namespace ktr {

class SoundPlayer;

/// What became of a sound. That it was played says nothing of a loudspeaker that is switched off.
struct SoundOutcome
{
    Status played; ///< or why not
    QString by{};  ///< what played it: the name of a program or of the system's own service
};

/// Plays one short sound, through a program of the system where the system itself cannot.
class Sound
{
public:
    using Told = std::function<void(const SoundOutcome &)>;

    /// `wav` is a whole WAV file; `name`, letters and digits alone, tells the sounds of a user apart, of
    /// which each may stand in a file.
    Sound(Timers &timers, const QString &name, QByteArray wav);
    ~Sound(); ///< ends the sound; nothing more is told

    /// Begins to play and returns at once. What became of it is told later, or in the call. While it plays
    /// already nothing more is heard.
    void play(const Told &told);
    bool isPlaying() const;

private:
    void tell(const SoundOutcome &outcome);

    QByteArray m_wav;
    QList<Told> m_told; ///< who waits
    std::unique_ptr<SoundPlayer> m_player;
};

} // namespace ktr
