#pragma once

#include "platform/pseudo_terminal.h"
#include "simulator/virtual_module.h"

namespace ktr {

/// A virtual module behind a pseudo-terminal, which a program opens like a serial port.
class ModuleOnTerminal
{
public:
    explicit ModuleOnTerminal(Timers &timers, ModuleOptions options = {});

    /// Opens the terminal, links it at `linkPath` unless that is empty, and switches the module on.
    Status open(const QString &linkPath = {});

    /// Where a program finds the module: the terminal's own path; empty when it is not open.
    QString path() const { return m_terminal.slavePath(); }

    VirtualModule &module() { return m_module; }
    PseudoTerminal &terminal() { return m_terminal; }

private:
    void send(const QByteArray &bytes);

    PseudoTerminal m_terminal;
    VirtualModule m_module;
};

} // namespace ktr
