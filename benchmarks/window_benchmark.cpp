// How long the main window takes to be seen and to answer, beside an empty window of the toolkit with as many
// controls, in the same run. Each figure is the median of its repetitions.

#include "app/form_main.h"
#include "editor/log_view.h"
#include "editor/test_page.h"
#include "figures.h"
#include "look/style.h"
#include "platform/registry.h"
#include "support/silent_line.h"

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QProcess>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QWindow>

#include <algorithm>
#include <cstdio>

using namespace ktr;

namespace {

constexpr int startRepetitions = 15;
constexpr int actionRepetitions = 60;
constexpr QSize size(1240, 700);

double median(std::vector<double> values)
{
    std::ranges::sort(values);
    return values[values.size() / 2];
}

/// Milliseconds.
double took(const std::function<void()> &work)
{
    QElapsedTimer clock;
    clock.start();
    work();
    return static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

/// Handles events until a window was painted anew.
class Painted : public QObject
{
public:
    explicit Painted(QWidget &window) : m_window(*window.windowHandle())
    {
        window.installEventFilter(this);
        m_window.installEventFilter(this);
    }

    void wait()
    {
        QElapsedTimer clock;
        clock.start();
        while (!m_painted && clock.elapsed() < longestWait) {
            QCoreApplication::processEvents();
        }
        if (!std::exchange(m_painted, false)) {
            std::fprintf(stderr, "nothing was painted\n");
            std::exit(1);
        }
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        const bool asked = event->type() == QEvent::Expose || event->type() == QEvent::UpdateRequest;
        m_painted = m_painted || (asked && m_window.isExposed());
        return false;
    }

private:
    static constexpr qint64 longestWait = 5000;
    QWindow &m_window;
    bool m_painted = false;
};

class Bench
{
public:
    /// The settings of an earlier start, in a folder, or none.
    explicit Bench(const QString &settings)
    {
        const QString folder = settings.isEmpty() ? m_folder.path() : settings;
        MRegistry::setRegistryFile(folder + QStringLiteral("/registry.json"));
    }

    std::unique_ptr<FormMain> open()
    {
        auto window = std::make_unique<FormMain>(
            Services{systemEnvironment(), m_timers, m_line, m_network, [] { return QStringList(); },
                     m_folder.filePath(QStringLiteral("instance%1").arg(++m_opened))});
        window->resize(size);
        window->start(
            {QStringLiteral("-load"), QStringLiteral(KTR_SOURCE_DIR "/samples/pumping-station.xml")});
        return window;
    }

private:
    QTemporaryDir m_folder;
    EventLoopTimers m_timers;
    test::SilentLine m_line;
    test::SilentLine m_network;
    int m_opened = 0; ///< each an instance of its own
};

std::unique_ptr<QMainWindow> emptyWindow(int controls)
{
    auto window = std::make_unique<QMainWindow>();
    auto *body = new QWidget(window.get());
    auto *grid = new QGridLayout(body);
    constexpr int columns = 15;
    for (int index = 0; index < controls; ++index) {
        grid->addWidget(new QLineEdit(body), index / columns, index % columns);
    }
    window->setCentralWidget(body);
    window->resize(size);
    window->show();
    return window;
}

void report(const char *what, double milliseconds, double bound)
{
    figures::row(what, milliseconds / 1000, figures::Unit::Seconds, bound / 1000);
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    applyAppearance(application, Appearance::Light);
    // What the processes below do: show one window, and end with its first frame.
    const QStringList words = QCoreApplication::arguments().mid(1);
    Bench bench(words.value(2));
    if (!words.isEmpty()) {
        const std::unique_ptr<QMainWindow> window =
            words.front() == u"empty" ? emptyWindow(words.value(1).toInt()) : bench.open();
        Painted(*window).wait();
        return 0;
    }

    // All pages, and how many controls they have together.
    const auto complete = bench.open();
    while (complete->tabs().buildNext()) {
    }
    int controls = 0;
    for (const QWidget *widget : complete->tabs().findChildren<QWidget *>()) {
        controls += widget->focusPolicy() != Qt::NoFocus || widget->inherits("QLabel") ? 1 : 0;
    }

    std::printf("%d controls\n", controls);
    std::vector<double> ours;
    std::vector<double> empty;
    const QTemporaryDir settings; // of the first start, which all others find
    const QString self = QCoreApplication::applicationFilePath();
    for (int i = 0; i < startRepetitions; ++i) {
        const QString count = QString::number(controls);
        ours.push_back(took([&] {
            QProcess::execute(self, {QStringLiteral("main"), count, settings.path()});
        }));
        empty.push_back(took([&] {
            QProcess::execute(self, {QStringLiteral("empty"), count, settings.path()});
        }));
    }
    const double floor = median(empty);
    const bool isSeen = QGuiApplication::platformName() != u"offscreen";
    figures::row(isSeen ? "the main window shown, on an X server" : "the main window shown, without a screen",
                 median(ours) / 1000, figures::Unit::Seconds, figures::unbounded,
                 figures::Floor{floor / 1000, "an empty window with as many controls", 1.5});
    if (isSeen) {
        return figures::exitCode(); // what follows waits for the server as well
    }

    Painted painted(*complete);
    complete->activateWindow();
    QCoreApplication::processEvents();
    std::vector<double> pages;
    for (int i = 0; i < actionRepetitions; ++i) {
        pages.push_back(took([&] {
            complete->tabs().setCurrentIndex((i + 1) % pageCount);
            painted.wait();
        }));
    }
    report("another page chosen and painted, median", median(pages), 16);
    report("another page chosen and painted, slowest", std::ranges::max(pages), 16);

    using Entries = std::tuple<PageIndex, const char *, const char *>;
    for (const auto &[index, name, what] :
         {Entries{PageIndex::LimitValues, "Scr_gw", "another limit value chosen and painted, median"},
          Entries{PageIndex::SwitchPoints, "Scr_swtch", "another switch point chosen and painted, median"}}) {
        complete->tabs().setCurrentIndex(static_cast<int>(index));
        auto *bar = complete->findChild<QScrollBar *>(QLatin1String(name));
        std::vector<double> entries;
        for (int i = 0; i < actionRepetitions; ++i) {
            entries.push_back(took([&] {
                bar->setValue((i + 1) % 20);
                painted.wait();
            }));
        }
        report(what, median(entries), 16);
    }

    complete->tabs().setCurrentIndex(static_cast<int>(PageIndex::LimitValues));
    auto *edit = complete->findChild<QLineEdit *>(QStringLiteral("Txt_gw_meldung"));
    std::vector<double> keys;
    for (int i = 0; i < actionRepetitions; ++i) {
        keys.push_back(took([&] {
            QKeyEvent key(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, QStringLiteral("a"));
            QCoreApplication::sendEvent(edit, &key);
            painted.wait();
        }));
    }
    report("a character typed and painted, median", median(keys), 16);

    // A conversation of 10,000 lines a second, in the bursts that a frame of the display brings.
    complete->tabs().setCurrentIndex(static_cast<int>(PageIndex::Test));
    auto *test = static_cast<TestPage *>(complete->tabs().page(PageIndex::Test));
    std::vector<double> frames;
    constexpr int linesAFrame = 333;
    for (int frame = 0; frame < 30; ++frame) {
        frames.push_back(took([&] {
            for (int line = 0; line < linesAFrame; ++line) {
                test->appendLog(QStringLiteral("com <---- at+cmgr=%1").arg(line));
            }
            complete->findChild<LogView *>()->flush();
            painted.wait();
        }));
    }
    report("333 lines of a conversation shown, slowest (10,000 lines a second, 30 times a second)",
           std::ranges::max(frames), 33);
    return figures::exitCode();
}
