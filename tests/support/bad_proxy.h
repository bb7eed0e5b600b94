#pragma once

#include "support/bad_network.h"

#include <QString>

#include <asio/io_context.hpp>
#include <asio/ip/udp.hpp>
#include <asio/post.hpp>
#include <asio/steady_timer.hpp>

#include <array>
#include <memory>
#include <thread>

namespace ktr::test {

/// A bad network between a program and a module that are both on this machine, on a thread of its own. The
/// program is told the proxy's address in place of the module's.
class BadProxy
{
public:
    BadProxy(unsigned seed, quint16 modulePort)
        : m_module(asio::ip::make_address("127.0.0.1"), modulePort),
          m_toModule(seed, later(), [this](const QByteArray &bytes) { send(m_atModule, bytes, m_module); }),
          m_toProgram(seed + 1, later(), [this](const QByteArray &bytes) { send(m_front, bytes, m_program); })
    {
        // A module answers at the port after the one that it was spoken to from.
        for (quint16 port = 40'000; !m_back.is_open(); port = static_cast<quint16>(port + 2)) {
            asio::error_code taken;
            m_atModule = {m_context, asio::ip::udp::v4()};
            m_back = {m_context, asio::ip::udp::v4()};
            m_atModule.bind({m_module.address(), port}, taken);
            if (!taken) {
                m_back.bind({m_module.address(), static_cast<quint16>(port + 1)}, taken);
            }
            if (taken) {
                m_back.close();
            }
        }
        receive(m_front, m_fromProgram, [this](const QByteArray &bytes) {
            m_program = {m_fromProgram.sender.address(),
                         static_cast<quint16>(m_fromProgram.sender.port() + 1)};
            m_toModule.send(bytes);
        });
        receive(m_back, m_fromModule, [this](const QByteArray &bytes) { m_toProgram.send(bytes); });
        m_thread = std::thread([this] { m_context.run(); });
    }
    ~BadProxy()
    {
        m_context.stop();
        m_thread.join();
    }
    Q_DISABLE_COPY_MOVE(BadProxy)

    QString address() const { return QStringLiteral("127.0.0.1:%1").arg(m_front.local_endpoint().port()); }

private:
    using Socket = asio::ip::udp::socket;

    struct Input
    {
        std::array<char, 65'536> bytes;
        asio::ip::udp::endpoint sender;
    };

    void receive(Socket &socket, Input &input, const std::function<void(const QByteArray &)> &take)
    {
        socket.async_receive_from(
            asio::buffer(input.bytes), input.sender,
            [this, &socket, &input, take](const asio::error_code &error, std::size_t n) {
                if (!error) {
                    take(QByteArray(input.bytes.data(), qsizetype(n)));
                }
                receive(socket, input, take);
            });
    }

    void send(Socket &socket, const QByteArray &bytes, const asio::ip::udp::endpoint &to)
    {
        asio::error_code lost;
        socket.send_to(asio::buffer(bytes.constData(), std::size_t(bytes.size())), to, 0, lost);
    }

    BadNetwork::Later later()
    {
        return [this](Milliseconds delay, std::function<void()> call) {
            auto timer = std::make_shared<asio::steady_timer>(m_context, delay);
            timer->async_wait([timer, call = std::move(call)](const asio::error_code &) { call(); });
        };
    }

    asio::io_context m_context;
    Socket m_front{m_context, {asio::ip::make_address("127.0.0.1"), 0}};
    Socket m_atModule{m_context};
    Socket m_back{m_context};
    asio::ip::udp::endpoint m_module;
    asio::ip::udp::endpoint m_program;
    Input m_fromProgram{};
    Input m_fromModule{};
    BadNetwork m_toModule;
    BadNetwork m_toProgram;
    std::thread m_thread;
};

} // namespace ktr::test
