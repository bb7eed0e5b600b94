#include "cli/watching.h"

#include "cli/console.h"

#include <QCoreApplication>
#include <QSysInfo>

namespace ktr::cli {

Watching::Watching(const Environment &environment, const QString &spoolFolder)
    : m_sockets(m_io),
      m_interruption(m_io, [] { QCoreApplication::quit(); }),
      m_mode({.environment = environment,
              .timers = m_timers,
              .createLine = [this] { return m_sockets.createLine(); },
              .foreignDatagrams = [this] { return m_sockets.foreignDatagrams(); },
              .diskRoom = &systemDiskRoom,
              .name = QStringLiteral("ktrcli (%1) on %2")
                          .arg(QCoreApplication::applicationPid())
                          .arg(QSysInfo::machineHostName()),
              .spoolFolder = spoolFolder},
             stationCaptions({}))
{
    QObject::connect(&m_mode, &OperationalMode::statusMessage, &m_mode,
                     [](const QString &line) { logLine(Urgency::Notice, line); });
}

int Watching::run()
{
    const int code = QCoreApplication::exec();
    m_mode.takeArrived();
    return code == 0 ? done : failed;
}

void Watching::tellForeignDatagrams() const
{
    if (m_sockets.foreignDatagrams() > 0) {
        logLine(
            Urgency::Warning,
            QStringLiteral("datagrams of strangers, not looked at: %1").arg(m_sockets.foreignDatagrams()));
    }
}

} // namespace ktr::cli
