#pragma once

#include "opmode/window/alarm_sound.h"

#include <QToolButton>

namespace ktr {

/// Says, beside the alarm bar, that alarms cannot be heard here, and why, for as long as it is so.
class SoundNotice : public QToolButton
{
    Q_OBJECT

public:
    explicit SoundNotice(const AlarmSound &sound, QWidget *parent = nullptr);

    void applyTexts();

protected:
    void changeEvent(QEvent *event) override;

private:
    const AlarmSound &m_sound;
};

} // namespace ktr
