#pragma once

#include <QObject>

class QModelIndex;
class QSplitter;

namespace ktr {

class OperationalMode;
class OpmodeMenus;
class OpmodePages;
class OverviewPage;
class StationTreeView;
class WallMode;
struct SeriesId;

/// What the window shows: the tree with the pages or alone, or in their place the overview, also on a wall.
/// The tree and the overview follow each other in what is chosen.
class OpmodeViews : public QObject
{
    Q_OBJECT

public:
    /// All must outlive it.
    struct Parts
    {
        OperationalMode &mode;
        OpmodeMenus &menus;
        QSplitter &splitter; ///< with the tree and the pages
        StationTreeView &tree;
        OpmodePages &pages;
        OverviewPage &overview;
        WallMode &wall;
    };

    explicit OpmodeViews(const Parts &parts, QObject *parent = nullptr);

    void show(bool treeOnly);
    void showOverview();
    void toggleWall();
    void showPage(int page);
    /// Shows the curves, and adds some to them.
    void showCurves(const QList<SeriesId> &added);
    /// Shows a station, or without one all alarms, and of an entry that is valid its notification.
    void goTo(const QString &kennung, const QModelIndex &entry);

private:
    void followTree();
    void chooseInOverview();
    void followOverview();

    Parts m_parts;
    bool m_isFollowing = false; ///< the tree follows the overview, or that follows the tree
};

} // namespace ktr
