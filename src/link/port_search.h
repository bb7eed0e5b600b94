#pragma once

#include "link/transport.h"
#include "platform/timers.h"

#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>

namespace ktr {

/// Looks for the serial port that the module is at: opens the machine's ports in turn and listens on each for
/// a while, until somebody calls stop() because the module was caught, or until it gives up. A port that is
/// unplugged is left at once, and tried again when it returns.
class PortSearch : public QObject
{
    Q_OBJECT

public:
    static constexpr int longestSearch = 250; ///< ticks
    static constexpr int ticksPerPort = 6;    ///< the module asks for its SIM about once a second
    static constexpr Milliseconds tickInterval{500};

    PortSearch(Transport &transport, Timers &timers, std::function<QStringList()> ports,
               QObject *parent = nullptr);

    /// Starts with the first port, now.
    void start();
    void stop();
    bool isRunning() const { return m_running; }

    /// One step of the search. Without a search it opens the first port that can be opened and stays there.
    void tick();

    /// The transport was closed by somebody else.
    void forgetPort() { m_port.clear(); }

    /// The port that is open, empty when none is.
    const QString &port() const { return m_port; }

Q_SIGNALS:
    void opened(const QString &port);
    /// A port that cannot be opened; once for each reason, until it can be opened again.
    void refused(const QString &reason);
    /// No module was heard in 250 ticks: the search has stopped and the port is closed.
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
