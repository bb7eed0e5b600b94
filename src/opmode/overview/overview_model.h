#pragma once

#include "opmode/overview/station_glance.h"
#include "opmode/overview/station_groups.h"
#include "opmode/overview/value_times.h"
#include "platform/timers.h"

#include <QAbstractListModel>
#include <QLocale>
#include <QSet>

#include <functional>

namespace ktr {

/// All stations at a glance, the most urgent first or in another order. What changes is taken over together,
/// a few times a second, and costs no more than what changed and one pass over the order.
class OverviewModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum class Order {
        Urgency,
        Name,
        Group, ///< under a heading for each group, the most urgent first; as Urgency where there are no
               ///< groups
        List,  ///< as the list has them
        Heard, ///< the longest unheard first; those that are not watched at the end
        Newest ///< as Urgency, but of those whose alarms wait the one whose came last first
    };
    /// What stands together, each in that order.
    enum class Grouping { None, State, Groups };
    enum Role { KeyRole = StationTree::KeyRole };

    static constexpr Milliseconds longestDelay{250};

    /// Names are sorted as the locale has them, "Pump 9" before "Pump 10".
    OverviewModel(const OperationalMode &mode, Timers &timers, const QLocale &locale,
                  QObject *parent = nullptr);
    ~OverviewModel() override;

    /// Nothing is followed while nobody looks. At first nobody does.
    void setActive(bool isActive);
    void setOrder(Order order);
    Order order() const { return m_order; }
    void setGrouping(Grouping grouping);
    Grouping grouping() const { return m_grouping; }
    /// Of State: by how urgent it is, all that wait together; of Groups: the place of the group in the list,
    /// or behind them for none.
    int sectionOf(int row) const
    {
        return sectionOf(static_cast<std::size_t>(m_rows[static_cast<std::size_t>(row)]));
    }
    /// Only stations are shown whose name contains the text.
    void setFilter(const QString &text);
    void setGroups(const StationGroups &groups);
    const StationGroups &groups() const { return m_groups; }
    static constexpr int allGroups = -2;
    /// Only the stations of one of the groups are shown, or those that are in none, or all.
    void showGroup(int group);
    int shownGroup() const { return m_shownGroup; }
    /// How many of stations are how. One may be in several of these numbers: silent, and in alarm.
    struct Numbers
    {
        int stations = 0;
        int waiting = 0;      ///< have alarms that wait
        int acknowledged = 0; ///< have alarms that are not over, but none that waits
        int silent = 0;
        int offline = 0;
        void add(const StationGlance &station);
        void add(const Numbers &others);
        bool operator==(const Numbers &) const = default;
    };
    /// Of a group, of those in none, or of all.
    Numbers countOf(int group) const;

    // Headings are rows, too, and have no key.

    /// The group that a row is the heading of; nothing of a station's.
    std::optional<int> headingAt(int row) const;
    /// The rows of the headings.
    const std::vector<int> &headings() const { return m_headings; }
    QString groupName(int group) const;
    /// Only the heading of a group is shown, unless a text is searched for.
    void setFolded(int group, bool isFolded);
    bool isFolded(int group) const;
    /// Their names, an empty one for the stations in no group.
    void setFoldedNames(const QStringList &names);
    const QStringList &foldedNames() const { return m_folded; }
    /// The group that a station is in.
    int groupOf(const QString &kennung) const;
    /// Whose values are shown of a station; empty where its group says nothing.
    QList<int> channelsOf(const QString &kennung) const;
    /// How many stations would be in each of these groups; at the end those that would be in none.
    QList<int> countsWith(const StationGroups &groups) const;
    /// When no tile is to change its place. What a tile tells is up to date meanwhile, too.
    void setHold(std::function<bool()> isHeld) { m_isHeld = std::move(isHeld); }
    /// When the values of stations came.
    const ValueTimes &times() const { return m_times; }
    /// What assistive tools and tool tips say of a station, and of a heading by its group.
    void setDescription(std::function<QString(const StationGlance &)> describe,
                        std::function<QString(int group)> describeHeading);
    /// Takes over all changes at once, also those that move tiles.
    void update();

    /// Not of a heading.
    const StationGlance &glance(int row) const;
    /// -1 when it is not shown.
    int rowOf(const QString &kennung) const;
    /// Of all stations, shown or not, by their urgency.
    const std::array<int, urgencyCount> &counts() const { return m_counts; }
    int stationCount() const { return static_cast<int>(m_stations.size()); }

    int rowCount(const QModelIndex &parent = {}) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override; ///< headings cannot be selected
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

Q_SIGNALS:
    /// Changes were taken over.
    void updated();

private:
    using Number = int; ///< a station's place in m_stations; below 0 a heading's

    void connectMode();
    void note(const QString &kennung);
    void noteList();
    void postpone();
    void takeOver(bool mayMove);
    void reload();
    void readStations();
    void rankNames();
    void findGroups();
    void showAnew();
    QList<Number> refreshNoted();
    void showRows();
    void sortMoved();
    bool isBefore(Number one, Number other) const;
    int sectionOf(std::size_t station) const;
    qint64 heardOf(const StationGlance &station) const;
    void place();
    bool isGrouped() const { return m_order == Order::Group && !m_groups.list().isEmpty(); }
    int groupRank(Number number) const;
    int rowOfNumber(Number number) const;
    void countGroups() const;
    void tellChanged(const QList<Number> &changed);

    const OperationalMode &m_mode;
    std::unique_ptr<OneShotTimer> m_delay;
    QLocale m_locale;
    std::function<bool()> m_isHeld = [] { return false; };
    std::function<QString(const StationGlance &)> m_describe;
    std::function<QString(int)> m_describeHeading;
    bool m_isActive = false;
    Order m_order = Order::Urgency;
    Grouping m_grouping = Grouping::None;
    QString m_filter;
    StationGroups m_groups;
    int m_shownGroup = allGroups;
    QStringList m_folded;

    std::vector<StationGlance> m_stations;
    std::vector<int> m_nameRanks;
    std::vector<qint64> m_heard; ///< of each station, for Order::Heard
    std::vector<int> m_groupsOf; ///< of each station, its group
    QHash<QString, Number> m_numbers;
    QHash<qint64, std::set<qint64>> m_alarms; ///< by the station's number in the record
    std::array<int, urgencyCount> m_counts{};

    std::vector<Number> m_rows;                 ///< those that are shown, in order
    std::vector<int> m_rowsOf;                  ///< of each station, -1 for none
    std::vector<int> m_headings;                ///< rows
    mutable std::vector<Numbers> m_groupCounts; ///< at the end of those in none; empty: not counted
    QSet<QString> m_noted;                      ///< stations that may have changed
    std::vector<bool> m_isMoved;                ///< stations whose places may be others now
    bool m_anyMoved = false;
    bool m_isListStale = true; ///< there are other stations, or other names
    ValueTimes m_times;
};

} // namespace ktr
