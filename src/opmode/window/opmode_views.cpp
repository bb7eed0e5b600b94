#include "opmode/window/opmode_views.h"

#include "opmode/operational_mode.h"
#include "opmode/window/opmode_menus.h"
#include "opmode/window/opmode_pages.h"
#include "opmode/window/overview/overview_page.h"
#include "opmode/window/overview/overview_view.h"
#include "opmode/window/overview/wall_mode.h"
#include "opmode/window/station_tree_view.h"

#include <QScopedValueRollback>
#include <QSplitter>

namespace ktr {

OpmodeViews::OpmodeViews(const Parts &parts, QObject *parent) : QObject(parent), m_parts(parts)
{
    connect(&parts.overview.view(), &OverviewView::choiceChanged, this, &OpmodeViews::followOverview);
    connect(&parts.tree, &StationTreeView::choiceChanged, this, &OpmodeViews::followTree);
    connect(&parts.overview, &OverviewPage::curvesWanted, this, &OpmodeViews::showCurves);
    connect(&parts.overview, &OverviewPage::stationWanted, this, [this](const QString &kennung) {
        show(false);
        m_parts.tree.choose(m_parts.mode.tree().find(kennung));
        m_parts.tree.setFocus();
    });
}

void OpmodeViews::show(bool treeOnly)
{
    m_parts.wall.leave();
    const bool isOverview = m_parts.overview.isVisible();
    m_parts.overview.hide();
    m_parts.splitter.show();
    m_parts.pages.setVisible(!treeOnly);
    if (isOverview) { // the focus was there
        m_parts.tree.chooseAgain();
        m_parts.tree.setFocus();
    }
    m_parts.menus.setView(treeOnly ? OpmodeMenus::View::TreeOnly : OpmodeMenus::View::Normal);
}

/// In the place of the tree and the pages; the tree's chosen station is chosen there, too.
void OpmodeViews::showOverview()
{
    m_parts.splitter.hide();
    {
        const QScopedValueRollback following(m_isFollowing, true);
        m_parts.overview.show();
    }
    chooseInOverview();
    m_parts.overview.view().scrollToTop(); // where the urgent ones are
    m_parts.overview.view().setFocus();
    m_parts.menus.setView(OpmodeMenus::View::Overview);
}

void OpmodeViews::showPage(int page)
{
    show(false);
    m_parts.pages.choosePage(page);
}

/// What is brought back, for example, the overview may not have yet.
void OpmodeViews::followTree()
{
    if (m_parts.overview.isVisible() && !m_isFollowing) {
        m_parts.overview.model().update();
        chooseInOverview();
    }
}

void OpmodeViews::chooseInOverview()
{
    {
        const QScopedValueRollback following(m_isFollowing, true);
        m_parts.overview.view().chooseStations(
            m_parts.tree.chosenStations(),
            m_parts.tree.chosenStation().data(StationTree::KeyRole).toString());
    }
    followOverview(); // a search may hide what is chosen in the tree
}

/// The menus are about what is chosen there.
void OpmodeViews::followOverview()
{
    if (!m_isFollowing) {
        const QScopedValueRollback following(m_isFollowing, true);
        m_parts.tree.chooseStations(m_parts.overview.view().chosenStations(),
                                    m_parts.overview.view().chosen());
    }
}

void OpmodeViews::showCurves(const QList<SeriesId> &added)
{
    show(false);
    m_parts.pages.showCurves(&added);
}

void OpmodeViews::toggleWall()
{
    if (m_parts.wall.isOn()) {
        m_parts.wall.leave();
    } else {
        showOverview();
        m_parts.wall.enter();
    }
}

void OpmodeViews::goTo(const QString &kennung, const QModelIndex &entry)
{
    show(false);
    const QModelIndex station = m_parts.mode.tree().find(kennung);
    if (!station.isValid()) { // it is about none
        m_parts.pages.showAllAlarms();
    } else if (!entry.isValid()) { // no module said it
        m_parts.tree.choose(station);
    } else {
        m_parts.tree.choose(OpmodePages::notificationsOf(station));
        m_parts.pages.showNotification(entry);
    }
}

} // namespace ktr
