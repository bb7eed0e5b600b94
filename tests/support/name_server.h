#pragma once

#include <asio/io_context.hpp>
#include <asio/ip/udp.hpp>

#include <array>
#include <string>

namespace ktr::test {

/// A name server that knows the names that begin with "good" (an IPv4 address) and "six" (one of IPv6), and
/// that there are none that begin with "unknown". For all others it is silent.
class NameServer
{
public:
    static inline const std::string address4 = "10.1.2.3";
    static inline const std::string address6 = "fd00::7";

    explicit NameServer(asio::io_context &context)
        : m_socket(context, {asio::ip::make_address("127.0.0.1"), 0})
    {
        m_socket.set_option(asio::socket_base::receive_buffer_size(1 << 20));
        receive();
    }

    std::string address() const { return "127.0.0.1:" + std::to_string(m_socket.local_endpoint().port()); }
    int asked() const { return m_asked; }
    void close() { m_socket.close(); }

private:
    void receive()
    {
        m_socket.async_receive_from(asio::buffer(m_input), m_from,
                                    [this](const asio::error_code &error, std::size_t count) {
                                        if (!error) {
                                            answer({m_input.data(), count});
                                            receive();
                                        }
                                    });
    }

    void answer(std::string message)
    {
        ++m_asked;
        constexpr std::size_t header = 12;
        const std::size_t end = message.find('\0', header);
        const auto begins = [&](const char *name) { return message.find(name, header) == header + 1; };
        const bool isFour = message[end + 2] == 1;
        std::string address;
        if (begins("good") && isFour) {
            const auto bytes = asio::ip::make_address_v4(address4).to_bytes();
            address.assign(bytes.begin(), bytes.end());
        } else if (begins("six") && !isFour) {
            const auto bytes = asio::ip::make_address_v6(address6).to_bytes();
            address.assign(bytes.begin(), bytes.end());
        } else if (!begins("six") && !begins("unknown")) {
            return;
        }
        message.resize(end + 5);
        message[2] = '\x81'; // an answer
        message[3] = begins("unknown") ? '\x83' : '\x80';
        message[7] = address.empty() ? '\0' : '\1';
        message[11] = '\0';
        if (!address.empty()) {
            message += {'\xC0', '\x0C', '\0', message[end + 2], '\0', '\1',
                        '\0',   '\0',   '\0', '\x3C',           '\0', static_cast<char>(address.size())};
            message += address;
        }
        m_socket.send_to(asio::buffer(message), m_from);
    }

    asio::ip::udp::socket m_socket;
    asio::ip::udp::endpoint m_from;
    std::array<char, 512> m_input{};
    int m_asked = 0;
};

} // namespace ktr::test
