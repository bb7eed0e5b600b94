#include "operational_pictures.h"

#include "opmode/window/form_betriebsmodus.h"
#include "simulator/field_texts.h"
#include "simulator/fleet.h"
#include "support/manual_timers.h"
#include "support/recorded_line.h"

#include <QAction>
#include <QApplication>
#include <QEventLoop>
#include <QRadioButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeView>

#include <algorithm>
#include <array>

namespace ktr {

namespace {

/// The pages whose pictures are called otherwise than they are.
constexpr std::array pageNames = {std::pair("Page_meldung", "notifications"), std::pair("Page_ip", "values")};
/// The actions that open them, and their names.
constexpr std::array dialogs = {std::pair("mnu_rules", "rules"), std::pair("mnu_limits", "limits"),
                                std::pair("mnu_maintenance", "maintenance"),
                                std::pair("mnu_retention", "retention")};
constexpr std::array recordTabs = {"find", "report", "figures", "overlooked"};

/// The operational mode on stations whose modules have talked for a while.
class Waterworks
{
public:
    Waterworks(int stations, const TextTable &texts, const QLocale &locale);

    Form_betriebsmodus &window() { return *m_first.window; }
    /// Operators deal with some alarms.
    void operate();
    /// The window of somebody else who looks at the same stations.
    Form_betriebsmodus &joinedWindow() { return *m_second.window; }
    void join();
    /// The first window's program ends.
    void endFirst();
    /// Until all that has happened is shown.
    void settle();

private:
    struct Post
    {
        std::unique_ptr<OperationalMode> mode;
        std::unique_ptr<Form_betriebsmodus> window;
    };

    Post open();
    void talk(int station);
    void say(int station, const QString &sms);

    const TextTable &m_texts;
    const QLocale m_locale;
    const QDateTime m_start{QDate(2026, 11, 21), QTime(10, 20)};
    const QTemporaryDir m_folder;
    test::ManualTimers m_timers;
    QList<test::RecordedLine *> m_lines;
    Post m_first;
    Post m_second;
};

Waterworks::Waterworks(int stations, const TextTable &texts, const QLocale &locale)
    : m_texts(texts), m_locale(locale), m_first(open())
{
    OperationalMode &mode = *m_first.mode;
    mode.setOperator(QStringLiteral("Eva Miller"));
    const QString first = mode.tree().index(0, 0).data(StationTree::KeyRole).toString();
    for (int station = 0; station < stations; ++station) {
        mode.addStation(Fleet::name(station),
                        QStringLiteral("10.20.%1.%2").arg(station / 250).arg(station % 250 + 1));
    }
    mode.removeStation(first); // the one that an empty list begins with, and its line
    m_lines.removeFirst();
    mode.setAllOnline(true);
    mode.setSchedule(Fleet::name(0), {QStringLiteral("08:00"), 2, QStringLiteral("17:30"), 1});
    for (int station = 0; station < stations; ++station) {
        if (station % 23 != 7) { // the others stay silent
            talk(station);
        }
        if (station % 41 == 11) {
            mode.setOnline(Fleet::name(station), false);
        }
    }
    constexpr Milliseconds twoPeriods{40'000};
    m_timers.advance(twoPeriods);
    for (int station = 0; station < stations; ++station) {
        if (station % 23 != 7 && station % 41 != 11) {
            m_lines[station]->say("+CSQ: " + QByteArray::number(8 + station * 7 % 20) + ",0\r\n");
        }
    }
}

Waterworks::Post Waterworks::open()
{
    Environment environment = systemEnvironment();
    environment.locale = m_locale;
    environment.now = [this] { return m_start.addMSecs(m_timers.now().count()); };
    const auto createLine = [this] {
        auto line = std::make_unique<test::RecordedLine>();
        m_lines += line.get();
        return line;
    };
    Post post;
    post.mode =
        std::make_unique<OperationalMode>(OperationalMode::Services{environment, m_timers, createLine, [] {},
                                                                    test::manualCallbackTimers(m_timers)},
                                          stationCaptions(m_texts));
    post.window = std::make_unique<Form_betriebsmodus>(
        *post.mode, m_texts, Form_betriebsmodus::Services{m_timers, m_locale, {}, {}});
    post.window->show();
    post.window->open(m_folder.filePath(QStringLiteral("nodes.xml")));
    return post;
}

void Waterworks::operate()
{
    OperationalMode &mode = *m_first.mode;
    const std::set<qint64> &waiting = mode.alarms().waiting();
    const QList<qint64> alarms(waiting.begin(), waiting.end());
    for (qsizetype at = 0; at < alarms.size(); ++at) {
        m_timers.advance(Milliseconds(1000));
        if (at % 4 == 0 && !mode.acknowledgeAlarms({alarms[at]})) {
            break;
        }
        if (at % 5 == 0) {
            mode.alarmActions().comment({alarms[at]}, QStringLiteral("Fitter called"));
        }
    }
    if (alarms.size() > 2) {
        constexpr qint64 anHour = 3'600'000;
        mode.alarmActions().shelve({alarms[1]}, mode.alarmActions().now() + anHour,
                                   QStringLiteral("Pump is being changed"));
    }
    mode.setOperator(QStringLiteral("Grace"));
    mode.setOnline(Fleet::name(2), false);
}

void Waterworks::join()
{
    m_first.mode->keepsChanges();
    m_second = open();
}

void Waterworks::endFirst()
{
    m_first.window->close();
    m_first = {};
    m_timers.advance(Milliseconds(2000));
}

void Waterworks::talk(int station)
{
    FieldTexts texts(static_cast<quint32>(station + 1));
    const QDateTime now = m_start.addMSecs(m_timers.now().count());
    for (const QString &sms : texts.history(now, 48)) {
        say(station, sms);
    }
    say(station, texts.allValues(now));
    const int busy = station < 3 ? 40 : 3;
    for (int n = 0; n < busy; ++n) {
        for (const QString &sms : texts.next(now.addSecs((n - busy) * 600))) {
            say(station, sms);
        }
        if (station < 3) {
            m_timers.advance(Milliseconds(500));
        }
    }
}

void Waterworks::say(int station, const QString &sms)
{
    m_lines[station]->say("at+cmgs=\"+4917000" + QByteArray::number(10'000 + station) + "\"\r");
    m_lines[station]->say(sms.toLatin1() + '\x1A');
}

void Waterworks::settle()
{
    m_timers.advance(Milliseconds(500));
    for (int turn = 0; turn < 50; ++turn) {
        QCoreApplication::processEvents();
    }
}

/// Of a window and its pages.
class Camera
{
public:
    Camera(const QDir &pictures, QSize size, QString suffix)
        : m_pictures(pictures), m_size(size), m_suffix(std::move(suffix))
    {}

    bool take(QWidget &window, Waterworks &works, const QString &name)
    {
        window.resize(m_size);
        works.settle();
        QEventLoop pause; // for what waits for one, and for threads
        QTimer::singleShot(400, &pause, &QEventLoop::quit);
        pause.exec();
        works.settle();
        return save(window, name);
    }
    /// As it is.
    bool save(QWidget &window, const QString &name)
    {
        const QString file = name + u'-' + m_suffix + QLatin1String(".png");
        m_failed = window.grab().save(m_pictures.filePath(file)) ? QString() : file;
        return m_failed.isEmpty();
    }
    /// The file that could not be written.
    const QString &failed() const { return m_failed; }

private:
    QDir m_pictures;
    QSize m_size;
    QString m_suffix;
    QString m_failed;
};

QString pictureOf(const QWidget &page)
{
    const QString name = page.objectName();
    const auto *const other = std::ranges::find_if(
        pageNames, [&name](const auto &each) { return name == QLatin1String(each.first); });
    return other != pageNames.end() ? QLatin1String(other->second) : name.section(u'_', 1);
}

bool takePages(Camera &camera, Waterworks &works, int stations)
{
    works.window().findChild<QAction *>(QStringLiteral("mnu_station_curves"))->trigger();
    auto *pages = works.window().findChild<QTabWidget *>(QStringLiteral("TabStrip_pages"));
    for (int page = 0; page < pages->count(); ++page) {
        pages->setCurrentIndex(page);
        const QString name = pictureOf(*pages->widget(page));
        if (!camera.take(works.window(), works,
                         QStringLiteral("operational-%1-%2").arg(name).arg(stations))) {
            return false;
        }
    }
    works.window().findChild<QAction *>(QStringLiteral("mnu_overview"))->trigger();
    if (!camera.take(works.window(), works, QStringLiteral("operational-overview-%1").arg(stations))) {
        return false;
    }
    works.window().findChild<QAction *>(QStringLiteral("mnu_ansicht_normal"))->trigger();
    return true;
}

bool takeDialogs(Camera &camera, Form_betriebsmodus &window)
{
    bool areTaken = true;
    for (const auto &[action, picture] : dialogs) {
        const QString name = QLatin1String("operational-") + QLatin1String(picture);
        QTimer::singleShot(400, &window, [&] { // its figures are read meanwhile
            QWidget *dialog = QApplication::activeModalWidget();
            areTaken = areTaken && camera.save(*dialog, name);
            dialog->close();
        });
        window.findChild<QAction *>(QLatin1String(action))->trigger();
    }
    return areTaken;
}

bool takeRecord(Camera &camera, Waterworks &works)
{
    works.window().findChild<QAction *>(QStringLiteral("mnu_record"))->trigger();
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->objectName() != QLatin1String("Form_record")) {
            continue;
        }
        auto *tabs = window->findChild<QTabWidget *>(QStringLiteral("TabStrip_record"));
        for (int tab = 0; tab < tabs->count(); ++tab) {
            tabs->setCurrentIndex(tab);
            const auto name = QLatin1String(recordTabs.at(static_cast<std::size_t>(tab)));
            if (!camera.take(*window, works, QLatin1String("record-") + name)) {
                return false;
            }
        }
        tabs->setCurrentIndex(0);
        window->findChild<QRadioButton *>(QStringLiteral("Opt_record_alarms"))->click();
        return camera.take(*window, works, QStringLiteral("record-alarms"));
    }
    return true;
}

} // namespace

QString takeOperationalPictures(const QDir &pictures, const TextTable &texts, const QLocale &locale,
                                QSize size, const QString &suffix)
{
    Camera camera(pictures, size, suffix);
    for (const int stations : {3, 1000}) {
        Waterworks works(stations, texts, locale);
        if (!takePages(camera, works, stations)) {
            return camera.failed();
        }
        works.operate();
        if (stations > 3) {
            if (!takeRecord(camera, works)) {
                return camera.failed();
            }
            continue;
        }
        works.settle();
        if (!takeDialogs(camera, works.window())) {
            return camera.failed();
        }
        works.join();
        if (!camera.take(works.joinedWindow(), works, QStringLiteral("operational-joined"))) {
            return camera.failed();
        }
        works.endFirst();
        if (!camera.take(works.joinedWindow(), works, QStringLiteral("operational-unwatched"))) {
            return camera.failed();
        }
    }
    return {};
}

} // namespace ktr
