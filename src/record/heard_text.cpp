#include "record/heard_text.h"

#include "record/json_text.h"

namespace ktr {

namespace {

const QLatin1String stationMember("station");
const QLatin1String atMember("at");
const QLatin1String textMember("text");

/// Of what rows tell the state; 0 for none.
struct StationOf
{
    qint64 operator()(const EventRow &row) const { return row.station; }
    qint64 operator()(const StationRow &row) const { return row.id; }
    qint64 operator()(const NotificationRow &row) const { return row.station; }
    qint64 operator()(const AlarmRow &row) const { return row.station; }
    qint64 operator()(const auto &) const { return 0; }
};

bool isState(const RecordRow &row)
{
    const auto *event = std::get_if<EventRow>(&row);
    if (event == nullptr) {
        return true;
    }
    switch (event->kind) {
    case EventKind::Alive:
    case EventKind::Silent:
    case EventKind::Quality:
    case EventKind::Puk:
    case EventKind::Flood:
        return true;
    default:
        return false;
    }
}

} // namespace

RequestRow HeardText::row() const
{
    return {.at = at,
            .what = request(),
            .detail = jsonText(QJsonObject{{stationMember, station}, {atMember, at}, {textMember, text}})};
}

std::optional<HeardText> HeardText::of(const RequestRow &row)
{
    if (row.what != request()) {
        return std::nullopt;
    }
    const QJsonObject about = jsonOf(row.detail).object();
    return HeardText{about[stationMember].toInteger(), about[atMember].toInteger(),
                     about[textMember].toString()};
}

std::vector<RecordRow> withoutStates(const std::vector<RecordRow> &rows, const OthersStations &others)
{
    std::vector<RecordRow> left;
    for (const RecordRow &row : rows) {
        const auto *event = std::get_if<EventRow>(&row);
        const qint64 station = std::visit(StationOf{}, row);
        const bool isOthers = others.all.contains(station);
        if (isOthers && event != nullptr && event->kind == EventKind::Notification &&
            !others.gone.contains(station)) {
            left.emplace_back(HeardText{event->station, event->at, event->text}.row());
        } else if (!isOthers || !isState(row)) {
            left.push_back(row);
        }
    }
    return left;
}

QSet<qint64> stationsOf(const std::vector<RecordRow> &rows)
{
    QSet<qint64> stations;
    for (const RecordRow &row : rows) {
        stations += std::visit(StationOf{}, row);
    }
    stations.remove(0);
    return stations;
}

} // namespace ktr
