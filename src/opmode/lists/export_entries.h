#pragma once

#include <QDateTime>
#include <QModelIndex>
#include <QStringList>

#include <functional>
#include <optional>

namespace ktr {

class StationTree;

/// Which entries of the tree are to be exported.
struct ExportChoice
{
    enum class Kind { Notifications, History };
    Kind kind = Kind::Notifications;
    QStringList stations; ///< their keys
    /// Whole minutes of local time, both included. Of a notification the time it was received counts, of an
    /// entry of the history its own. With either of them, entries whose time is unknown are left out.
    std::optional<QDateTime> from;
    std::optional<QDateTime> to;
    bool onlyNotAcknowledged = false; ///< of notifications

    bool operator==(const ExportChoice &) const = default;
};

struct ExportEntry
{
    const QString &station; ///< the text of its station
    const QModelIndex &node;
    const QString &text;
};

/// Walks over the chosen entries in the order of the stations and of the tree, a part at a time, so that a
/// window stays alive over a million of them. The tree may grow meanwhile; a station that is removed is
/// passed over.
class ExportEntries
{
public:
    /// The tree must outlive the walk.
    ExportEntries(const StationTree &tree, ExportChoice choice);

    /// Looks at up to `atMost` further entries and hands over the chosen ones. False at the end.
    bool walk(int atMost, const std::function<void(const ExportEntry &)> &take);

    const ExportChoice &choice() const { return m_choice; }
    qint64 chosenCount() const { return m_chosenCount; }
    /// Left out because a range of time is asked for and theirs is not known.
    qint64 withoutTime() const { return m_withoutTime; }

private:
    bool isChosen(const QModelIndex &entry, const QString &text);
    bool isInRange(std::optional<qint64> time);

    const StationTree &m_tree;
    ExportChoice m_choice;
    /// In the unit of the entries' times, the second one excluded.
    qint64 m_begin;
    qint64 m_end;
    qsizetype m_station = 0;
    int m_row = 0;
    qint64 m_chosenCount = 0;
    qint64 m_withoutTime = 0;
};

} // namespace ktr
