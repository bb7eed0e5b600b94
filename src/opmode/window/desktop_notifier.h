#pragma once

#include "opmode/alarm_centre.h"

class QSystemTrayIcon;

namespace ktr {

/// Tells of alarms outside of the window: a message of the desktop, and a mark in the task bar.
class DesktopNotifier : public QObject
{
    Q_OBJECT

public:
    /// Messages of the desktop stay for a while and would pile up.
    static constexpr Milliseconds pauseBetweenMessages{4000};

    DesktopNotifier(const AlarmCentre &centre, Timers &timers, QWidget &window);
    ~DesktopNotifier() override;

Q_SIGNALS:
    /// A line for the status bar.
    void statusMessage(const QString &line);
    /// The user chose the message: the window is to come to the front.
    void chosen();

private:
    void announce(const AlarmNews &news);
    void showMessage();
    bool showInTray(const QString &title, const QString &text);
    bool showByProgram(const QString &title, const QString &text);

    const AlarmCentre &m_centre;
    QWidget &m_window;
    std::unique_ptr<OneShotTimer> m_pause;
    QSystemTrayIcon *m_tray = nullptr; ///< there while something is not acknowledged
    AlarmNews m_news;                  ///< not shown yet
    bool m_isUnavailableTold = false;
};

/// A window's title that shows in the task bar how many alarms are not acknowledged: "(3!) Title".
QString titleWithAlarms(const QString &title, int unacknowledged);

} // namespace ktr
