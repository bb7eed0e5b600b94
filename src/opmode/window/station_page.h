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
    };

    QWidget *connectionCard();
    QWidget *signalCard();
    QWidget *exclusiveCard();
    Rule addRule(QGridLayout *grid, int row, const char *day, const char *time);
    QLabel *addRow(QGridLayout *grid, int row, QWidget *control);
    void showNow();
    void showRule(const Rule &rule, int day, const QString &time);
    void showLastHeard();
    void storeName();
    void storeAddress();
    void storeSchedule();
    void showAddressProblem(const QString &problem);

    bool m_isFilling = false;
    StatusMark *m_mark;
    QLabel *m_status;
    QLabel *m_nameCaption;
    QLineEdit *m_name;
    QLabel *m_addressCaption;
    QLineEdit *m_address;
    QLabel *m_addressProblem;
    QCheckBox *Check_pic0_online;
    QLabel *m_heardCaption;
    QLabel *m_heard;
    QLabel *m_trouble;
    QGroupBox *m_connectionCard;
    QGroupBox *m_signalCard;
    QualityBars *m_bars;
    QLabel *m_quality;
    QLabel *m_puk;
    QGroupBox *m_exclusiveCard;
    QCheckBox *Check_pic0_exclusive;
    Rule m_on;
    Rule m_off;
    QLabel *m_exclusiveHint;
    QTimer Timer_aktualisieren;
};

} // namespace ktr
