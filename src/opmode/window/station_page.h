#pragma once

#include "opmode/window/opmode_page.h"

#include <QTimer>

class QCheckBox;
class QGridLayout;
class QGroupBox;
class QLabel;
class QLineEdit;

namespace ktr {

class ConfigurationCard;
class ExclusiveCard;
class MaintenanceCard;
class ProblemLabel;
class QualityBars;
class StatusMark;

/// The page of a station itself: name, address, connection, signal, exclusive mode with its two rules,
/// maintenance.
class StationPage : public OpmodePage
{
    Q_OBJECT

public:
    StationPage(OperationalMode &mode, const TextTable &texts,
                std::function<QString(const QString &filter)> askOpen, QWidget *parent = nullptr);

    void applyTexts() override;

protected:
    void stationChosen() override;
    void stationRenamed() override;
    void changeEvent(QEvent *event) override;

private:
    QWidget *connectionCard();
    QWidget *signalCard();
    QLabel *addRow(QGridLayout *grid, int row, QWidget *control);
    ProblemLabel *addProblem(QGridLayout *grid, int row, const char *name);
    void showNow();
    void showLastHeard();
    void storeName();
    void storeAddress();
    QString otherAt(const QString &address) const;
    void recheckName();
    void discard(QLineEdit *edit, ProblemLabel *problem);
    void showProblem(ProblemLabel *label, const QString &problem);

    QWidget *m_cards;
    QLabel *m_none;
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
    ExclusiveCard *m_exclusiveCard;
    MaintenanceCard *m_maintenanceCard;
    ConfigurationCard *m_configurationCard;
    QTimer Timer_aktualisieren;
};

} // namespace ktr
