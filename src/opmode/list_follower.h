#pragma once

#include "opmode/shared_state.h"
#include "platform/timers.h"
#include "record/record_notices.h"
#include "record/record_queries.h"

#include <QByteArray>

#include <memory>

namespace ktr {

/// Follows a list of stations that another program keeps: four times a second it looks whether its record has
/// something new, and whether that program still holds the list. What is new is told in slices, so that the
/// thread answers meanwhile. A record on a server is asked on a thread of its own, also as soon as the server
/// tells that there is something.
class ListFollower
{
public:
    static constexpr Milliseconds period{250};
    /// Between two looks at a server's record that tells of what is new.
    static constexpr Milliseconds leastPeriod{50};
    static constexpr Milliseconds quietPeriod{1'000};
    /// A server that has not answered for so long is told as trouble.
    static constexpr Milliseconds serverPatience{5'000};
    /// So many events are told at a time.
    static constexpr qsizetype slice = 200;

    struct Listener
    {
        /// Each event once, in their order; then what alarms became.
        std::function<void(const EventRow &)> event;
        std::function<void(const AlarmRow &)> alarm;
        /// The record's settings, each time that it has something new.
        std::function<void(const QHash<QString, QString> &)> settings;
        /// The end of each look; the follower may be destroyed in there.
        std::function<void()> looked;
        /// What became of requests, by their numbers: why one was not carried out, or an empty text.
        std::function<void(const QHash<qint64, QString> &)> answers;
        /// What may be asked for, when the connection to a server is another one.
        std::function<void(const RecordRights &)> rights;
        /// The record cannot be read, or a server does not answer, once; an empty text when it is over.
        std::function<void(const QString &)> trouble;
    };

    ListFollower(const QString &nodesPath, Timers &timers, Listener listener);

    /// For what is to be read before start().
    RecordReader &reader() { return *m_reader; }
    /// Whether who holds the list writes this record, or nobody holds it. Told by each look again.
    bool isOfRecord() const { return m_isOfRecord; }
    /// Who holds the list, in words; empty: nobody does.
    QString holder() const;
    /// Goes on behind an event and a change of an alarm that are known.
    void start(qint64 lastEvent, qint64 lastAlarmChange);
    /// The same behind what was read of a server's record.
    void start(const SharedState &state);
    /// Requests whose answers are wanted; each look asks for them.
    void await(std::function<QList<qint64>()> requests) { m_awaited = std::move(requests); }
    /// Tells all that is there now.
    void drain();
    qint64 lastEvent() const { return m_lastEvent; }
    /// How long before the last look a keeper of a server's record was heard of; nothing while there is none.
    std::optional<Milliseconds> lastSign() const
    {
        return m_keepers.names.isEmpty() ? std::nullopt : std::optional(m_keepers.lastSign);
    }
    /// How long nothing has come of who holds the list, by the looks that were taken.
    Milliseconds unheard() const { return m_unheard; }
    /// Looks who holds the list.
    void lookAtHolder();

private:
    /// What a look gives.
    struct News
    {
        Status status = Status::done();
        qint64 version = 0;
        bool isNothing = false; ///< since the last look
        QList<EventRow> events{};
        bool hasMore = false;
        QList<AlarmRow> alarms{};
        qint64 change = 0; ///< the last one of an alarm
        QHash<QString, QString> settings{};
        std::optional<Keepers> keepers{}; ///< of a server's record
        std::optional<RecordRights> rights{};
        QHash<qint64, QString> answers{};
    };
    /// What is known when a look begins.
    struct Known
    {
        qint64 version = 0;
        qint64 event = 0;
        qint64 change = 0;
        bool hasMore = false;
        QList<qint64> awaited{};
    };

    static News read(RecordReader &reader, const Known &known);
    Known known() const
    {
        return {m_version, m_lastEvent, m_lastAlarmChange, m_hasMore,
                m_awaited ? m_awaited() : QList<qint64>()};
    }
    void tell(const QString &trouble);
    void look();
    void looked(const News &news);
    void take(const News &news);
    void lookLater(Milliseconds delay);
    void noticed();

    QString m_path;
    QString m_lockPath;
    Listener m_listener;
    std::function<QList<qint64>()> m_awaited;
    std::unique_ptr<OneShotTimer> m_timer;
    std::unique_ptr<OneShotTimer> m_patience; ///< with a server
    std::unique_ptr<RecordReader> m_reader;
    std::optional<RecordQueries> m_queries; ///< of a server's record
    Keepers m_keepers;                      ///< likewise
    bool m_isNoticed = false;               ///< likewise: there is something new
    std::unique_ptr<RecordNotices> m_notices;
    std::optional<QByteArray> m_holder; ///< what the lock's file says
    bool m_isOfRecord = false;
    qint64 m_version = 0;
    qint64 m_lastEvent = 0;
    qint64 m_lastAlarmChange = 0;
    bool m_hasMore = false;
    QString m_beat; ///< the last one of who holds the list
    Milliseconds m_unheard{0};
    QString m_trouble;
};

} // namespace ktr
