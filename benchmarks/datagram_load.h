#pragma once

// Datagrams of modules, sent by a process of its own so that their cost is not counted.

#include <QtGlobal>

#include <arpa/inet.h>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string_view>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

[[noreturn]] inline void giveUp(const char *what)
{
    std::perror(what);
    std::_Exit(1);
}

inline sockaddr_in loopback(quint16 port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

/// So many datagrams a second, in bursts of so many.
struct Traffic
{
    const char *name;
    int datagrams;
    int perSecond;
    int burst;
};

inline constexpr Traffic traffics[] = {{"one by one, 1,000/s", 3'000, 1'000, 1},
                                       {"bursts of 200, 10,000/s", 30'000, 10'000, 200},
                                       {"bursts of 2,000, 20,000/s", 60'000, 20'000, 2'000}};

/// What modules say; every third is an SMS.
inline constexpr std::string_view lines[] = {"+CSQ: 18,0\r\n", "at+cmgs=\"+4917012345\"\r", "R,5,12.3\x1A"};

/// Another process that sends to ports of this machine when it is asked to.
class Load
{
public:
    Load()
    {
        if (::pipe(m_orders) != 0) {
            giveUp("pipe");
        }
        m_process = ::fork();
        if (m_process == 0) {
            ::close(m_orders[1]);
            serve();
        }
        ::close(m_orders[0]);
    }
    ~Load()
    {
        ::close(m_orders[1]);
        ::waitpid(m_process, nullptr, 0);
    }
    Q_DISABLE_COPY_MOVE(Load)

    void send(const Traffic &traffic, const std::vector<quint16> &ports)
    {
        const std::size_t count = ports.size();
        write(&traffic, sizeof traffic);
        write(&count, sizeof count);
        write(ports.data(), count * sizeof(quint16));
    }

private:
    void write(const void *data, std::size_t size)
    {
        if (::write(m_orders[1], data, size) != ssize_t(size)) {
            giveUp("pipe");
        }
    }
    bool read(void *data, std::size_t size)
    {
        auto *at = static_cast<char *>(data);
        while (size > 0) {
            const ssize_t count = ::read(m_orders[0], at, size);
            if (count <= 0) {
                return false;
            }
            at += count;
            size -= std::size_t(count);
        }
        return true;
    }

    [[noreturn]] void serve()
    {
        const int socket = ::socket(AF_INET, SOCK_DGRAM, 0);
        Traffic traffic{};
        std::size_t count = 0;
        while (read(&traffic, sizeof traffic) && read(&count, sizeof count)) {
            std::vector<quint16> ports(count);
            if (!read(ports.data(), count * sizeof(quint16))) {
                break;
            }
            play(socket, traffic, ports);
        }
        std::_Exit(0);
    }

    static void play(int socket, const Traffic &traffic, const std::vector<quint16> &ports)
    {
        timespec next{};
        clock_gettime(CLOCK_MONOTONIC, &next);
        for (int i = 0; i < traffic.datagrams; ++i) {
            if (i % traffic.burst == 0) {
                next.tv_nsec += 1'000'000'000L / traffic.perSecond * traffic.burst;
                next.tv_sec += next.tv_nsec / 1'000'000'000;
                next.tv_nsec %= 1'000'000'000;
                clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &next, nullptr);
            }
            const std::size_t station = std::size_t(i) % ports.size();
            const std::string_view line = lines[std::size_t(i) % std::size(lines)];
            const sockaddr_in to = loopback(ports[station]);
            ::sendto(socket, line.data(), line.size(), 0, reinterpret_cast<const sockaddr *>(&to), sizeof to);
        }
    }

    int m_orders[2]{};
    pid_t m_process;
};
