#pragma once

#include "record/record_reader.h"

#include <functional>
#include <unordered_map>

namespace ktr {

/// Plays what a record has about connections, and tells the times in which stations were not heard: silent,
/// or offline because somebody wanted it so. Of a record in a file it tells, too, when nobody listened: what
/// stations were then is not known.
class UnheardTimes
{
public:
    struct Time
    {
        qint64 station = 0; ///< 0: nobody listened
        qint64 from = 0;
        qint64 to = 0;
        bool isOffline = false;
    };
    using Take = std::function<void(const Time &)>;

    /// Times are told as far as they lie from `from` on and before `to`. `hasOneKeeper`: the starts and ends
    /// of the program are those of the one that listens.
    UnheardTimes(qint64 from, qint64 to, bool hasOneKeeper, Take take);

    /// In the order of the times.
    void play(const ConnectionChange &change);
    /// Who is not heard after all that was played.
    struct Since
    {
        qint64 at = 0; ///< also where that is before `from`
        bool isOffline = false;
    };
    const std::unordered_map<qint64, Since> &lasting() const { return m_unheard; }
    /// What still lasts ends at the end.
    void finish();

private:
    void begin(qint64 station, qint64 at, bool isOffline);
    void end(qint64 station, qint64 at);
    void endSilences(qint64 at);
    void tell(qint64 station, const Since &since, qint64 to) const;
    void playProgram(const ConnectionChange &change);

    qint64 m_from;
    qint64 m_to;
    bool m_hasOneKeeper;
    Take m_take;
    std::unordered_map<qint64, Since> m_unheard;
    qint64 m_stopped = 0; ///< nobody listens since then; 0: somebody does
};

} // namespace ktr
