#pragma once

#include "lang/text_table.h"
#include "opmode/operational_mode.h"
#include "opmode/window/many_stations.h"

namespace ktr {

class ManyLine;
class OpmodeMenus;
class OverviewView;
class StationTreeView;

/// What the menus do with the chosen station, or with all stations that are chosen.
class StationCommands : public QObject
{
    Q_OBJECT

public:
    struct Services
    {
        OperationalMode &mode;
        const TextTable &texts;
        OpmodeMenus &menus;
        StationTreeView &tree;
        const OverviewView &overview; ///< while it is visible, stations are chosen there
        /// Asks before something is removed or stopped, whether it can be undone or not.
        std::function<bool(const QString &question)> ask;
        /// The same of what may tell something else while the question stands there.
        std::function<bool(const std::function<QString()> &question)> askFollowing;
        /// A line for the status bar.
        std::function<void(const QString &line)> tell;
    };

    StationCommands(const Services &services, QWidget &window);

    /// For the status bar.
    ManyLine &line() { return *m_line; }
    /// The keys of those that the menus are about.
    QStringList chosen() const;
    void applyTexts();
    /// Shows what is chosen, and what can be done with it.
    void showChosen(bool isUsable);
    /// Another list is open, or none.
    void listChanged();

Q_SIGNALS:
    /// Others can be brought back, or none.
    void removedChanged();

private:
    void remove();
    void removeOne(const QString &kennung);
    void removeMany(const QStringList &stations);
    void removeStations(const QStringList &stations);
    void undo();
    void setOnline(bool online);
    void putAllOffline();
    void setExclusive(bool exclusive);
    bool mayBeExclusive(const QStringList &stations);
    void requestValues();
    void start(const QStringList &stations, ManyStations::Job job);
    void showRemoved();
    void chooseBeside(const QStringList &stations);
    void chooseBroughtBack(const QStringList &stations);
    QString howBack() const;
    QString openAlarmsOf(const QStringList &stations) const;
    QString named(const QStringList &stations) const;
    QString nameOf(const QString &kennung) const;
    bool isBusy();

    Services m_services;
    QWidget &m_window;
    ManyStations m_work;
    ManyLine *m_line;
    QString m_nodeBefore; ///< the removal, of those that went
};

} // namespace ktr
