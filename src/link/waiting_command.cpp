#include "link/waiting_command.h"

#include "link/conversation_log.h"

namespace ktr {

WaitingCommand::Placing WaitingCommand::mayPlace() const
{
    return m_line.port().isEmpty()                  ? Placing::NoConnection
           : m_line.session().step() != steps::idle ? Placing::Transmitting
                                                    : Placing::Waits;
}

WaitingCommand::Placing WaitingCommand::place(const QString &command)
{
    const Placing placing = mayPlace();
    if (placing == Placing::Waits) {
        m_line.session().place(command);
        Q_EMIT changed();
    }
    return placing;
}

WaitingCommand::Placing WaitingCommand::placeClock()
{
    const Placing placing = mayPlace();
    if (placing == Placing::Waits) {
        m_line.session().placeClock();
        Q_EMIT changed();
    }
    return placing;
}

void WaitingCommand::takeBack()
{
    if (const QString command = text(); !command.isEmpty()) {
        m_line.session().place(QString());
        Q_EMIT changed();
        Q_EMIT statusMessage(tr("%1 was not sent and waits no longer").arg(logText(command)));
    }
}

void WaitingCommand::noteSent(const QString &command)
{
    Q_EMIT statusMessage(tr("%1 was handed to the module").arg(logText(command)));
    Q_EMIT sent(command);
    Q_EMIT changed();
}

void WaitingCommand::noteRefused()
{
    Q_EMIT statusMessage(tr("The command is too long and was not sent"));
    Q_EMIT changed();
}

} // namespace ktr
