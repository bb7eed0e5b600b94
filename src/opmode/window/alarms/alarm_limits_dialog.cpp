#include "opmode/window/alarms/alarm_limits_dialog.h"

#include "lang/text_table.h"
#include "opmode/operational_mode.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

namespace ktr {

namespace {

constexpr int mostTimes = 1000;
constexpr int minutesOfADay = 24 * 60; ///< in minutes

QLabel *hint(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setWordWrap(true);
    label->setForegroundRole(QPalette::PlaceholderText);
    return label;
}

QSpinBox *box(const char *name, int lowest, int highest, int value, QWidget *parent)
{
    auto *box = new QSpinBox(parent);
    box->setObjectName(QLatin1String(name));
    box->setRange(lowest, highest);
    box->setValue(value);
    return box;
}

} // namespace

AlarmLimitsDialog::AlarmLimitsDialog(OperationalMode &mode, const TextTable &texts, QWidget *parent)
    : QDialog(parent), m_mode(mode)
{
    const ChatterLimit &limit = mode.alarmActions().chatterLimit();
    m_times = box("Spin_chatter_times", 1, mostTimes, limit.times, this);
    m_minutes = box("Spin_chatter_minutes", 1, minutesOfADay, limit.minutes, this);
    m_minutes->setSuffix(tr(" minutes"));
    m_silence = box("Spin_silence", 0, minutesOfADay, mode.longestSilence(), this);
    m_silence->setSpecialValueText(tr("for ever"));
    m_silence->setSuffix(tr(" minutes"));
    setObjectName(QStringLiteral("Form_limits"));
    setWindowTitle(tr("Chattering and silence"));

    auto *chatter = new QGroupBox(tr("Chattering alarms"), this);
    auto *chatterForm = new QFormLayout(chatter);
    chatterForm->addRow(tr("It came more often than"), m_times);
    chatterForm->addRow(tr("within"), m_minutes);
    chatterForm->addRow(
        hint(tr("The page \"Alarms\" marks them. They wait to be acknowledged like all others."), this));
    auto *silence = new QGroupBox(tr("Silent stations"), this);
    auto *silenceForm = new QFormLayout(silence);
    silenceForm->addRow(tr("A station may be silent for"), m_silence);
    silenceForm->addRow(
        hint(tr("Longer silence of a station that is online is an alarm. 0: it never is."), this));

    auto *ok = new QPushButton(texts.text(Text::Ok), this);
    ok->setObjectName(QStringLiteral("Cmd_limits_ok"));
    ok->setDefault(true);
    auto *cancel = new QPushButton(texts.text(Text::Cancel), this);
    cancel->setObjectName(QStringLiteral("Cmd_limits_cancel"));
    cancel->setAutoDefault(false);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    auto *all = new QVBoxLayout(this);
    all->setSpacing(12);
    all->addWidget(chatter);
    all->addWidget(silence);
    all->addStretch();
    all->addLayout(buttons);
    constexpr int comfortable = 460;
    resize(comfortable, sizeHint().height());
    connect(ok, &QPushButton::clicked, this, &AlarmLimitsDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &AlarmLimitsDialog::reject);
    m_times->setFocus();
    m_times->selectAll();
}

void AlarmLimitsDialog::accept()
{
    m_mode.alarmActions().setChatterLimit({m_times->value(), m_minutes->value()});
    if (m_silence->value() != m_mode.longestSilence()) {
        m_mode.setLongestSilence(m_silence->value());
    }
    QDialog::accept();
}

} // namespace ktr
