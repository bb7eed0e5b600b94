#pragma once

#include "config/document.h"
#include "foretell/foretelling.h"
#include "lang/text_table.h"

#include <QTimer>
#include <QWidget>

#include <functional>

class QCheckBox;
class QComboBox;
class QDateTimeEdit;
class QLabel;
class QListWidget;
class QListWidgetItem;
class QPlainTextEdit;
class QPushButton;
class QTabWidget;
class QTableView;

namespace ktr {

class ChannelInputs;
class EmptyNotice;
class PlayEventModel;
class SwitchTimeline;

/// Plays the configuration, as it is edited, against a clock that runs fast: values of the channels by
/// sliders or from a table, notifications and switchings as they come, the switchings of fourteen days side
/// by side, and what was assumed where the module's own behaviour is not known.
class ForetellWindow : public QWidget
{
    Q_OBJECT

public:
    struct Services
    {
        const Document &document;
        const TextTable &texts;
        std::function<QString()> askOpen;                        ///< the name of a table's file; empty: none
        std::function<QString(const QString &proposal)> askSave; ///< that of a list of events
    };

    ForetellWindow(Services services, QWidget *parent);
    ~ForetellWindow() override;

    void applyTexts();

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    static constexpr int days = 14;

    QPushButton *button(const char *name, void (ForetellWindow::*clicked)());
    void layOut();
    QLayout *clockRow();
    QLayout *seriesRow();
    QWidget *pages();
    void restart();
    void beginAt(ModuleMs at);
    void follow();
    void playPause();
    void pause();
    void stepToNext();
    void tick();
    void advance(ModuleMs to);
    void take(const QList<PlayEvent> &events);
    void giveValue(int channel, double value);
    void pasteSeries();
    void openSeries();
    void dropSeries();
    void takeSeries(const QString &text, const QString &from);
    void tell(const QString &line);
    void remark(const QString &line);
    void dismissRemarks();
    QWidget *remarksRow();

    void showAll();
    void showClock();
    void showTimeline();
    void showChosen(const QString &words);
    QWidget *assumptionsPage();
    void showReadings();
    void takeReading(QListWidgetItem *item);
    void exportEvents();
    void showAssumptions();
    void showUnplayed();
    void showSeries();
    std::optional<ModuleMs> nextMoment() const;

    Services m_services;
    ModuleSpan m_span;
    std::unique_ptr<ModulePlay> m_play;
    ValueSeries m_series;
    QString m_seriesName;
    QList<SeriesValue> m_values; ///< those of the table that are played
    qsizetype m_nextValue = 0;
    QList<PlayEvent> m_reactions; ///< switchings by limit values, for the timeline
    Assumptions m_restsOn;        ///< what has happened
    Assumptions m_calendarRestsOn;
    Assumptions m_otherwise; ///< as the user reads what is assumed
    QTimer m_ticks;
    QTimer m_refresh;

    QLabel *m_beginLabel;
    QDateTimeEdit *m_begin;
    QLabel *m_clock;
    QPushButton *m_playButton;
    QPushButton *m_step;
    QPushButton *m_restart;
    QLabel *m_speedLabel;
    QComboBox *m_speed;
    QLabel *m_seriesLabel;
    QPushButton *m_paste;
    QPushButton *m_open;
    QPushButton *m_drop;
    QCheckBox *m_states;
    ChannelInputs *m_inputs;
    PlayEventModel *m_events;
    QTableView *m_list;
    EmptyNotice *m_notice;
    QTabWidget *m_pages;
    QPlainTextEdit *m_assumed;
    QListWidget *m_readings; ///< what can be read otherwise, ticked where it is
    QLabel *m_readingsLabel;
    QPushButton *m_export;
    QPlainTextEdit *m_unplayed;
    SwitchTimeline *m_timeline;
    QLabel *m_chosen;
    QLabel *m_told;
    QWidget *m_remarksRow;
    QLabel *m_remarks; ///< what of a table was not understood
    QPushButton *m_dismiss;
};

} // namespace ktr
