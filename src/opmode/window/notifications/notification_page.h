#pragma once

#include "opmode/window/acknowledging.h"
#include "opmode/window/notifications/notification_model.h"
#include "opmode/window/opmode_page.h"

class QAction;
class QCheckBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTableView;

namespace ktr {

class ViewActivity;

/// The notifications of a station, or of all: when they arrived, what they say, whether somebody has taken
/// note.
class NotificationPage : public OpmodePage
{
    Q_OBJECT

public:
    NotificationPage(OperationalMode &mode, const TextTable &texts, Acknowledging &acknowledging,
                     Timers &timers, const QLocale &locale, QWidget *parent = nullptr);

    void applyTexts() override;
    /// Chooses a notification and brings it into view, widening the choice only where it is not listed. Its
    /// station is to be shown before.
    void showEntry(const QModelIndex &entry) override;

protected:
    void stationChosen() override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QWidget *createChoice();
    QWidget *createButtons();
    void setUpTable();
    void setUpMenu();
    bool takeKey(const QKeyEvent &event);
    void choose();
    void arrange();
    void fitColumns();
    bool isPointedAt() const;
    void mouseLeft();
    void keepPlace();
    void returnToPlace();
    void returnToTop();
    void refresh();
    void refreshButtons();
    QModelIndexList selectedEntries() const;
    void acknowledgeSelected();
    void copySelected();
    void removeSelected();

    Acknowledging &m_acknowledging;
    NotificationModel *m_model;
    QGridLayout *m_choice = nullptr; ///< in one row or in two
    QWidget *m_scope = nullptr;
    QTableView *m_table;
    ViewActivity *m_activity; ///< in the table
    QRadioButton *m_oneStation;
    QRadioButton *m_allStations;
    QCheckBox *m_onlyUnacknowledged;
    QLineEdit *m_filter;
    QPushButton *m_accept;
    QPushButton *m_acceptAll;
    QPushButton *m_copy;
    std::array<QAction *, 3> m_menu{}; ///< what the three buttons do, in their order
    QAction *m_remove = nullptr;
    QLabel *m_summary;
    QLabel *m_empty;               ///< over the table
    QPersistentModelIndex m_place; ///< the row at the top of the view, while changes are taken over
    bool m_belongsAtTop = false;   ///< once the mouse has left
};

} // namespace ktr
