#include "opmode/window/station_commands.h"

#include "look/message_dialog.h"
#include "look/outside_texts.h"
#include "opmode/window/many_line.h"
#include "opmode/window/opmode_menus.h"
#include "opmode/window/overview/overview_view.h"
#include "opmode/window/overview/shown_rows.h"
#include "opmode/window/station_tree_view.h"

#include <QAction>

#include <algorithm>

namespace ktr {

StationCommands::StationCommands(const Services &services, QWidget &window)
    : QObject(&window), m_services(services), m_window(window), m_line(new ManyLine(m_work, &window))
{
    const OpmodeMenus &menus = services.menus;
    const auto does = [this](QAction *action, auto &&slot) {
        connect(action, &QAction::triggered, this, std::forward<decltype(slot)>(slot));
    };
    does(menus.mnu_station_del, [this] { remove(); });
    does(menus.mnu_station_undo, &StationCommands::undo);
    does(menus.mnu_station_online, &StationCommands::setOnline);
    does(menus.mnu_station_alloffline, [this] { putAllOffline(); });
    does(menus.mnu_exclusive, &StationCommands::setExclusive);
    does(menus.mnu_values, &StationCommands::requestValues);
    connect(m_line, &ManyLine::undoWanted, this, &StationCommands::undo);
    connect(m_line, &ManyLine::stopWanted, &m_work, &ManyStations::stop);
    connect(m_line, &ManyLine::failuresWanted, this, [this] {
        Dialog::message(&m_window, m_services.texts, m_work.failures().join(u'\n'),
                        QStringLiteral("many stations"));
    });
}

QStringList StationCommands::chosen() const
{
    return m_services.tree.chosenStations();
}

void StationCommands::applyTexts()
{
    m_line->applyTexts();
}

void StationCommands::showChosen(bool isUsable)
{
    const OperationalMode &mode = m_services.mode;
    const QStringList stations = isUsable ? chosen() : QStringList();
    const auto all = [&](bool (cStation::*is)() const) {
        return !stations.isEmpty() && std::ranges::all_of(stations, [&](const QString &kennung) {
            const cStation *station = mode.station(kennung);
            return station != nullptr &&
                   ((station->*is)() || (is == &cStation::online && mode.isLent(kennung)));
        });
    };
    OpmodeMenus::Chosen chosen;
    chosen.stations = static_cast<int>(stations.size());
    chosen.areOnline = all(&cStation::online);
    chosen.areExclusive = all(&cStation::exclusiveMode);
    const AlarmActions &actions = mode.alarmActions();
    chosen.isMaintained =
        stations.size() == 1 && actions.maintenanceOf(actions.numberOf(stations.constFirst())) != nullptr;
    m_services.menus.setChosen(chosen);
    m_services.menus.setRemoved(isUsable ? mode.removal().count() : 0);
    m_line->showChosen(chosen.stations);
}

void StationCommands::listChanged()
{
    m_work.stop();
    showRemoved();
}

void StationCommands::start(const QStringList &stations, ManyStations::Job job)
{
    m_work.start(stations, std::move(job));
}

bool StationCommands::isBusy()
{
    if (!m_work.isIdle()) {
        m_services.tell(tr("%1: that goes on").arg(m_work.doing()));
    }
    return !m_work.isIdle();
}

QString StationCommands::nameOf(const QString &kennung) const
{
    return m_services.mode.tree().find(kennung).data().toString();
}

/// The first of them, and how many more there are.
QString StationCommands::named(const QStringList &stations) const
{
    constexpr qsizetype most = 5;
    constexpr qsizetype longest = 40;
    QStringList names;
    for (const QString &kennung : stations.first(std::min(most, stations.size()))) {
        names += shortenedLine(nameOf(kennung), longest);
    }
    const QString first = names.join(QLatin1String(", "));
    return stations.size() > most ? tr("%1 and %L2 more").arg(first).arg(stations.size() - most) : first;
}

// Removing, and bringing back

void StationCommands::remove()
{
    const QStringList stations = chosen();
    if (stations.isEmpty() || isBusy()) {
        return;
    }
    stations.size() == 1 ? removeOne(stations.constFirst()) : removeMany(stations);
}

void StationCommands::removeOne(const QString &kennung)
{
    const QString name = nameOf(kennung);
    if (m_services.askFollowing([this, kennung, name]() -> QString {
            return tr("Delete the station \"%1\" with its notifications, its history and its values?")
                       .arg(name) +
                   QLatin1String("\n\n") + openAlarmsOf({kennung}) + howBack();
        })) {
        removeStations({kennung});
        m_services.tell(m_services.mode.isJoined()
                            ? tr("The station \"%1\" is deleted where the stations are watched").arg(name)
                            : tr("The station \"%1\" was deleted").arg(name));
    }
}

void StationCommands::removeMany(const QStringList &stations)
{
    const QString what = tr("Delete %L1 stations with their notifications, their history and their values?")
                             .arg(stations.size()) +
                         QLatin1String("\n\n") + named(stations) + QLatin1String(".\n\n");
    if (m_services.askFollowing(
            [this, what, stations]() -> QString { return what + openAlarmsOf(stations) + howBack(); })) {
        removeStations(stations);
    }
}

/// A paragraph of a question; empty where there are none.
QString StationCommands::openAlarmsOf(const QStringList &stations) const
{
    const OperationalMode &mode = m_services.mode;
    QSet<qint64> numbers;
    for (const QString &kennung : stations) {
        numbers.insert(mode.alarmActions().numberOf(kennung));
    }
    const int open = mode.alarms().waitingCount(numbers);
    return open == 0 ? QString()
                     : tr("Alarms that are open and will be closed: %L1.").arg(open) + QLatin1String("\n\n");
}

QString StationCommands::howBack() const
{
    const QString why = m_services.mode.whyNotBack();
    return why.isEmpty()
               ? tr("Ctrl+Z brings back what was deleted, until stations are deleted the next time or "
                    "the operational mode is closed.")
               : tr("It cannot be undone: %1.").arg(why);
}

void StationCommands::removeStations(const QStringList &stations)
{
    m_nodeBefore = m_services.tree.currentIndex().data(StationTree::KeyRole).toString();
    chooseBeside(stations);
    OperationalMode &mode = m_services.mode;
    const bool isForGood = !mode.whyNotBack().isEmpty();
    mode.removal().begin();
    const bool isMany = stations.size() > 1;
    start(stations, {tr("Removing"),
                     [&mode, isForGood](const QString &kennung) {
                         isForGood ? mode.removeStation(kennung) : mode.removal().remove(kennung);
                         return QString();
                     },
                     [this, isForGood, isMany](int count) {
                         showRemoved();
                         m_services.tree.scrollTo(m_services.tree.currentIndex());
                         if (isMany) {
                             m_services.tell(
                                 isForGood && m_services.mode.isJoined()
                                     ? tr("Stations that are removed where they are watched: %L1").arg(count)
                                     : tr("Stations removed: %L1").arg(count));
                         }
                     }});
}

/// The station after the last one that goes, or else the one before, of those that are to be seen: it has the
/// focus then. Without one nothing is chosen.
void StationCommands::chooseBeside(const QStringList &stations)
{
    const QString beside = m_services.overview.isVisible()
                               ? shownBeside(m_services.overview.stations(), stations)
                               : m_services.tree.besideOf(stations);
    m_services.tree.choose(m_services.mode.tree().find(beside));
}

void StationCommands::showRemoved()
{
    const int count = m_services.mode.removal().count();
    m_line->showRemoved(count);
    m_services.menus.setRemoved(count);
    Q_EMIT removedChanged();
}

void StationCommands::undo()
{
    OperationalMode &mode = m_services.mode;
    if (mode.removal().count() == 0 || isBusy()) {
        return;
    }
    const QStringList stations = mode.removal().stations();
    start(stations, {tr("Bringing back"),
                     [&mode](const QString &kennung) {
                         return mode.removal().restoreNext()
                                    ? QString()
                                    : tr("%1: another station has this name now").arg(kennung);
                     },
                     [this, stations](int count) {
                         m_services.mode.settleRestored();
                         showRemoved();
                         chooseBroughtBack(stations);
                         m_services.tree.scrollTo(m_services.tree.currentIndex());
                         m_services.tell(tr("Stations brought back: %L1").arg(count));
                     }});
}

/// With the node that was the current one, and so the page.
void StationCommands::chooseBroughtBack(const QStringList &stations)
{
    StationTreeView &view = m_services.tree;
    const QModelIndex node = m_services.mode.tree().find(m_nodeBefore);
    const QString station = StationTreeView::stationOf(node).data(StationTree::KeyRole).toString();
    const bool isAmong = stations.contains(station);
    view.chooseStations(stations, isAmong ? station : stations.constFirst());
    if (isAmong && stations.size() == 1) {
        view.choose(node);
    }
}

// What is done with each

void StationCommands::setOnline(bool online)
{
    const QStringList stations = chosen();
    OperationalMode &mode = m_services.mode;
    if (stations.size() == 1) {
        mode.setOnline(stations.constFirst(), online);
        return;
    }
    if (isBusy() ||
        (!online &&
         !m_services.ask(
             tr("Put %L1 stations offline? Their alarms do not arrive until they are online again.")
                 .arg(stations.size()) +
             QLatin1String("\n\n") + named(stations)))) {
        showChosen(true);
        return;
    }
    start(stations,
          {online ? tr("Putting online") : tr("Putting offline"),
           [this, online](const QString &kennung) {
               const cStation *station = m_services.mode.station(kennung);
               if (station == nullptr) {
                   return tr("%1: no longer there").arg(kennung);
               }
               if (online && station->hostAddress().isEmpty()) {
                   return tr("%1: it has no address yet").arg(nameOf(kennung));
               }
               if (station->online() != online || m_services.mode.isLent(kennung)) {
                   m_services.mode.setOnline(kennung, online);
               }
               return QString();
           },
           [this, online](int count) {
               showChosen(true);
               m_services.tell(
                   (online ? tr("Stations put online: %L1") : tr("Stations put offline: %L1")).arg(count));
           }});
}

void StationCommands::putAllOffline()
{
    OperationalMode &mode = m_services.mode;
    int online = 0;
    mode.stations().forEach([&](const cStation &station) {
        online += station.online() || mode.isLent(station.kennung()) ? 1 : 0;
    });
    if (online == 0) {
        m_services.tell(tr("No station is online"));
    } else if (m_services.ask(
                   tr("Put all stations offline? Online now: %L1. Their alarms do not arrive until "
                      "they are online again.")
                       .arg(online))) {
        mode.setAllOnline(false);
    }
}

/// One is a matter of its page, where the switch tells how it is.
bool StationCommands::mayBeExclusive(const QStringList &stations)
{
    return stations.size() < 2 ||
           m_services.ask(
               tr("Put %L1 stations into exclusive mode? They neither send nor receive by GSM then: "
                  "their alarms arrive here alone, and on no telephone.")
                   .arg(stations.size()) +
               QLatin1String("\n\n") + named(stations));
}

void StationCommands::setExclusive(bool exclusive)
{
    const QStringList stations = chosen();
    if (isBusy() || (exclusive && !mayBeExclusive(stations))) {
        showChosen(true);
        return;
    }
    start(stations, {m_services.texts.text(Text::ExclusiveMode),
                     [this, exclusive](const QString &kennung) {
                         if (m_services.mode.station(kennung) == nullptr) {
                             return tr("%1: no longer there").arg(kennung);
                         }
                         m_services.mode.setExclusive(kennung, exclusive);
                         return QString();
                     },
                     [this, exclusive](int count) {
                         showChosen(true);
                         m_services.tell((exclusive ? tr("Stations in exclusive mode: %L1")
                                                    : tr("Stations no longer in exclusive mode: %L1"))
                                             .arg(count));
                     }});
}

void StationCommands::requestValues()
{
    if (isBusy()) {
        return;
    }
    start(chosen(), {tr("Asking for values"),
                     [this](const QString &kennung) {
                         const cStation *station = m_services.mode.station(kennung);
                         return station == nullptr   ? tr("%1: no longer there").arg(kennung)
                                : !station->online() ? tr("%1: it is offline").arg(nameOf(kennung))
                                : m_services.mode.requestValues(kennung)
                                    ? QString()
                                    : tr("%1: it has a text to deliver already").arg(nameOf(kennung));
                     },
                     [this](int count) {
                         m_services.tell(tr("Stations that are asked for their values: %L1").arg(count));
                     }});
}

} // namespace ktr
