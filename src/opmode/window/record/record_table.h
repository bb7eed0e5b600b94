#pragma once

#include "record/record_reader.h"

#include <QHash>

#include <variant>
#include <vector>

namespace ktr {

/// What is shown of the record: what happened, or what became of alarms.
enum class RecordView { Events, Alarms };

/// What is to be found. The part of the view counts.
struct RecordSearch
{
    RecordView view = RecordView::Events;
    EventFilter events{};
    AlarmFilter alarms{};
    /// Of all stations that there are, none passes: nothing is found.
    bool findsNothing = false;
    bool operator==(const RecordSearch &) const = default;
};

using RecordLine = std::variant<EventRow, AlarmRow>;
qint64 numberOf(const RecordLine &line);

struct RecordPage
{
    Status status = Status::done();
    std::vector<RecordLine> lines{}; ///< the newest first
    std::optional<RecordKey> next;
};

/// A page of what is found; as findEvents() and findAlarms() do it.
RecordPage findPage(RecordReader &reader, const RecordSearch &search, const std::optional<RecordKey> &after,
                    int limit);

/// The stations of a record by their numbers.
struct RecordStation
{
    QString name;
    bool isListed = true;
    bool operator==(const RecordStation &) const = default;
};
using RecordStations = QHash<qint64, RecordStation>;
Status readStations(RecordReader &reader, RecordStations &stations);
/// The name, and of a station that has left the list that, too.
QString stationText(const RecordStations &stations, qint64 number);

QString kindText(EventKind kind);

/// How times are written: as people read them, or with their zone (ISO 8601).
enum class TimeForm { Shown, WithZone };
/// Empty for 0.
QString timeText(qint64 moment, TimeForm form);

// The columns of the views.
int recordColumns(RecordView view);
QString recordTitle(RecordView view, int column);
/// About how many characters its cells have.
int recordWidth(RecordView view, int column);
QString recordCell(const RecordLine &line, int column, const RecordStations &stations, TimeForm form);
/// By which lines are put in order: a number or a text.
QVariant recordOrder(const RecordLine &line, int column, const RecordStations &stations);

} // namespace ktr
