#pragma once

#include "platform/timers.h"

#include <QByteArray>

#include <functional>
#include <memory>
#include <optional>
#include <random>

namespace ktr {

/// What a network does to datagrams, each in so many of a hundred cases.
struct DatagramFaults
{
    int lost = 0;
    int doubled = 0;
    int overtaken = 0; ///< comes behind the next one, or late when none follows
    quint32 seed = 1;
};

/// One direction of a network.
class DatagramPath
{
public:
    static constexpr Milliseconds longestDelay{20}; ///< of a datagram that none overtakes

    DatagramPath(Timers &timers, const DatagramFaults &faults,
                 std::function<void(const QByteArray &)> arrive);

    void send(const QByteArray &datagram);

private:
    bool happens(int percent) { return static_cast<int>(m_random() >> 8) % 100 < percent; }
    void release();

    DatagramFaults m_faults;
    std::function<void(const QByteArray &)> m_arrive;
    std::unique_ptr<OneShotTimer> m_late;
    std::optional<QByteArray> m_held;
    std::minstd_rand m_random;
};

} // namespace ktr
