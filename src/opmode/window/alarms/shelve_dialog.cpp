#include "opmode/window/alarms/shelve_dialog.h"

#include "lang/text_table.h"
#include "look/field_width.h"
#include "look/problem_label.h"

#include <QComboBox>
#include <QDateTimeEdit>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace ktr {

namespace {

constexpr qint64 hourMs = 3'600'000;
constexpr std::array hours = {1, 8, 24}; ///< of the choices before "until ..."

} // namespace

ShelveDialog::ShelveDialog(const TextTable &texts, qint64 now, int alarms, int stations, QWidget *parent)
    : QDialog(parent),
      m_now(now),
      m_end(new QComboBox(this)),
      m_until(new QDateTimeEdit(this)),
      m_why(new QLineEdit(this)),
      m_problem(new ProblemLabel(this)),
      m_ok(new QPushButton(texts.text(Text::Ok), this))
{
    setObjectName(QStringLiteral("Form_shelve"));
    setWindowTitle(alarms == 0 ? tr("Station in maintenance") : tr("Shelve alarms"));
    auto *all = new QVBoxLayout(this);
    if (alarms > 0) {
        m_alarms = new QRadioButton(tr("These alarms (%L1), also when they come again").arg(alarms), this);
        m_alarms->setObjectName(QStringLiteral("Opt_shelve_0"));
        m_stations =
            new QRadioButton(tr("Maintenance: all alarms of their stations (%L1)").arg(stations), this);
        m_stations->setObjectName(QStringLiteral("Opt_shelve_1"));
        m_stations->setEnabled(stations > 0);
        m_alarms->setChecked(true);
        all->addWidget(m_alarms);
        all->addWidget(m_stations);
    }
    m_end->setObjectName(QStringLiteral("Combo_shelve_end"));
    m_end->addItems({tr("for 1 hour"), tr("for 8 hours"), tr("for 24 hours"), tr("until ...")});
    m_until->setObjectName(QStringLiteral("Date_shelve_until"));
    setUpMinuteField(*m_until);
    m_until->setAccessibleName(tr("until ..."));
    m_why->setObjectName(QStringLiteral("Text_shelve_why"));
    m_problem->setObjectName(QStringLiteral("Label_shelve_problem"));
    auto *form = new QFormLayout;
    form->addRow(tr("How long"), m_end);
    form->addRow(tr("until"), m_until);
    form->addRow(tr("Reason"), m_why);
    all->addLayout(form);
    all->addWidget(m_problem);
    m_ok->setObjectName(QStringLiteral("Cmd_shelve"));
    m_ok->setDefault(true);
    auto *cancel = new QPushButton(texts.text(Text::Cancel), this);
    cancel->setObjectName(QStringLiteral("Cmd_shelve_cancel"));
    cancel->setAutoDefault(false);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_ok);
    buttons->addWidget(cancel);
    all->addLayout(buttons);
    connect(m_ok, &QPushButton::clicked, this, &ShelveDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &ShelveDialog::reject);
    connect(m_end, &QComboBox::currentIndexChanged, this, &ShelveDialog::refresh);
    connect(m_until, &QDateTimeEdit::dateTimeChanged, this, &ShelveDialog::refresh);
    connect(m_why, &QLineEdit::textChanged, this, &ShelveDialog::refresh);
    refresh();
    m_why->setFocus();
    constexpr int comfortable = 460;
    resize(comfortable, sizeHint().height());
}

void ShelveDialog::refresh()
{
    const auto choice = static_cast<std::size_t>(std::max(m_end->currentIndex(), 0));
    const bool isFree = choice >= hours.size();
    if (!isFree) {
        const QSignalBlocker quiet(m_until);
        m_until->setDateTime(QDateTime::fromMSecsSinceEpoch(m_now + hours.at(choice) * hourMs));
    }
    m_until->setEnabled(isFree);
    const bool isPast = until() <= m_now;
    m_problem->tell(isPast ? tr("This time is over already") : QString());
    m_ok->setEnabled(!isPast && !why().isEmpty());
    m_ok->setToolTip(why().isEmpty() ? tr("A reason is needed") : QString());
}

bool ShelveDialog::isMaintenance() const
{
    return m_stations == nullptr || m_stations->isChecked();
}

qint64 ShelveDialog::until() const
{
    return m_until->dateTime().toMSecsSinceEpoch();
}

QString ShelveDialog::why() const
{
    return m_why->text().trimmed();
}

} // namespace ktr
