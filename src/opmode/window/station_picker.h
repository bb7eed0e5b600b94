#pragma once

#include <QWidget>

class QCheckBox;
class QLabel;
class QLineEdit;
class QListView;
class QSortFilterProxyModel;
class QStandardItemModel;

namespace ktr {

class StationTree;

/// All stations with a box to tick in front of each, and a field to find some of thousands.
class StationPicker : public QWidget
{
    Q_OBJECT

public:
    /// Shows the stations that the tree has now, none of them ticked.
    explicit StationPicker(const StationTree &tree, QWidget *parent = nullptr);

    /// The keys of those that are ticked, in the order of the tree; also of those not shown.
    QStringList ticked() const;

Q_SIGNALS:
    void changed();

private:
    void tickShown(bool on);
    void showTicks();

    QStandardItemModel *m_stations;
    QSortFilterProxyModel *m_shown;
    QLineEdit *m_filter;
    QCheckBox *m_all;
    QListView *m_list;
    QLabel *m_count;
    bool m_isTickingMany = false;
};

} // namespace ktr
