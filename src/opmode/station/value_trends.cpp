#include "opmode/station/value_trends.h"

#include "platform/text_rules.h"

#include <cmath>
#include <limits>

namespace ktr {

void ValueTrends::add(const QString &kennung, const QList<InputValuesMessage::Value> &values,
                      const QDateTime &now)
{
    const qint64 time = now.toSecsSinceEpoch();
    for (const InputValuesMessage::Value &value : values) {
        const auto at = static_cast<std::size_t>(value.channel - 1);
        m_stations[kennung].heard[at] = static_cast<quint32>(time);
        const std::optional<double> number = toNumber(value.text);
        if (!number || std::abs(*number) > double(std::numeric_limits<float>::max())) {
            continue;
        }
        std::unique_ptr<Ring> &ring = m_stations[kennung].rings[at];
        if (!ring) {
            ring = std::make_unique<Ring>();
            ring->last = static_cast<quint32>(time);
        }
        constexpr qint64 longestPause = std::numeric_limits<quint16>::max();
        ring->values[ring->next] = static_cast<float>(*number);
        ring->pauses[ring->next] = static_cast<quint16>(qBound<qint64>(0, time - ring->last, longestPause));
        ring->last = static_cast<quint32>(time);
        ring->next = static_cast<quint8>((ring->next + 1) % longest);
        ring->count = static_cast<quint8>(qMin(ring->count + 1, longest));
    }
}

qint64 ValueTrends::heardAt(const QString &kennung, int channel) const
{
    const auto station = m_stations.find(kennung);
    return station == m_stations.end() || channel < 1 || channel > channelCount
               ? 0
               : station->second.heard[static_cast<std::size_t>(channel - 1)];
}

QList<ValueTrends::Point> ValueTrends::trend(const QString &kennung, int channel) const
{
    const auto station = m_stations.find(kennung);
    if (station == m_stations.end() || channel < 1 || channel > channelCount) {
        return {};
    }
    const Ring *ring = station->second.rings[static_cast<std::size_t>(channel - 1)].get();
    if (ring == nullptr) {
        return {};
    }
    QList<Point> points(ring->count);
    qint64 time = ring->last;
    for (int back = 0; back < ring->count; ++back) {
        const auto at = static_cast<std::size_t>((ring->next + longest - 1 - back) % longest);
        points[ring->count - 1 - back] = {time, ring->values[at]};
        time -= ring->pauses[at];
    }
    return points;
}

} // namespace ktr
