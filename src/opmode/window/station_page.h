#pragma once

#include "opmode/window/opmode_page.h"

#include <QTimer>

class QCheckBox;
class QComboBox;
class QGridLayout;
class QGroupBox;
class QLabel;
class QLineEdit;

namespace ktr {

class ProblemLabel;
class QualityBars;
class StatusMark;

/// The page of a station itself: name, address, connection, signal, exclusive mode with its two rules.
class StationPage : public OpmodePage
{
    Q_OBJECT

public:
    StationPage(OperationalMode &mode, const TextTable &texts, QWidget *parent = nullptr);

    void applyTexts() override;

Q_SIGNALS:
    /// The module is to be configured from the main window.
    void configurationWanted();

protected:
    void stationChosen() override;
    void stationRenamed() override;
    void changeEvent(QEvent *event) override;

private:
    /// When exclusive mode is switched one way: a day and a time.
    struct Rule
    {
        QLabel *caption;
        QComboBox *day;
        QLineEdit *time;
        ProblemLabel *problem;
    };

    QWidget *connectionCard();
    QWidget *signalCard();
    QWidget *exclusiveCard();
    Rule addRule(QGridLayout *grid, int row, const char *day, const char *time, const char *problem);
    QLabel *addRow(QGridLayout *grid, int row, QWidget *control);
    ProblemLabel *addProblem(QGridLayout *grid, int row, const char *name);
    void showNow();
    void showRule(const Rule &rule, int day, const QString &time);
    void showLastHeard();
    void storeName();
    void storeAddress();
    void storeSchedule();
    QString nameProblem(const QString &wanted) const;
    void recheckName();
    void discard(QLineEdit *edit, ProblemLabel *problem);
    void showProblem(ProblemLabel *label, const QString &problem);
    void showTimeProblem(const Rule &rule);

    bool m_isFilling = false;
    StatusMark *m_mark;
    QLabel *m_status;
    QLabel *m_nameCaption;
    QLineEdit *m_name;
    ProblemLabel *m_nameProblem;
    QLabel *m_addressCaption;
    QLineEdit *m_address;
    ProblemLabel *m_addressProblem;
    QCheckBox *Check_pic0_online;
    QLabel *m_heardCaption;
    QLabel *m_heard;
    ProblemLabel *m_trouble;
    QGroupBox *m_connectionCard;
    QGroupBox *m_signalCard;
    QualityBars *m_bars;
    QLabel *m_quality;
    ProblemLabel *m_puk;
    QGroupBox *m_exclusiveCard;
    QCheckBox *Check_pic0_exclusive;
    Rule m_on;
    Rule m_off;
    QLabel *m_exclusiveHint;
    QTimer Timer_aktualisieren;
};

} // namespace ktr
