#pragma once

#include "opmode/alarms/alarm_book.h"

namespace ktr {

/// An alarm chatters that came more often than so in so many minutes.
struct ChatterLimit
{
    int times = 5;
    int minutes = 10;
    bool operator==(const ChatterLimit &) const = default;
};

/// Remembers when alarms came, over acknowledgements and ends, to tell which of them chatter.
class AlarmChatter : public QObject
{
    Q_OBJECT

public:
    explicit AlarmChatter(const AlarmBook &book, QObject *parent = nullptr);

    void setLimit(const ChatterLimit &limit);
    const ChatterLimit &limit() const { return m_limit; }
    /// `now` is in milliseconds since 1970, UTC. Of what came in an earlier run nothing is known.
    bool chatters(const AlarmRow &alarm, qint64 now) const;

private:
    using Place = std::pair<qint64, QString>; ///< station and text

    void note(const AlarmRow &alarm);
    void dropOld(qint64 now);
    qint64 span() const;

    ChatterLimit m_limit;
    QHash<Place, QList<qint64>> m_times; ///< the last ones of each, one more than is still quiet
    qsizetype m_sizeToDrop;
};

} // namespace ktr
