#pragma once

#include "lang/text_table.h"
#include "opmode/overview/overview_model.h"

#include <QWidget>

class QComboBox;
class QLabel;
class QLineEdit;
class QToolButton;

namespace ktr {

class OverviewView;

/// All stations as tiles, and above them what searches, sorts and zooms.
class OverviewPage : public QWidget
{
    Q_OBJECT

public:
    OverviewPage(OperationalMode &mode, Timers &timers, const QLocale &locale, QWidget *parent = nullptr);

    OverviewView &view() { return *m_view; }
    OverviewModel &model() { return m_model; }
    void applyTexts();
    /// Large and without the bar, the most urgent first and all at once; and as it was before.
    void showOnWall(const QFont &font);
    void showInWindow();

Q_SIGNALS:
    /// The user wants to see a station in the tree.
    void stationWanted(const QString &kennung);

protected:
    bool event(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    QWidget *createBar();
    void connectBar();
    void restore();
    void search();
    void goToFound();
    void showCounts();
    void showUrgent();
    bool handleKey(const QKeyEvent &event);

    OverviewModel m_model;
    OverviewModel::Order m_orderInWindow = OverviewModel::Order::Urgency;
    QWidget *m_bar;
    QLineEdit *m_search;
    QComboBox *m_order;
    QLabel *m_counts;
    QToolButton *m_fit;
    QToolButton *m_smaller;
    QToolButton *m_larger;
    OverviewView *m_urgent; ///< on a wall whose tiles are too small to be read
    OverviewView *m_view;
    QLabel *m_none; ///< no station was found
};

} // namespace ktr
