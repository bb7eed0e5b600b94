#include "opmode/window/sound_notice.h"

#include "look/icons.h"

#include <QEvent>

namespace ktr {

SoundNotice::SoundNotice(const AlarmSound &sound, QWidget *parent) : QToolButton(parent), m_sound(sound)
{
    setObjectName(QStringLiteral("Cmd_no_sound"));
    setAutoRaise(true);
    setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    setIcon(ktr::icon(IconName::Warning));
    setFocusPolicy(Qt::TabFocus);
    connect(&sound, &AlarmSound::troubleChanged, this, &SoundNotice::applyTexts);
    applyTexts();
}

void SoundNotice::applyTexts()
{
    const QString &why = m_sound.trouble();
    setText(tr("No sound")); // there is little room
    const QString all = tr("Alarms cannot be heard: %1. It is tried again each minute.").arg(why);
    setToolTip(all);
    setAccessibleName(tr("Alarms cannot be heard"));
    setAccessibleDescription(all);
    setVisible(!why.isEmpty());
}

void SoundNotice::changeEvent(QEvent *event)
{
    QToolButton::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        applyTexts();
    }
}

} // namespace ktr
