#include "cli/link_job.h"

#include "cli/console.h"
#include "link/serial_transport.h"
#include "link/udp_transport.h"
#include "platform/serial_device.h"

#include <QCoreApplication>

namespace ktr::cli {

namespace {

const QString logOption = QStringLiteral("log");

std::unique_ptr<Transport> makeLine(LineKind kind, IoThread &io)
{
    if (kind == LineKind::Serial) {
        return std::make_unique<SerialTransport>(io);
    }
    auto line = std::make_unique<UdpTransport>(io);
    QObject::connect(line.get(), &UdpTransport::statusMessage, line.get(), &complain);
    return line;
}

} // namespace

LinkJob::LinkJob(const Arguments &arguments)
    : m_kind(arguments.isSet(ethernetOption) ? LineKind::Ethernet : LineKind::Serial),
      m_line(makeLine(m_kind, m_io)),
      m_interruption(m_io, [this] { abandon(QStringLiteral("interrupted")); })
{
    QObject::connect(m_line.get(), &Transport::lost, &m_session,
                     [this](const QString &reason, bool everythingSent) {
                         if (m_search != nullptr && m_search->isRunning()) {
                             m_session.setTimeout(m_timeout); // the lost line stopped it
                             return;                          // the search goes on without this port
                         }
                         if (m_codeWhenDrained && everythingSent) {
                             finish(*m_codeWhenDrained); // the module hung up, but had got everything
                         } else {
                             abandon(QStringLiteral("the line is lost: %1").arg(reason));
                         }
                     });
    QObject::connect(&m_session, &ModuleSession::stalled, &m_session,
                     [this] { abandon(m_session.stallReason()); });
    QObject::connect(&m_session, &ModuleSession::logged, &m_session, [this](const QString &line) {
        m_log.write(m_environment.now(), line);
        if (const Status status = m_log.status(); !status && !m_logComplained) {
            m_logComplained = true; // the conversation goes on without its log
            complain(status.message());
        }
    });
}

void LinkJob::addOptions(Arguments &arguments)
{
    arguments.addOption(
        {serialOption, QStringLiteral("The module is at the serial port PATH; \"auto\" searches the ports."),
         QStringLiteral("PATH")});
    arguments.addOption({ethernetOption,
                         QStringLiteral("The module is at the address or name HOST, or HOST:PORT (49111)."),
                         QStringLiteral("HOST")});
    arguments.addOption(
        {logOption, QStringLiteral("Appends the conversation to FILE."), QStringLiteral("FILE")});
    arguments.addOption({timeoutOption,
                         QStringLiteral("Gives up when the job does not get on for so long, whatever "
                                        "is heard from the module (60)."),
                         QStringLiteral("SECONDS"), QStringLiteral("60")});
}

std::optional<int> LinkJob::check(const Arguments &arguments)
{
    if (arguments.isSet(serialOption) == arguments.isSet(ethernetOption)) {
        return arguments.wrong(QStringLiteral("either --serial or --ethernet is needed"));
    }
    if (arguments.isSet(ethernetOption) && !UdpPair::isAddress(arguments.value(ethernetOption))) {
        return arguments.wrong(
            QStringLiteral("\"%1\" is no address of a module").arg(arguments.value(ethernetOption)));
    }
    if (arguments.isSet(serialOption) && arguments.value(serialOption).isEmpty()) {
        return arguments.wrong(QStringLiteral("--serial names no port"));
    }
    return arguments.number(timeoutOption, 1, longestTimeout) ? std::nullopt : std::optional(wrongUsage);
}

std::optional<int> LinkJob::open(const Arguments &arguments)
{
    m_timeout = std::chrono::seconds(*arguments.number(timeoutOption, 1, longestTimeout));
    if (arguments.isSet(logOption)) {
        if (const Status opened = m_log.open(arguments.value(logOption)); !opened) {
            return fail(opened.message()); // before the module hears of anything
        }
    }
    const QString address = arguments.value(isEthernet() ? ethernetOption : serialOption);
    m_address = address;
    if (!isEthernet() && address == QLatin1String("auto")) {
        m_search = std::make_unique<PortSearch>(*m_line, m_timers, [] { return serialPorts(); });
        QObject::connect(m_search.get(), &PortSearch::refused, &m_session,
                         [](const QString &reason) { complain(reason); });
        QObject::connect(m_search.get(), &PortSearch::gaveUp, &m_session,
                         [this] { abandon(QStringLiteral("no module was found at any serial port")); });
        QObject::connect(&m_session, &ModuleSession::caught, m_search.get(), &PortSearch::stop);
        QObject::connect(&m_session, &ModuleSession::commandSent, m_search.get(), &PortSearch::stop);
        m_search->start();
    } else if (const Status opened = m_session.open(address); !opened) {
        return fail(opened.message());
    }
    m_session.setTimeout(m_timeout);
    return std::nullopt;
}

int LinkJob::run()
{
    const int code = m_exitCode ? *m_exitCode : QCoreApplication::exec();
    const auto *udp = qobject_cast<const UdpTransport *>(m_line.get());
    if (udp != nullptr && udp->foreignDatagrams() > 0) {
        complain(QStringLiteral("datagrams of strangers, not looked at: %1").arg(udp->foreignDatagrams()));
    }
    return code;
}

QString LinkJob::lineName() const
{
    return m_search != nullptr ? m_search->port() : m_address;
}

void LinkJob::finish(int code)
{
    m_session.setQuiet(true);
    if (!m_exitCode) {
        m_exitCode = code;
        QCoreApplication::exit(code);
    }
}

void LinkJob::abandon(const QString &message)
{
    if (!m_exitCode) {
        finish(failed);
        complain(m_state ? message + QLatin1String("; ") + m_state() : message);
    }
}

void LinkJob::finishWhenDrained(int code)
{
    m_codeWhenDrained = code;
    m_session.setQuiet(true); // a module that restarts now must not be caught by a program that is ending
    m_session.setTimeout(Milliseconds{0});
    m_session.whenDrained([this, code] { finish(code); });
}

} // namespace ktr::cli
