#pragma once

#include "opmode/list_parts.h"

namespace ktr {

/// Tells those who look on that who keeps the list is at work, and when it heard each station last: a program
/// that hangs holds its lock on, and most of what a living module says is no event.
class KeeperBeat
{
public:
    static constexpr Milliseconds period{15'000};
    /// A keeper of which nothing came for so long may not be watching.
    static constexpr std::chrono::seconds patience{45};

    /// All must outlive it.
    explicit KeeperBeat(const ListParts &parts);

    /// A list is kept from now on, until stop().
    void start();
    void stop();

private:
    void beat();

    ListParts m_parts;
    std::unique_ptr<OneShotTimer> m_timer;
};

/// The setting of the record that is written with each beat.
QString beatSetting();

/// When stations were heard last, by their numbers, as a beat says.
QHash<qint64, qint64> heardBy(QStringView beat);

} // namespace ktr
