#include "operational_pictures.h"

#include "opmode/window/curves/curves_page.h"
#include "opmode/window/form_betriebsmodus.h"
#include "opmode/window/timemap/time_map_view.h"
#include "platform/files.h"
#include "record/record_database.h"
#include "simulator/field_texts.h"
#include "simulator/fleet.h"
#include "support/manual_timers.h"
#include "support/recorded_line.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QEventLoop>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRandomGenerator>
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
                                std::pair("mnu_retention", "retention"), std::pair("mnu_sound", "sound")};
constexpr std::array recordTabs = {"find", "report", "figures", "overlooked", "map"};
constexpr int someStations = 24; ///< that fill an overview by groups

/// Of a station whose inputs have names, units and limits.
QByteArray configurationOf(const QString &station)
{
    return QStringLiteral("<KTR><Konfiguration><Stationskennung>%1</Stationskennung>"
                          "<Grenzwert0 Alarm='Level fail' IP='9' Vergleich='3' Grenzwert='31'/>"
                          "</Konfiguration></KTR>")
        .arg(station)
        .toUtf8();
}

QByteArray inputNames(const QLocale &locale)
{
    return locale.language() == QLocale::German ? "1=Pumpe 1\n9=Pegel;m\n10=Durchfluss;m³/h\n17=Wasser;°C\n"
                                                : "1=Pump 1\n9=Level;m\n10=Flow;m³/h\n17=Water;°C\n";
}

QByteArray groupsOf(const QLocale &locale)
{
    const bool isGerman = locale.language() == QLocale::German;
    return QStringLiteral("[%1]\n= 9, 17\nPumpwerk*\nHochbehälter*\n\n[%2]\nKläranlage*\n"
                          "Regenüberlaufbecken*\n\n[%3]\nTiefbrunnen*\n")
        .arg(isGerman ? QStringLiteral("Verteilung") : QStringLiteral("Distribution"),
             isGerman ? QStringLiteral("Abwasser") : QStringLiteral("Waste water"),
             isGerman ? QStringLiteral("Brunnen") : QStringLiteral("Wells"))
        .toUtf8();
}

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
    /// Three weeks of alarms before, more by day and many in a storm. Only for who looks at them afterwards.
    void rememberAlarms();
    /// When it came and when it was over.
    static std::pair<qint64, qint64> storm();
    QString keyOf(int station) const
    {
        return m_first.mode->tree().index(station, 0).data(StationTree::KeyRole).toString();
    }

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
    m_first.window->findChild<QLineEdit *>(QStringLiteral("Text_operator"))
        ->setText(QStringLiteral("Eva Miller"));
    m_first.window->findChild<QPushButton *>(QStringLiteral("Cmd_operator_take"))->click();
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
    for (int station = 0; station < 2; ++station) {
        const QString name = m_folder.filePath(QStringLiteral("station-%1").arg(station));
        (void)replaceFile(name + QLatin1String(".xml"), configurationOf(Fleet::name(station)));
        (void)replaceFile(name + QLatin1String(".names"), inputNames(m_locale));
    }
    (void)replaceFile(m_folder.filePath(QStringLiteral("nodes.groups")), groupsOf(m_locale));
    Post post;
    post.mode =
        std::make_unique<OperationalMode>(OperationalMode::Services{environment, m_timers, createLine, [] {},
                                                                    test::manualCallbackTimers(m_timers)},
                                          stationCaptions(m_texts));
    post.window = std::make_unique<Form_betriebsmodus>(
        *post.mode, m_texts, Form_betriebsmodus::Services{m_timers, m_locale, {}, {}});
    post.window->show();
    const QString list = m_folder.filePath(QStringLiteral("nodes.xml"));
    post.window->open(list);
    post.mode->configurations().open(list);
    while (!post.mode->configurations().isSettled()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
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
    m_first.window->setAsksBeforeEnd(false);
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

std::pair<qint64, qint64> Waterworks::storm()
{
    const QDate day(2026, 11, 14);
    return {QDateTime(day, QTime(2, 0)).toMSecsSinceEpoch(), QDateTime(day, QTime(8, 0)).toMSecsSinceEpoch()};
}

void Waterworks::rememberAlarms()
{
    constexpr qint64 hour = 3'600'000;
    constexpr int days = 21;
    constexpr qint64 number = 1'000'000; // behind all that there are
    const qint64 begin =
        QDateTime(m_start.date().addDays(1 - m_start.date().day()), QTime(0, 0)).toMSecsSinceEpoch();
    QRandomGenerator chance(7);
    QStringList rows;
    for (int at = 0; at < (days - 1) * 24; ++at) {
        const int ofDay = at % 24;
        const qint64 hourBegin = begin + at * hour;
        const bool isStorm = hourBegin >= storm().first && hourBegin < storm().second;
        const int usual = ofDay > 5 && ofDay < 20 ? 3 : 1;
        const int count = isStorm ? 15 + chance.bounded(20) : std::max(0, chance.bounded(2 * usual + 2) - 2);
        for (int alarm = 0; alarm < count; ++alarm) {
            const qint64 first = hourBegin + chance.bounded(static_cast<int>(hour));
            rows += QStringLiteral("(%1, %2, 1, 'Pump fail', %3, %4, %4, 1, '[]', %4, %4)")
                        .arg(number + rows.size())
                        .arg(1 + chance.bounded(isStorm ? 400 : 40))
                        .arg(chance.bounded(12) == 0 ? 1 : 2)
                        .arg(first);
        }
    }
    RecordDatabase database;
    if (database.open(m_first.mode->recordPath(), RecordDatabase::Use::Write)) {
        (void)database.execute(
            QStringLiteral("INSERT INTO alarm(id, station, kind, text, priority, first, last, count,"
                           " recipients, acknowledged, over) VALUES") +
            rows.join(u','));
    }
}

/// For what waits for one, and for threads.
void pause(Waterworks &works)
{
    works.settle();
    QEventLoop loop;
    QTimer::singleShot(400, &loop, &QEventLoop::quit);
    loop.exec();
    works.settle();
}

/// What tells that no sound can be played: where pictures are made nobody listens.
void hideSoundTrouble(const QWidget &window)
{
    for (const auto *name : {"Cmd_no_sound", "lbl_sound_problem"}) {
        if (auto *told = window.findChild<QWidget *>(QLatin1String(name))) {
            told->hide();
        }
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
        pause(works);
        return save(window, name);
    }
    /// As it is.
    bool save(QWidget &window, const QString &name)
    {
        hideSoundTrouble(window);
        QCoreApplication::processEvents(); // what stood beside it takes its place
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
    pause(works); // all is in the record, of which curves are drawn
    works.window().findChild<QAction *>(QStringLiteral("mnu_curves"))->trigger();
    works.window().findChild<CurvesPage *>()->add(
        {{works.keyOf(0), 9}, {works.keyOf(1), 9}, {works.keyOf(0), 10}, {works.keyOf(1), 17}});
    works.window().findChild<QAbstractButton *>(QStringLiteral("Cmd_curves_choose"))->setChecked(false);
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

/// What is for more than one station and fewer than all.
bool takeSomeStations(Camera &camera, Waterworks &works)
{
    works.window().findChild<QAction *>(QStringLiteral("mnu_overview"))->trigger();
    auto *order = works.window().findChild<QComboBox *>(QStringLiteral("Combo_overview_order"));
    constexpr int byGroup = 2;
    const auto sort = [order](int by) {
        order->setCurrentIndex(by);
        Q_EMIT order->activated(by);
    };
    sort(byGroup);
    works.settle();
    for (int level = 0; level < 2; ++level) { // as large as tiles with values are
        works.window().findChild<QAbstractButton *>(QStringLiteral("Cmd_overview_larger"))->click();
    }
    if (!camera.take(works.window(), works, QStringLiteral("operational-groups"))) {
        return false;
    }
    works.window().findChild<QAbstractButton *>(QStringLiteral("Cmd_overview_fit"))->click(); // it is kept
    sort(0);
    works.window().findChild<QAction *>(QStringLiteral("mnu_ansicht_normal"))->trigger();
    auto *tree = works.window().findChild<QTreeView *>();
    tree->collapseAll();
    tree->setCurrentIndex(tree->model()->index(1, 0));
    works.settle();
    for (const int row : {2, 4, 5, 7}) {
        tree->selectionModel()->select(tree->model()->index(row, 0),
                                       QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
    tree->scrollToTop();
    return camera.take(works.window(), works, QStringLiteral("operational-several"));
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
            auto *map = tabs->widget(tab)->findChild<TimeMapView *>();
            if (map != nullptr) {
                works.rememberAlarms();
            }
            tabs->setCurrentIndex(tab);
            const auto name = QLatin1String(recordTabs.at(static_cast<std::size_t>(tab)));
            if (map != nullptr) {
                pause(works);
                const auto [from, to] = Waterworks::storm();
                map->choose(from, to);
                map->setFocus();
            }
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
    {
        Waterworks works(someStations, texts, locale);
        if (!takeSomeStations(camera, works)) {
            return camera.failed();
        }
    }
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
