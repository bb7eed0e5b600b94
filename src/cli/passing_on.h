#pragma once

#include "cli/arguments.h"
#include "cli/watching.h"
#include "forward/alarm_command.h"
#include "forward/forwarder.h"
#include "forward/metrics_server.h"

namespace ktr::cli {

/// To whom a keeper passes on what happens.
struct PassingOnOptions
{
    std::optional<Forwarder::Options> forward;
    std::optional<AlarmCommand::Options> onAlarm;
    std::optional<ListenAddress> metrics;
};

void describePassingOn(Arguments &arguments);
/// Reads the options; gives the exit code after a complaint about wrong usage, or a password that cannot be
/// read.
std::optional<int> readPassingOn(const Arguments &arguments, PassingOnOptions &options);

/// Passes on what happens in a list that is kept, from its making to its end, and logs what keeps it from
/// that. Of keepers that share a list one at a time forwards to each broker, and runs each command.
class PassingOn
{
public:
    /// `watching` must outlive it and its list be open for as long.
    PassingOn(const PassingOnOptions &options, Watching &watching);

    /// Figures are told from now on, where that is wanted; a failure says why they cannot be.
    Status listen();

private:
    void followDuty();
    void forward();
    QByteArray figures() const;

    Watching &m_watching;
    PassingOnOptions m_options;
    std::optional<Forwarder> m_forwarder;
    std::optional<AlarmCommand> m_alarmCommand; // goes first: what it notes is forwarded
    std::optional<MetricsServer> m_metrics;
    QObject m_receiver;
};

} // namespace ktr::cli
