// The operational mode under load: modules in another process send numbered messages through real sockets.
// Tells whether each was seen exactly once in the tree and is in the file at the end, how long it took from
// the datagram to the tree, and what memory it took. Runs under a minute have no bounds of time and memory.
//
//     load_run STATIONS SECONDS MESSAGES_A_SECOND [DESCRIPTORS [FLOOD_A_SECOND BYTES]]
//
// With DESCRIPTORS the program has no more than so many: stations beyond are refused, and the file is
// written all the same. With FLOOD_A_SECOND one module sends nothing but so many datagrams of so many bytes;
// the others' messages are those that count.

#include "figures.h"
#include "link/io_thread.h"
#include "numbered_modules.h"
#include "opmode/keeping/nodes_file.h"
#include "opmode/operational_mode.h"
#include "opmode/station/station_sockets.h"
#include "platform/exclusive_port.h"
#include "platform/files.h"
#include "process_cost.h"
#include "record/record_reader.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <sys/resource.h>

using namespace ktr;

namespace {

struct Options
{
    int stations;
    int seconds;
    int perSecond;
    int descriptors; ///< 0: as many as there are
    int floodPerSecond;
    int floodBytes;

    int messages() const { return stations + seconds * perSecond; }
    bool isBounded() const { return seconds >= 60; }
};

QString stationName(int station)
{
    return QStringLiteral("Station %1").arg(station);
}

/// Behind the last of that character; -1 when there is no number.
int numberBehind(const QString &text, QChar mark)
{
    bool isNumber = false;
    const int number = QStringView(text).sliced(text.lastIndexOf(mark) + 1).toInt(&isNumber);
    return isNumber ? number : -1;
}

/// Follows every message on its way through the operational mode.
class Witness
{
public:
    Witness(OperationalMode &mode, const NumberedModules &modules, const Options &options)
        : m_modules(modules),
          m_options(options),
          m_told(std::size_t(options.messages())),
          m_seen(std::size_t(options.messages())),
          m_latencies(m_seen.size()) // not to grow while memory is watched
    {
        StationTree &tree = mode.tree();
        QObject::connect(&mode, &OperationalMode::happened, &tree, [this](const StationEvent &event) {
            using Kind = StationEvent::Kind;
            if (event.kind == Kind::Notification || event.kind == Kind::Values) {
                const int number = numberBehind(event.text, event.kind == Kind::Values ? u',' : u' ');
                if (isMessage(number)) {
                    ++m_told[std::size_t(number)];
                }
            }
        });
        QObject::connect(&tree, &QAbstractItemModel::rowsInserted, &tree,
                         [this, &tree](const QModelIndex &branch, int first, int last) {
                             for (int row = first; row <= last; ++row) {
                                 see(numberBehind(tree.index(row, 0, branch).data().toString(), u' '),
                                     branch.parent().row(), 0);
                             }
                         });
        QObject::connect(&tree, &QAbstractItemModel::dataChanged, &tree,
                         [this](const QModelIndex &index, const QModelIndex &, const QList<int> &roles) {
                             if (roles.contains(Qt::DisplayRole) && index.parent().parent().isValid()) {
                                 see(numberBehind(index.data().toString(), u' '),
                                     index.parent().parent().row(), index.row() + 1);
                             }
                         });
    }

    bool hasSeenAll() const { return m_seenOnce == m_options.messages(); }
    int wrong() const { return m_wrong; }
    /// Messages that were not told, or not seen in the tree, exactly once.
    int lostOrDoubled() const
    {
        int count = 0;
        for (std::size_t number = 0; number < m_seen.size(); ++number) {
            count += m_seen[number] != 1 || m_told[number] != 1 ? 1 : 0;
        }
        return count;
    }
    /// Milliseconds; share 1 for the slowest.
    double latency(double share)
    {
        if (m_measured == 0) {
            return 0;
        }
        m_latencies.resize(m_measured);
        std::ranges::sort(m_latencies);
        const auto last = double(m_measured - 1);
        return double(m_latencies[std::size_t(share * last)]) * 1e-6;
    }

private:
    bool isMessage(int number)
    {
        const bool known = number >= 0 && number < m_options.messages();
        m_wrong += known ? 0 : 1;
        return known;
    }

    void see(int number, int station, int channel)
    {
        if (!isMessage(number)) {
            return;
        }
        const SentMessage &sent = m_modules.sent(number);
        if (sent.channel != channel) {
            return; // one of the other values of a report
        }
        m_wrong += sent.station == station ? 0 : 1;
        if (++m_seen[std::size_t(number)] == 1) {
            ++m_seenOnce;
            if (!sent.isReport) {
                m_latencies[m_measured++] = steadyNanoseconds() - sent.at;
            }
        }
    }

    const NumberedModules &m_modules;
    const Options &m_options;
    std::vector<quint8> m_told;
    std::vector<quint8> m_seen;
    std::vector<qint64> m_latencies; ///< nanoseconds, of those that were measured
    std::size_t m_measured = 0;
    int m_seenOnce = 0;
    int m_wrong = 0; ///< without a number, or at another station
};

void writeStations(const QString &path, const NumberedModules &modules, int count)
{
    NodeStore nodes;
    QHash<QString, StationAttributes> attributes;
    for (int station = 0; station < count; ++station) {
        const std::string name = stationName(station).toStdString();
        nodes.add(NodeStore::root, name, name, StationTree::normalColour);
        StationAttributes &own = attributes[stationName(station)];
        own.hostAddress = modules.address(station);
        own.online = true;
    }
    if (!replaceFile(path, writeNodes(nodes, [&](const QString &name) { return attributes.value(name); }))) {
        giveUp("nodes.xml");
    }
}

/// Nodes of the file that are not as the messages left them.
int wrongNodes(const QString &path, const NumberedModules &modules, const Options &options)
{
    QHash<QString, int> expected; // by the keys: the message that was last there
    for (int number = 0; number < options.messages(); ++number) {
        const SentMessage &sent = modules.sent(number);
        const QString name = stationName(sent.station);
        if (sent.channel == 0) {
            expected[name + QStringLiteral("/meldung/+491 --> M,Load %1").arg(number)] = number;
        }
        for (int channel = sent.isReport ? 1 : sent.channel; channel > 0 && channel <= sent.channel;
             ++channel) {
            expected[name + QStringLiteral("/ip/ip%1").arg(channel)] = number;
        }
    }
    QByteArray document;
    int wrong = 0;
    const auto take = [&](const StoredNode &node) {
        const auto found = expected.constFind(QString::fromUtf8(node.key.data(), qsizetype(node.key.size())));
        if (found != expected.cend()) {
            const QString text = QString::fromUtf8(node.text.data(), qsizetype(node.text.size()));
            wrong += numberBehind(text, u' ') == *found ? 0 : 1;
            expected.erase(found);
        }
    };
    QStringList remarks;
    if (!readFile(path, document) || !readNodes(document, remarks, take) || !remarks.isEmpty()) {
        return options.messages();
    }
    return wrong + int(expected.size());
}

/// Takes every descriptor that is left.
class NoDescriptors
{
public:
    NoDescriptors()
    {
        for (int file = 0; (file = ::open("/dev/null", O_RDONLY | O_CLOEXEC)) >= 0;) {
            m_files.push_back(file);
        }
    }
    ~NoDescriptors() { std::ranges::for_each(m_files, ::close); }
    Q_DISABLE_COPY_MOVE(NoDescriptors)
    std::size_t count() const { return m_files.size(); }

private:
    std::vector<int> m_files;
};

/// With none left, files are written or it is told why not, and nothing of the changes is lost.
bool outlivesTheLastDescriptor(OperationalMode &mode)
{
    const NoDescriptors none;
    const bool keeps = mode.keepsChanges();
    const Status closed = mode.close();
    std::printf("the last %zu descriptors taken: changes are %s, the file is %s\n", none.count(),
                keeps ? "kept" : "not kept",
                closed ? "written" : qPrintable(QStringLiteral("not written: ") + closed.message()));
    return keeps && (closed || !closed.message().isEmpty());
}

/// Memory once all is warm, and the most that there was since; without the pages of the record that its cache
/// holds, for it holds them all until it is full.
class Memory
{
public:
    /// Without a record that cannot be opened for want of descriptors.
    explicit Memory(const QString &record) : m_record(record) {}

    void look()
    {
        constexpr qint64 cache = qint64{32} << 20;
        constexpr double ofAPage = 4368.0 / 4096.0; // what the library asks for to hold one
        qint64 pages = 0;
        if (!m_record.path().isEmpty() && !m_record.size(pages)) {
            giveUp("the record's size");
        }
        most = std::max(most, residentMemory() - std::min(double(pages) * ofAPage, double(cache)));
        warm = warm > 0 ? warm : most;
    }
    double growth() const { return (most - warm) / warm * 100; }

    double warm = 0;
    double most = 0;

private:
    RecordReader m_record;
};

/// Lets the modules send and waits for what they sent. Gives what part of a processor it took, in percent.
double play(NumberedModules &modules, Witness &witness, Memory &memory, const Options &options, int connected)
{
    const qint64 reports = qint64(connected) * 1'000 / NumberedModules::reportsPerSecond;
    const qint64 warm = reports + options.seconds * 100; // a tenth of the run
    constexpr qint64 patience = 5'000;
    QElapsedTimer clock;
    QElapsedTimer sinceEnd;
    int minutes = 0;
    QTimer look;
    look.callOnTimeout([&] {
        if (clock.elapsed() >= warm) {
            memory.look();
        }
        if (clock.elapsed() / 60'000 > minutes) {
            std::printf("%d min: %.1f MiB\n", ++minutes, residentMemory() / (1 << 20));
            std::fflush(stdout);
        }
        if (modules.isOver() && !sinceEnd.isValid()) {
            sinceEnd.start();
        }
        if (sinceEnd.isValid() && (witness.hasSeenAll() || sinceEnd.elapsed() > patience)) {
            QCoreApplication::quit();
        }
    });
    look.start(200);
    clock.start();
    const double before = processorTime();
    modules.start(connected);
    QCoreApplication::exec();
    return (processorTime() - before) / double(clock.elapsed()) * 1e5;
}

QString numbers(const char *format, auto... values)
{
    return QString::asprintf(format, values...);
}

void run(const Options &options)
{
    NumberedModules modules({options.stations, options.messages(), options.perSecond, options.floodPerSecond,
                             options.floodBytes});
    if (options.descriptors > 0) {
        const rlimit limit{rlim_t(options.descriptors), rlim_t(options.descriptors)};
        ::setrlimit(RLIMIT_NOFILE, &limit);
    }
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("nodes.xml"));
    writeStations(path, modules, options.stations);
    EventLoopTimers timers;
    IoThread io;
    StationSockets sockets(io);
    OperationalMode mode({systemEnvironment(), timers, [&sockets] { return sockets.createLine(); }},
                         {QStringLiteral("Notifications"), QStringLiteral("History"), QStringLiteral("IP")});
    int refused = 0;
    QObject::connect(&mode, &OperationalMode::statusMessage, &mode, [&refused](const QString &line) {
        if (++refused == 1) {
            std::printf("told first: %s\n", qPrintable(line));
        }
    });
    if (!mode.open(path, OperationalMode::Use::Keep)) {
        giveUp("operational mode");
    }
    io.run([] {});
    Witness witness(mode, modules, options);
    Memory memory(options.descriptors > 0 ? QString() : mode.recordPath());
    const int connected = options.stations - refused;
    const double share = play(modules, witness, memory, options, connected);

    const bool outlives = options.descriptors == 0 || outlivesTheLastDescriptor(mode);
    if (const Status closed = mode.isOpen() ? mode.close() : Status::done(); !closed) {
        std::printf("not saved: %s\n", qPrintable(closed.message()));
    }
    QString load =
        numbers("%d stations, %d messages/s for %d s", options.stations, options.perSecond, options.seconds);
    if (options.floodPerSecond > 0) {
        load += numbers(", one flooding with %d datagrams/s of %d bytes", options.floodPerSecond,
                        options.floodBytes);
    }
    const int latest = options.floodPerSecond > 0 ? 50 : 20; // ms
    const auto row = [&load](const char *what, const QString &measured, const char *bound, bool isKept) {
        figures::row((load + QLatin1String(what)).toStdString(), measured.toStdString(), bound, isKept);
    };
    if (options.descriptors > 0) {
        row(qPrintable(
                numbers(", with %d descriptors: stations connected, the others told", options.descriptors)),
            numbers("%d", connected), "", refused > 0 && connected > 0 && outlives);
    }
    const int lost = witness.lostOrDoubled();
    row(": messages not seen exactly once in the tree", numbers("%d of %d", lost, options.messages()), "0",
        lost == 0 && witness.wrong() == 0);
    const int wrong = wrongNodes(path, modules, options);
    row(": nodes of the file at the end that are not as the messages left them", numbers("%d", wrong), "0",
        wrong == 0);
    row(": datagram sent to entry in the tree, median / 99 % / slowest",
        numbers("%.1f / %.1f / %.1f ms", witness.latency(0.5), witness.latency(0.99), witness.latency(1)),
        options.isBounded() ? qPrintable(numbers("99 %%: %d ms", latest)) : "",
        !options.isBounded() || witness.latency(0.99) <= latest);
    row(": resident memory without cached pages of the record, after a tenth of it / the most since",
        numbers("%.1f / %.1f MiB (+%.1f %%)", memory.warm / (1 << 20), memory.most / (1 << 20),
                memory.growth()),
        options.isBounded() ? "+2 %" : "", !options.isBounded() || memory.growth() <= 2);
    row(": share of a processor", numbers("%.1f %%", share), "", true);
}

} // namespace

int main(int argc, char **argv)
{
    const auto number = [&](int index) { return index < argc ? std::atoi(argv[index]) : 0; };
    const Options options{number(1), number(2), number(3), number(4), number(5), number(6)};
    if (options.stations < 1 || options.stations > FleetOptions::mostModules || options.seconds < 1 ||
        options.perSecond < 1 ||
        (options.floodPerSecond > 0 && (options.stations < 2 || options.floodBytes < 1))) {
        std::fprintf(stderr,
                     "load_run STATIONS SECONDS MESSAGES_A_SECOND [DESCRIPTORS [FLOOD_A_SECOND BYTES]]\n");
        return 2;
    }
    raiseDescriptorLimit(); // for the modules as well
    QCoreApplication application(argc, argv);
    run(options);
    return figures::exitCode();
}
