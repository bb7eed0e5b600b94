// The program's own share of its main job: reading, writing, building commands, answering the module, and a
// whole transmission over a line of 9600 baud, as ratios to floors measured in the same run.

#include "config/configuration_file.h"
#include "config/fields.h"
#include "figures.h"
#include "link/history_export.h"
#include "link/line_assembler.h"
#include "link/module_session.h"
#include "link/reply_interpreter.h"
#include "link/serial_transport.h"
#include "link/udp_transport.h"
#include "measured_runs.h"
#include "opmode/station/lite_timer.h"
#include "platform/files.h"
#include "platform/pseudo_terminal.h"
#include "platform/text_rules.h"
#include "simulator/module_on_udp.h"
#include "simulator/virtual_module.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QTimer>
#include <QXmlStreamReader>

#include <asio/io_context.hpp>
#include <asio/post.hpp>
#include <asio/steady_timer.hpp>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <deque>
#include <fcntl.h>
#include <unistd.h>

using namespace ktr;

namespace {

Environment benchmarkEnvironment()
{
    Environment environment;
    environment.now = [] { return QDateTime(QDate(2026, 11, 16), QTime(9, 30)); };
    return environment;
}

QByteArray sampleDocument()
{
    QByteArray document;
    if (!readFile(QStringLiteral(KTR_SOURCE_DIR "/samples/pumping-station.xml"), document, 1 << 20)) {
        std::abort();
    }
    return document;
}

Configuration sampleConfiguration()
{
    Configuration configuration;
    if (!readConfiguration(sampleDocument(), configuration, benchmarkEnvironment()).document) {
        std::abort();
    }
    return configuration;
}

/// Beside the least that it costs: the toolkit's reader passing over the document.
void readingAConfiguration(benchmark::State &state)
{
    const QByteArray document = sampleDocument();
    const Environment environment = benchmarkEnvironment();
    Configuration configuration;
    compare(
        state,
        [&] { benchmark::DoNotOptimize(readConfiguration(document, configuration, environment).document); },
        [&] {
            QXmlStreamReader reader(document);
            while (!reader.atEnd()) {
                reader.readNext();
            }
            benchmark::DoNotOptimize(reader.hasError());
        });
}
BENCHMARK(readingAConfiguration)->Unit(benchmark::kMicrosecond)->UseManualTime()->Iterations(1000);

void writingAConfiguration(benchmark::State &state)
{
    const Configuration configuration = sampleConfiguration();
    const Environment environment = benchmarkEnvironment();
    for (auto _ : state) {
        benchmark::DoNotOptimize(writeConfiguration(configuration, environment));
    }
}
BENCHMARK(writingAConfiguration)->Unit(benchmark::kMicrosecond);

/// Saves bytes durably with nothing but the system's calls.
bool saveBare(const QByteArray &bytes, const std::string &folder)
{
    const std::string path = folder + "/core_benchmark_floor.xml";
    const std::string temporary = path + ".new";
    const int file = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    const int above = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const bool isSaved = ::write(file, bytes.constData(), static_cast<std::size_t>(bytes.size())) > 0 &&
                         ::fsync(file) == 0 && ::rename(temporary.c_str(), path.c_str()) == 0 &&
                         ::fsync(above) == 0;
    ::close(above);
    ::close(file);
    return isSaved;
}

void savingAConfiguration(benchmark::State &state)
{
    const Configuration configuration = sampleConfiguration();
    const Environment environment = benchmarkEnvironment();
    const QString folder = QCoreApplication::applicationDirPath();
    const QString path = folder + QStringLiteral("/core_benchmark.xml");
    const QByteArray bytes = writeConfiguration(configuration, environment);
    bool isSaved = true;
    compare(
        state,
        [&] { isSaved = isSaved && replaceFile(path, writeConfiguration(configuration, environment)); },
        [&] { isSaved = isSaved && saveBare(bytes, folder.toStdString()); });
    if (!isSaved) {
        state.SkipWithError("cannot write beside the program");
    }
    QFile::remove(path);
    QFile::remove(folder + QStringLiteral("/core_benchmark_floor.xml"));
}
BENCHMARK(savingAConfiguration)->Unit(benchmark::kMicrosecond)->UseManualTime()->Iterations(200);

void theWholeCommandSequence(benchmark::State &state)
{
    Configuration configuration = sampleConfiguration();
    const CommandContext context{true, QLocale::c(), benchmarkEnvironment().now()};
    for (auto _ : state) {
        CommandSequence sequence;
        sequence.start();
        while (const auto next = sequence.next(configuration, context)) {
            benchmark::DoNotOptimize(next->command.size());
        }
    }
}
BENCHMARK(theWholeCommandSequence)->Unit(benchmark::kMicrosecond);

/// Lines of the archive as an SMS holds them, a day's worth.
std::vector<QByteArray> archive()
{
    std::vector<QByteArray> lines;
    for (int line = 0; line < 96; ++line) {
        QByteArray text = "H,9,09111500" + QByteArray::number(10 + line % 50);
        for (int record = 0; record < 12; ++record) {
            text += (record == 0 ? QByteArray() : ",15") + "," + QByteArray::number(100 + record) + ",12.5";
        }
        lines.push_back(text);
    }
    return lines;
}
constexpr int recordsOfArchive = 96 * 12;

/// From the bytes of the lines to those of the export file.
void decodingTheArchive(benchmark::State &state)
{
    const std::vector<QByteArray> lines = archive();
    for (auto _ : state) {
        for (const QByteArray &line : lines) {
            const auto events =
                interpretReply({ModemDialogue::ReplyKind::History, {}, fromWindows1252(line)});
            benchmark::DoNotOptimize(historyCsv(std::get<HistoryReply>(events.front()).line));
        }
    }
    state.counters["records_per_second"] =
        benchmark::Counter(recordsOfArchive, benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(decodingTheArchive)->Unit(benchmark::kMicrosecond);

/// An exchange in the program alone: the module's line comes, the answer is ready to be written.
class CountingLine : public Transport
{
public:
    Status open(const QString &) override { return Status::done(); }
    void close() override {}
    bool isOpen() const override { return true; }
    void send(const QByteArray &bytes) override { sent += bytes.size(); }
    void whenDrained(std::function<void()> drained) override { drained(); }
    qint64 sent = 0;
};

void anExchangeInTheProgram(benchmark::State &state)
{
    EventLoopTimers timers;
    CountingLine line;
    ModuleSession session(line, timers, benchmarkEnvironment());
    session.setTimeout(Milliseconds(60000));
    Configuration configuration = sampleConfiguration();
    for (auto _ : state) {
        if (session.step() == steps::idle) {
            session.startTransmission(configuration, false);
        }
        Q_EMIT line.received("at+cmgr=1\r");
    }
    benchmark::DoNotOptimize(line.sent);
}
BENCHMARK(anExchangeInTheProgram)->Unit(benchmark::kMicrosecond);

/// A terminal whose other end is a serial port of the program.
struct Line
{
    PseudoTerminal terminal;
    IoThread io;
    SerialTransport port{io};
    bool isOpen = terminal.open() && port.open(terminal.slavePath());
};

/// The median time from a line of the module to what comes back, when that ends as told.
void timeRoundTrips(benchmark::State &state, Line &line, const QByteArray &end,
                    const std::function<void()> &before)
{
    QEventLoop loop;
    QByteArray answer;
    const auto connection = QObject::connect(&line.terminal, &PseudoTerminal::readyRead, &line.terminal, [&] {
        answer += line.terminal.readAll();
        if (answer.endsWith(end)) {
            loop.quit();
        }
    });
    std::vector<double> times;
    for (auto _ : state) {
        before();
        answer.clear();
        QElapsedTimer timer;
        timer.start();
        line.terminal.write("at+cmgr=1\r");
        loop.exec();
        times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e3);
    }
    QObject::disconnect(connection);
    const auto middle = times.begin() + static_cast<qsizetype>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    state.counters["median_us"] = *middle;
}

/// An exchange over a terminal and two threads.
void anExchangeOverATerminal(benchmark::State &state)
{
    EventLoopTimers timers;
    Line line;
    if (!line.isOpen) {
        state.SkipWithError("no terminal");
        return;
    }
    ModuleSession session(line.port, timers, benchmarkEnvironment());
    Configuration configuration = sampleConfiguration();
    timeRoundTrips(state, line, "\r\nOK\r\n", [&] {
        if (session.step() == steps::idle) {
            session.startTransmission(configuration, false);
        }
    });
}
BENCHMARK(anExchangeOverATerminal)->Unit(benchmark::kMicrosecond)->UseRealTime();

/// Passes bytes on at 9600 baud: a byte of ten bits each 1/960 s, in each direction by itself. A thread of
/// its own waits for each byte to the microsecond: the event loop's timers know milliseconds, and a line that
/// is late by half of one at each answer would be taken for the program's delay.
class SlowWire
{
public:
    using Arrive = std::function<void(const QByteArray &)>;

    SlowWire(IoThread &io, Arrive arrive) : m_io(io), m_arrive(std::move(arrive)), m_timer(io.context()) {}
    ~SlowWire()
    {
        m_io.run([this] { m_timer.cancel(); });
        m_io.run([] {}); // behind a wait that was over already
    }
    Q_DISABLE_COPY_MOVE(SlowWire)

    void send(const QByteArray &bytes)
    {
        const bool isIdle = m_onTheWay.empty();
        for (const char byte : bytes) {
            m_free = std::max(m_free, Clock::now()) + byteTime;
            m_onTheWay.push_back({m_free, byte});
        }
        carried += bytes.size();
        if (isIdle && !m_onTheWay.empty()) {
            waitForTheNext();
        }
    }

    static constexpr std::chrono::nanoseconds byteTime{10'000'000'000 / 9600};
    qint64 carried = 0;

private:
    using Clock = std::chrono::steady_clock;
    struct Byte
    {
        Clock::time_point arrival;
        char byte;
    };

    void waitForTheNext()
    {
        asio::post(m_io.context(), [this, arrival = m_onTheWay.front().arrival] {
            m_timer.expires_at(arrival);
            m_timer.async_wait([this](const asio::error_code &error) {
                if (!error) {
                    QMetaObject::invokeMethod(
                        &m_here, [this] { deliver(); }, Qt::QueuedConnection);
                }
            });
        });
    }
    void deliver()
    {
        QByteArray bytes;
        while (!m_onTheWay.empty() && m_onTheWay.front().arrival <= Clock::now()) {
            bytes += m_onTheWay.front().byte;
            m_onTheWay.pop_front();
        }
        if (!m_onTheWay.empty()) {
            waitForTheNext();
        }
        if (!bytes.isEmpty()) {
            m_arrive(bytes);
        }
    }

    IoThread &m_io;
    Arrive m_arrive;
    QObject m_here; ///< on the thread of both ends
    asio::steady_timer m_timer;
    Clock::time_point m_free;
    std::deque<Byte> m_onTheWay;
};

/// A whole transmission to a module that answers at once, its bytes held back to 9600 baud. The floor is
/// the time that the bytes of both directions need on the line one after the other.
void aTransmissionAt9600Baud(benchmark::State &state)
{
    for (auto _ : state) {
        EventLoopTimers timers;
        Line line;
        if (!line.isOpen) {
            state.SkipWithError("no terminal");
            return;
        }
        ModuleSession session(line.port, timers, benchmarkEnvironment());
        Configuration configuration = sampleConfiguration();
        QEventLoop loop;
        VirtualModule *module = nullptr;
        IoThread wires;
        SlowWire toProgram(wires, [&](const QByteArray &bytes) { line.terminal.write(bytes); });
        SlowWire toModule(wires, [&](const QByteArray &bytes) { module->receive(bytes); });
        VirtualModule virtualModule(timers, [&](const QByteArray &bytes) { toProgram.send(bytes); });
        module = &virtualModule;
        QObject::connect(&line.terminal, &PseudoTerminal::readyRead, &line.terminal,
                         [&] { toModule.send(line.terminal.readAll()); });
        QObject::connect(&session, &ModuleSession::caught, &session,
                         [&] { session.startTransmission(configuration, false); });
        bool configured = false;
        virtualModule.onConfigured([&](const ModuleMemory &memory) {
            configured = memory.refused == 0;
            loop.quit();
        });
        QElapsedTimer timer;
        timer.start();
        virtualModule.start();
        loop.exec();
        const double seconds = static_cast<double>(timer.nsecsElapsed()) / 1e9;
        if (!configured) {
            state.SkipWithError("the module did not understand everything");
            return;
        }
        const std::chrono::duration<double> floor =
            (toProgram.carried + toModule.carried) * SlowWire::byteTime;
        state.counters["line_bytes"] = static_cast<double>(toProgram.carried + toModule.carried);
        state.counters["floor_s"] = floor.count();
        state.counters["ratio_to_floor"] = seconds / floor.count();
    }
}
BENCHMARK(aTransmissionAt9600Baud)->Iterations(1)->Unit(benchmark::kSecond)->UseRealTime();

/// A whole transmission over the loopback network to a module that answers at once. The floor is the sum of
/// the pauses that the module is given behind each line up to the last.
void aTransmissionOverEthernet(benchmark::State &state)
{
    for (auto _ : state) {
        EventLoopTimers timers;
        IoThread io;
        UdpTransport transport(io);
        ModuleOptions options;
        options.times.readInterval = Milliseconds(0);
        ModuleOnUdp module(timers, options);
        ModuleSession session(transport, timers, benchmarkEnvironment(), LineKind::Ethernet);
        if (!module.open(QStringLiteral("0")) || !session.open(module.address())) {
            state.SkipWithError("no network");
            return;
        }
        Milliseconds floor{0};
        Milliseconds lastPause{0};
        QObject::connect(&session, &ModuleSession::logged, &session, [&](const QString &line) {
            const QString mark = QStringLiteral("eth ----> ");
            if (line.startsWith(mark)) {
                lastPause = Milliseconds(line.size() - mark.size() + 10);
                floor += lastPause;
            }
        });
        Configuration configuration = sampleConfiguration();
        QEventLoop loop;
        bool configured = false;
        module.module().onConfigured([&](const ModuleMemory &memory) {
            configured = memory.refused == 0;
            loop.quit();
        });
        QElapsedTimer timer;
        timer.start();
        session.startTransmission(configuration, false);
        loop.exec();
        const double seconds = static_cast<double>(timer.nsecsElapsed()) / 1e9;
        if (!configured) {
            state.SkipWithError("the module did not understand everything");
            return;
        }
        const double floorSeconds = static_cast<double>((floor - lastPause).count()) / 1e3;
        state.counters["floor_s"] = floorSeconds;
        state.counters["ratio_to_floor"] = seconds / floorSeconds;
    }
}
BENCHMARK(aTransmissionOverEthernet)->Iterations(1)->Unit(benchmark::kSecond)->UseRealTime();

/// The single timer behind many, whose time passes in steps.
struct SteppedTimers : Timers
{
    struct Step : OneShotTimer
    {
        explicit Step(SteppedTimers &timers) : owner(timers) {}
        void start(Milliseconds wait, std::function<void()> callback) override
        {
            owner.due = owner.now + wait;
            owner.fired = std::move(callback);
        }
        void stop() override { owner.due = Milliseconds::max(); }
        bool isRunning() const override { return owner.due != Milliseconds::max(); }
        SteppedTimers &owner;
    };
    std::unique_ptr<OneShotTimer> create() override { return std::make_unique<Step>(*this); }
    void step()
    {
        now += QueuedCallbackTimers::resolution;
        if (due <= now) {
            due = Milliseconds::max();
            const auto callback = fired;
            callback();
        }
    }
    Milliseconds now{0};
    Milliseconds due = Milliseconds::max();
    std::function<void()> fired;
};

/// Seconds that a minute's work takes with so many timers of that interval.
double minuteOfTimers(int count, qint32 interval, qint64 &events)
{
    SteppedTimers stepped;
    QueuedCallbackTimers queue(stepped, [&] { return stepped.now; });
    MLiteTimer registry(queue);
    std::vector<std::unique_ptr<CLiteTimer>> timers;
    for (int i = 0; i < count; ++i) {
        if (i % 20 == 0) {
            stepped.step(); // stations connect one after the other
        }
        timers.push_back(std::make_unique<CLiteTimer>(registry));
        timers.back()->Interval(interval);
        timers.back()->Timer = [&] { ++events; };
        timers.back()->Enabled(true);
    }
    events = 0;
    QElapsedTimer timer;
    timer.start();
    const Milliseconds end = stepped.now + std::chrono::minutes(1);
    while (stepped.now < end) {
        stepped.step();
    }
    return static_cast<double>(timer.nsecsElapsed()) / 1e9;
}

/// The share of a processor that the running timers of 10,000 stations take, four each, and its ratio to one
/// timer that fires as often as the queue wakes.
void fortyThousandTimersForAMinute(benchmark::State &state)
{
    for (auto _ : state) {
        qint64 events = 0;
        const double one = minuteOfTimers(1, QueuedCallbackTimers::resolution.count(), events);
        const double many = minuteOfTimers(40'000, 20'000, events);
        state.SetIterationTime(many);
        state.counters["share_of_a_core"] = many / 60;
        state.counters["us_per_event"] = many * 1e6 / static_cast<double>(events);
        state.counters["ratio_to_one_timer"] = many / one;
    }
}
BENCHMARK(fortyThousandTimersForAMinute)->Unit(benchmark::kMillisecond)->UseManualTime();

// Floors

/// The least that decoding the archive costs: the same bytes split at their commas.
void floorSplittingTheArchive(benchmark::State &state)
{
    const std::vector<QByteArray> lines = archive();
    for (auto _ : state) {
        for (const QByteArray &line : lines) {
            benchmark::DoNotOptimize(line.split(','));
        }
    }
    state.counters["records_per_second"] =
        benchmark::Counter(recordsOfArchive, benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(floorSplittingTheArchive)->Unit(benchmark::kMicrosecond);

/// A port whose bytes the I/O thread hands to this thread and back, without any conversation.
void floorEchoOverATerminal(benchmark::State &state)
{
    Line line;
    if (!line.isOpen) {
        state.SkipWithError("no terminal");
        return;
    }
    QObject::connect(&line.port, &Transport::received, &line.port,
                     [&](const QByteArray &bytes) { line.port.send(bytes); });
    timeRoundTrips(state, line, "\r", [] {});
}
BENCHMARK(floorEchoOverATerminal)->Unit(benchmark::kMicrosecond)->UseRealTime();

void printRows(const MeasuredRuns &runs)
{
    using figures::Floor;
    using figures::row;
    using figures::Unit;
    constexpr double microsecond = 1e-6;
    constexpr double millisecond = 1e-3;
    const auto plain = [&runs](const char *what, const char *name, double most) {
        row(what, runs.seconds(name), Unit::Seconds, most);
    };
    row("reading a configuration, document to record", runs.ownSeconds("readingAConfiguration"),
        Unit::Seconds, 5 * millisecond,
        Floor{runs.otherSeconds("readingAConfiguration"), "Qt's stream reader passing over it", 3});
    plain("writing a configuration, record to document", "writingAConfiguration", 5 * millisecond);
    row("saving it, durable (temporary file, fsync, rename, fsync of the folder)",
        runs.ownSeconds("savingAConfiguration"), Unit::Seconds, figures::unbounded,
        Floor{runs.otherSeconds("savingAConfiguration"), "the system's calls alone", 2});
    plain("the whole command sequence, steps 0 to 78", "theWholeCommandSequence", millisecond);
    plain("an exchange in the program: the module's line to the answer's bytes", "anExchangeInTheProgram",
          millisecond);
    row("an exchange over a pseudo-terminal and the I/O thread, median",
        runs.counter("anExchangeOverATerminal", "median_us") * microsecond, Unit::Seconds, millisecond,
        Floor{runs.counter("floorEchoOverATerminal", "median_us") * microsecond,
              "echoing bytes the same way"});
    row("a transmission at 9600 baud to a module that answers at once",
        runs.seconds("aTransmissionAt9600Baud"), Unit::Seconds, figures::unbounded,
        Floor{runs.counter("aTransmissionAt9600Baud", "floor_s"), "its bytes, both ways, on the line", 1.05});
    row("a transmission over Ethernet to the virtual module", runs.seconds("aTransmissionOverEthernet"),
        Unit::Seconds, figures::unbounded,
        Floor{runs.counter("aTransmissionOverEthernet", "floor_s"), "the pauses that the lines demand", 1.1});
    row("decoding the archive, received bytes to those of the export file, a record",
        runs.seconds("decodingTheArchive") / recordsOfArchive, Unit::Seconds, 5 * microsecond,
        Floor{runs.seconds("floorSplittingTheArchive") / recordsOfArchive,
              "splitting the same bytes at their commas"});
    const double timers = runs.seconds("fortyThousandTimersForAMinute");
    const double timesOne = runs.counter("fortyThousandTimersForAMinute", "ratio_to_one_timer");
    row("a minute's work of 40,000 timers, those of 10,000 stations", timers, Unit::Seconds, 0.6,
        Floor{timesOne > 0 ? timers / timesOne : 0, "one timer that fires as often as they are looked at"});
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    MeasuredRuns runs;
    benchmark::RunSpecifiedBenchmarks(&runs);
    printRows(runs);
    return figures::exitCode();
}
