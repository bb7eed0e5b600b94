#include "simulator/module_on_terminal.h"

namespace ktr {

namespace {

/// Some requests for a modem in a row: more unread bytes than that mean that nobody is there.
constexpr qsizetype unreadLimit = 128;

} // namespace

ModuleOnTerminal::ModuleOnTerminal(Timers &timers, ModuleOptions options)
    : m_module(
          timers, [this](const QByteArray &bytes) { send(bytes); }, std::move(options))
{
    QObject::connect(&m_terminal, &PseudoTerminal::readyRead, &m_terminal,
                     [this] { m_module.receive(m_terminal.readAll()); });
    m_module.onHangUp([this] { m_terminal.hangUp(); });
}

/// A port that nobody has open keeps nothing: the program that opens it later hears the present.
void ModuleOnTerminal::send(const QByteArray &bytes)
{
    if (!m_module.isCaught() && m_terminal.untaken() > unreadLimit) {
        m_terminal.discardUntaken();
    }
    m_terminal.write(bytes);
}

Status ModuleOnTerminal::open(const QString &linkPath)
{
    Status status = m_terminal.open();
    if (status && !linkPath.isEmpty()) {
        status = m_terminal.linkAt(linkPath);
    }
    if (status) {
        m_module.start();
    }
    return status;
}

} // namespace ktr
