#pragma once

#include "opmode/alarms/alarm_rules.h"
#include "record/record_rows.h"

#include <QHash>
#include <QObject>
#include <QSet>

#include <functional>
#include <map>
#include <set>

namespace ktr {

/// Until when alarms are put aside, and why. One of a text shelves the alarms of that text of a station, one
/// without a text all of them: the station is being maintained.
struct Shelf
{
    qint64 station = 0; ///< as in AlarmRow
    QString text = {};
    qint64 until = 0; ///< milliseconds since 1970, UTC
    QString by = {};
    QString why = {};
    bool operator==(const Shelf &) const = default;
};

/// The alarms that stand: those that are not acknowledged, and those that are acknowledged and not over yet.
/// Each *occurrence* has a row of its own. While it is not acknowledged, the same text of the same station
/// counts on in it, and the same text to another number adds a recipient; afterwards it begins a new one.
class AlarmBook : public QObject
{
    Q_OBJECT

public:
    /// `nextId` gives the number of a new occurrence.
    explicit AlarmBook(std::function<qint64()> nextId = {}, QObject *parent = nullptr);

    /// What stands keeps its priority; which text ends it is found anew.
    void setRules(const AlarmRules &rules);
    const AlarmRules &rules() const { return m_rules; }

    /// Begins anew with the alarms that stood at the end of the last run. Nothing is told of it but reset().
    void load(const QList<AlarmRow> &standing, const QList<Shelf> &shelves);

    /// The alarms that stand of stations that are taken over, with what puts them aside, and those of
    /// stations that are another program's from now on. Nothing is told of it but reset().
    void takeOver(const QList<AlarmRow> &standing, const QList<Shelf> &shelves = {});
    void handOver(const QSet<qint64> &stations);
    /// The same of single alarms.
    void letGo(const QSet<qint64> &alarms);

    /// What an alarm is now, as another program says whose alarms these are.
    void follow(const AlarmRow &alarm);
    /// The same for what puts alarms aside.
    void follow(const QList<Shelf> &shelves);

    /// A notification of a station: an alarm, the end of some, or neither. Gives the alarm's number, or 0.
    qint64 addNotification(qint64 station, const QString &number, const QString &text, qint64 at);
    /// Something about the watching itself, which stands until end(). Told once; the same text of the same
    /// station counts on in an alarm that is not acknowledged yet. Gives the alarm's number.
    qint64 begin(AlarmKind kind, qint64 station, const QString &text, qint64 at,
                 AlarmPriority priority = AlarmPriority::Medium);
    /// Nothing is done when it is over or stands no longer.
    void end(qint64 alarm, qint64 at, const QString &why = {}) { finish(alarm, at, why); }

    /// Not done for those that are no more, or acknowledged already.
    void acknowledge(const QList<qint64> &alarms, qint64 at, const QString &by);
    void comment(qint64 alarm, const QString &text);
    /// Puts alarms with this text of this station aside, those that stand and those that come.
    void shelve(const Shelf &shelf);
    void unshelve(qint64 station, const QString &text);
    /// Takes back what is shelved no longer; gives the next time at which that is so, 0 for none.
    qint64 unshelveUntil(qint64 now);
    const QList<Shelf> &shelves() const { return m_shelves; }
    /// What puts an alarm aside; null for nothing.
    const Shelf *shelfOf(const AlarmRow &alarm) const;
    /// The station has left the list, which ends its alarms and closes those that nobody acknowledged.
    void forget(qint64 station, qint64 at);
    /// The alarms of a station that is back, as they were. Nothing is told of it before tellPutBack(), which
    /// tells reset() once for all that came back.
    void putBack(const QList<AlarmRow> &alarms);
    void tellPutBack();

    const std::map<qint64, AlarmRow> &standing() const { return m_standing; }
    /// Null when it stands no longer.
    const AlarmRow *alarm(qint64 id) const;
    /// The one of this text of a station that stands; null for none.
    const AlarmRow *find(qint64 station, const QString &text) const;
    bool isShelved(const AlarmRow &alarm) const { return alarm.shelvedUntil != 0; }
    /// Neither acknowledged nor shelved.
    bool isWaiting(const AlarmRow &alarm) const { return alarm.acknowledged == 0 && !isShelved(alarm); }
    /// How many alarms are open, wherever a number of them is told.
    int waitingCount() const { return static_cast<int>(m_waiting.size()); }
    /// The same of some stations alone.
    int waitingCount(const QSet<qint64> &stations) const;
    /// How many are put aside and not acknowledged.
    int shelvedCount() const;
    /// By their numbers, which are the order in which they came.
    const std::set<qint64> &waiting() const { return m_waiting; }

    enum class Change {
        Came,
        CameAgain,
        Returned, ///< is shelved no longer, and waits
        Acknowledged,
        Over,
        Other
    };

Q_SIGNALS:
    /// What an alarm is now; one that is acknowledged and over stands no longer.
    void changed(const ktr::AlarmRow &alarm, ktr::AlarmBook::Change change);
    void shelvesChanged();
    void reset();

private:
    using Place = std::pair<qint64, QString>; ///< station and text

    qint64 add(AlarmRow alarm);
    void putQuietly(const QList<AlarmRow> &standing);
    void keepOnly(const std::function<bool(const AlarmRow &)> &stays,
                  const std::function<bool(const Shelf &)> &shelfStays);
    void put(AlarmRow alarm, Change change);
    void finish(qint64 id, qint64 at, const QString &why);
    void applyShelves(qint64 station);

    std::function<qint64()> m_nextId;
    qint64 m_lastId = 0; ///< where nobody gives numbers
    AlarmRules m_rules;
    std::map<qint64, AlarmRow> m_standing;
    std::set<qint64> m_waiting;
    QHash<Place, qint64> m_ids;                       ///< of alarms of modules
    QHash<Place, qint64> m_begun;                     ///< of the others
    QMultiHash<Place, qint64> m_ends;                 ///< by station and the text that ends them
    QHash<qint64, QHash<QString, qint64>> m_arrivals; ///< how often each number was told
    QList<Shelf> m_shelves;
    bool m_isPutBackUntold = false;
};

} // namespace ktr

Q_DECLARE_METATYPE(ktr::AlarmRow)
