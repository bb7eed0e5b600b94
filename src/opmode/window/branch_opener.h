#pragma once

#include "opmode/tree/station_tree.h"

#include <QSet>
#include <QTimer>

namespace ktr {

class StationTreeView;
class ViewActivity;

/// Opens the branches of StationTreeView in which something new stands, and closes them again. It opens
/// nothing while the user is at work in the tree. It scrolls there as long as nobody has worked in the tree;
/// afterwards not before that is a while ago, and only as far as the chosen node stays in sight. What it
/// opened it closes a few seconds after all alarms of the station are acknowledged, and when it has been
/// quiet for a minute, but for the latest alarm while it is red; never what the user opened or is at.
class BranchOpener : public QObject
{
    Q_OBJECT

public:
    BranchOpener(StationTreeView &view, StationTree &tree);

    /// Makes an entry visible in a moment: opens its branch and, unless that is the user's, scrolls to it. Of
    /// many in a moment the last is scrolled to.
    void reveal(const QModelIndex &entry);

private:
    void revealNow();
    void open(const QModelIndex &branch);
    void scrollToRevealed();
    void closeSoon();
    void closeAcknowledged();
    void closeOthers();
    void closeBranches(QSet<QString> branches);

    StationTreeView &m_view;
    StationTree &m_tree;
    const ViewActivity &m_activity;
    QTimer Timer_doView;
    QTimer m_closeTimer;
    QTimer m_quietTimer;
    QSet<QString> m_branchesToReveal; ///< keys: nodes come and go until the timer fires
    QPersistentModelIndex m_toReveal;
    QPersistentModelIndex m_revealed; ///< the latest
    QSet<QString> m_opened;           ///< keys of what is open by this, not by the user
    bool m_isOpening = false;
};

} // namespace ktr
