#pragma once

#include "opmode/window/opmode_page.h"

#include <QTabWidget>

#include <functional>

namespace ktr {

class Acknowledging;
class AlarmListPage;
class CurvesPage;
class NotificationPage;
struct SeriesId;

/// The pages of the window about the chosen station. There is one row for each in a table of
/// opmode_pages.cpp. Page and tree follow each other, so that they never tell different things: the chosen
/// node brings its page to the front, and a page that is chosen its node.
class OpmodePages : public QTabWidget
{
    Q_OBJECT

public:
    /// What pages are made with.
    struct Services
    {
        OperationalMode &mode;
        const TextTable &texts;
        Acknowledging &acknowledging;
        Timers &timers;
        QLocale locale;
        /// Asks for the name of a file to write; empty for "cancel".
        std::function<QString(const QString &proposal, const QString &filter)> askSave;
        /// The same of one to read.
        std::function<QString(const QString &filter)> askOpen;
    };

    explicit OpmodePages(const Services &services, QWidget *parent = nullptr);

    void applyTexts();

    /// Shows the station of a node, on the page that the node belongs to; of a notification, that one. A page
    /// about all stations stays when a station is chosen, and the curves always: nodes are dragged there.
    void showNode(const QModelIndex &node);
    /// Brings a page to the front, the first is 0, and gives what one works with there the focus.
    void choosePage(int page);
    /// What one works with on the page in front: its list or, without one, its first control.
    QWidget *control() const;
    QStringList captions() const;
    /// The same of a window that is not open.
    static QStringList captionsIn(const TextTable &texts);
    /// Brings the alarms of all stations to the front.
    void showAllAlarms();
    /// Brings the curves to the front, and adds some to them.
    void showCurves(const QList<SeriesId> *added = nullptr);
    /// Chooses a notification of the station that is shown, and brings it into view; without one, its page.
    void showNotification(const QModelIndex &entry);

    /// The node of a station that the page about its notifications belongs to.
    static QModelIndex notificationsOf(const QModelIndex &station);

Q_SIGNALS:
    /// The user chose a page: its node is to be chosen in the tree.
    void nodeWanted(const QModelIndex &node);
    /// The user wants to see an entry of a station, which may be invalid.
    void entryWanted(const QString &kennung, const QModelIndex &entry);
    /// A line for the status bar.
    void statusMessage(const QString &line);

private:
    void bringToFront(int page);
    void followPage(int index);

    const TextTable &m_texts;
    QPersistentModelIndex m_station; ///< the chosen one
    QList<OpmodePage *> m_pages;     ///< one for each row of the table
    NotificationPage *m_notifications;
    AlarmListPage *m_alarms;
    CurvesPage *m_curves;
    bool m_isFollowing = false; ///< the page follows the tree, or the tree the page
};

} // namespace ktr
