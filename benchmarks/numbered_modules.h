#pragma once

// Modules in a process of their own that send numbered messages at a steady pace, each from an address of its
// own, and leave a note of every one of them in memory that both processes have.

#include "config/channels.h"
#include "datagram_load.h"
#include "opmode/station/station_messages.h"
#include "simulator/fleet.h"

#include <arpa/inet.h>
#include <atomic>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <random>
#include <string>
#include <sys/mman.h>

/// What is known of a message that was sent.
struct SentMessage
{
    std::atomic<qint64> at; ///< nanoseconds of the steady clock, before the datagram that ends it; 0: not yet
    int station;
    int channel;   ///< the last one whose value is the number of the message; 0 for a notification
    bool isReport; ///< of all channels
};

inline qint64 steadyNanoseconds()
{
    return std::chrono::steady_clock::now().time_since_epoch().count();
}

class NumberedModules
{
public:
    struct Plan
    {
        int stations;
        int messages;
        int perSecond;
        int floodPerSecond = 0; ///< datagrams of the first module, which then sends nothing else
        int floodBytes = 0;     ///< of each of them
    };
    /// The first report of each station has all its values, and these come faster.
    static constexpr int reportsPerSecond = 500;
    /// Every so many is a notification, which is kept as an entry of its own; all others are values.
    static constexpr int notificationEvery = 50;

    /// To be made before there are threads.
    explicit NumberedModules(const Plan &plan) : m_plan(plan)
    {
        const std::size_t bytes = sizeof(SentMessage) * std::size_t(plan.messages);
        void *memory =
            ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS | MAP_POPULATE, -1, 0);
        if (memory == MAP_FAILED || ::pipe(m_start) != 0) {
            giveUp("no memory or pipe to share");
        }
        m_sent = static_cast<SentMessage *>(memory);
        for (int station = 0; station < plan.stations; ++station) {
            open(station);
        }
        m_process = ::fork();
        if (m_process == 0) {
            ::close(m_start[1]);
            serve();
        }
        ::close(m_start[0]);
        for (const Module &module : m_modules) {
            ::close(module.socket);
        }
    }
    ~NumberedModules()
    {
        ::close(m_start[1]);
        if (!m_isOver) {
            ::waitpid(m_process, nullptr, 0);
        }
        ::munmap(m_sent, sizeof(SentMessage) * std::size_t(m_plan.messages));
    }
    Q_DISABLE_COPY_MOVE(NumberedModules)

    /// "host:port" of a module.
    QString address(int station) const { return m_modules[std::size_t(station)].address; }

    /// So many stations announced themselves: they are heard first, then their modules send.
    void start(int connected)
    {
        if (::write(m_start[1], &connected, sizeof connected) != ssize_t(sizeof connected)) {
            giveUp("pipe");
        }
    }
    const SentMessage &sent(int number) const { return m_sent[number]; }
    /// Whether all were sent, or the modules gave up.
    bool isOver()
    {
        m_isOver = m_isOver || ::waitpid(m_process, nullptr, WNOHANG) != 0;
        return m_isOver;
    }

private:
    struct Module
    {
        int socket;
        QString address;
        quint16 stationPort = 0; ///< where the station listens; 0 until it was heard
    };

    void open(int station)
    {
        const QString host = ktr::Fleet::address(station);
        sockaddr_in address = loopback(0);
        ::inet_pton(AF_INET, qPrintable(host), &address.sin_addr);
        const int socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK, 0);
        socklen_t length = sizeof address;
        if (socket < 0 || ::bind(socket, reinterpret_cast<const sockaddr *>(&address), length) != 0 ||
            ::getsockname(socket, reinterpret_cast<sockaddr *>(&address), &length) != 0) {
            giveUp("a module's socket");
        }
        m_modules.push_back({socket, QStringLiteral("%1:%2").arg(host).arg(ntohs(address.sin_port))});
    }

    /// A station sends from the port below the one where it listens.
    static void hear(Module &module)
    {
        char input[256];
        sockaddr_in from{};
        socklen_t length = sizeof from;
        while (::recvfrom(module.socket, input, sizeof input, 0, reinterpret_cast<sockaddr *>(&from),
                          &length) >= 0) {
            module.stationPort = quint16(ntohs(from.sin_port) + 1);
        }
    }

    static void say(const Module &module, const std::string &text)
    {
        const sockaddr_in to = loopback(module.stationPort);
        ::sendto(module.socket, text.data(), text.size(), 0, reinterpret_cast<const sockaddr *>(&to),
                 sizeof to);
    }

    [[noreturn]] void serve()
    {
        int connected = 0;
        if (::read(m_start[0], &connected, sizeof connected) != ssize_t(sizeof connected)) {
            std::_Exit(1);
        }
        std::vector<int> heard;
        constexpr int tries = 1'000;
        for (int attempt = 0; attempt < tries && int(heard.size()) < connected; ++attempt) {
            heard.clear();
            for (int station = 0; station < m_plan.stations; ++station) {
                hear(m_modules[std::size_t(station)]);
                if (m_modules[std::size_t(station)].stationPort != 0) {
                    heard.push_back(station);
                }
            }
            ::usleep(10'000);
        }
        if (heard.empty() || int(heard.size()) < connected) {
            std::fprintf(stderr, "only %d of %d stations are heard\n", int(heard.size()), connected);
            std::_Exit(1);
        }
        const pid_t flood = m_plan.floodPerSecond > 0 ? startFlood(heard.front()) : -1;
        if (flood > 0) {
            heard.erase(heard.begin());
        }
        std::minstd_rand random;
        std::uniform_real_distribution<double> within(0, 1);
        qint64 due = steadyNanoseconds();
        for (int number = 0; number < m_plan.messages; ++number) {
            const bool isReport = number < int(heard.size());
            const qint64 slot = 1'000'000'000 / (isReport ? reportsPerSecond : m_plan.perSecond);
            waitUntil(due + qint64(within(random) * double(slot)));
            due += slot;
            send(number, heard[std::size_t(number) % heard.size()], isReport, int(heard.size()));
        }
        if (flood > 0) {
            ::kill(flood, SIGKILL);
            ::waitpid(flood, nullptr, 0);
        }
        std::_Exit(0);
    }

    /// Another process, so that the others keep their pace.
    pid_t startFlood(int station) const
    {
        const pid_t process = ::fork();
        if (process != 0) {
            return process;
        }
        const std::string line = std::string(std::size_t(m_plan.floodBytes - 1), 'x') + '\r';
        constexpr int burst = 20;
        qint64 due = steadyNanoseconds();
        for (;;) {
            for (int i = 0; i < burst; ++i) {
                say(m_modules[std::size_t(station)], line);
            }
            due += qint64{burst} * 1'000'000'000 / m_plan.floodPerSecond;
            waitUntil(due);
        }
    }

    void send(int number, int station, bool isReport, int heard)
    {
        const std::string text = std::to_string(number);
        std::string message = "R";
        int channel = ktr::channelCount;
        if (isReport) {
            for (int value = 0; value < ktr::channelCount; ++value) {
                message += ',';
                message += text;
            }
        } else if (number % notificationEvery == 0) {
            channel = 0;
            message = "M,Load " + text;
        } else {
            channel = 1 + number / heard % ktr::channelCount;
            message += ',' + std::to_string(channel) + ',';
            message += text;
        }
        Module &module = m_modules[std::size_t(station)];
        hear(module);
        say(module, "at+cmgs=\"+491\"\r");
        SentMessage &sent = m_sent[number];
        sent.station = station;
        sent.channel = channel;
        sent.isReport = isReport;
        sent.at = steadyNanoseconds();
        say(module, message + '\x1A');
    }

    static void waitUntil(qint64 nanoseconds)
    {
        timespec time{};
        time.tv_sec = nanoseconds / 1'000'000'000;
        time.tv_nsec = nanoseconds % 1'000'000'000;
        clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &time, nullptr);
    }

    Plan m_plan;
    SentMessage *m_sent = nullptr;
    int m_start[2]{};
    std::vector<Module> m_modules;
    pid_t m_process = -1;
    bool m_isOver = false;
};
