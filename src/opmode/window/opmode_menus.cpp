#include "opmode/window/opmode_menus.h"

#include "look/icons.h"
#include "look/mnemonics.h"
#include "opmode/window/alarm_mute.h"

#include <QActionGroup>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

namespace ktr {

namespace {

QAction *addAction(QMenu *menu, const char *name, const QKeySequence &shortcut = {})
{
    QAction *action = menu->addAction(QString());
    action->setObjectName(QLatin1String(name));
    action->setShortcut(shortcut);
    return action;
}

} // namespace

OpmodeMenus::OpmodeMenus(QMainWindow &window)
    : QObject(&window),
      m_stationMenu(window.menuBar()->addMenu(QString())),
      m_alarmMenu(window.menuBar()->addMenu(QString())),
      m_viewMenu(window.menuBar()->addMenu(QString()))
{
    mnu_station_add = addAction(m_stationMenu, "mnu_station_add", QKeySequence::New);
    mnu_station_list = addAction(m_stationMenu, "mnu_station_list");
    mnu_station_rename = addAction(m_stationMenu, "mnu_station_rename", QKeySequence(Qt::Key_F2));
    mnu_station_del = addAction(m_stationMenu, "mnu_station_del", QKeySequence(Qt::CTRL | Qt::Key_Delete));
    mnu_station_del->setShortcutContext(Qt::WidgetWithChildrenShortcut); // of lists of stations alone
    mnu_station_undo = addAction(m_stationMenu, "mnu_station_undo", QKeySequence::Undo);
    m_stationMenu->addSeparator();
    mnu_station_online = addAction(m_stationMenu, "mnu_station_online");
    mnu_station_online->setCheckable(true);
    mnu_exclusive = addAction(m_stationMenu, "mnu_exclusive");
    mnu_exclusive->setCheckable(true);
    mnu_values = addAction(m_stationMenu, "mnu_values", QKeySequence(Qt::Key_F5));
    mnu_station_allonline = addAction(m_stationMenu, "mnu_station_allonline");
    mnu_station_alloffline = addAction(m_stationMenu, "mnu_station_alloffline");
    m_stationMenu->addSeparator();
    mnu_maintenance = addAction(m_stationMenu, "mnu_maintenance");
    mnu_maintenance_end = addAction(m_stationMenu, "mnu_maintenance_end");
    m_stationMenu->addSeparator();
    mnu_station_curves =
        addAction(m_stationMenu, "mnu_station_curves", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_4));
    mnu_konfiguration = addAction(m_stationMenu, "mnu_konfiguration", QKeySequence(Qt::Key_F9));
    mnu_station_link = addAction(m_stationMenu, "mnu_station_link");
    mnu_station_unlink = addAction(m_stationMenu, "mnu_station_unlink");
    mnu_transmit_several =
        addAction(m_stationMenu, "mnu_transmit_several", QKeySequence(Qt::SHIFT | Qt::Key_F9));
    mnu_export = addAction(m_stationMenu, "mnu_export", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_E));
    mnu_retention = addAction(m_stationMenu, "mnu_retention");
    mnu_place = addAction(m_stationMenu, "mnu_place");
    m_stationMenu->addSeparator();
    mnu_close = addAction(m_stationMenu, "mnu_close", QKeySequence::Close);

    mnu_ansicht_normal = addAction(m_viewMenu, "mnu_ansicht_normal", QKeySequence(Qt::CTRL | Qt::Key_1));
    mnu_ansicht_treeview = addAction(m_viewMenu, "mnu_ansicht_treeview", QKeySequence(Qt::CTRL | Qt::Key_2));
    mnu_overview = addAction(m_viewMenu, "mnu_overview", QKeySequence(Qt::CTRL | Qt::Key_3));
    mnu_curves = addAction(m_viewMenu, "mnu_curves", QKeySequence(Qt::CTRL | Qt::Key_4));
    m_pageMenu = m_viewMenu->addMenu(QString());
    for (int page = 0; page < pages; ++page) {
        mnu_page += addAction(m_pageMenu, "mnu_page", QKeySequence(Qt::ALT | (Qt::Key_1 + page)));
        mnu_page.constLast()->setObjectName(QStringLiteral("mnu_page_%1").arg(page));
    }
    auto *views = new QActionGroup(this);
    for (QAction *view : {mnu_ansicht_normal, mnu_ansicht_treeview, mnu_overview}) {
        view->setCheckable(true);
        views->addAction(view);
    }
    mnu_ansicht_normal->setChecked(true);
    mnu_wall = addAction(m_viewMenu, "mnu_wall", QKeySequence(Qt::Key_F11));
    window.addAction(mnu_wall); // its key is needed where the menus are hidden, too
    m_viewMenu->addSeparator();
    mnu_record = addAction(m_viewMenu, "mnu_record", QKeySequence::Find);
    mnu_map = addAction(m_viewMenu, "mnu_map", QKeySequence(Qt::CTRL | Qt::Key_5));

    mnu_operator = addAction(m_alarmMenu, "mnu_operator");
    m_alarmMenu->addSeparator();
    mnu_stumm = addAction(m_alarmMenu, "mnu_stumm");
    mnu_stumm->setCheckable(true);
    m_muteMenu = m_alarmMenu->addMenu(QString());
    auto *muteLengths = new QActionGroup(this);
    for (int length = 0; length < AlarmMute::lengths; ++length) {
        QAction *action = addAction(m_muteMenu, "mnu_stumm_for");
        action->setCheckable(true);
        muteLengths->addAction(action);
        mnu_stumm_for += action;
    }
    mnu_sound = addAction(m_alarmMenu, "mnu_sound");
    m_alarmMenu->addSeparator();
    mnu_rules = addAction(m_alarmMenu, "mnu_rules");
    mnu_limits = addAction(m_alarmMenu, "mnu_limits");
    for (QMenu *menu : {m_stationMenu, m_alarmMenu}) {
        menu->setToolTipsVisible(true);
    }
    m_helpMenu = window.menuBar()->addMenu(QString());
    m_helpMenu->setObjectName(QStringLiteral("mnu_help"));
    mnu_record->setIcon(icon(IconName::Search));
    mnu_station_add->setIcon(icon(IconName::Add));
    mnu_station_del->setIcon(icon(IconName::Delete));
}

void OpmodeMenus::applyTexts(const TextTable &texts)
{
    m_stationMenu->setTitle(texts.text(Text::Station));
    mnu_station_add->setText(texts.text(Text::AddStation));
    mnu_station_list->setText(tr("Add several..."));
    mnu_station_rename->setText(tr("Rename"));
    mnu_station_del->setText(texts.text(Text::DeleteStation));
    mnu_station_undo->setText(tr("Undo the removal"));
    mnu_station_online->setText(texts.text(Text::Online));
    mnu_exclusive->setText(texts.text(Text::ExclusiveMode));
    mnu_values->setText(tr("Ask for the input values"));
    mnu_maintenance->setText(tr("Maintenance..."));
    mnu_maintenance_end->setText(tr("End the maintenance"));
    m_alarmMenu->setTitle(tr("Alarms"));
    mnu_operator->setText(tr("Operator..."));
    mnu_rules->setText(tr("Alarm rules..."));
    mnu_limits->setText(tr("Chattering and silence..."));
    mnu_stumm->setText(tr("Mute alarms"));
    m_muteMenu->setTitle(tr("Mute them for"));
    const QStringList lengths{tr("15 minutes"), tr("1 hour"), tr("4 hours"),
                              tr("the rest of the shift (6, 14 or 22 o'clock)")};
    for (int length = 0; length < AlarmMute::lengths; ++length) {
        mnu_stumm_for[length]->setText(lengths[length]);
    }
    mnu_sound->setText(tr("Sound..."));
    mnu_record->setText(tr("Find in the record..."));
    mnu_map->setText(tr("Map of time..."));
    mnu_station_allonline->setText(texts.text(Text::AllOnline));
    mnu_station_alloffline->setText(texts.text(Text::AllOffline));
    mnu_konfiguration->setText(texts.text(Text::ConfigurationMode));
    mnu_station_link->setText(tr("Link configuration file..."));
    mnu_station_unlink->setText(tr("Unlink configuration file"));
    mnu_transmit_several->setText(tr("Transmit to several..."));
    mnu_export->setText(texts.text(Text::Export) + QLatin1String("..."));
    mnu_retention->setText(tr("Record: size, age, copy..."));
    mnu_place->setText(tr("Where the stations are..."));
    mnu_close->setText(tr("Close the operational mode"));
    m_viewMenu->setTitle(texts.text(Text::View));
    mnu_ansicht_normal->setText(texts.text(Text::General));
    mnu_ansicht_treeview->setText(texts.text(Text::TreeView));
    mnu_overview->setText(tr("Overview of the stations"));
    mnu_curves->setText(tr("Curves of several stations"));
    mnu_station_curves->setText(tr("Add to the curves"));
    mnu_wall->setText(tr("Overview on the whole screen"));
    m_pageMenu->setTitle(tr("Pages"));
    m_helpMenu->setTitle(tr("Help"));
    giveMnemonics({m_stationMenu->menuAction(), m_alarmMenu->menuAction(), m_viewMenu->menuAction(),
                   m_helpMenu->menuAction()});
    giveMnemonics(m_stationMenu->actions());
    giveMnemonics(m_alarmMenu->actions());
    giveMnemonics(m_viewMenu->actions());
    giveMnemonics(m_muteMenu->actions());
}

void OpmodeMenus::setListUsable(bool isUsable)
{
    for (QAction *action : m_stationMenu->actions()) {
        action->setEnabled(isUsable || action == mnu_close || action == mnu_place);
    }
    for (QAction *action : {mnu_operator, mnu_rules, mnu_limits}) {
        action->setEnabled(isUsable);
    }
}

void OpmodeMenus::setChosen(const Chosen &chosen)
{
    for (QAction *action : {mnu_station_del, mnu_station_online, mnu_exclusive, mnu_values, mnu_konfiguration,
                            mnu_transmit_several, mnu_station_curves}) {
        action->setEnabled(chosen.stations > 0);
    }
    for (QAction *action : {mnu_station_rename, mnu_maintenance, mnu_station_link, mnu_station_unlink}) {
        action->setEnabled(chosen.stations == 1);
    }
    mnu_maintenance_end->setEnabled(chosen.stations == 1 && chosen.isMaintained);
    mnu_station_online->setChecked(chosen.areOnline);
    mnu_exclusive->setChecked(chosen.areExclusive);
    setHindrances(m_hindrances);
}

void OpmodeMenus::setRemoved(int stations)
{
    mnu_station_undo->setEnabled(stations > 0);
}

void OpmodeMenus::setPages(const QStringList &captions)
{
    for (int page = 0; page < pages; ++page) {
        mnu_page[page]->setText(captions.value(page));
    }
    giveMnemonics(mnu_page);
}

void OpmodeMenus::setHindrances(const Hindrances &hindrances)
{
    m_hindrances = hindrances;
    const auto hinder = [](const QList<QAction *> &actions, const QString &why) {
        for (QAction *action : actions) {
            action->setEnabled(action->isEnabled() && why.isEmpty());
            action->setToolTip(why);
        }
    };
    hinder({mnu_konfiguration, mnu_transmit_several}, hindrances.configuring);
    hinder({mnu_rules, mnu_limits}, hindrances.ruling);
    hinder({mnu_station_add, mnu_station_list, mnu_station_rename, mnu_station_del}, hindrances.listing);
    hinder({mnu_station_online, mnu_exclusive, mnu_values, mnu_station_allonline, mnu_station_alloffline,
            mnu_maintenance, mnu_maintenance_end},
           hindrances.operating);
}

void OpmodeMenus::setRecorded(bool isRecorded)
{
    mnu_record->setEnabled(isRecorded);
    mnu_map->setEnabled(isRecorded);
}

void OpmodeMenus::setView(View view)
{
    (view == View::Overview   ? mnu_overview
     : view == View::TreeOnly ? mnu_ansicht_treeview
                              : mnu_ansicht_normal)
        ->setChecked(true);
}

QList<QAction *> OpmodeMenus::treeActions(bool isAboutStation) const
{
    return isAboutStation ? m_stationMenu->actions()
                          : QList{mnu_station_add, mnu_station_list, mnu_station_allonline,
                                  mnu_station_alloffline, mnu_close};
}

} // namespace ktr
