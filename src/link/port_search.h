#pragma once

#include "link/transport.h"
#include "platform/timers.h"

#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>

namespace ktr {

/// Looks for the port that the module is at: opens the machine's ports in turn and listens on each for a
/// while, until the module was caught or the search gives up. A port that goes away is left at once and
/// found again when it returns.
class PortSearch : public QObject
{
    Q_OBJECT

public:
    static constexpr int longestSearch = 250; ///< ticks
    static constexpr int ticksPerPort = 6;    ///< the module asks for its SIM about once a second
    static constexpr Milliseconds tickInterval{500};

    PortSearch(Transport &transport, Timers &timers, std::function<QStringList()> ports,
               QObject *parent = nullptr);

    /// Searches from the first port on; the first tick is now.
    void start();
    void stop();
    bool isRunning() const { return m_running; }

    /// One step of the search; outside a search it opens a port and stays there.
    void tick();

    /// The transport was closed by somebody else.
    void forgetPort() { m_port.clear(); }

    /// The port that is open, empty when none is.
    const QString &port() const { return m_port; }

Q_SIGNALS:
    void opened(const QString &port);
    /// A port that cannot be opened, told once until it can or the reason changes.
    void refused(const QString &reason);
    /// 250 ticks went by without the module: the search has stopped and the port is closed.
    void gaveUp();

private:
    void openNext(const QStringList &ports);
    void leavePort();

    Transport &m_transport;
    std::unique_ptr<OneShotTimer> m_timer;
    std::function<QStringList()> m_ports;
    bool m_running = false;
    int m_ticks = 0;
    int m_ticksOnPort = 0;
    QString m_port;
    QString m_lastTried;
    QStringList m_refusals;
};

} // namespace ktr
