#pragma once

#include "lang/text_table.h"
#include "opmode/alarm_centre.h"
#include "opmode/operational_mode.h"
#include "opmode/window/acknowledging.h"
#include "opmode/window/alarm_mute.h"
#include "opmode/window/alarm_sound.h"
#include "opmode/window/desktop_notifier.h"
#include "opmode/window/record/record_table.h"

#include <QMainWindow>
#include <QPointer>

class QLabel;
class QSplitter;

namespace ktr {

class AlarmBar;
class ListNotices;
class MessageLine;
class OpmodeMenus;
class OpmodePages;
class OpmodeViews;
class OperatorBar;
class OverviewPage;
class PaneKeys;
class RecordWindow;
class StationCommands;
class StationCounts;
class StationTreePane;
class StationTreeView;
class WallHeader;
class WallMode;

/// The window of the operational mode: the tree of all stations, and pages about the chosen one.
class Form_betriebsmodus : public QMainWindow
{
    Q_OBJECT

public:
    struct Services
    {
        Timers &timers;
        QLocale locale;
        /// Ask for a file to write or to read; empty for "cancel". A filter is made of pairs
        /// "description|patterns".
        std::function<QString(const QString &proposal, const QString &filter)> askSave;
        std::function<QString(const QString &filter)> askOpen;
        /// Where the stations are was chosen for this run, and is not to be changed.
        bool isPlaceFixed = false;
    };

    Form_betriebsmodus(OperationalMode &mode, const TextTable &texts, const Services &services,
                       QWidget *parent = nullptr);
    ~Form_betriebsmodus() override;

    /// Opens the stations of a file, or of a record on a server, and selects the first one. Where they cannot
    /// be watched a message and a banner say so, and the user can try again; of a server it is tried by
    /// itself, too.
    void open(const QString &nodesPath);
    /// The same with what is meant as the address of a record; that it is none is told.
    void openAt(const QString &address);
    static constexpr Milliseconds openAgainDelay{5'000};

    /// Puts the texts of the table in place.
    void applyTexts();

    /// While it is busy the window refuses to close, with a beep.
    bool isBusy() const { return m_busy > 0; }

    /// The window and its stations are needed: it does not close.
    void hold(bool isHeld) { m_isHeld = isHeld; }

    /// Whether it asks before it closes while it watches stations or alarms are open. Not where nobody is
    /// there to answer, or the user has agreed already.
    void setAsksBeforeEnd(bool asks) { m_asksBeforeEnd = asks; }
    /// Asks that; true where there is nothing to ask. Not while isBusy().
    bool mayEndWatching();

    /// A line for the status bar.
    void tell(const QString &line);

Q_SIGNALS:
    /// The window was closed and its stations are gone, of which nobody watches so many any more.
    void closed(int stationsWithoutWatch);
    /// A module is to be configured: the main window is to open its link at this address.
    void configurationWanted(const QString &hostAddress, const QString &kennung);
    /// Configurations are to be transmitted to several stations, of which these are proposed: those that the
    /// tree shows.
    void fleetWanted(const QStringList &stations);
    /// The stations are to be those of a record on a server, or with an empty address of the list here. What
    /// was open is closed.
    void placeWanted(const QString &address);

protected:
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void keepOpenWhileAskingForFiles();
    void layOut();
    void connectNotices();
    void connectTree();
    void connectMenus();
    void connectAlarms();
    void connectMute();
    void connectSettings();
    void showMute();
    void restorePlaces();

    void openList();
    void openShared();
    void showUsable(bool isUsable);
    void showNoAlarm();
    bool closeList();
    void choosePlace();
    void showHindrance(const Status &opened);
    void showDefects();
    void showBox(const QString &message);
    void beginEmptyList();
    void showTreeMenu(const QPoint &place, bool isAboutStation);
    QModelIndex chosenStation() const;
    QString chosen() const;
    void addStation();
    void addStations();
    void exportEntries();
    void showRetention();
    void offerThinning();
    void rememberChosen();
    void chooseAgain();
    RecordWindow &openRecord();
    bool showInTree(const RecordLine &line);
    void comeToFront();
    void renameStation();
    void configure();
    void configureSeveral();
    bool ask(const QString &question);
    bool askFollowing(const std::function<QString()> &question);
    void showTitle();
    void tellLiveness(const StationEvent &event);
    void enableActions();

    OperationalMode &m_mode;
    const TextTable &m_texts;
    Services m_services;
    Acknowledging m_acknowledging;
    AlarmCentre m_alarms;
    AlarmMute m_mute;
    AlarmSound m_sound;
    DesktopNotifier m_notifier;
    int m_busy = 0;
    bool m_isHeld = false;
    bool m_asksBeforeEnd = true;

    QString m_nodesPath;
    bool m_isShared = false; ///< it is the address of a record
    std::unique_ptr<OneShotTimer> m_openAgain;
    std::unique_ptr<RecordQueries> m_opening; ///< while a server is asked for its stations
    QString m_chosenName;                     ///< keys are others after each opening
    OpmodeMenus *m_menus;
    ListNotices *m_notices;
    OperatorBar *m_operatorBar;
    AlarmBar *m_alarmBar;
    QLabel *m_noAlarm;
    QLabel *m_muted; ///< until when
    QSplitter *m_splitter;
    OverviewPage *m_overview;
    WallHeader *m_wallHeader;
    WallMode *m_wall;
    OpmodeViews *m_views;
    StationTreePane *m_treePane;
    StationTreeView *m_tree; ///< that of the pane
    OpmodePages *m_pages;
    StationCommands *m_commands;
    StationCounts *m_counts;
    MessageLine *m_messages;
    PaneKeys *m_paneKeys;
    QPointer<RecordWindow> m_recordWindow; ///< no child: this window may stand above it
};

} // namespace ktr
