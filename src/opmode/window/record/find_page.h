#pragma once

#include "opmode/window/record/record_model.h"

#include <QDateTime>
#include <QWidget>

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

/// The least width of a field for day, month, year, hour and minute.
int dateFieldWidth(const QWidget &field);

/// Finds what happened and what became of alarms.
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
    };

    FindPage(RecordQueries &queries, QString recordPath, Services services, QWidget *parent = nullptr);
    ~FindPage() override;

    void applyTexts();
    /// The text can be typed at once.
    void beginTyping();
    /// Takes in what was committed since, and the new day at midnight.
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
    /// Numbers of the stations that are meant; nothing: all.
    std::optional<QList<qint64>> stationsMeant() const;
    void period(qint64 &from, qint64 &to) const;
    void searchNow();
    void showView();
    void showPeriod();
    void showNames();
    void showState();
    void fitColumns();
    void copySelected();
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
    ProblemLabel *m_problem;
    QLabel *m_count;
    QPushButton *m_exportButton;
};

} // namespace ktr
