#include "operational_pictures.h"

#include "opmode/window/form_betriebsmodus.h"
#include "simulator/field_texts.h"
#include "simulator/fleet.h"
#include "support/manual_timers.h"
#include "support/recorded_line.h"

#include <QAction>
#include <QApplication>
#include <QEventLoop>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeView>

namespace ktr {

namespace {

constexpr QSize laptop(1366, 728); // what a task bar leaves
constexpr std::array pageNames = {"station", "notifications", "history", "values", "alarms"};
/// The actions that open them, and their names.
constexpr std::array dialogs = {std::pair("mnu_rules", "rules"), std::pair("mnu_limits", "limits"),
                                std::pair("mnu_maintenance", "maintenance"),
                                std::pair("mnu_retention", "retention")};

/// The operational mode on stations whose modules have talked for a while.
class Waterworks
{
public:
    Waterworks(int stations, const TextTable &texts, const QLocale &locale);

    Form_betriebsmodus &window() { return *m_window; }
    void settle();

private:
    void talk(int station);
    void say(int station, const QString &sms);

    const QDateTime m_start{QDate(2026, 11, 21), QTime(10, 20)};
    const QTemporaryDir m_folder;
    test::ManualTimers m_timers;
    QList<test::RecordedLine *> m_lines;
    std::unique_ptr<OperationalMode> m_mode;
    std::unique_ptr<Form_betriebsmodus> m_window;
};

Waterworks::Waterworks(int stations, const TextTable &texts, const QLocale &locale)
{
    Environment environment = systemEnvironment();
    environment.locale = locale;
    environment.now = [this] { return m_start.addMSecs(m_timers.now().count()); };
    const auto createLine = [this] {
        auto line = std::make_unique<test::RecordedLine>();
        m_lines += line.get();
        return line;
    };
    m_mode =
        std::make_unique<OperationalMode>(OperationalMode::Services{environment, m_timers, createLine, [] {},
                                                                    test::manualCallbackTimers(m_timers)},
                                          stationCaptions(texts));
    m_mode->setOperator(QStringLiteral("Eva Miller"));
    m_window = std::make_unique<Form_betriebsmodus>(*m_mode, texts,
                                                    Form_betriebsmodus::Services{m_timers, locale, {}, {}});
    m_window->resize(laptop);
    m_window->show();
    m_window->open(m_folder.filePath(QStringLiteral("nodes.xml")));
    const QString first = m_mode->tree().index(0, 0).data(StationTree::KeyRole).toString();
    for (int station = 0; station < stations; ++station) {
        m_mode->addStation(Fleet::name(station),
                           QStringLiteral("10.20.%1.%2").arg(station / 250).arg(station % 250 + 1));
    }
    m_mode->removeStation(first); // the one that an empty list begins with, and its line
    m_lines.removeFirst();
    m_mode->setAllOnline(true);
    m_mode->setSchedule(Fleet::name(0), {QStringLiteral("08:00"), 2, QStringLiteral("17:30"), 1});
    for (int station = 0; station < stations; ++station) {
        if (station % 23 != 7) { // the others stay silent
            talk(station);
        }
        if (station % 41 == 11) {
            m_mode->setOnline(Fleet::name(station), false);
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

/// Gives the name of a file that cannot be written.
QString takeDialogs(Form_betriebsmodus &window, const QDir &pictures, const QString &suffix)
{
    QString failed;
    for (const auto &[action, picture] : dialogs) {
        const QString name = QStringLiteral("operational-%1-%2.png").arg(QLatin1String(picture), suffix);
        QTimer::singleShot(400, &window, [&] { // its figures are read meanwhile
            QWidget *dialog = QApplication::activeModalWidget();
            if (!dialog->grab().save(pictures.filePath(name))) {
                failed = name;
            }
            dialog->close();
        });
        window.findChild<QAction *>(QLatin1String(action))->trigger();
    }
    return failed;
}

} // namespace

QString takeOperationalPictures(const QDir &pictures, const TextTable &texts, const QLocale &locale,
                                const QString &suffix)
{
    for (const int stations : {3, 1000}) {
        Waterworks works(stations, texts, locale);
        auto *pages = works.window().findChild<QTabWidget *>(QStringLiteral("TabStrip_pages"));
        works.settle();
        for (int page = 0; page < pages->count(); ++page) {
            pages->setCurrentIndex(page);
            works.settle();
            QEventLoop pause; // for what waits for one
            QTimer::singleShot(400, &pause, &QEventLoop::quit);
            pause.exec();
            works.settle();
            const QString name = QStringLiteral("operational-%1-%2-%3.png")
                                     .arg(QLatin1String(pageNames.at(static_cast<std::size_t>(page))))
                                     .arg(stations)
                                     .arg(suffix);
            if (!works.window().grab().save(pictures.filePath(name))) {
                return name;
            }
        }
        if (stations == 3) {
            if (const QString failed = takeDialogs(works.window(), pictures, suffix); !failed.isEmpty()) {
                return failed;
            }
        }
    }
    return {};
}

} // namespace ktr
