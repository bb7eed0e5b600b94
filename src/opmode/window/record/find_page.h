#pragma once

#include "opmode/overview/station_groups.h"
#include "opmode/window/record/record_model.h"

#include <QDateTime>
#include <QWidget>

class QAction;
class QComboBox;
class QDateTimeEdit;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QSortFilterProxyModel;
class QTableView;
class QTimer;

namespace ktr {

class ProblemLabel;
class RecordExport;

/// Searches the record for events or alarms, lists and exports what it finds.
class FindPage : public QWidget
{
    Q_OBJECT

public:
    struct Services
    {
        std::function<QString(const QString &proposal, const QString &filter)> askSave;
        /// Whether the sound of alarms is off.
        std::function<bool()> isMuted = [] { return false; };
        std::function<QDateTime()> now = [] { return QDateTime::currentDateTime(); };
        /// Those of the overview.
        std::function<StationGroups()> groups = [] { return StationGroups(); };
        /// Shows in the tree what a line tells of; false when its station is not there any more.
        std::function<bool(const RecordLine &line)> showInTree = [](const RecordLine &) { return false; };
    };

    FindPage(RecordQueries &queries, QString recordPath, Services services, QWidget *parent = nullptr);
    ~FindPage() override;

    void applyTexts();
    /// Searches for the alarms that came from `from` and before `to`, or for what became of connections then,
    /// of stations as the field for them takes them; empty: of all. Times are milliseconds since 1970 UTC.
    void showTimes(bool alarms, qint64 from, qint64 to, const QString &stations);
    /// Puts the focus into the field for the text.
    void beginTyping();
    /// Shows what was committed since the last call, and at midnight another day.
    void follow();

Q_SIGNALS:
    void statusMessage(const QString &line);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    enum Period { Everything, Today, Yesterday, LastDays, FromTo };

    void layOut();
    void setUpTable();
    QDateTimeEdit *timeField(const char *name);
    RecordSearch wanted() const;
    /// The stations with a name that was typed; nothing when all are meant.
    std::optional<QList<qint64>> stationsMeant() const;
    void period(qint64 &from, qint64 &to) const;
    void searchNow();
    void showView();
    void showPeriod();
    void showNames();
    void showState();
    void fitColumns();
    void copySelected();
    void enableActions();
    void showInTree();
    void exportFound();
    void exported(const QString &path, const Status &status);

    Services m_services;
    QString m_recordPath;
    RecordModel *m_model;
    QSortFilterProxyModel *m_order;
    QTimer *m_pause; ///< between typing and searching
    std::unique_ptr<RecordExport> m_export;
    QString m_problemText; ///< of the last export

    QRadioButton *m_events;
    QRadioButton *m_alarms;
    QLabel *m_periodLabel;
    QComboBox *m_period;
    QDateTimeEdit *m_from;
    QDateTimeEdit *m_to;
    QLineEdit *m_station;
    QLineEdit *m_text;
    QComboBox *m_kind;
    QComboBox *m_state;
    QComboBox *m_operator;
    QTableView *m_table;
    QLabel *m_note; ///< in what the text is not searched for
    ProblemLabel *m_problem;
    QLabel *m_count;
    QPushButton *m_exportButton;
    QPushButton *m_showButton;
    QAction *m_show;
    QAction *m_copy;
};

} // namespace ktr
