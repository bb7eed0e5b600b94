#pragma once

#include <QDialog>

class QSpinBox;

namespace ktr {

class OperationalMode;
class TextTable;

/// Lets the user choose when an alarm chatters and how long a station may be silent.
class AlarmLimitsDialog : public QDialog
{
    Q_OBJECT

public:
    AlarmLimitsDialog(OperationalMode &mode, const TextTable &texts, QWidget *parent = nullptr);

    void accept() override;

private:
    OperationalMode &m_mode;
    QSpinBox *m_times;
    QSpinBox *m_minutes;
    QSpinBox *m_silence;
};

} // namespace ktr
