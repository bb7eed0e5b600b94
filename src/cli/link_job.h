#pragma once

#include "cli/arguments.h"
#include "cli/interruption.h"
#include "link/conversation_log.h"
#include "link/io_thread.h"
#include "link/module_session.h"
#include "link/port_search.h"
#include "link/transport.h"
#include "platform/environment.h"
#include "platform/timers.h"

#include <memory>
#include <optional>

namespace ktr::cli {

inline constexpr int longestTimeout = 24 * 60 * 60; ///< in seconds

/// What all commands that talk to a module share: the line, the conversation, the log, the time-out, and an
/// end by Ctrl-C. The command connects to session() and calls finish() when its work is done.
class LinkJob
{
public:
    /// The arguments tell which kind of line it is.
    explicit LinkJob(const Arguments &arguments);

    /// The options --serial, --ethernet, --log and --timeout.
    static void addOptions(Arguments &arguments);

    /// Complains about wrong usage of these options and returns the exit code; nothing when all is well.
    static std::optional<int> check(const Arguments &arguments);

    /// Opens the line and the log. Returns the exit code if that fails.
    std::optional<int> open(const Arguments &arguments);

    /// Runs until finish(); returns the exit code.
    int run();

    void finish(int code);
    /// Complains and finishes as failed.
    void abandon(const QString &message);
    /// What abandon() adds about how far the job has got.
    void setState(std::function<QString()> state) { m_state = std::move(state); }
    /// Finishes once everything sent has left the machine. From now on the module gets no answers.
    void finishWhenDrained(int code);

    ModuleSession &session() { return m_session; }
    Transport &line() { return *m_line; }
    Timers &timers() { return m_timers; }
    Milliseconds timeout() const { return m_timeout; }
    /// The port or address that was asked for or found.
    QString lineName() const;
    bool isEthernet() const { return m_kind == LineKind::Ethernet; }

private:
    Environment m_environment = systemEnvironment();
    EventLoopTimers m_timers;
    IoThread m_io;
    LineKind m_kind;
    QString m_address; ///< as it was asked for
    std::unique_ptr<Transport> m_line;
    ModuleSession m_session{*m_line, m_timers, m_environment, m_kind};
    std::unique_ptr<PortSearch> m_search;
    ConversationLog m_log;
    bool m_logComplained = false;
    Milliseconds m_timeout{0};
    std::function<QString()> m_state;
    std::optional<int> m_codeWhenDrained;
    std::optional<int> m_exitCode;
    Interruption m_interruption;
};

} // namespace ktr::cli
