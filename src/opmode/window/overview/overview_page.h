#pragma once

#include "lang/text_table.h"
#include "opmode/curves/curve_series.h"
#include "opmode/overview/overview_model.h"
#include "platform/status.h"

#include <QWidget>

class QComboBox;
class QLabel;
class QLineEdit;
class QToolButton;

namespace ktr {

class OverviewOptions;
class OverviewView;

/// All stations as tiles, and above them what searches, sorts and zooms.
class OverviewPage : public QWidget
{
    Q_OBJECT

public:
    struct Services
    {
        OperationalMode &mode;
        const TextTable &texts;
        Timers &timers;
        QLocale locale;
    };

    explicit OverviewPage(const Services &services, QWidget *parent = nullptr);

    /// Takes the groups that belong to a list of stations.
    void openGroups(const QString &list);
    /// Takes them as they stand in the file now.
    void readGroups();

    OverviewView &view() { return *m_view; }
    OverviewModel &model() { return m_model; }
    void applyTexts();
    /// Large and without the bar, all at once, under headings where there were some, else the most urgent and
    /// newest first; and as it was before.
    void showOnWall(const QFont &font);
    void showInWindow();
    /// The name of the group that is shown; empty when all are.
    QString scope() const;

Q_SIGNALS:
    /// The user wants to see a station in the tree.
    void stationWanted(const QString &kennung);
    void groupsChanged(const ktr::StationGroups &groups);
    /// What of the file with the groups cannot be used, with its name; empty when all can.
    void groupsTrouble(const QString &trouble);
    /// The user dragged a station to where its curves are to be seen.
    void curvesWanted(const QList<ktr::SeriesId> &series);
    /// A line for the status bar.
    void statusMessage(const QString &line);

protected:
    bool event(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    QWidget *createBar();
    void connectBar();
    void restore();
    void search();
    void editGroups();
    void prepareOptions();
    void chooseGroupChannels(const QString &group, const QList<int> &channels);
    Status keepGroups(const QByteArray &text);
    void takeGroups(const QByteArray &text, const Status &read = Status::done());
    void showGroups();
    void goToFound();
    void showCounts();
    void showUrgent();
    bool handleKey(const QKeyEvent &event);

    const TextTable &m_texts;
    OverviewModel m_model;
    OverviewModel m_urgentModel; ///< of those above on a wall
    QString m_groupsFile;
    QByteArray m_groupsText; ///< of that
    OverviewModel::Order m_orderInWindow = OverviewModel::Order::Urgency;
    QStringList m_foldedInWindow;
    QWidget *m_bar;
    QLineEdit *m_search;
    QComboBox *m_order;
    QComboBox *m_group; ///< all, each, none
    OverviewOptions *m_options;
    QLabel *m_counts;
    QToolButton *m_fit;
    QToolButton *m_smaller;
    QToolButton *m_larger;
    OverviewView *m_urgent; ///< on a wall whose tiles are too small to be read
    OverviewView *m_view;
    QLabel *m_none; ///< no station was found
};

} // namespace ktr
