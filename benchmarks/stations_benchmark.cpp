// What watching many stations costs: the processor time of a datagram through the sockets and the stations
// beside a bare epoll loop that receives the same datagrams on as many sockets, both fed by another process;
// the memory of a station; the time of opening and announcing all of them.
//
//     stations_benchmark [stations ...]        1000 and 9900 unless named

#include "datagram_load.h"
#include "figures.h"
#include "link/io_thread.h"
#include "opmode/operational_mode.h"
#include "opmode/station/station.h"
#include "opmode/station/station_sockets.h"
#include "platform/exclusive_port.h"
#include "platform/files.h"
#include "process_cost.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <malloc.h>
#include <map>
#include <random>
#include <sys/epoll.h>

using namespace ktr;

namespace {

constexpr double microsecond = 1e-6;

std::string named(const std::string &what, int stations)
{
    return what + ", " + std::to_string(stations) + " stations";
}

double wallTime()
{
    return double(QueuedCallbackTimers::steadyTime().count()) / 1'000;
}

/// At a port that is free.
int boundSocket()
{
    const int socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK, 0);
    const sockaddr_in address = loopback(0);
    if (socket < 0 || ::bind(socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0) {
        giveUp("socket");
    }
    return socket;
}

quint16 portOf(int socket)
{
    sockaddr_in address{};
    socklen_t length = sizeof address;
    ::getsockname(socket, reinterpret_cast<sockaddr *>(&address), &length);
    return ntohs(address.sin_port);
}

/// The least of a few runs: other programs only ever add to it.
template <class Measured> double least(Measured &measured, Load &load, const Traffic &traffic)
{
    double time = measured.measure(load, traffic);
    for (int i = 1; i < 3; ++i) {
        time = std::min(time, measured.measure(load, traffic));
    }
    return time;
}

// The floor --------------------------------------------------------------------------------------------

class BareLoop
{
public:
    explicit BareLoop(int count) : m_epoll(::epoll_create1(0))
    {
        for (int i = 0; i < count; ++i) {
            const int socket = boundSocket();
            epoll_event event{};
            event.events = EPOLLIN;
            event.data.fd = socket;
            ::epoll_ctl(m_epoll, EPOLL_CTL_ADD, socket, &event);
            m_sockets.push_back(socket);
            m_ports.push_back(portOf(socket));
        }
    }
    ~BareLoop()
    {
        std::ranges::for_each(m_sockets, ::close);
        ::close(m_epoll);
    }
    Q_DISABLE_COPY_MOVE(BareLoop)

    /// Microseconds of the processor a datagram.
    double measure(Load &load, const Traffic &traffic)
    {
        load.send(traffic, m_ports);
        const double before = processorTime();
        int received = 0;
        while (received < traffic.datagrams) {
            epoll_event events[256];
            const int ready = ::epoll_wait(m_epoll, events, 256, 2'000);
            if (ready <= 0) {
                std::printf("    lost %d at the bare loop\n", traffic.datagrams - received);
                break;
            }
            for (int i = 0; i < ready; ++i) {
                char input[2048];
                while (::recv(events[i].data.fd, input, sizeof input, 0) >= 0) {
                    ++received;
                }
            }
        }
        return (processorTime() - before) / traffic.datagrams / microsecond;
    }

private:
    int m_epoll;
    std::vector<int> m_sockets;
    std::vector<quint16> m_ports;
};

// The stations -----------------------------------------------------------------------------------------

struct CountingOwner : StationOwner
{
    void station_message(const QString &, const QString &) override { ++messages; }
    void stationChanged(const QString &, StationChange) override {}
    void stationTrouble(const QString &kennung, const QString &text) override
    {
        std::printf("    station %s: %s\n", qPrintable(kennung), qPrintable(text));
    }
    int messages = 0;
};

class Stations
{
public:
    explicit Stations(int count) : m_count(count), m_module(boundSocket())
    {
        m_address = QStringLiteral("127.0.0.1:%1").arg(portOf(m_module));
    }
    ~Stations()
    {
        m_stations.clear();
        m_lines.clear();
        ::close(m_module);
    }
    Q_DISABLE_COPY_MOVE(Stations)

    /// All of them, until the last announcement is with the system.
    void open()
    {
        ::malloc_trim(0);
        const double before = residentMemory();
        const double start = wallTime();
        for (int i = 0; i < m_count; ++i) {
            m_lines.push_back(m_sockets.createLine());
            m_stations.push_back(
                std::make_unique<cStation>(QString::number(i), *m_lines.back(), m_registry, m_owner));
            m_stations.back()->setHostAddress(m_address);
            m_stations.back()->connectStation();
        }
        m_io.run([] {});
        const double opened = wallTime() - start;
        QCoreApplication::processEvents();
        std::printf("  opened and announced in %.2f s\n", opened);
        constexpr double mostAStation = 12 * 1024;
        figures::row(named("memory of a station beside its nodes", m_count),
                     (residentMemory() - before) / m_count, figures::Unit::Bytes, mostAStation);
    }

    /// The ports that the stations listen at, learnt from their announcements.
    void learnPorts()
    {
        std::map<quint16, bool> known;
        for (int round = 0; round < 50 && int(known.size()) < m_count; ++round) {
            for (const auto &station : m_stations) {
                station->Tmr_eth_brokenConnection_Timer();
                if (&station == &m_stations.back() || station->kennung().toInt() % 50 == 0) {
                    m_io.run([] {});
                    hear(known);
                }
            }
        }
        for (const auto &[port, heard] : known) {
            m_ports.push_back(quint16(port + 1));
        }
        std::ranges::shuffle(m_ports, std::minstd_rand());
        if (int(m_ports.size()) != m_count) {
            std::printf("  only %d stations are heard\n", int(m_ports.size()));
        }
    }

    double measure(Load &load, const Traffic &traffic)
    {
        QCoreApplication::processEvents();
        const int expected = traffic.datagrams / int(std::size(lines));
        m_owner.messages = 0;
        QTimer deadline;
        deadline.callOnTimeout([] { QCoreApplication::exit(1); });
        QTimer check;
        check.callOnTimeout([this, expected] {
            if (m_owner.messages >= expected) {
                QCoreApplication::exit(0);
            }
        });
        deadline.start(traffic.datagrams * 1'000 / traffic.perSecond + 3'000);
        check.start(100);
        load.send(traffic, m_ports);
        const double before = processorTime();
        QCoreApplication::exec();
        const double used = processorTime() - before;
        if (m_owner.messages != expected) {
            std::printf("    %d messages of %d\n", m_owner.messages, expected);
        }
        return used / traffic.datagrams / microsecond;
    }

private:
    void hear(std::map<quint16, bool> &known) const
    {
        char input[64];
        sockaddr_in from{};
        socklen_t length = sizeof from;
        while (::recvfrom(m_module, input, sizeof input, 0, reinterpret_cast<sockaddr *>(&from), &length) >=
               0) {
            known[ntohs(from.sin_port)] = true;
        }
    }

    int m_count;
    int m_module; ///< all stations watch the same one
    QString m_address;
    IoThread m_io;
    EventLoopTimers m_timers;
    QueuedCallbackTimers m_callbacks{m_timers};
    MLiteTimer m_registry{m_callbacks};
    CountingOwner m_owner;
    StationSockets m_sockets{m_io};
    std::vector<std::unique_ptr<StationLine>> m_lines;
    std::vector<std::unique_ptr<cStation>> m_stations;
    std::vector<quint16> m_ports;
};

// The operational mode ---------------------------------------------------------------------------------

/// From the list of the stations to the last announcement and the tree.
void openOperationalMode(int count)
{
    NodeStore nodes;
    for (int i = 0; i < count; ++i) {
        const std::string name = "Station " + std::to_string(i);
        nodes.add(NodeStore::root, name, name, StationTree::normalColour);
    }
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("nodes.xml"));
    StationAttributes station;
    station.hostAddress = QStringLiteral("127.0.0.1");
    station.online = true;
    if (!replaceFile(path, writeNodes(nodes, [&station](const QString &) { return station; }))) {
        giveUp("nodes.xml");
    }
    ::malloc_trim(0);
    const double before = residentMemory();
    IoThread io;
    EventLoopTimers timers;
    StationSockets sockets(io);
    const double start = wallTime();
    OperationalMode mode({systemEnvironment(), timers, [&sockets] { return sockets.createLine(); }},
                         {QStringLiteral("Notifications"), QStringLiteral("History"), QStringLiteral("IP")});
    if (!mode.open(path, OperationalMode::Use::Keep)) {
        giveUp("operational mode");
    }
    io.run([] {});
    std::printf(
        "  operational mode without its window: open in %.2f s, %.1f KiB a station with its 22 nodes\n",
        wallTime() - start, (residentMemory() - before) / count / 1024);
}

} // namespace

int main(int argc, char **argv)
{
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    Load load; // before there are threads
    QCoreApplication application(argc, argv);
    raiseDescriptorLimit();
    std::vector<int> counts;
    for (int i = 1; i < argc; ++i) {
        counts.push_back(std::atoi(argv[i]));
    }
    if (counts.empty()) {
        counts = {1'000, 9'900};
    }
    for (const int count : counts) {
        std::vector<double> floor;
        {
            BareLoop bare(count);
            for (const Traffic &traffic : traffics) {
                floor.push_back(least(bare, load, traffic));
            }
        }
        std::printf("%d stations\n", count);
        openOperationalMode(count);
        Stations stations(count);
        stations.open();
        stations.learnPorts();
        for (std::size_t i = 0; i < std::size(traffics); ++i) {
            const double used = least(stations, load, traffics[i]);
            figures::row(named(std::string("a datagram, ") + traffics[i].name, count), used * microsecond,
                         figures::Unit::Seconds, figures::unbounded,
                         figures::Floor{floor[i] * microsecond, "bare epoll loop", 4});
        }
    }
    return figures::exitCode();
}
