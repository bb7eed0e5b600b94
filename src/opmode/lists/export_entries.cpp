#include "opmode/lists/export_entries.h"

#include "opmode/tree/history_entry_text.h"
#include "opmode/tree/station_tree.h"
#include "platform/module_minutes.h"

#include <limits>

namespace ktr {

namespace {

QDateTime wholeMinute(const QDateTime &time)
{
    return QDateTime(time.date(), QTime(time.time().hour(), time.time().minute()));
}

/// In the unit of a notification's times: milliseconds since 1970, UTC.
qint64 received(const QDateTime &minute)
{
    return minute.toMSecsSinceEpoch();
}

/// In the unit of the history.
qint64 recorded(const QDateTime &minute)
{
    return moduleMinutes(minute.date(), minute.time().hour(), minute.time().minute());
}

} // namespace

ExportEntries::ExportEntries(const StationTree &tree, ExportChoice choice)
    : m_tree(tree),
      m_choice(std::move(choice)),
      m_begin(std::numeric_limits<qint64>::min()),
      m_end(std::numeric_limits<qint64>::max())
{
    const bool isHistory = m_choice.kind == ExportChoice::Kind::History;
    const auto toUnit = isHistory ? recorded : received;
    constexpr qint64 msOfAMinute = 60'000;
    if (m_choice.from) {
        m_begin = toUnit(wholeMinute(*m_choice.from));
    }
    if (m_choice.to) {
        m_end = toUnit(wholeMinute(*m_choice.to)) + (isHistory ? 1 : msOfAMinute);
    }
}

bool ExportEntries::walk(int atMost, const std::function<void(const ExportEntry &)> &take)
{
    const auto branch =
        m_choice.kind == ExportChoice::Kind::History ? branches::history : branches::notifications;
    for (; m_station < m_choice.stations.size(); ++m_station, m_row = 0) {
        const QModelIndex parent = m_tree.find(branchKey(m_choice.stations[m_station], branch));
        const QString station = parent.parent().data(Qt::EditRole).toString();
        for (const int rows = parent.isValid() ? m_tree.rowCount(parent) : 0; m_row < rows; ++m_row) {
            if (atMost-- <= 0) {
                return true;
            }
            const QModelIndex entry = m_tree.index(m_row, 0, parent);
            const QString text = entry.data(Qt::EditRole).toString();
            if (isChosen(entry, text)) {
                ++m_chosenCount;
                take({station, entry, text});
            }
        }
        if (atMost-- <= 0) { // many stations have no entries
            ++m_station;
            m_row = 0;
            return m_station < m_choice.stations.size();
        }
    }
    return false;
}

bool ExportEntries::isChosen(const QModelIndex &entry, const QString &text)
{
    const bool isHistory = m_choice.kind == ExportChoice::Kind::History;
    if (!isHistory && m_choice.onlyNotAcknowledged &&
        entry.data(StationTree::ColourRole).toInt() != StationTree::alarmColour) {
        return false;
    }
    if (!m_choice.from && !m_choice.to) {
        return true;
    }
    std::optional<qint64> time;
    if (isHistory) {
        const std::optional<HistoryEntryText> read = splitHistoryEntry(text);
        time = read ? read->minute : std::nullopt;
    } else if (const qint64 at = entry.data(StationTree::ReceivedRole).toLongLong(); at != 0) {
        time = at;
    }
    return isInRange(time);
}

bool ExportEntries::isInRange(std::optional<qint64> time)
{
    m_withoutTime += time ? 0 : 1;
    return time && *time >= m_begin && *time < m_end;
}

} // namespace ktr
