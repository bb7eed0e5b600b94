// The operational mode's window with very many stations: how long it takes until 9,900 stations of a list are
// loaded, connected, announced to their modules and shown, and how long the window is held up by an avalanche
// of notifications.

#include "figures.h"
#include "link/io_thread.h"
#include "look/style.h"
#include "opmode/station/station_sockets.h"
#include "opmode/window/alarms/alarm_list_model.h"
#include "opmode/window/form_betriebsmodus.h"
#include "platform/files.h"
#include "platform/registry.h"
#include "support/recorded_line.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeView>

#include <asio/ip/udp.hpp>

#include <array>
#include <atomic>
#include <cstdio>
#include <thread>

using namespace ktr;

namespace {

constexpr int stationCount = 9'900;
constexpr int notificationCount = 100'000;

/// Counts the datagrams that arrive at a port, which stands for all modules.
class Receiver
{
public:
    Receiver() : m_socket(m_context, asio::ip::udp::endpoint(asio::ip::make_address_v4("127.0.0.1"), 0))
    {
        m_socket.set_option(asio::socket_base::receive_buffer_size(32 << 20));
        m_thread = std::thread([this] {
            std::array<char, 64> bytes;
            while (!m_isEnding) {
                asio::error_code error;
                m_socket.receive(asio::buffer(bytes), 0, error);
                ++m_count;
            }
        });
    }
    ~Receiver()
    {
        m_isEnding = true;
        m_socket.send_to(asio::buffer("end"), m_socket.local_endpoint()); // wakes it
        m_thread.join();
    }
    Q_DISABLE_COPY_MOVE(Receiver)

    quint16 port() const { return m_socket.local_endpoint().port(); }
    int count() const { return m_count; }

private:
    asio::io_context m_context;
    asio::ip::udp::socket m_socket;
    std::atomic<bool> m_isEnding = false;
    std::atomic<int> m_count = 0;
    std::thread m_thread;
};

bool writeList(const QString &path, quint16 port)
{
    QByteArray document = "<KTR>";
    for (int station = 1; station <= stationCount; ++station) {
        const QByteArray name = "Station " + QByteArray::number(station);
        document += "<item" + QByteArray::number(station) +
                    " hostAddress=\"127.0.0.1:" + QByteArray::number(port) + "\" online=\"True\" key=\"" +
                    name + "\" text=\"" + name + "\" ForeColor=\"-2147483640\"/>";
    }
    return bool(replaceFile(path, document + "</KTR>"));
}

/// Lets events happen until something is so, ten minutes at most.
template <class Condition> bool waitUntil(const Condition &condition)
{
    QElapsedTimer timer;
    timer.start();
    constexpr int longest = 600'000;
    while (!condition() && timer.elapsed() < longest) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
    }
    return condition();
}

/// The page of alarms while all of the avalanche's stand: a further one that is listed and painted, and all
/// of them acknowledged.
void manyStanding(OperationalMode &mode, Form_betriebsmodus &window, test::RecordedLine &line)
{
    window.findChild<QTabWidget *>()->setCurrentIndex(window.findChild<QTabWidget *>()->count() - 1);
    auto &list = *window.findChild<QTreeView *>(QStringLiteral("Tree_alarms"));
    (void)list.grab();
    auto &model = *window.findChild<AlarmListModel *>();
    QElapsedTimer clock;
    double slowest = 0;
    constexpr int rounds = 20;
    for (int round = 0; round < rounds; ++round) {
        line.say("at+cmgs=\"+4917012345\"\r");
        line.say("M,Late " + QByteArray::number(round) + " fail\x1A");
        const int listed = model.listedCount();
        waitUntil([&] { return mode.alarms().waiting().size() > std::size_t(listed); });
        clock.start();
        model.update();
        (void)list.grab();
        slowest = std::max(slowest, double(clock.nsecsElapsed()) / 1e9);
    }
    const std::set<qint64> waiting = mode.alarms().waiting();
    const std::string standing = std::to_string(waiting.size()) + " alarms standing: ";
    figures::row(standing + "a further one listed and painted, slowest", slowest, figures::Unit::Seconds,
                 0.1);
    clock.start();
    const bool isDone = bool(mode.acknowledgeAlarms({waiting.begin(), waiting.end()}));
    model.update();
    (void)list.grab();
    figures::row(standing + "all acknowledged, on the disk and shown",
                 isDone && mode.alarms().waiting().empty() ? double(clock.nsecsElapsed()) / 1e9 : 0,
                 figures::Unit::Seconds, 1);
}

/// Notifications that arrive as fast as the event loop turns, every tenth an alarm.
int avalanche(const QString &folder)
{
    constexpr int stations = 100;
    QDir().mkpath(folder);
    EventLoopTimers timers;
    const TextTable texts;
    std::vector<test::RecordedLine *> lines;
    OperationalMode mode({systemEnvironment(), timers,
                          [&lines] {
                              auto line = std::make_unique<test::RecordedLine>();
                              lines.push_back(line.get());
                              return line;
                          }},
                         stationCaptions(texts));
    Form_betriebsmodus window(mode, texts, {timers, {}, {}, {}});
    window.show();
    window.open(folder + QStringLiteral("/nodes.xml"));
    while (mode.stations().Count() < stations) {
        mode.addStation(QStringLiteral("Station"), QStringLiteral("127.0.0.1"));
    }
    mode.setAllOnline(true);
    QElapsedTimer turn;
    QElapsedTimer clock;
    qint64 longest = 0;
    int added = 0;
    QTimer source;
    QObject::connect(&source, &QTimer::timeout, &source, [&] {
        longest = std::max(longest, turn.elapsed());
        turn.start();
        constexpr int atOnce = 200;
        for (int n = 0; n < atOnce && added < notificationCount; ++n, ++added) {
            test::RecordedLine &line = *lines[static_cast<std::size_t>(added % stations)];
            line.say("at+cmgs=\"+4917012345\"\r");
            line.say("M,Alarm " + QByteArray::number(added) + (added % 10 == 0 ? " fail\x1A" : "\x1A"));
        }
    });
    clock.start();
    turn.start();
    source.start(0);
    waitUntil([&] { return added == notificationCount; });
    source.stop();
    std::printf("%d notifications added: %.2f s\n", notificationCount, double(clock.elapsed()) / 1000);
    figures::row("100,000 notifications arriving as fast as they can: the window held up, at most",
                 double(longest) / 1000, figures::Unit::Seconds, 0.1);
    manyStanding(mode, window, *lines.front());
    window.setAsksBeforeEnd(false);
    return window.close() ? 0 : 1;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const QTemporaryDir folder;
    MRegistry::setRegistryFile(folder.filePath(QStringLiteral("registry.json")));
    applyAppearance(application, Appearance::Light);
    Receiver modules;
    const QString path = folder.filePath(QStringLiteral("nodes.xml"));
    if (!writeList(path, modules.port())) {
        return 1;
    }
    IoThread io;
    StationSockets sockets(io);
    EventLoopTimers timers;
    const TextTable texts;
    QElapsedTimer clock;
    clock.start();
    OperationalMode mode({systemEnvironment(), timers, [&sockets] { return sockets.createLine(); }},
                         stationCaptions(texts));
    Form_betriebsmodus window(mode, texts, {timers, {}, {}, {}});
    window.show();
    window.open(path);
    if (!waitUntil([&] { return modules.count() >= stationCount; })) {
        std::printf("only %d of %d stations announced themselves\n", modules.count(), stationCount);
        return 1;
    }
    waitUntil([&] { return !window.grab().isNull(); });
    figures::row("9,900 stations loaded, connected, announced and shown", double(clock.elapsed()) / 1000,
                 figures::Unit::Seconds, 3);

    window.setAsksBeforeEnd(false);
    const bool isSound = window.close() && avalanche(folder.filePath(QStringLiteral("avalanche"))) == 0;
    return isSound ? figures::exitCode() : 1;
}
