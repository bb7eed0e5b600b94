#include "opmode/window/branch_opener.h"

#include "opmode/window/station_tree_view.h"
#include "opmode/window/view_activity.h"

#include <QScopedValueRollback>

#include <tuple>

namespace ktr {

namespace {

constexpr int revealMs = 100;
constexpr int closeMs = 3'000;
constexpr int quietMs = 60'000;
constexpr Milliseconds placeRest{600'000}; ///< so long after the user's last work the tree stays in its place

/// Of the nodes that a node stands under.
QSet<QString> keysAbove(const QModelIndex &node)
{
    QSet<QString> keys;
    for (QModelIndex above = node.parent(); above.isValid(); above = above.parent()) {
        keys.insert(above.data(StationTree::KeyRole).toString());
    }
    return keys;
}

} // namespace

BranchOpener::BranchOpener(StationTreeView &view, StationTree &tree)
    : QObject(&view), m_view(view), m_tree(tree), m_activity(view.activity())
{
    const std::tuple<QTimer *, const char *, int, void (BranchOpener::*)()> timers[] = {
        {&Timer_doView, "Timer_doView", revealMs, &BranchOpener::revealNow},
        {&m_closeTimer, "Timer_close", closeMs, &BranchOpener::closeAcknowledged},
        {&m_quietTimer, "Timer_quiet", quietMs, &BranchOpener::closeOthers}};
    for (const auto &[timer, name, interval, fired] : timers) {
        timer->setParent(this);
        timer->setObjectName(QLatin1String(name));
        timer->setSingleShot(true);
        timer->setInterval(interval);
        connect(timer, &QTimer::timeout, this, fired);
    }
    const auto isUsers = [this](const QModelIndex &branch) {
        if (!m_isOpening) {
            m_opened.remove(branch.data(StationTree::KeyRole).toString());
        }
    };
    connect(&view, &StationTreeView::rowsHeld, &Timer_doView, qOverload<>(&QTimer::start));
    connect(&view, &StationTreeView::currentNodeChanged, this, &BranchOpener::closeSoon);
    connect(&view, &QTreeView::expanded, this, isUsers);
    connect(&view, &QTreeView::collapsed, this, isUsers);
    connect(&tree, &StationTree::alarmCountChanged, this, [this] {
        if (!m_opened.isEmpty()) {
            m_quietTimer.start();
            closeSoon();
        }
    });
}

void BranchOpener::reveal(const QModelIndex &entry)
{
    if (!entry.isValid()) {
        return;
    }
    m_branchesToReveal.insert(entry.parent().data(StationTree::KeyRole).toString());
    m_toReveal = entry;
    if (!Timer_doView.isActive()) {
        Timer_doView.start();
    }
}

/// Once the user is not at work in the tree: then the rows stand no longer further up than they would by
/// themselves, and what waits is made visible.
void BranchOpener::revealNow()
{
    if (m_activity.isInUse()) {
        Timer_doView.start();
        return;
    }
    if (!m_toReveal.isValid()) {
        m_view.endHold();
        return;
    }
    m_view.changeInPlace([this] {
        m_view.endHold();
        m_view.scheduleDelayedItemsLayout(); // once for all branches
        for (const QString &key : std::exchange(m_branchesToReveal, {})) {
            const QModelIndex branch = m_tree.find(key);
            open(branch.parent());
            open(branch);
        }
    });
    scrollToRevealed();
    m_revealed = std::exchange(m_toReveal, {});
    m_quietTimer.start();
    closeSoon(); // of an alarm that is acknowledged already
}

void BranchOpener::scrollToRevealed()
{
    if (m_activity.wasUsedWithin(placeRest)) {
        return;
    }
    const QModelIndex chosen = m_view.currentIndex();
    const bool staysInSight = m_activity.wasUsed() && m_view.isSeen(chosen);
    m_view.scrollTo(m_toReveal);
    if (staysInSight) {
        m_view.scrollTo(chosen);
    }
}

void BranchOpener::open(const QModelIndex &branch)
{
    if (branch.isValid() && !m_view.isExpanded(branch)) {
        const QScopedValueRollback opening(m_isOpening, true);
        m_view.expand(branch);
        m_opened.insert(branch.data(StationTree::KeyRole).toString());
    }
}

/// Looks in a few seconds whether there is something to close. Not put off by each alarm that is acknowledged
/// or comes meanwhile.
void BranchOpener::closeSoon()
{
    if (!m_closeTimer.isActive() && !m_opened.isEmpty()) {
        m_closeTimer.start();
    }
}

void BranchOpener::closeAcknowledged()
{
    if (m_activity.isInUse(ViewActivity::keysRestForClosing)) {
        m_closeTimer.start();
        return;
    }
    QSet<QString> branches;
    for (const QString &key : std::as_const(m_opened)) {
        const QModelIndex station = StationTreeView::stationOf(m_tree.find(key));
        if (station.data(StationTree::AlarmCountRole).toInt() == 0) {
            branches.insert(key);
        }
    }
    closeBranches(branches);
}

void BranchOpener::closeOthers()
{
    if (m_activity.isInUse()) {
        m_quietTimer.start();
        return;
    }
    QSet<QString> branches = m_opened;
    if (m_revealed.data(StationTree::ColourRole).toInt() == StationTree::alarmColour) {
        branches -= keysAbove(m_revealed);
    }
    closeBranches(branches);
}

/// Where the user is stays open until that is elsewhere.
void BranchOpener::closeBranches(QSet<QString> branches)
{
    branches -= keysAbove(m_view.currentIndex());
    if (branches.isEmpty()) {
        return;
    }
    m_opened -= branches;
    m_view.changeInPlace([&] {
        m_view.scheduleDelayedItemsLayout();
        for (const QString &key : std::as_const(branches)) {
            m_view.collapse(m_tree.find(key));
        }
    });
}

} // namespace ktr
