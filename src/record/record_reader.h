#pragma once

#include "record/record_database.h"
#include "record/record_rows.h"

#include <QHash>

#include <functional>
#include <limits>
#include <optional>

namespace ktr {

/// Which events are wanted; what is empty or 0 wants all.
struct EventFilter
{
    qint64 from = 0; ///< this time and later
    qint64 to = 0;   ///< before this time
    QList<qint64> stations{};
    QList<EventKind> kinds{};
    QString operatorName{};
    QString text{};        ///< contained in the text, letters in either case; see searchesAllKinds()
    bool ofAlarms = false; ///< only what belongs to one
    bool operator==(const EventFilter &) const = default;
};

/// Whether a text is searched for in all kinds that are wanted: when these are none but such as are no
/// searchableKinds(), and when stations and the beginning of the time are given. Else in searchableKinds()
/// alone.
bool searchesAllKinds(const EventFilter &filter);
/// Whether there are wanted kinds in which the text is not searched for.
bool passesOverKinds(const EventFilter &filter);

/// Where a page of events or alarms ended, and the next one goes on.
struct RecordKey
{
    qint64 at = 0; ///< of an alarm, when it came
    qint64 id = 0;
    bool operator==(const RecordKey &) const = default;
};

struct EventPage
{
    Status status = Status::done();
    QList<EventRow> rows{};        ///< the newest first
    std::optional<RecordKey> next; ///< there may be more behind this; nothing: these were the last
};

/// Which alarms are wanted; what is empty or 0 wants all.
struct AlarmFilter
{
    enum class State {
        Any,
        Open,           ///< not acknowledged or not over
        Unacknowledged, ///< nobody has seen to it
        NotOver,        ///< what raised it is still so
    };

    qint64 from = 0; ///< came at this time or later
    qint64 to = 0;   ///< came before this time
    QList<qint64> stations{};
    State state = State::Any;
    int leastUrgent = 3; ///< priorities up to this number
    QString text{};      ///< contained in text or comment, letters in either case
    QString acknowledgedBy{};
    bool operator==(const AlarmFilter &) const = default;
};

struct AlarmPage
{
    Status status = Status::done();
    QList<AlarmRow> rows{}; ///< the newest first
    std::optional<RecordKey> next;
};

/// How many alarms came in a time, and how they were dealt with. Each occurrence is one.
struct AlarmFigures
{
    struct Span
    {
        qint64 begin = 0;
        qint64 count = 0;
        bool operator==(const Span &) const = default;
    };
    struct Frequent
    {
        qint64 station = 0;
        QString text{};
        qint64 occurrences = 0;
        qint64 count = 0; ///< how often it was reported
        bool operator==(const Frequent &) const = default;
    };
    static constexpr qint64 spanMs = 600'000;

    qint64 came = 0;
    QList<Span> tenMinutes{}; ///< from the beginning of the time, those in which any came, the earliest first
    QList<Frequent> frequent{}; ///< the ten most frequent ones
    qint64 acknowledged = 0;    ///< of those that came
    qint64 medianMs = 0;        ///< from coming to acknowledgement
    qint64 ninetyMs = 0;        ///< nine of ten took no longer
    qint64 longestMs = 0;
    qint64 standing = 0; ///< of those that came, stood for longer than a day
};

/// How many alarms came in a part of a time, and how urgent the most urgent one was.
struct AlarmSpan
{
    qint64 begin = 0;
    qint64 count = 0;
    int priority = 0;
    bool operator==(const AlarmSpan &) const = default;
};

/// The same of a station, over all of the time; of no station those that are about none.
struct StationAlarms
{
    qint64 station = 0;
    qint64 count = 0;
    int priority = 0;
    bool operator==(const StationAlarms &) const = default;
};

/// Something that tells whether a station is heard, or whether anybody listens.
struct ConnectionChange
{
    qint64 at = 0;
    qint64 id = 0;
    qint64 station = 0;
    EventKind kind = EventKind::Alive;
    QString detail{}; ///< of attributes
    bool operator==(const ConnectionChange &) const = default;
};

/// The times that a point of a curve stands for.
enum class HistoryLevel { Raw, QuarterHour, Hour, Day };

/// A point of the curves of a channel.
struct HistoryPoint
{
    struct Range
    {
        double least = 0;
        double mean = 0;
        double most = 0;
        bool operator==(const Range &) const = default;
    };

    qint64 at = 0; ///< the beginning of its quarter of an hour, hour or day (UTC)
    qint64 count = 0;
    std::optional<Range> first; ///< nothing: none of the values is a number
    std::optional<Range> second;
    bool operator==(const HistoryPoint &) const = default;
};

/// A program that shares the stations of a server's record with others.
struct KeeperRow
{
    QString name{};
    qint64 since = 0;
    qint64 leftMs = 0; ///< so long it need not be heard of
    qint64 stations = 0;
};

/// What one of them alone does.
struct DutyRow
{
    QString name{};
    QString keeper{}; ///< empty: nobody does it
    QString state{};  ///< how far it has come
};

/// What this reader's user may ask keepers for. Who can read a file may do all.
struct RecordRights
{
    bool mayOperate = true;    ///< acknowledge, comment, switch, ask for values
    bool mayAdminister = true; ///< the list of stations, rules and limits, too
    bool operator==(const RecordRights &) const = default;
};

/// Stations, the entries of theirs that are in the list and their alarms that stand.
struct RecordedStations
{
    QList<StationRow> stations{};
    QList<NotificationRow> notifications{};
    QList<AlarmRow> alarms{};
    QHash<QString, QString> settings{}; ///< those that are about one of them
};

/// Reads a record that somebody else may be writing, by a connection of the thread that made it.
class RecordReader
{
public:
    explicit RecordReader(QString path) : m_path(std::move(path)) {}

    const QString &path() const { return m_path; }
    /// Each of the others opens the record, too, where that was not done.
    Status open();
    /// Another file stands in the place of the one that is read: make another reader.
    /// As RecordDatabase::giveUp().
    void giveUp() { m_database.giveUp(); }
    /// The connection ends; the next question begins another.
    void close() { m_database.close(); }
    bool isStale() const { return m_database.isMoved(); }
    /// Whether the last failure told of damage.
    bool foundDamage() const { return m_database.isDamaged(); }

    /// All stations, also those that are no longer in the list, by number.
    Status stations(const std::function<void(const StationRow &)> &take);
    /// The events that the latest list file of this checksum holds, with an empty one the latest of all;
    /// nothing in `upto` when there is none.
    Status lastListFile(const QString &checksum, std::optional<qint64> &upto);
    /// The number of the last event; 0 for none.
    Status lastEvent(qint64 &id);
    /// Events in the order of their numbers, from the one behind `id`, until `take` gives false.
    Status eventsAfter(qint64 id, const std::function<bool(const EventRow &)> &take);
    /// Of the entries that are in the list.
    Status notifications(const std::function<void(const NotificationRow &)> &take);
    /// The alarms that are not acknowledged or not over, the oldest first.
    Status openAlarms(const std::function<void(const AlarmRow &)> &take);
    /// Who shares the stations of a server's record and is there, the longest first, without the numbers of
    /// their stations.
    Status keepers(QList<KeeperRow> &keepers);
    /// With them; how many stations are in the list, whoever has them.
    Status keepers(QList<KeeperRow> &keepers, qint64 &stations);
    /// What they do alone, each by its name.
    Status duties(QList<DutyRow> &duties);
    /// The alarms about no station that stand, and whose keepers are there no more.
    Status alarmsOfGoneKeepers(const std::function<void(const AlarmRow &)> &take);
    Status rights(RecordRights &rights);
    /// What stands of some stations, as it is at this moment. The settings about a station have these names,
    /// with ":" and its number behind them.
    Status stateOf(const QList<qint64> &stations, const QStringList &settings, RecordedStations &states);
    /// What each alarm is that changed behind such a number, in the order of their last changes; of the first
    /// `most` of them.
    Status alarmsChangedAfter(qint64 change, const std::function<void(const AlarmRow &, qint64 change)> &take,
                              qint64 most = std::numeric_limits<qint64>::max());
    /// The number of the last change of an alarm; 0 for none.
    Status lastAlarmChange(qint64 &change);
    /// The latest event of each of these kinds about each station, in the order of their numbers, since the
    /// present or last keeper started. Kinds from Alive on alone.
    Status statesOfRun(const QList<EventKind> &kinds, const std::function<void(const EventRow &)> &take);
    /// The latest events of each of these kinds, below 20, about each station in a server's list, in the
    /// order of their numbers.
    Status latestOf(const QList<EventKind> &kinds, int ofEach,
                    const std::function<void(const EventRow &)> &take);
    /// The value of a setting; nothing when there is none.
    Status setting(const QString &name, std::optional<QString> &value);
    Status settings(QHash<QString, QString> &values);
    /// Those of these names that there are.
    Status settings(const QStringList &names, QHash<QString, QString> &values);

    /// What was asked for behind such a number and has no answer, in the order of their numbers; of a
    /// server's record the first thousand. What is longer there than anything that is asked for comes without
    /// its detail.
    Status openRequests(qint64 id, const std::function<void(const RequestRow &)> &take);
    /// The results that these requests were answered with; those without an answer are left out.
    Status answersOf(const QList<qint64> &requests, QHash<qint64, QString> &results);

    /// A page of at most `limit` events, from the newest or from where another page ended: in the order of
    /// their times, those with a text in the order of their numbers unless few stations are meant. One may be
    /// shorter, or empty, and yet have a next: where very many must be looked at, that is done part by part.
    EventPage findEvents(const EventFilter &filter, const std::optional<RecordKey> &after, int limit);
    AlarmPage findAlarms(const AlarmFilter &filter, const std::optional<RecordKey> &after, int limit);

    /// Whoever did anything, by their names.
    Status operators(QStringList &names);

    /// Of the alarms that came from `from` and before `to`; what is not over stands until `now`.
    Status alarmFigures(qint64 from, qint64 to, qint64 now, AlarmFigures &figures);
    /// The time of the earliest event or alarm; 0 when there is none.
    Status begin(qint64 &at);
    /// When each of these stations said something last; those that never did are left out.
    Status lastHeard(const QList<qint64> &stations, QHash<qint64, qint64> &times);
    /// The alarms that came from `from` and before `to`, of these stations, without any of all, in parts of
    /// so many milliseconds since 1970 in which any came, the earliest first.
    Status alarmSpans(const QList<qint64> &stations, qint64 from, qint64 to, qint64 partMs,
                      QList<AlarmSpan> &spans);
    /// The same for each station that had any.
    Status stationAlarms(const QList<qint64> &stations, qint64 from, qint64 to, QList<StationAlarms> &alarms);
    /// What tells of these stations, without any of all, whether they are heard: what is needed to know it
    /// at `from`, and all from then on and before `to`, in the order of the times.
    Status connections(const QList<qint64> &stations, qint64 from, qint64 to,
                       const std::function<void(const ConnectionChange &)> &take);
    /// Of that only when programs began and ended to listen.
    Status watches(qint64 from, qint64 to, const std::function<void(const ConnectionChange &)> &take);
    /// When the present operator did something for the first time after another one did; 0 when there was no
    /// other.
    Status lastOperatorChange(qint64 &at);

    /// What a channel's archive has of these times (from `from`, before `to`), the oldest first.
    Status history(qint64 station, int channel, qint64 from, qint64 to,
                   const std::function<void(const HistoryRow &)> &take);
    /// The same as points of a curve.
    Status curve(qint64 station, int channel, qint64 from, qint64 to, HistoryLevel level,
                 const std::function<void(const HistoryPoint &)> &take);
    /// The input values that a channel reported, likewise.
    Status values(qint64 station, int channel, qint64 from, qint64 to,
                  const std::function<void(const ValueRow &)> &take);
    /// When it reported the last one; 0 when it never did.
    Status newestValue(qint64 station, int channel, qint64 &at);

    /// What was measured at an input, 1 to 18, in these times: what archives have of it and the values that
    /// it reported, together, the oldest first. What is no number is left out.
    Status measured(qint64 station, int channel, qint64 from, qint64 to,
                    const std::function<void(qint64 at, double value)> &take);
    /// The same in spans of so many milliseconds, counted from the time -offset; nothing of those without
    /// values. The database puts them together, which takes a fraction of the time.
    struct MeasuredSpan
    {
        qint64 at = 0; ///< its begin
        qint64 count = 0;
        double least = 0;
        double sum = 0;
        double most = 0;
    };
    Status measuredSpans(qint64 station, int channel, qint64 from, qint64 to,
                         std::pair<qint64, qint64> lengthAndOffset,
                         const std::function<void(const MeasuredSpan &)> &take);
    /// Whether anything was measured() in each of these times.
    Status measuredWithin(qint64 station, int channel, const QList<std::pair<qint64, qint64>> &times,
                          QList<bool> &are);
    /// The inputs of a station with anything measured().
    Status measuredChannels(qint64 station, QList<int> &channels);

    /// From here to the other one all is read as it is at this moment.
    Status beginSnapshot();
    void endSnapshot();

    /// Bytes in the file.
    Status size(qint64 &bytes);
    /// How many rows a table has; this goes through all of them.
    Status count(const QString &table, qint64 &rows);
    /// A number that is another one after somebody else committed something. 0 after a failure.
    qint64 dataVersion();

private:
    /// An archive that has values of an input, and the text that stands for that there.
    struct ArchivedInput
    {
        int archive;
        int input;
        QString text;
    };
    struct Question
    {
        QString statement{};
        QVariantList values{};
    };
    /// For what was measured; `columns` are those that are asked for of the column with the values.
    Status measuredQuestion(qint64 station, int channel, std::pair<qint64, qint64> times,
                            const std::function<QString(const QString &column)> &columns, Question &question);
    static std::pair<QString, QList<ArchivedInput>>
    measuredStatement(int channel, const QList<ArchivedInput> &inputs,
                      const std::function<QString(const QString &column)> &columns);
    static QVariantList measuredValues(qint64 station, int channel, std::pair<qint64, qint64> times,
                                       const QList<ArchivedInput> &archives);
    Status archivedInputs(qint64 station, QList<ArchivedInput> &inputs);
    EventPage eventsByTime(const EventFilter &filter, const std::optional<RecordKey> &after, int limit);
    EventPage eventsByText(const EventFilter &filter, const std::optional<RecordKey> &after, int limit);
    struct EventOrder;
    Status orderOf(const EventFilter &filter, EventOrder &order);
    Status look(const EventFilter &filter, const EventOrder &order, const std::optional<RecordKey> &after,
                std::pair<qint64, qint64> times, qsizetype limit, QList<EventRow> &rows);
    Status rangesOf(const EventFilter &filter, QList<std::pair<qint64, qint64>> &ranges);
    Status matchOf(const QStringList &trigrams, qint64 upTo, QString &match);
    /// Up to which event the kinds are in order; nothing when too much is not.
    Status sortedEvents(std::optional<qint64> &upto);
    QString reasonAgainst(int schema);
    Status keepersWith(const QString &count, QList<KeeperRow> &keepers);
    Status stationsIn(const QString &where, const QVariantList &values,
                      const std::function<void(const StationRow &)> &take);
    Status notificationsIn(const QString &where, const QVariantList &values,
                           const std::function<void(const NotificationRow &)> &take);
    Status openAlarmsIn(const QString &where, const QVariantList &values,
                        const std::function<void(const AlarmRow &)> &take);
    Status changesOfKinds(const QList<EventKind> &kinds, const QList<qint64> &stations,
                          std::pair<qint64, qint64> times, QList<ConnectionChange> &changes);
    Status lastSaid(const QList<qint64> &stations, qint64 before, QList<ConnectionChange> &changes);
    /// Carries out a statement and hands over its rows until `take` gives false.
    Status each(const QString &statement, const QVariantList &values,
                const std::function<bool(const QSqlQuery &)> &take);

    QString m_path{};
    RecordDatabase m_database;
};

} // namespace ktr
