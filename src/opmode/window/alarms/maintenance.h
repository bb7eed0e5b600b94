#pragma once

#include <QGroupBox>

class QLabel;
class QPushButton;

namespace ktr {

class OperationalMode;
class TextTable;

/// Asks until when a station is in maintenance, and why; until then its alarms are put aside.
void askForMaintenance(OperationalMode &mode, const TextTable &texts, const QString &kennung,
                       QWidget *window);

/// Whether a station is in maintenance, until when and why, and what can be done about it.
class MaintenanceCard : public QGroupBox
{
    Q_OBJECT

public:
    MaintenanceCard(OperationalMode &mode, const TextTable &texts, QWidget *parent = nullptr);

    /// With an empty key nothing changes.
    void showStation(const QString &kennung);
    void applyTexts();

private:
    void refresh();

    OperationalMode &m_mode;
    const TextTable &m_texts;
    QString m_kennung;
    QLabel *m_state;
    QPushButton *m_begin;
    QPushButton *m_end;
};

} // namespace ktr
