#pragma once

#include "forward/mqtt_line.h"
#include "opmode/keeping/list_replay.h"
#include "opmode/station/station.h"
#include "record/record_rows.h"

namespace ktr {

// What is told to others, one JSON object each: first the members that `ktrcli monitor` prints, "time" (UTC),
// "station", "kind" and "text", then what else the export of the record has, by its names. What is empty is
// left out.

QByteArray eventJson(const EventRow &event, const QString &station);
QByteArray alarmJson(const AlarmRow &alarm, const QString &station);
/// Without a time, since it is compared with what was told last.
QByteArray stateJson(const cStation &station, const QString &name);
/// The same of a station that another program watches.
QByteArray stateJson(const StationAttributes &attributes, const cStation::Seen &seen, const QString &name);
QByteArray withTime(const QByteArray &stateJson, qint64 at);

/// "2026-11-20T10:00:00.250Z".
QString utcText(qint64 at);

/// The topics, all below one beginning. In a station's name, "/", "+", "#", "%" and what is no letter are
/// written as in addresses of the web: "Well #3" is "Well %233".
class ForwardTopics
{
public:
    explicit ForwardTopics(QString prefix) : m_prefix(std::move(prefix)) {}

    QString keeper() const { return m_prefix + QLatin1String("/keeper"); }
    /// Of what belongs to no station, with an empty name.
    QString events(const QString &station) const { return of(station) + QLatin1String("/events"); }
    QString alarms(const QString &station) const { return of(station) + QLatin1String("/alarms"); }
    QString state(const QString &station) const { return of(station) + QLatin1String("/state"); }
    QString standing(qint64 alarm) const
    {
        return m_prefix + QLatin1String("/standing/") + QString::number(alarm);
    }

private:
    QString of(const QString &station) const;

    QString m_prefix;
};

} // namespace ktr
