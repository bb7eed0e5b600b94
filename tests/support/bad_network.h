#pragma once

#include "platform/timers.h"

#include <QByteArray>

#include <functional>
#include <random>
#include <utility>

namespace ktr::test {

/// One direction of a bad network: of a hundred datagrams it loses 2, doubles 8, and delays 5 by 50 to 600
/// ms, so that later ones overtake them. The seed decides which.
class BadNetwork
{
public:
    using Later = std::function<void(Milliseconds, std::function<void()>)>;

    BadNetwork(unsigned seed, Later later, std::function<void(const QByteArray &)> arrive)
        : m_random(seed), m_later(std::move(later)), m_arrive(std::move(arrive))
    {}

    void send(const QByteArray &datagram)
    {
        if (happens(2)) {
            return;
        }
        pass(datagram);
        if (happens(8)) {
            pass(datagram);
        }
    }

private:
    bool happens(unsigned percent) { return m_random() % 100 < percent; }
    void pass(const QByteArray &datagram)
    {
        const Milliseconds delay(happens(5) ? 50 + m_random() % 551 : 1);
        m_later(delay, [this, datagram] { m_arrive(datagram); });
    }

    std::mt19937 m_random;
    Later m_later;
    std::function<void(const QByteArray &)> m_arrive;
};

} // namespace ktr::test
