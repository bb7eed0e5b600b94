#pragma once

#include "opmode/tree/station_tree.h"
#include "platform/timers.h"

#include <memory>
#include <optional>

namespace ktr {

/// An alarm as the user is told of it.
struct Alarm
{
    QString kennung;
    QString station; ///< its name
    QString message;
    qint64 received = 0; ///< the latest time, in milliseconds since 1970, UTC; 0 when not known
    qint64 raised = 0;   ///< when it became red
    QModelIndex entry;   ///< in the tree
};

/// Alarms that arrived since the user was told last.
struct AlarmNews
{
    int arrived = 0;
    int unacknowledged = 0; ///< these and older ones
    Alarm first;
    Alarm latest;
};

/// Keeps an eye on the alarms of all stations. What arrives quickly is told together, so that none goes
/// under.
class AlarmCentre : public QObject
{
    Q_OBJECT

public:
    static constexpr Milliseconds pauseBetweenNews{250};

    AlarmCentre(const StationTree &tree, Timers &timers, QObject *parent = nullptr);
    ~AlarmCentre() override;

    /// As changed() told last.
    int unacknowledged() const { return m_unacknowledged; }
    /// The one that has been red longest and the one that arrived last; nothing when there is none.
    std::optional<Alarm> first() const { return alarm(m_first); }
    std::optional<Alarm> latest() const { return alarm(m_latest); }

public Q_SLOTS:
    /// An alarm arrived; its entry is in the tree and red.
    void addAlarm(const QModelIndex &entry);

Q_SIGNALS:
    /// Something for the ear: at once for the first alarm, then at most once in `pauseBetweenNews`.
    void attention(const ktr::AlarmNews &news);
    /// The number of alarms, the first or the latest is another one; as often at most.
    void changed();

private:
    std::optional<Alarm> alarm(const QModelIndex &entry) const;
    bool isRed(const QPersistentModelIndex &entry) const;
    void recount();
    void takeLoaded();
    void update();
    void tell();
    void search();

    const StationTree &m_tree;
    std::unique_ptr<OneShotTimer> m_pause;
    std::unique_ptr<OneShotTimer> m_soon;
    int m_unacknowledged = 0;
    QPersistentModelIndex m_first;
    qint64 m_firstRaised = 0; ///< when it became red, as it was found
    QPersistentModelIndex m_latest;
    int m_arrived = 0; ///< not told of yet
    QPersistentModelIndex m_firstArrived;
    bool m_isStale = false; ///< something is to be told when the pause ends
};

} // namespace ktr
