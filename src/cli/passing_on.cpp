#include "cli/passing_on.h"

#include "cli/console.h"
#include "forward/metrics.h"

#include <QProcess>

namespace ktr::cli {

namespace {

const QString forwardOption = QStringLiteral("forward");
const QString passwordOption = QStringLiteral("forward-password-file");
const QString caOption = QStringLiteral("forward-ca");
const QString alarmOption = QStringLiteral("on-alarm");
const QString againOption = QStringLiteral("on-alarm-again");
const QString metricsOption = QStringLiteral("metrics");
constexpr int mostMinutes = 10'000;

std::optional<int> readForward(const Arguments &arguments, std::optional<Forwarder::Options> &forward)
{
    if (!arguments.isSet(forwardOption)) {
        for (const QString &option : {passwordOption, caOption}) {
            if (arguments.isSet(option)) {
                return arguments.wrong(QStringLiteral("--%1 belongs to --forward").arg(option));
            }
        }
        return std::nullopt;
    }
    Forwarder::Options read;
    if (const Status target = readForwardTarget(arguments.value(forwardOption), read.target); !target) {
        return arguments.wrong(QStringLiteral("--forward: ") + target.message());
    }
    read.caFile = arguments.value(caOption);
    if (!read.caFile.isEmpty() && !read.target.isEncrypted) {
        return arguments.wrong(QStringLiteral("--forward-ca belongs to mqtts://"));
    }
    if (const Status known = readForwardPassword(arguments.value(passwordOption), read.password); !known) {
        return fail(known.message());
    }
    if (!read.password.isEmpty() && read.target.user.isEmpty()) {
        return arguments.wrong(QStringLiteral("--forward: a password, but no USER@ in front of the host"));
    }
    forward = std::move(read);
    return std::nullopt;
}

std::optional<int> readOnAlarm(const Arguments &arguments, std::optional<AlarmCommand::Options> &onAlarm)
{
    if (!arguments.isSet(alarmOption)) {
        return arguments.isSet(againOption)
                   ? std::optional(arguments.wrong(QStringLiteral("--on-alarm-again belongs to --on-alarm")))
                   : std::nullopt;
    }
    AlarmCommand::Options read;
    read.arguments = QProcess::splitCommand(arguments.value(alarmOption));
    if (read.arguments.isEmpty()) {
        return arguments.wrong(QStringLiteral("--on-alarm: no command"));
    }
    read.program = read.arguments.takeFirst();
    if (arguments.isSet(againOption)) {
        const std::optional<int> minutes = arguments.number(againOption, 1, mostMinutes);
        if (!minutes) {
            return wrongUsage;
        }
        read.again = std::chrono::minutes(*minutes);
    }
    onAlarm = std::move(read);
    return std::nullopt;
}

} // namespace

void describePassingOn(Arguments &arguments)
{
    arguments.addOption({forwardOption,
                         QStringLiteral("Publishes what happens at an MQTT broker: "
                                        "mqtt[s]://[USER@]HOST[:PORT][/PREFIX]. A password comes from the "
                                        "variable %1 or from a file.")
                             .arg(forwardPasswordVariable()),
                         QStringLiteral("BROKER")});
    arguments.addOption(
        {passwordOption,
         QStringLiteral("The file with the broker's password, which its owner alone may read."),
         QStringLiteral("FILE")});
    arguments.addOption(
        {caOption,
         QStringLiteral("Who vouches for a broker with TLS (PEM); otherwise whom the system trusts."),
         QStringLiteral("FILE")});
    arguments.addOption(
        {alarmOption,
         QStringLiteral("Runs this program for each new alarm, with the alarm as JSON on its standard input. "
                        "Arguments are split at spaces, quotes hold them together; no shell reads it."),
         QStringLiteral("COMMAND")});
    arguments.addOption({againOption,
                         QStringLiteral("Runs it again after so many minutes without acknowledgement."),
                         QStringLiteral("MINUTES")});
    arguments.addOption({metricsOption,
                         QStringLiteral("Tells figures to programs that collect them, over HTTP at /metrics; "
                                        "without an address to this machine alone."),
                         QStringLiteral("[ADDRESS:]PORT")});
}

std::optional<int> readPassingOn(const Arguments &arguments, PassingOnOptions &options)
{
    if (arguments.isSet(metricsOption)) {
        const Status read = readListenAddress(arguments.value(metricsOption), options.metrics.emplace());
        if (!read) {
            return arguments.wrong(QStringLiteral("--metrics: ") + read.message());
        }
    }
    const std::optional<int> code = readForward(arguments, options.forward);
    return code ? code : readOnAlarm(arguments, options.onAlarm);
}

PassingOn::PassingOn(const PassingOnOptions &options, Watching &watching)
    : m_watching(watching), m_options(options)
{
    Leases *const leases = watching.mode().leases();
    if (options.forward && leases != nullptr) {
        leases->want(Forwarder::duty(options.forward->target));
        QObject::connect(&watching.mode(), &OperationalMode::dutiesChanged, &m_receiver,
                         [this] { followDuty(); });
    } else if (options.forward) {
        forward();
    }
    if (options.onAlarm) {
        m_alarmCommand.emplace(watching.mode(), watching.timers(), *options.onAlarm);
        QObject::connect(&*m_alarmCommand, &AlarmCommand::failed, &*m_alarmCommand,
                         [](const QString &what) { logLine(Urgency::Warning, what); });
    }
}

void PassingOn::followDuty()
{
    const ForwardTarget &target = m_options.forward->target;
    const bool isOwn = m_watching.mode().leases()->has(Forwarder::duty(target));
    if (isOwn && !m_forwarder) {
        logLine(Urgency::Info, target.name() + QStringLiteral(": this keeper forwards to it"));
        forward();
    } else if (!isOwn && m_forwarder) {
        m_forwarder->abandon();
        m_forwarder.reset();
        logLine(Urgency::Info, target.name() + QStringLiteral(": another keeper may forward to it"));
    }
}

void PassingOn::forward()
{
    const QString target = m_options.forward->target.name();
    m_forwarder.emplace(m_watching.mode(), m_watching.timers(), *m_options.forward);
    QObject::connect(&*m_forwarder, &Forwarder::troubleChanged, &*m_forwarder,
                     [target](const QString &trouble) {
                         logLine(trouble.isEmpty() ? Urgency::Info : Urgency::Warning,
                                 trouble.isEmpty() ? target + QStringLiteral(": forwarding to it")
                                                   : QStringLiteral("not forwarded: ") + trouble);
                     });
    QObject::connect(&*m_forwarder, &Forwarder::leftOut, &*m_forwarder,
                     [](const QString &what) { logLine(Urgency::Warning, what); });
}

Status PassingOn::listen()
{
    if (!m_options.metrics) {
        return Status::done();
    }
    m_metrics.emplace(
        m_watching.io(), [this] { return figures(); }, MetricsServer::Limits());
    return m_metrics->listen(*m_options.metrics);
}

QByteArray PassingOn::figures() const
{
    Metrics metrics = metricsOf(m_watching.mode());
    metrics.version =
        QStringLiteral("%1.%2.%3").arg(KTR_VERSION_MAJOR).arg(KTR_VERSION_MINOR).arg(KTR_VERSION_REVISION);
    if (m_forwarder) {
        metrics.forwardBacklog = m_forwarder->backlog();
    }
    if (const Leases *const leases = m_watching.mode().leases(); leases != nullptr) {
        const auto duty = [&](const QString &name) { metrics.duties += {name, leases->has(name)}; };
        duty(ListDuty::name());
        if (m_options.forward) {
            duty(Forwarder::duty(m_options.forward->target));
        }
        if (m_options.onAlarm) {
            duty(AlarmCommand::duty(*m_options.onAlarm));
        }
    }
    return metricsText(metrics);
}

} // namespace ktr::cli
