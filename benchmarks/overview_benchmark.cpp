// The overview of 10,000 stations: a frame while it is scrolled, a frame that is painted whole, what it takes
// to take over that many of them changed, and its memory. The tree of as many: a key typed into its search,
// its order, its groups.

#include "figures.h"
#include "look/style.h"
#include "opmode/operational_mode.h"
#include "opmode/window/overview/overview_page.h"
#include "opmode/window/overview/overview_view.h"
#include "opmode/window/station_tree_pane.h"
#include "opmode/window/station_tree_view.h"
#include "opmode/window/tree_order.h"
#include "platform/registry.h"
#include "support/manual_timers.h"
#include "support/recorded_line.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QLineEdit>
#include <QScrollBar>
#include <QStringListModel>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <ctime>
#include <malloc.h>

using namespace ktr;

namespace {

constexpr int stationCount = 10'000;
constexpr double frame = 1.0 / 60;
constexpr QSize screenSize(1920, 1080);
constexpr QSize treeSize(320, 1000);

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

template <class Work> double secondsOf(const Work &work)
{
    QElapsedTimer clock;
    clock.start();
    work();
    return double(clock.nsecsElapsed()) / 1e9;
}

/// Of the processor, for work that is never waited for.
template <class Work> double processorSecondsOf(const Work &work)
{
    const std::clock_t before = std::clock();
    work();
    return double(std::clock() - before) / CLOCKS_PER_SEC;
}

std::size_t used()
{
    const auto memory = mallinfo2();
    return memory.uordblks + memory.hblkhd;
}

/// Stations that have reported values; some in alarm, some silent.
struct Stations
{
    Stations()
    {
        if (!mode.open(folder.filePath(QStringLiteral("nodes.xml")), OperationalMode::Use::Keep)) {
            std::exit(1);
        }
        for (int station = 0; station < stationCount; ++station) {
            mode.addStation(name(station), QStringLiteral("10.0.0.1"));
        }
        mode.setAllOnline(true);
        for (int station = 0; station < stationCount; ++station) {
            for (const char *report : {"R,9,2.5", "R,10,7.25", "R,17,21", "R,9,2.75", "R,10,7.5", "R,5,1"}) {
                say(station, report);
            }
            if (station % 50 == 0) {
                say(station, "M,Pump 1 fail");
            }
        }
    }
    static QString name(int station) { return QStringLiteral("Pumping station %1").arg(station + 1); }
    void say(int station, const QByteArray &text)
    {
        lines[static_cast<std::size_t>(station)]->say("at+cmgs=\"+4917012345\"\r");
        lines[static_cast<std::size_t>(station)]->say(text + '\x1A');
    }

    const QTemporaryDir folder;
    test::ManualTimers timers;
    const TextTable texts;
    std::vector<test::RecordedLine *> lines;
    OperationalMode mode{{systemEnvironment(), timers,
                          [this] {
                              auto line = std::make_unique<test::RecordedLine>();
                              lines.push_back(line.get());
                              return line;
                          },
                          [] {}, test::manualCallbackTimers(timers)},
                         stationCaptions(texts)};
};

/// A wheel's turn after the other through the whole list, each painted as the window system would have it.
double scrolledFrame(QListView &view)
{
    std::vector<double> times;
    QScrollBar &bar = *view.verticalScrollBar();
    constexpr int step = 60;
    constexpr int frames = 200;
    bar.setValue(0);
    QCoreApplication::processEvents();
    for (int turn = 0; turn < frames && bar.value() < bar.maximum(); ++turn) {
        times.push_back(secondsOf([&] {
            bar.setValue(bar.value() + step);
            QCoreApplication::processEvents();
        }));
    }
    return times.empty() ? 0 : median(times);
}

double wholeFrame(QListView &view)
{
    QImage image(view.viewport()->size(), QImage::Format_RGB32);
    std::vector<double> times;
    constexpr int frames = 30;
    for (int turn = 0; turn < frames; ++turn) {
        times.push_back(secondsOf([&] { view.viewport()->render(&image); }));
    }
    return median(times);
}

/// The toolkit's own list with the names alone, in as many places; in cells there is room for no letter.
class BareList : public QListView
{
public:
    BareList(const QAbstractItemModel &model, bool hasNames)
    {
        QStringList names;
        for (int row = 0; row < model.rowCount(); ++row) {
            names += hasNames ? model.index(row, 0).data().toString() : QString();
        }
        m_names.setStringList(names);
        setModel(&m_names);
        setFlow(LeftToRight);
        setWrapping(true);
        setUniformItemSizes(true);
        setResizeMode(Adjust);
        setVerticalScrollMode(ScrollPerPixel);
        setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    }

private:
    QStringListModel m_names;
};

void painted(OverviewView &view, BareList &bare, int level, const char *what)
{
    view.setLevel(level);
    bare.resize(view.size());
    bare.setGridSize(view.tileSize());
    QCoreApplication::processEvents();
    const std::string text = std::string("10,000 stations, ") + what;
    const double bareScrolled = scrolledFrame(bare);
    const double bareWhole = wholeFrame(bare);
    figures::row(text + ": a frame while scrolling, median", scrolledFrame(view), figures::Unit::Seconds,
                 frame, figures::Floor{bareScrolled, "the toolkit's own list"});
    figures::row(text + ": the whole screen painted, median", wholeFrame(view), figures::Unit::Seconds,
                 2 * frame, figures::Floor{bareWhole, "the toolkit's own list"});
}

void changes(Stations &stations, OverviewPage &page)
{
    constexpr int atOnce = 500;
    std::vector<double> times;
    for (int turn = 0; turn < 10; ++turn) {
        for (int n = 0; n < atOnce; ++n) {
            stations.say((turn * atOnce + n) * 2 + 1, "M,Late fail");
        }
        times.push_back(secondsOf([&] {
            page.model().update();
            QCoreApplication::processEvents();
        }));
    }
    figures::row("500 of them come into alarm: sorted in and painted, median", median(times),
                 figures::Unit::Seconds, 0.1);
}

/// What a key in the tree's search costs the window until the rows are painted, of 10,000 stations:
/// time of the processor.
void searched(StationTreePane &pane)
{
    auto *search = pane.findChild<QLineEdit *>(QStringLiteral("Text_filter_station"));
    std::vector<double> times;
    std::vector<double> keys;
    for (int turn = 0; turn < 5; ++turn) {
        for (const QString &text :
             {QStringLiteral("P"), QStringLiteral("Pumping station 1"), QStringLiteral("Pumping station 12"),
              QStringLiteral("n 123"), QString()}) {
            times.push_back(processorSecondsOf([&] {
                search->setText(text);
                pane.tree().settleFilter();
                QCoreApplication::processEvents();
            }));
            keys.push_back(processorSecondsOf([&] { (void)pane.tree().shownKeys(); }));
        }
    }
    figures::row("10,000 stations in the tree: a key in its search, the slowest",
                 *std::ranges::max_element(times), figures::Unit::Seconds, 2 * frame);
    figures::row("the same: which stations are shown, the slowest", *std::ranges::max_element(keys),
                 figures::Unit::Seconds, frame);
}

void ordered(StationTreePane &pane)
{
    using Order = OverviewModel::Order;
    using Grouping = OverviewModel::Grouping;
    const auto slowest = [](const auto &choices, const auto &choose) {
        double time = 0;
        for (const auto choice : choices) {
            time = std::max(time, processorSecondsOf([&] {
                                choose(choice);
                                QCoreApplication::processEvents();
                            }));
        }
        return time;
    };
    const double orders = slowest(std::array{Order::Name, Order::Urgency, Order::Heard, Order::List},
                                  [&](Order order) { pane.order().setOrder(order); });
    pane.order().setOrder(Order::Urgency);
    const double groupings = slowest(std::array{Grouping::State, Grouping::Groups, Grouping::None},
                                     [&](Grouping grouping) { pane.order().setGrouping(grouping); });
    figures::row("the same: another order, the slowest", orders, figures::Unit::Seconds, 0.1);
    figures::row("the same: other sections, the slowest", groupings, figures::Unit::Seconds, 0.1);
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const QTemporaryDir folder;
    MRegistry::setRegistryFile(folder.filePath(QStringLiteral("registry.json")));
    applyAppearance(application, Appearance::Light);
    Stations stations;
    OverviewPage page({stations.mode, stations.texts, stations.timers, QLocale::c()});
    page.applyTexts();
    page.resize(screenSize);
    const std::size_t before = used();
    const double shown = secondsOf([&] { page.model().setActive(true); });
    const std::size_t model = used() - before;
    page.show();
    QCoreApplication::processEvents();
    figures::row("10,000 stations come into the overview", shown, figures::Unit::Seconds, 1);
    figures::row("memory of a station in the overview", double(model) / stationCount, figures::Unit::Bytes,
                 1024);
    BareList names(page.model(), true);
    BareList cells(page.model(), false);
    names.show();
    cells.show();
    painted(page.view(), names, 1, "tiles with four values");
    painted(page.view(), names, 3, "tiles with state and signal");
    painted(page.view(), cells, 7, "cells");
    changes(stations, page);
    page.hide();
    StationTreePane pane(stations.mode, stations.texts, stations.timers, QLocale::c());
    pane.resize(treeSize);
    pane.show();
    QCoreApplication::processEvents();
    searched(pane);
    ordered(pane);
    return figures::exitCode();
}
