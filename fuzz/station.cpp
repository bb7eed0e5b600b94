// Anything that a watched module may send, and what the user does meanwhile, through the whole operational
// mode but its window and sockets.
//
//     d f      a datagram; too much without an end
//     t        so many milliseconds pass
//     q        the values are asked for
//     x o h    exclusive, online, another address
//     n        the station is given another name
//     a        all is acknowledged
//     s        a schedule, daily from a time on
//     l        lent and taken back
//     +  -     a station more, or the first one removed

#include "opmode/keeping/nodes_file.h"
#include "opmode/operational_mode.h"
#include "support/environment.h"
#include "support/manual_timers.h"
#include "support/recorded_line.h"
#include "support/require.h"
#include "support/script.h"

#include <QCoreApplication>

using namespace ktr;

namespace {

/// The lines of all stations, the first one's first.
class Watched
{
public:
    Watched()
        : m_mode({environment(), m_timers, [this] { return createLine(); }, [] {},
                  test::manualCallbackTimers(m_timers)},
                 stationCaptions({}))
    {
        (void)m_mode.open(QStringLiteral("/nonexistent/nodes.xml"), OperationalMode::Use::Watch);
        add(QStringLiteral("Pump"));
    }

    void carryOut(const fuzz::Step &step)
    {
        const QModelIndex first = m_mode.tree().index(0, 0);
        const QString kennung = first.data(StationTree::KeyRole).toString();
        const QString text = QString::fromUtf8(step.bytes);
        switch (step.what) {
        case 'f':
            say(step.flood());
            break;
        case 't':
            m_timers.advance(Milliseconds(step.number(100'000)));
            break;
        case 'q':
            m_mode.requestValues(kennung);
            break;
        case 'x':
            m_mode.setExclusive(kennung, step.number(1) == 1);
            break;
        case 'o':
            m_mode.setOnline(kennung, step.number(1) == 1);
            break;
        case 'h':
            m_mode.setHostAddress(kennung, text);
            break;
        case 'n':
            m_mode.tree().setData(first, text);
            break;
        case 'a':
            fuzz::require(bool(m_mode.acknowledge({first})), "an acknowledgement is kept");
            break;
        case 's':
            m_mode.setSchedule(kennung, {text, 1, QStringLiteral("12:00"), 1});
            break;
        case 'l':
            m_mode.lend(kennung);
            m_mode.takeBack();
            break;
        case '+':
            add(text);
            break;
        case '-':
            m_mode.removeStation(kennung);
            QCoreApplication::sendPostedEvents(); // what is left of it goes
            break;
        default:
            say(step.bytes);
        }
        fuzz::require(m_mode.stations().Count() == m_mode.tree().rowCount(),
                      "each station has its branch of the tree");
        fuzz::require(m_mode.tree().alarmCount() == redNotifications(), "alarms are counted");
    }

    void check() const
    {
        const QByteArray written = writeNodes(
            m_mode.tree().nodes(), [this](const QString &kennung) { return m_mode.attributes(kennung); });
        std::size_t nodes = 0;
        QStringList remarks;
        const Status read = readNodes(written, remarks, [&nodes](const StoredNode &) { ++nodes; });
        fuzz::require(read && remarks.isEmpty(), "nodes that were written can be read");
        fuzz::require(nodes == m_mode.tree().nodes().count(), "all nodes are written");
    }

private:
    struct Line : test::RecordedLine
    {
        explicit Line(std::vector<Line *> &owner) : lines(owner) { lines.push_back(this); }
        ~Line() override { std::erase(lines, this); }
        std::vector<Line *> &lines;
    };

    Environment environment() const
    {
        Environment environment = test::fixedEnvironment();
        environment.now = [this, start = environment.now()] {
            return start.addMSecs(m_timers.now().count());
        };
        return environment;
    }
    std::unique_ptr<StationLine> createLine() { return std::make_unique<Line>(m_lines); }

    void add(const QString &name)
    {
        if (m_mode.stations().Count() < 5) {
            m_mode.setOnline(m_mode.addStation(name, QStringLiteral("127.0.0.1")), true);
        }
    }
    void say(const QByteArray &datagram)
    {
        if (m_lines.empty() || !m_lines.front()->isOpened) {
            return; // no line tells anything while it is closed
        }
        Line &line = *m_lines.front();
        line.sent.clear();
        line.say(datagram);
        constexpr qsizetype mostDatagrams = 5; // an echo, a header, a text, OK, config
        fuzz::require(line.sent.size() <= mostDatagrams, "a datagram has few answers");
    }
    int redNotifications() const
    {
        const NodeStore &nodes = m_mode.tree().nodes();
        int red = 0;
        for (NodeStore::Id id = NodeStore::root + 1; id < nodes.end(); ++id) {
            red += nodes.isAlive(id) && nodes.kind(id) == NodeKind::Notification &&
                           nodes.colour(id) == StationTree::alarmColour
                       ? 1
                       : 0;
        }
        return red;
    }

    test::ManualTimers m_timers;
    std::vector<Line *> m_lines;
    OperationalMode m_mode;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static int argc = 0;
    static const QCoreApplication application(argc, nullptr); // stations that are removed go with its events
    Watched watched;
    for (const fuzz::Step &step : fuzz::stepsOf(data, size)) {
        watched.carryOut(step);
    }
    watched.check();
    return 0;
}
