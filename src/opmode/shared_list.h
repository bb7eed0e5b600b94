#pragma once

#include "opmode/list_parts.h"
#include "opmode/station_actions.h"
#include "opmode/watch_alarms.h"
#include "record/leases.h"
#include "record/record_queries.h"

#include <deque>

namespace ktr {

/// The stations of a server's record that this program talks to: its share, which changes as other keepers
/// come and go. Those that are taken over go on from where the record has them; those that are handed over
/// leave without a word. While the server is away they stay, and are answered: see mayAnswer().
class SharedList : public QObject
{
    Q_OBJECT

public:
    /// All must outlive it; `name` is what others see of this keeper, `block` that of its alarms' numbers.
    SharedList(const ListParts &parts, StationActions &stationActions, WatchAlarms &watchAlarms,
               const QString &name, const Leases::Times &times, qint64 block, QObject *parent = nullptr);

    /// To be asked before each datagram.
    bool isHeld() const { return m_leases.isHeld(); }
    /// The same before an answer to one of the module's: while the server cannot be asked, modules that still
    /// talk to this program are answered beyond the time, since it is to this one alone that they talk. Not
    /// after this program stood still: what has come meanwhile they have said to somebody else.
    bool mayAnswer() const;
    /// For what one keeper alone does.
    Leases &leases() { return m_leases; }
    const Leases &leases() const { return m_leases; }
    /// The record has more of what was written.
    void settled();

Q_SIGNALS:
    void statusMessage(const QString &line);
    /// A station was taken over, and is in the tree.
    void begun(const QString &kennung);
    /// How many stations it has by now, after some came or went.
    void shareChanged(int stations);
    /// Why the record cannot be asked for stations, or an empty text.
    void trouble(const QString &reason);
    /// As Leases::Listener::turned.
    void turned();

private:
    struct Read
    {
        Status status = Status::done();
        QList<qint64> asked{};
        RecordedStations states{};
    };
    struct Leaving
    {
        quint64 rows; ///< that are to be written first
        QList<qint64> stations;
    };

    void gained(const QList<qint64> &stations);
    void lost(const QList<qint64> &stations);
    void lapsed();
    void returned(const QList<qint64> &stations);
    void leave(const QList<qint64> &stations);
    void stayAwake();
    void read();
    void take(const Read &read);
    void takeStation(const StationRow &row, const QString &kennung);

    ListParts m_parts;
    StationActions &m_stationActions;
    WatchAlarms &m_watchAlarms;
    QSet<qint64> m_wanted; ///< gained, and not read yet
    std::deque<Leaving> m_leaving;
    bool m_isLapsed = false;    ///< stations may be others' by now
    Milliseconds m_lastAwake{}; ///< since then
    std::unique_ptr<OneShotTimer> m_awake;
    std::unique_ptr<OneShotTimer> m_again;
    RecordQueries m_queries;
    Leases m_leases;
};

} // namespace ktr
