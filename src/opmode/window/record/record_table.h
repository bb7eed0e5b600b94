#pragma once

#include "record/record_reader.h"

#include <QHash>

#include <variant>
#include <vector>

namespace ktr {

/// What is shown of the record: what happened, or what became of alarms.
enum class RecordView { Events, Alarms };

/// What to look for; only the filter of the chosen view counts.
struct RecordSearch
{
    RecordView view = RecordView::Events;
    EventFilter events{};
    AlarmFilter alarms{};
    /// No station has a name that was typed.
    bool findsNothing = false;
    bool operator==(const RecordSearch &) const = default;
};

using RecordLine = std::variant<EventRow, AlarmRow>;
qint64 numberOf(const RecordLine &line);
/// The number of its station; 0 for none.
qint64 stationOf(const RecordLine &line);

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
/// The name, with a remark when the station has left the list.
QString stationText(const RecordStations &stations, qint64 number);

QString kindText(EventKind kind);
/// What operators do.
const QList<EventKind> &operatorsKinds();

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
/// The value that lines are sorted by: a number or a text.
QVariant recordOrder(const RecordLine &line, int column, const RecordStations &stations);

} // namespace ktr
