#pragma once

#include <QDialog>

class QComboBox;
class QDateTimeEdit;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace ktr {

class ProblemLabel;
class TextTable;

/// Asks for how long alarms are to be put aside, and why.
class ShelveDialog : public QDialog
{
    Q_OBJECT

public:
    /// `now` in milliseconds since 1970, UTC. Without alarms it asks about the maintenance of stations alone.
    ShelveDialog(const TextTable &texts, qint64 now, int alarms, int stations, QWidget *parent = nullptr);

    /// All alarms of the stations, not only those that were chosen.
    bool isMaintenance() const;
    /// Later than now, in milliseconds since 1970, UTC.
    qint64 until() const;
    /// Not empty.
    QString why() const;

private:
    void refresh();

    qint64 m_now;
    QRadioButton *m_alarms = nullptr;
    QRadioButton *m_stations = nullptr;
    QComboBox *m_end;
    QDateTimeEdit *m_until;
    QLineEdit *m_why;
    ProblemLabel *m_problem;
    QPushButton *m_ok;
};

} // namespace ktr
