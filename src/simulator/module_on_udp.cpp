#include "simulator/module_on_udp.h"

#include "platform/exclusive_port.h"

#include <QObject>
#include <QSocketNotifier>

#include <asio/io_context.hpp>
#include <asio/ip/udp.hpp>

#include <array>

namespace ktr {

using asio::ip::udp;

/// The socket is read when the event loop says so; its context never runs.
struct ModuleOnUdp::Socket
{
    asio::io_context context;
    udp::socket socket{context};
    std::unique_ptr<QSocketNotifier> notifier; // goes before the socket
    udp::endpoint program;                     ///< where it is answered; port 0 before it was heard
};

namespace {

ModuleOptions overEthernet(ModuleOptions options)
{
    options.tellsEnd = true;
    return options;
}

std::optional<udp::endpoint> endpointOf(const QString &address)
{
    const qsizetype colon = address.lastIndexOf(u':');
    bool isPort = false;
    const quint16 port = address.mid(colon + 1).toUShort(&isPort);
    const QString host = colon < 0 ? QStringLiteral("127.0.0.1") : address.left(colon);
    asio::error_code error;
    const asio::ip::address_v4 local = asio::ip::make_address_v4(host.toStdString(), error);
    return isPort && !error ? std::optional(udp::endpoint(local, port)) : std::nullopt;
}

} // namespace

ModuleOnUdp::ModuleOnUdp(Timers &timers, ModuleOptions options, const DatagramFaults &faults)
    : m_toProgram(timers, faults, [this](const QByteArray &datagram) { transmit(datagram); }),
      m_toModule(timers, faults, [this](const QByteArray &datagram) { m_module.receive(datagram); }),
      m_module(
          timers, [this](const QByteArray &bytes) { m_toProgram.send(bytes); },
          overEthernet(std::move(options)))
{
    m_module.onHangUp([this] { close(); });
}

ModuleOnUdp::~ModuleOnUdp() = default;

bool ModuleOnUdp::isAddress(const QString &address)
{
    return endpointOf(address).has_value();
}

Status ModuleOnUdp::open(const QString &address)
{
    const std::optional<udp::endpoint> local = endpointOf(address);
    if (!local) {
        return Status::failed(address + QStringLiteral(": is neither PORT nor ADDRESS:PORT"));
    }
    asio::error_code error;
    auto opened = std::make_unique<Socket>();
    opened->socket.open(udp::v4(), error);
    if (!error) {
        claimPortExclusively(opened->socket.native_handle());
        opened->socket.bind(*local, error);
    }
    if (!error) {
        opened->socket.non_blocking(true, error);
    }
    if (error) {
        return Status::failed(address + QLatin1String(": ") + QString::fromStdString(error.message()));
    }
    opened->notifier = std::make_unique<QSocketNotifier>(static_cast<qintptr>(opened->socket.native_handle()),
                                                         QSocketNotifier::Read);
    QObject::connect(opened->notifier.get(), &QSocketNotifier::activated, opened->notifier.get(),
                     [this] { read(); });
    m_socket = std::move(opened);
    m_module.start();
    return Status::done();
}

QString ModuleOnUdp::address() const
{
    if (!m_socket) {
        return {};
    }
    const udp::endpoint local = m_socket->socket.local_endpoint();
    return QString::fromStdString(local.address().to_string()) + u':' + QString::number(local.port());
}

void ModuleOnUdp::close()
{
    if (m_socket) {
        m_socket->notifier->setEnabled(false);
        m_socket->notifier.release()->deleteLater(); // it may be what called
        m_socket.reset();
    }
}

void ModuleOnUdp::read()
{
    std::array<char, 65'536> input;
    while (m_socket) { // hearing something may make the module hang up
        udp::endpoint sender;
        asio::error_code error;
        const std::size_t count = m_socket->socket.receive_from(asio::buffer(input), sender, 0, error);
        if (error == asio::error::would_block || error == asio::error::try_again) {
            return;
        }
        if (!error) { // otherwise what was sent before had nobody to reach
            m_socket->program = {sender.address(), static_cast<quint16>(sender.port() + 1)};
            m_toModule.send(QByteArray(input.data(), qsizetype(count)));
        }
    }
}

void ModuleOnUdp::transmit(const QByteArray &datagram)
{
    if (m_socket && m_socket->program.port() != 0) {
        asio::error_code lost; // like any other datagram
        m_socket->socket.send_to(asio::buffer(datagram.constData(), std::size_t(datagram.size())),
                                 m_socket->program, 0, lost);
    }
}

} // namespace ktr
