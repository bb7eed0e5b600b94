#pragma once

#include "opmode/window/alarms/alarm_cells.h"

#include <QAbstractItemModel>
#include <QSet>

#include <functional>

namespace ktr {

/// Which alarms are listed.
struct AlarmChoice
{
    QString filter; ///< to be found in text, station, recipients or comment
    bool onlyUnacknowledged = false;
    bool shelved = false; ///< those that are put aside, too
    bool operator==(const AlarmChoice &) const = default;
};

/// The alarms that stand, as lines; those of a storm stand under its line. What changes is taken over
/// together, a few times a second. Where lines come, go or change their places the model is reset: its view
/// brings its choice back by the alarms' numbers. A shelf that no alarm stands on is a line with a number
/// below 0.
class AlarmListModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    using enum AlarmCells::Column;

    static constexpr Milliseconds longestDelay{250};
    /// From so many stations on, the same text is a storm.
    static constexpr int stationsOfStorm = 5;

    AlarmListModel(const OperationalMode &mode, Timers &timers, const QLocale &locale,
                   QObject *parent = nullptr);
    ~AlarmListModel() override;

    void choose(const AlarmChoice &choice);
    const AlarmChoice &choice() const { return m_choice; }
    /// Takes over all changes at once, without waiting for the next time.
    void update();
    /// The same, but for what moves lines while they are to stay in place.
    void updateInPlace();
    /// When lines are to stay in place. What a line tells is up to date meanwhile, too.
    void setHold(std::function<bool()> isHeld) { m_isHeld = std::move(isHeld); }

    /// The alarms of a line: one, or all of a storm.
    QList<qint64> alarms(const QModelIndex &line) const;
    /// The alarm of a line; null for a storm's line and for no line.
    const AlarmRow *alarm(const QModelIndex &line) const;
    const AlarmRow *alarm(qint64 id) const;
    bool isStorm(const QModelIndex &line) const;
    /// The text of a storm's line; empty for others.
    QString storm(const QModelIndex &line) const;
    /// Invalid when it is not listed.
    QModelIndex lineOf(qint64 alarm) const;
    QModelIndex stormOf(const QString &text) const;
    /// Of those that are listed.
    QList<qint64> unacknowledged() const;
    int listedCount() const { return static_cast<int>(m_places.size()); }
    int unacknowledgedCount() const { return m_unacknowledged; }

    /// The text for "not acknowledged".
    void setTexts(const QString &notAcknowledged);

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    void sort(int column, Qt::SortOrder order) override;

Q_SIGNALS:
    void aboutToUpdate();
    void updated();

private:
    using Lines = std::vector<AlarmLine>;
    struct Key;
    struct Place
    {
        int line;
        int child; ///< -1 for an alarm that is a line of its own
    };

    void note(const AlarmRow &alarm);
    void reload();
    void postpone();
    void addShelves();
    bool isListed(const AlarmRow &alarm) const;
    Lines build() const;
    AlarmLine storm(std::vector<qint64> alarms) const;
    AlarmLine single(qint64 id) const;
    Key keyOf(const AlarmLine &line) const;
    bool isBefore(const Key &a, const Key &b) const;
    void show(Lines lines);
    void tellAllChanged();

    const OperationalMode &m_mode;
    AlarmCells m_cells;
    std::unique_ptr<OneShotTimer> m_delay;
    AlarmChoice m_choice;
    std::function<bool()> m_isHeld = [] { return false; };
    int m_column = Priority;
    Qt::SortOrder m_order = Qt::AscendingOrder;
    QHash<qint64, AlarmRow> m_alarms; ///< all that stood at the last update
    QHash<qint64, AlarmRow> m_noted;  ///< what changed since then
    QHash<std::pair<qint64, QString>, qint64> m_shelfNumbers;
    Lines m_lines;
    QHash<qint64, Place> m_places;
    int m_unacknowledged = 0;
};

} // namespace ktr
