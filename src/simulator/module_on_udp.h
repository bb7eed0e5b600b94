#pragma once

#include "platform/status.h"
#include "simulator/datagram_path.h"
#include "simulator/virtual_module.h"

#include <QString>

#include <memory>

namespace ktr {

/// A virtual module at a UDP port. It talks to whoever spoke to it last, and answers at the port after the
/// one that it was spoken to from. Every write is one datagram.
class ModuleOnUdp
{
public:
    explicit ModuleOnUdp(Timers &timers, ModuleOptions options = {}, const DatagramFaults &faults = {});
    ~ModuleOnUdp();
    Q_DISABLE_COPY_MOVE(ModuleOnUdp)

    /// Whether a text has the form that open() takes.
    static bool isAddress(const QString &address);

    /// Opens "port" of this machine alone, or "address:port" with the address of one of its interfaces
    /// (0.0.0.0 for all), and switches the module on. Port 0 takes any that is free.
    Status open(const QString &address);

    /// "address:port" where the module listens; empty while it does not.
    QString address() const;

    /// Leaves the port.
    void close();

    VirtualModule &module() { return m_module; }

private:
    struct Socket;

    void read();
    void transmit(const QByteArray &datagram);

    DatagramPath m_toProgram;
    DatagramPath m_toModule;
    VirtualModule m_module;
    std::unique_ptr<Socket> m_socket;
};

} // namespace ktr
