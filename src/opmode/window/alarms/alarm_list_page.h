#pragma once

#include "opmode/window/acknowledging.h"
#include "opmode/window/alarms/alarm_list_model.h"
#include "opmode/window/opmode_page.h"

class QAction;
class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTreeView;

namespace ktr {

class ViewActivity;

/// The alarms of all stations that stand: those that are not acknowledged, and those that are not over.
class AlarmListPage : public OpmodePage
{
    Q_OBJECT

public:
    AlarmListPage(OperationalMode &mode, const TextTable &texts, Acknowledging &acknowledging, Timers &timers,
                  const QLocale &locale, QWidget *parent = nullptr);
    ~AlarmListPage() override;

    void applyTexts() override;
    /// Clears the filter and scrolls to the most urgent alarms.
    void showAll();

Q_SIGNALS:
    /// The user wants to see where an alarm came from; the entry is invalid where the module said nothing.
    void entryWanted(const QString &kennung, const QModelIndex &entry);

protected:
    void stationChosen() override {} ///< it is about all of them
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    enum Action { Acknowledge, AcknowledgeAll, EditComment, Shelve, Unshelve, GoTo, actions };

    void setUpList();
    QWidget *createChoice();
    QWidget *createButtons();
    void choose();
    void fitColumns();
    void refresh();
    void refreshButtons();
    bool takeKey(const QKeyEvent &event);
    QList<qint64> chosen() const;
    void noteView();
    void restoreView();
    void acknowledgeChosen();
    void goOnAfter(const QList<qint64> &acknowledged);
    bool isWaiting(qint64 alarm) const;
    QModelIndex nextWaiting(QModelIndex line) const;
    void editComment();
    void shelve();
    void unshelve();
    void goTo();
    void copy();

    Acknowledging &m_acknowledging;
    AlarmListModel *m_model;
    QTreeView *m_list;
    ViewActivity *m_activity; ///< in the list
    QLineEdit *m_filter;
    QCheckBox *m_onlyUnacknowledged;
    QCheckBox *m_shelved;
    std::array<QAction *, actions> m_actions{};
    std::array<QPushButton *, GoTo> m_buttons{}; ///< of the actions before that
    QLabel *m_summary;
    QLabel *m_empty; ///< over the list

    /// What was chosen, open and in view, by numbers and texts that outlive a reset of the model.
    struct NotedView
    {
        QSet<qint64> alarms;
        QSet<QString> storms;
        QSet<QString> open; ///< storms
        qint64 current = 0;
        QString currentStorm;
        int row = -1; ///< of the current one
        qint64 top = 0;
        QString topStorm;
    };
    NotedView m_noted;
};

} // namespace ktr
