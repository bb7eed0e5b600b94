#include "cli/commands.h"
#include "cli/console.h"
#include "cli/patient_job.h"
#include "cli/watching.h"

#include <QFileInfo>

namespace ktr::cli {

namespace {

/// What the command line asks of a keeper.
struct KeepOptions
{
    QString list;
};

/// Watches a list day and night, and tells the log what its operators should know.
class Keeper
{
public:
    Keeper(KeepOptions options, const Environment &environment);
    /// Until the program is asked to end. Gives an exit code.
    int run();

private:
    Status open();
    void tellAlarm(const AlarmRow &alarm, AlarmBook::Change change) const;
    int close();

    KeepOptions m_options;
    Watching m_watching;
    OperationalMode &m_mode;
};

Keeper::Keeper(KeepOptions options, const Environment &environment)
    : m_options(std::move(options)), m_watching(environment), m_mode(m_watching.mode())
{
    QObject::connect(&m_mode, &OperationalMode::recovered, &m_mode,
                     [](const QString &line) { logLine(Urgency::Warning, line); });
}

int Keeper::run()
{
    if (!open()) {
        return failed;
    }
    const AlarmBook &alarms = m_mode.alarms();
    logLine(Urgency::Info,
            QStringLiteral("%1: watching; stations: %2, alarms that stand: %3, not acknowledged: %4")
                .arg(m_options.list)
                .arg(m_mode.stations().Count())
                .arg(alarms.standing().size())
                .arg(alarms.waitingCount()));
    QObject::connect(&alarms, &AlarmBook::changed, &m_mode,
                     [this](const AlarmRow &alarm, AlarmBook::Change change) { tellAlarm(alarm, change); });
    const int code = m_watching.run();
    return std::max(code, close());
}

/// What keeps it from being opened is told.
Status Keeper::open()
{
    Status opened = m_mode.open(m_options.list, OperationalMode::Use::Keep);
    if (m_mode.hindrance() == OperationalMode::Hindrance::InUse) {
        complain(opened.message());
    } else if (!opened) {
        m_mode.closeWithoutFile();
    }
    return opened;
}

void Keeper::tellAlarm(const AlarmRow &alarm, AlarmBook::Change change) const
{
    QString what;
    Urgency urgency = Urgency::Info;
    switch (change) {
    case AlarmBook::Change::Came:
        what = QStringLiteral("alarm");
        urgency = alarm.kind == AlarmKind::Disk || alarm.kind == AlarmKind::List ? Urgency::Error
                                                                                 : Urgency::Warning;
        break;
    case AlarmBook::Change::Acknowledged:
        what = QStringLiteral("acknowledged");
        break;
    case AlarmBook::Change::Over:
        what = QStringLiteral("over");
        break;
    default: // the first of many is enough
        return;
    }
    const QString station = m_mode.tree().find(m_mode.stationOf(alarm)).data(Qt::EditRole).toString();
    logLine(urgency, what + QStringLiteral(": ") +
                         (station.isEmpty() ? alarm.text : station + QStringLiteral(": ") + alarm.text));
}

int Keeper::close()
{
    const Status closed = m_mode.close();
    if (!closed) {
        complain(closed.message());
        m_mode.closeWithoutFile(); // the record has what the file lacks
    }
    m_watching.tellForeignDatagrams();
    logLine(Urgency::Info, m_options.list + QStringLiteral(": not watched any more"));
    return closed ? done : failed;
}

} // namespace

void describeKeep(Arguments &arguments)
{
    arguments.setSummary(
        QStringLiteral("Watches the stations of a list day and night, as the operational mode does, until "
                       "it is asked to terminate. What happens is kept in the record beside the list, and "
                       "in the list at the end; what operators should know is logged on stderr. Windows "
                       "and monitors join it."));
}

int keep(const Arguments &arguments)
{
    KeepOptions options{arguments.positional(0)};
    if (!QFileInfo::exists(options.list)) {
        return fail(options.list + QStringLiteral(": there is no such file"));
    }
    return patiently([&] { return Keeper(std::move(options), systemEnvironment()).run(); },
                     {.waitsForReader = false});
}

} // namespace ktr::cli
