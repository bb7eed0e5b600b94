#pragma once

#include "cli/interruption.h"
#include "opmode/operational_mode.h"
#include "opmode/station/station_sockets.h"

namespace ktr::cli {

/// The operational mode without a window, for a command that watches a list until somebody asks for the end:
/// with the timers, the I/O thread and the sockets that it needs. Its lines for the status bar go to stderr.
class Watching
{
public:
    explicit Watching(const Environment &environment, const QString &spoolFolder = {});

    OperationalMode &mode() { return m_mode; }
    IoThread &io() { return m_io; }
    Timers &timers() { return m_timers; }

    /// Works until the program is asked to end, and takes what of the stations has arrived by then. Gives an
    /// exit code.
    int run();
    /// To be called at the end: what was not looked at.
    void tellForeignDatagrams() const;

private:
    EventLoopTimers m_timers;
    IoThread m_io;
    StationSockets m_sockets;
    Interruption m_interruption;
    OperationalMode m_mode;
};

} // namespace ktr::cli
