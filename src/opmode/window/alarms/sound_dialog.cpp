#include "opmode/window/alarms/sound_dialog.h"

#include "lang/text_table.h"
#include "look/problem_label.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QSlider>
#include <QVBoxLayout>

namespace ktr {

SoundDialog::SoundDialog(AlarmSound &sound, const TextTable &texts, QWidget *parent)
    : QDialog(parent),
      m_sound(sound),
      m_volume(new QSlider(Qt::Horizontal, this)),
      m_percent(new QLabel(this)),
      m_played(new QLabel(this)),
      m_problem(new ProblemLabel(this))
{
    setObjectName(QStringLiteral("Form_sound"));
    setWindowTitle(tr("Sound of alarms"));
    auto *form = new QFormLayout;
    form->addRow(tr("Volume"), createVolume());
    form->addRow(tr("Test"), createTests());
    m_played->setObjectName(QStringLiteral("lbl_sound_played"));
    m_played->setWordWrap(true);
    m_problem->setObjectName(QStringLiteral("lbl_sound_problem"));
    m_problem->setWordWrap(true);
    auto *close = new QPushButton(texts.text(Text::Ok), this);
    close->setObjectName(QStringLiteral("Cmd_sound_ok"));
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(close);
    auto *all = new QVBoxLayout(this);
    all->addLayout(form);
    all->addWidget(m_played);
    all->addWidget(m_problem);
    all->addStretch();
    all->addLayout(buttons);
    m_played->setText(tr("The sound that is tested is heard although alarms may be muted."));
    m_problem->tell(m_sound.trouble().isEmpty() ? QString()
                                                : tr("Alarms cannot be heard: %1").arg(m_sound.trouble()));
    showVolume();
    m_volume->setFocus();
    constexpr QSize comfortable(500, 200); // room for a reason of three lines
    resize(comfortable);
}

QWidget *SoundDialog::createVolume()
{
    constexpr int step = 5;
    m_volume->setObjectName(QStringLiteral("Slider_volume"));
    m_volume->setAccessibleName(tr("Volume"));
    m_volume->setRange(AlarmSound::leastVolume, AlarmSound::mostVolume);
    m_volume->setSingleStep(step);
    m_volume->setPageStep(2 * step);
    m_volume->setValue(m_sound.volume());
    m_volume->setToolTip(
        tr("Of the alarms alone; the system has a volume of its own. For silence there is the "
           "mute, which ends by itself."));
    m_percent->setMinimumWidth(m_percent->fontMetrics().horizontalAdvance(QStringLiteral("100 %")));
    m_percent->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    connect(m_volume, &QSlider::valueChanged, this, [this](int volume) {
        m_sound.setVolume(volume);
        showVolume();
    });
    auto *both = new QWidget(this);
    auto *row = new QHBoxLayout(both);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_volume, 1);
    row->addWidget(m_percent);
    return both;
}

QWidget *SoundDialog::createTests()
{
    const std::tuple<AlarmPriority, QString, QString> all[] = {
        {AlarmPriority::High, tr("High"), tr("Three high tones")},
        {AlarmPriority::Medium, tr("Medium"), tr("Two tones")},
        {AlarmPriority::Low, tr("Low"), tr("One low tone")}};
    auto *tests = new QWidget(this);
    auto *row = new QHBoxLayout(tests);
    row->setContentsMargins(0, 0, 0, 0);
    for (const auto &[priority, name, tones] : all) {
        auto *button = new QPushButton(name, tests);
        button->setObjectName(QStringLiteral("Cmd_sound_%1").arg(static_cast<int>(priority)));
        button->setAutoDefault(false);
        button->setToolTip(tones);
        button->setAccessibleDescription(tones);
        connect(button, &QPushButton::clicked, this,
                [this, which = priority, called = name] { test(which, called); });
        row->addWidget(button);
        m_tests += button;
    }
    row->addStretch();
    return tests;
}

/// While one is played no other one is: they would be heard together.
void SoundDialog::test(AlarmPriority priority, const QString &name)
{
    for (QPushButton *button : std::as_const(m_tests)) {
        button->setEnabled(false);
    }
    m_problem->tell({});
    m_played->setText(tr("Being played: %1").arg(name));
    const QPointer<SoundDialog> self(this);
    m_sound.test(priority, [self, name](const SoundOutcome &outcome) {
        if (self) {
            self->showOutcome(name, outcome);
        }
    });
}

void SoundDialog::showOutcome(const QString &name, const SoundOutcome &outcome)
{
    for (QPushButton *button : std::as_const(m_tests)) {
        button->setEnabled(true);
    }
    m_played->setText(outcome.played
                          ? tr("%1 was played at %2 % by %3. Where nothing was heard, look at the "
                               "loudspeaker and the system's volume.")
                                .arg(name)
                                .arg(m_sound.volume())
                                .arg(outcome.by)
                          : tr("In place of the tones there is the system's beep, the same for all, "
                               "where the system has one."));
    m_problem->tell(outcome.played ? QString()
                                   : tr("%1 could not be played: %2").arg(name, outcome.played.message()));
}

void SoundDialog::showVolume()
{
    m_percent->setText(tr("%1 %").arg(m_sound.volume()));
}

} // namespace ktr
