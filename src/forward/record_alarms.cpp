#include "forward/record_alarms.h"

namespace ktr {

void RecordAlarms::look()
{
    if (!m_queries.isWaitedFor(this)) {
        m_queries.ask(
            this,
            [change = m_change](RecordReader &reader) {
                return change ? changed(reader, *change) : standing(reader);
            },
            [this](const Found &found) { take(found); });
    }
}

RecordAlarms::Found RecordAlarms::standing(RecordReader &reader)
{
    Found found;
    const auto go = [&found](const auto &step) { found.status = found.status ? step() : found.status; };
    go([&] { return reader.beginSnapshot(); });
    go([&] { return reader.lastAlarmChange(found.change); });
    go([&] { return reader.openAlarms([&](const AlarmRow &alarm) { found.alarms += alarm; }); });
    go([&] { return reader.stations([&](const StationRow &row) { found.names.insert(row.id, row.name); }); });
    reader.endSnapshot();
    return found;
}

RecordAlarms::Found RecordAlarms::changed(RecordReader &reader, qint64 change)
{
    Found found;
    found.change = change;
    found.status = reader.alarmsChangedAfter(change, [&](const AlarmRow &alarm, qint64 last) {
        found.alarms += alarm;
        found.change = last;
    });
    if (found.status && !found.alarms.isEmpty()) { // some may be called otherwise by now
        found.status = reader.stations([&](const StationRow &row) { found.names.insert(row.id, row.name); });
    }
    return found;
}

void RecordAlarms::take(const Found &found)
{
    if (!found.status) {
        return; // it is asked again
    }
    m_names.insert(found.names);
    m_change = found.change;
    for (const AlarmRow &alarm : found.alarms) {
        m_book.follow(alarm);
    }
}

} // namespace ktr
