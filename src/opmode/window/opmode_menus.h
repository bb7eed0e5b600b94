#pragma once

#include "lang/text_table.h"

#include <QKeySequence>
#include <QObject>

class QAction;
class QMainWindow;
class QMenu;

namespace ktr {

/// The menus of the operational mode's window. It holds the actions; what they do is connected by the window.
class OpmodeMenus : public QObject
{
    Q_OBJECT

public:
    explicit OpmodeMenus(QMainWindow &window);

    void applyTexts(const TextTable &texts);

    /// Where the list of stations cannot be used the window can only be closed.
    void setListUsable(bool isUsable);
    /// What is chosen: how many stations, whether all of them are online, exclusive; one in maintenance can
    /// be taken out of it.
    struct Chosen
    {
        int stations = 0;
        bool areOnline = false;
        bool areExclusive = false;
        bool isMaintained = false;
    };
    /// Enables what is about one station, or also about several, and shows how they are.
    void setChosen(const Chosen &chosen);
    /// So many stations can be brought back.
    void setRemoved(int stations);
    /// Why nothing can be done now in an action's way, which is disabled then and says so; empty when it can.
    struct Hindrances
    {
        QString configuring; ///< a module
        QString operating;   ///< switching stations
        QString listing;     ///< changing the list of stations
        QString ruling;      ///< changing what holds for all alarms
    };
    void setHindrances(const Hindrances &hindrances);
    /// What happened can be searched only where it is recorded.
    void setRecorded(bool isRecorded);
    static constexpr int pages = 6;
    /// The pages beside the tree, as they are called.
    void setPages(const QStringList &captions);
    enum class View { Normal, TreeOnly, Overview };
    void setView(View view);

    /// What is offered about a station in the tree, or, below the last row, about none.
    QList<QAction *> treeActions(bool isAboutStation) const;

    QAction *mnu_station_add;
    QAction *mnu_station_list;
    QAction *mnu_station_rename;
    QAction *mnu_station_del;
    QAction *mnu_station_online;
    QAction *mnu_station_allonline;
    QAction *mnu_station_alloffline;
    QAction *mnu_station_undo;
    QAction *mnu_exclusive;
    QAction *mnu_values;
    QAction *mnu_konfiguration;
    QAction *mnu_station_link;
    QAction *mnu_station_unlink;
    QAction *mnu_transmit_several;
    QAction *mnu_export;
    QAction *mnu_retention;
    QAction *mnu_maintenance;
    QAction *mnu_maintenance_end;
    QAction *mnu_place;
    QAction *mnu_close;
    QAction *mnu_ansicht_normal;
    QAction *mnu_ansicht_treeview;
    QAction *mnu_overview;
    QAction *mnu_wall;
    QAction *mnu_curves;
    QAction *mnu_station_curves;
    QList<QAction *> mnu_page; ///< one for each page beside the tree
    QAction *mnu_stumm;
    QList<QAction *> mnu_stumm_for; ///< one for each AlarmMute::Length
    QAction *mnu_sound;
    QAction *mnu_record;
    QAction *mnu_map;
    QAction *mnu_rules;
    QAction *mnu_operator;
    QAction *mnu_limits;

private:
    QMenu *m_stationMenu;
    QMenu *m_alarmMenu;
    QMenu *m_viewMenu;
    Hindrances m_hindrances;
    QMenu *m_pageMenu;
    QMenu *m_muteMenu;
    QMenu *m_helpMenu; ///< filled by others
};

} // namespace ktr
