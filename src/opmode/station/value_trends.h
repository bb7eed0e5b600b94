#pragma once

#include "config/channels.h"
#include "opmode/station/station_messages.h"

#include <QDateTime>

#include <memory>
#include <unordered_map>

namespace ktr {

/// The last input values of this run of every station that reports, for small curves. At most 4 KiB a
/// station.
class ValueTrends
{
public:
    static constexpr int longest = 30; ///< values of a channel

private:
    struct Ring
    {
        std::array<float, longest> values;
        std::array<quint16, longest> pauses; ///< seconds since the value before
        quint32 last = 0;                    ///< when the newest came, seconds since the epoch
        quint8 count = 0;
        quint8 next = 0;
    };
    struct Station
    {
        std::array<std::unique_ptr<Ring>, channelCount> rings;
        std::array<quint32, channelCount> heard{};
    };
    static_assert(sizeof(Station) + channelCount * (sizeof(Ring) + 2 * sizeof(void *)) < 4000);
    using Stations = std::unordered_map<QString, Station>;

public:
    struct Point
    {
        qint64 time; ///< seconds since the epoch; after a pause of over 18 h earlier ones are told too late
        float value;
        bool operator==(const Point &) const = default;
    };

    /// Values that are no number have no curve.
    void add(const QString &kennung, const QList<InputValuesMessage::Value> &values, const QDateTime &now);
    void remove(const QString &kennung) { m_stations.erase(kennung); }
    /// Those of a station, to be put back.
    using Kept = Stations::node_type;
    Kept take(const QString &kennung) { return m_stations.extract(kennung); }
    void putBack(Kept kept) { m_stations.insert(std::move(kept)); }

    /// Of a channel 1 to 18, the oldest first; empty when nothing was reported.
    QList<Point> trend(const QString &kennung, int channel) const;
    /// When the last one came, a number or not, in s since 1970; 0 when none did in this run.
    qint64 heardAt(const QString &kennung, int channel) const;

private:
    Stations m_stations;
};

} // namespace ktr
