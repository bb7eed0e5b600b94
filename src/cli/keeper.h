#pragma once

#include "cli/passing_on.h"
#include "cli/service_pulse.h"
#include "cli/watching.h"
#include "opmode/watch_summary.h"

namespace ktr::cli {

/// What the command line asks of a keeper.
struct KeepOptions
{
    QString list; ///< or the address of a record on a server
    PassingOnOptions passOn = {};
    QString spoolFolder = {}; ///< of what a server does not take; empty: the usual one
};

/// Watches a list day and night, and tells the log and the service manager what operators should know.
class Keeper
{
public:
    Keeper(KeepOptions options, const Environment &environment);
    /// Until the program is asked to end. Gives an exit code.
    int run();

private:
    Status open();
    void tellAlarm(const AlarmRow &alarm, AlarmBook::Change change) const;
    QString state() const;
    int close();

    KeepOptions m_options;
    Watching m_watching;
    OperationalMode &m_mode;
    ServicePulse m_pulse;
};

/// Whether anybody watches a list, who, and how its stations are, on standard output. Reads only. Gives an
/// exit code.
int tellKeeper(const QString &list, bool asJson);

/// The same of all keepers that share the record at an address.
int tellKeepers(const QString &address, bool asJson);

/// In words, on one line.
QString textOf(const WatchSummary &summary);

} // namespace ktr::cli
