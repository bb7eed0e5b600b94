#pragma once

#include "lang/text_table.h"
#include "opmode/operational_mode.h"

#include <QWidget>

class QAction;
class QActionGroup;
class QComboBox;
class QLineEdit;
class QToolButton;

namespace ktr {

class TreeOrder;
class StationTreeView;

/// The left side of the window: the tree of stations, and above it what narrows it down.
class StationTreePane : public QWidget
{
    Q_OBJECT

public:
    StationTreePane(OperationalMode &mode, const TextTable &texts, Timers &timers, const QLocale &locale,
                    QWidget *parent = nullptr);

    StationTreeView &tree() { return *m_tree; }
    TreeOrder &order() { return *m_order; }
    void applyFilter();
    void applyTexts();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void createOrderMenu();
    void restoreOrder();
    QAction *addChoice(QActionGroup &choices, const QString &name, int value);

    OperationalMode &m_mode;
    const TextTable &m_texts;
    QLineEdit *m_search;
    QComboBox *m_kind; ///< of StationFilter::kinds()
    QToolButton *m_orderButton;
    StationTreeView *m_tree;
    TreeOrder *m_order;
    QActionGroup *m_orders;    ///< with values of OverviewModel::Order
    QActionGroup *m_groupings; ///< with values of OverviewModel::Grouping
    QAction *m_collapse;
    QAction *m_open;
};

} // namespace ktr
