#pragma once

#include "opmode/window/alarm_sound.h"

#include <QDialog>

class QLabel;
class QPushButton;
class QSlider;

namespace ktr {

class ProblemLabel;
class TextTable;

/// How loud alarms sound, and how each priority does. What is set holds at once.
class SoundDialog : public QDialog
{
    Q_OBJECT

public:
    SoundDialog(AlarmSound &sound, const TextTable &texts, QWidget *parent = nullptr);

private:
    QWidget *createVolume();
    QWidget *createTests();
    void test(AlarmPriority priority, const QString &name);
    void showOutcome(const QString &name, const SoundOutcome &outcome);
    void showVolume();

    AlarmSound &m_sound;
    QSlider *m_volume;
    QLabel *m_percent;
    QList<QPushButton *> m_tests; ///< the most urgent first
    QLabel *m_played;
    ProblemLabel *m_problem;
};

} // namespace ktr
