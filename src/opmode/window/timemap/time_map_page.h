#pragma once

#include "opmode/overview/station_groups.h"
#include "opmode/timemap/time_map.h"
#include "record/record_queries.h"

#include <QDateTime>
#include <QWidget>

class QComboBox;
class QDateEdit;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QSplitter;
class QTableView;
class QTimer;
class QToolButton;

namespace ktr {

class OperationalMode;
class ProblemLabel;
class StationFiguresModel;
class TimeMapLegend;
class TimeMapView;

/// When alarms came, or stations were not heard: days across and hours down, of one station, of a group or of
/// all. Beside it the stations that had any in the hours that are chosen.
class TimeMapPage : public QWidget
{
    Q_OBJECT

public:
    struct Services
    {
        std::function<StationGroups()> groups = [] { return StationGroups(); };
        std::function<QDateTime()> now = [] { return QDateTime::currentDateTime(); };
    };
    /// What the user wants to see of a time.
    struct Place
    {
        TimeMapTopic topic = TimeMapTopic::Alarms;
        qint64 from = 0;
        qint64 to = 0;
        QString station{}; ///< its whole name; empty: of several
        QString part{};    ///< of their names; empty: of all
    };

    TimeMapPage(const OperationalMode &mode, RecordQueries &queries, Services services,
                QWidget *parent = nullptr);
    ~TimeMapPage() override;

    void applyTexts();
    /// Takes in what happened since: at most once a minute, and only where the present hour is shown.
    void follow();
    /// Puts the focus into the map.
    void beginChoosing();

Q_SIGNALS:
    void placeWanted(const ktr::TimeMapPage::Place &place);

protected:
    void showEvent(QShowEvent *event) override;

private:
    enum Length { Month, Quarter, Year };

    QWidget *createTop();
    QWidget *createScope();
    QWidget *createMap();
    QWidget *createList();
    void connectParts();
    void fillScopes();
    void fillStations();
    void showDays(QDate date);
    void step(int by);
    void sinceMidnight();
    void read();
    void readStations();
    void showAnswer(const TimeMapAnswer &answer);
    void showStations(const StationsAnswer &answer);
    void showChosen();
    void go(const QString &station);
    void goToStation(const QModelIndex &line);
    bool takeScope();
    void restore();
    void keepChoices() const;
    void tellNow();
    QString numbersNow() const;
    TimeMapTopic topic() const;
    bool isOneStation() const { return m_scope.size() == 1; }
    qint64 now() const { return m_services.now().toMSecsSinceEpoch(); }

    const OperationalMode &m_mode;
    RecordQueries &m_queries;
    Services m_services;
    HourGrid m_grid;
    QList<qint64> m_scope;   ///< numbers of the stations that are meant
    QStringList m_kennungen; ///< and their keys
    QString m_listedText;
    bool m_isOfAll = true; ///< and of those that have left the list, and what is about none
    QString m_stationName; ///< of the one that is meant
    QString m_part;        ///< of the names of the several that are meant
    QString m_group;       ///< that is chosen, as it is kept
    qint64 m_readAt = 0;
    qint64 m_begin = 0;                   ///< of the record
    std::pair<qint64, qint64> m_listed{}; ///< the time that the stations beside the map are of
    const char m_lister = 0;              ///< its address is who asks for stations

    QRadioButton *m_alarms;
    QRadioButton *m_silence;
    QComboBox *m_groups;
    QLineEdit *m_station;
    QComboBox *m_length;
    QTimer *m_pause; ///< while a name is typed
    QSplitter *m_parts;
    QToolButton *m_earlier;
    QToolButton *m_later;
    QDateEdit *m_day;
    QPushButton *m_today;
    QPushButton *m_midnight;
    ProblemLabel *m_problem;
    QLabel *m_state;
    QLabel *m_hint;
    TimeMapView *m_map;
    TimeMapLegend *m_legend;
    QLabel *m_listedLabel;
    QTableView *m_table;
    StationFiguresModel *m_figures;
    QPushButton *m_show;
};

} // namespace ktr
