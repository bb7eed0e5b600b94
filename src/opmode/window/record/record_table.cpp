#include "opmode/window/record/record_table.h"

#include "opmode/window/alarm_look.h"
#include "opmode/window/alarms/alarm_cells.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QTimeZone>
#include <QVariant>

#include <array>

namespace ktr {

namespace {

QString recordText(const char *text)
{
    return QCoreApplication::translate("RecordTable", text);
}

/// What stands in the cells of a column: a time, a number or a text of a row. A number with a text is shown
/// as that, and written as a number where programs read it.
template <class Row> struct Column
{
    const char *title;
    int width;
    qint64 Row::*moment = nullptr;
    qint64 (*number)(const Row &row) = nullptr;
    QString (*text)(const Row &row, const RecordStations &stations) = nullptr;
};

using Event = const EventRow &;
using Alarm = const AlarmRow &;
using Stations = const RecordStations &;

const std::array<Column<EventRow>, 5> eventColumns{{
    {QT_TRANSLATE_NOOP("RecordTable", "Time"), 19, &EventRow::at},
    {QT_TRANSLATE_NOOP("RecordTable", "Station"), 20, nullptr, nullptr,
     [](Event row, Stations stations) { return stationText(stations, row.station); }},
    {QT_TRANSLATE_NOOP("RecordTable", "Kind"), 18, nullptr, nullptr,
     [](Event row, Stations) { return kindText(row.kind); }},
    {QT_TRANSLATE_NOOP("RecordTable", "Operator"), 14, nullptr, nullptr,
     [](Event row, Stations) { return row.operatorName; }},
    {QT_TRANSLATE_NOOP("RecordTable", "Text"), 60, nullptr, nullptr,
     [](Event row, Stations) { return row.text; }},
}};

const std::array<Column<AlarmRow>, 12> alarmColumns{{
    {QT_TRANSLATE_NOOP("RecordTable", "Came"), 19, &AlarmRow::first},
    {QT_TRANSLATE_NOOP("RecordTable", "Station"), 20, nullptr, nullptr,
     [](Alarm row, Stations stations) { return stationText(stations, row.station); }},
    {QT_TRANSLATE_NOOP("RecordTable", "Text"), 34, nullptr, nullptr,
     [](Alarm row, Stations) { return row.text; }},
    {QT_TRANSLATE_NOOP("RecordTable", "Priority"), 9, nullptr,
     [](Alarm row) -> qint64 { return row.priority; },
     [](Alarm row, Stations) { return AlarmCells::priority(row.priority); }},
    {QT_TRANSLATE_NOOP("RecordTable", "Last"), 19, &AlarmRow::last},
    {QT_TRANSLATE_NOOP("RecordTable", "Count"), 7, nullptr, [](Alarm row) { return row.count; }},
    {QT_TRANSLATE_NOOP("RecordTable", "Acknowledged"), 19, &AlarmRow::acknowledged},
    {QT_TRANSLATE_NOOP("RecordTable", "By"), 14, nullptr, nullptr,
     [](Alarm row, Stations) { return AlarmCells::acknowledgedBy(row); }},
    {QT_TRANSLATE_NOOP("RecordTable", "Over"), 19, &AlarmRow::over},
    {QT_TRANSLATE_NOOP("RecordTable", "Over by"), 16, nullptr, nullptr,
     [](Alarm row, Stations) { return row.overWhy; }},
    {QT_TRANSLATE_NOOP("RecordTable", "Comment"), 24, nullptr, nullptr,
     [](Alarm row, Stations) { return row.comment; }},
    {QT_TRANSLATE_NOOP("RecordTable", "Recipients"), 24, nullptr, nullptr,
     [](Alarm row, Stations) { return row.recipients.join(QLatin1String(", ")); }},
}};

const Column<EventRow> &columnOf(Event, int column)
{
    return eventColumns.at(static_cast<std::size_t>(column));
}

const Column<AlarmRow> &columnOf(Alarm, int column)
{
    return alarmColumns.at(static_cast<std::size_t>(column));
}

} // namespace

qint64 numberOf(const RecordLine &line)
{
    return std::visit([](const auto &row) { return row.id; }, line);
}

qint64 stationOf(const RecordLine &line)
{
    return std::visit([](const auto &row) { return row.station; }, line);
}

RecordPage findPage(RecordReader &reader, const RecordSearch &search, const std::optional<RecordKey> &after,
                    int limit)
{
    RecordPage found;
    if (search.findsNothing) {
        return found;
    }
    const auto take = [&found](auto page) {
        found.status = page.status;
        found.next = page.next;
        found.lines.reserve(static_cast<std::size_t>(page.rows.size()));
        for (auto &row : page.rows) {
            found.lines.emplace_back(std::move(row));
        }
    };
    if (search.view == RecordView::Events) {
        take(reader.findEvents(search.events, after, limit));
    } else {
        take(reader.findAlarms(search.alarms, after, limit));
    }
    return found;
}

Status readStations(RecordReader &reader, RecordStations &stations)
{
    return reader.stations([&](const StationRow &row) { stations.insert(row.id, {row.name, row.listed}); });
}

QString stationText(const RecordStations &stations, qint64 number)
{
    const auto found = stations.constFind(number);
    if (found == stations.constEnd()) {
        return number == 0 ? QString() : u'#' + QString::number(number);
    }
    return found->isListed ? found->name
                           : QCoreApplication::translate("RecordTable", "%1 (removed)").arg(found->name);
}

const QList<EventKind> &operatorsKinds()
{
    using enum EventKind;
    static const QList<EventKind> kinds{
        StationAdded, StationRemoved, StationRenamed, Attributes, EntryRemoved, Acknowledged,
        Commented,    Shelved,        Unshelved,      Sent,       Note};
    return kinds;
}

QString kindText(EventKind kind)
{
    switch (kind) {
    case EventKind::Notification:
        return QCoreApplication::translate("RecordTable", "Notification");
    case EventKind::Values:
        return QCoreApplication::translate("RecordTable", "Input values");
    case EventKind::History:
        return QCoreApplication::translate("RecordTable", "History");
    case EventKind::OtherMessage:
        return QCoreApplication::translate("RecordTable", "Other message");
    case EventKind::Alive:
        return QCoreApplication::translate("RecordTable", "Alive");
    case EventKind::Silent:
        return QCoreApplication::translate("RecordTable", "Silent");
    case EventKind::Quality:
        return QCoreApplication::translate("RecordTable", "Reception");
    case EventKind::Puk:
        return QCoreApplication::translate("RecordTable", "PUK");
    case EventKind::Flood:
        return QCoreApplication::translate("RecordTable", "Too much arrives");
    case EventKind::StationAdded:
        return QCoreApplication::translate("RecordTable", "Station added");
    case EventKind::StationRemoved:
        return QCoreApplication::translate("RecordTable", "Station removed");
    case EventKind::StationRenamed:
        return QCoreApplication::translate("RecordTable", "Station renamed");
    case EventKind::Attributes:
        return QCoreApplication::translate("RecordTable", "Station changed");
    case EventKind::EntryRemoved:
        return QCoreApplication::translate("RecordTable", "Entry removed");
    case EventKind::Acknowledged:
        return QCoreApplication::translate("RecordTable", "Acknowledged");
    case EventKind::Commented:
        return QCoreApplication::translate("RecordTable", "Comment");
    case EventKind::Shelved:
        return QCoreApplication::translate("RecordTable", "Shelved");
    case EventKind::Unshelved:
        return QCoreApplication::translate("RecordTable", "Not shelved any more");
    case EventKind::AlarmOver:
        return QCoreApplication::translate("RecordTable", "Alarm over");
    case EventKind::Sent:
        return QCoreApplication::translate("RecordTable", "Sent");
    case EventKind::Started:
        return QCoreApplication::translate("RecordTable", "Program began");
    case EventKind::Stopped:
        return QCoreApplication::translate("RecordTable", "Program ended");
    case EventKind::ListFollowed:
        return QCoreApplication::translate("RecordTable", "List edited");
    case EventKind::Trouble:
        return QCoreApplication::translate("RecordTable", "Trouble");
    case EventKind::Note:
        return QCoreApplication::translate("RecordTable", "Note");
    }
    return QString::number(static_cast<int>(kind)); // of a newer version
}

QString timeText(qint64 moment, TimeForm form)
{
    if (moment == 0) {
        return {};
    }
    if (form == TimeForm::Shown) {
        return shownMoment(moment);
    }
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(moment);
    return time.toOffsetFromUtc(time.offsetFromUtc()).toString(Qt::ISODate);
}

int recordColumns(RecordView view)
{
    return static_cast<int>(view == RecordView::Events ? eventColumns.size() : alarmColumns.size());
}

QString recordTitle(RecordView view, int column)
{
    return recordText(view == RecordView::Events ? columnOf(EventRow(), column).title
                                                 : columnOf(AlarmRow(), column).title);
}

int recordWidth(RecordView view, int column)
{
    return view == RecordView::Events ? columnOf(EventRow(), column).width
                                      : columnOf(AlarmRow(), column).width;
}

QString recordCell(const RecordLine &line, int column, const RecordStations &stations, TimeForm form)
{
    return std::visit(
        [&](const auto &row) {
            const auto &how = columnOf(row, column);
            return how.moment != nullptr ? timeText(row.*how.moment, form)
                   : how.text != nullptr && (how.number == nullptr || form == TimeForm::Shown)
                       ? how.text(row, stations)
                       : QString::number(how.number(row));
        },
        line);
}

QVariant recordOrder(const RecordLine &line, int column, const RecordStations &stations)
{
    return std::visit(
        [&](const auto &row) {
            const auto &how = columnOf(row, column);
            return how.moment != nullptr   ? QVariant(row.*how.moment)
                   : how.number != nullptr ? QVariant(how.number(row))
                                           : QVariant(how.text(row, stations));
        },
        line);
}

} // namespace ktr
