#pragma once

#include "opmode/stations.h"
#include "platform/timers.h"

#include <deque>

namespace ktr {

/// The "OK"s that modules wait for. A module forgets a text once it has its "OK", so it gets that when the
/// record has the text on the disk, or when the disk takes too long.
class DelayedAnswers
{
public:
    /// A module does not wait longer than that for a slow disk.
    static constexpr Milliseconds longestWait{250};
    /// For a server, which other keepers share: to lose this program must cost no text, and a modem takes as
    /// long for an SMS, too.
    static constexpr Milliseconds longestWaitForServer{1'500};

    DelayedAnswers(const cStations &stations, Timers &timers);

    /// A station's module is answered when the record has so many rows on the disk.
    void add(const QString &kennung, quint64 changes, bool isOnServer);
    /// The record has so many rows on the disk.
    void answerUpTo(quint64 changes);
    void answerAll();
    /// Answers nobody.
    void clear();

private:
    struct Waiting
    {
        QString kennung;
        quint64 changes;
    };
    void answer(const QString &kennung) const;

    const cStations &m_stations;
    std::deque<Waiting> m_waiting; ///< in the order of their changes
    Milliseconds m_patience = longestWait;
    std::unique_ptr<OneShotTimer> m_longestWait;
};

} // namespace ktr
