#pragma once

#include <QLabel>
#include <QTimer>

namespace ktr {

class OperationalMode;
class StationTreeView;

/// How many stations there are, and how many of them are alive, silent and so on: for the status bar.
class StationCounts : public QLabel
{
    Q_OBJECT

public:
    /// Counts anew whenever a station of the mode changes or the tree shows others, until it is stopped.
    StationCounts(OperationalMode &mode, const StationTreeView &tree, QWidget *parent = nullptr);

    void showNow();
    void stop() { m_soon.stop(); }

private:
    OperationalMode &m_mode;
    const StationTreeView &m_tree;
    QTimer m_soon; ///< counting takes longer the more stations there are
};

} // namespace ktr
