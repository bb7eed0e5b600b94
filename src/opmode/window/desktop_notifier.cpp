#include "opmode/window/desktop_notifier.h"

#include "look/icons.h"
#include "look/program_name.h"
#include "platform/helper_program.h"
#include "platform/text_rules.h"

#include <QApplication>
#include <QStandardPaths>
#include <QSystemTrayIcon>
#include <QWidget>

namespace ktr {

namespace {

constexpr qsizetype longest = 200; ///< characters of an alarm that a message shows

/// Some desktops read a message as mark-up, load the pictures it names and make its links work; others show
/// it letter for letter, and which one this is cannot be asked. So the three characters that mark-up needs
/// are shown by others that look like them.
QString line(const Alarm &alarm)
{
    const QString station = alarm.station.isEmpty() ? QString() : alarm.station + QStringLiteral(": ");
    QString text = firstCharacters(station + alarm.message, longest);
    text.replace(u'<', u'‹');
    text.replace(u'>', u'›');
    return text.replace(u'&', u'＆');
}

} // namespace

DesktopNotifier::DesktopNotifier(const AlarmCentre &centre, Timers &timers, QWidget &window)
    : QObject(&window), m_centre(centre), m_window(window), m_pause(timers.create())
{
    connect(&centre, &AlarmCentre::attention, this, &DesktopNotifier::announce);
    connect(&centre, &AlarmCentre::changed, this, [this] {
        if (m_centre.unacknowledged() == 0) {
            m_news = {};
            if (m_tray != nullptr) {
                m_tray->hide();
            }
        }
    });
}

DesktopNotifier::~DesktopNotifier() = default;

void DesktopNotifier::announce(const AlarmNews &news)
{
    QApplication::alert(&m_window);
    const bool isMore = m_news.arrived > 0;
    const int before = m_news.arrived;
    const Alarm first = isMore ? m_news.first : news.first;
    m_news = news;
    m_news.arrived += before;
    m_news.first = first;
    if (!m_pause->isRunning()) {
        showMessage();
    }
}

void DesktopNotifier::showMessage()
{
    const AlarmNews news = std::exchange(m_news, {});
    if (news.arrived == 0) {
        return;
    }
    m_pause->start(pauseBetweenMessages, [this] { showMessage(); });
    const QString title = news.arrived == 1 ? tr("New alarm") : tr("New alarms: %L1").arg(news.arrived);
    QString text = line(news.latest);
    if (news.arrived > 1) {
        text = tr("First: %1").arg(line(news.first)) + u'\n' + tr("Latest: %1").arg(text);
    }
    if (!showInTray(title, text) && !showByProgram(title, text) && !m_isUnavailableTold) {
        m_isUnavailableTold = true;
        Q_EMIT statusMessage(tr("This desktop shows no messages; alarms are shown in the window only."));
    }
}

bool DesktopNotifier::showInTray(const QString &title, const QString &text)
{
    if (!QSystemTrayIcon::isSystemTrayAvailable() || !QSystemTrayIcon::supportsMessages()) {
        return false;
    }
    if (m_tray == nullptr) {
        m_tray = new QSystemTrayIcon(icon(IconName::Application), this);
        m_tray->setToolTip(programName);
        connect(m_tray, &QSystemTrayIcon::messageClicked, this, &DesktopNotifier::chosen);
        connect(m_tray, &QSystemTrayIcon::activated, this, &DesktopNotifier::chosen);
    }
    m_tray->show();
    m_tray->showMessage(title, text, QSystemTrayIcon::Critical);
    return true;
}

bool DesktopNotifier::showByProgram(const QString &title, const QString &text)
{
    const QString program = QStandardPaths::findExecutable(QStringLiteral("notify-send"));
    return !program.isEmpty() &&
           startProgram(program,
                        {QStringLiteral("--urgency=critical"), QStringLiteral("--app-name=") + programName,
                         QStringLiteral("--"), title, QString(text).replace(u'\\', QLatin1String("\\\\"))})
               .
               operator bool();
}

QString titleWithAlarms(const QString &title, int unacknowledged)
{
    return unacknowledged > 0 ? QStringLiteral("(%1!) ").arg(unacknowledged) + title : title;
}

} // namespace ktr
