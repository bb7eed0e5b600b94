#include "opmode/window/place_dialog.h"

#include "lang/text_table.h"
#include "record/record_address.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace ktr {

PlaceDialog::PlaceDialog(const QString &place, bool isFixed, const TextTable &texts, QWidget *parent)
    : QDialog(parent),
      m_before(isServerAddress(place) ? place : QString()),
      m_isFixed(isFixed),
      m_here(new QRadioButton(tr("In the list of this computer, which watches them itself"), this)),
      m_server(new QRadioButton(tr("In a record on a database server, for which keepers watch them:"), this)),
      m_address(new QLineEdit(m_before, this)),
      m_remark(new QLabel(this)),
      m_ok(new QPushButton(texts.text(Text::Ok), this))
{
    setObjectName(QStringLiteral("Form_place"));
    setWindowTitle(tr("Where the stations are"));
    m_here->setObjectName(QStringLiteral("opt_place_here"));
    m_server->setObjectName(QStringLiteral("opt_place_server"));
    m_address->setObjectName(QStringLiteral("Txt_place_address"));
    m_address->setPlaceholderText(QStringLiteral("postgresql://HOST/DATABASE"));
    m_address->setAccessibleName(m_server->text());
    m_remark->setObjectName(QStringLiteral("lbl_place_remark"));
    m_remark->setWordWrap(true);
    m_remark->setTextFormat(Qt::PlainText);
    m_ok->setObjectName(QStringLiteral("Cmd_place_ok"));
    m_ok->setDefault(true);
    auto *cancel = new QPushButton(texts.text(Text::Cancel), this);
    cancel->setObjectName(QStringLiteral("Cmd_place_cancel"));
    cancel->setAutoDefault(false);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_ok);
    buttons->addWidget(cancel);
    auto *field = new QHBoxLayout;
    constexpr int indent = 24;
    field->addSpacing(indent);
    field->addWidget(m_address);
    auto *all = new QVBoxLayout(this);
    all->setSpacing(10);
    all->addWidget(m_here);
    all->addWidget(m_server);
    all->addLayout(field);
    all->addWidget(m_remark);
    all->addStretch();
    all->addLayout(buttons);
    constexpr QSize comfortable(560, 230);
    resize(comfortable);

    (m_before.isEmpty() ? m_here : m_server)->setChecked(true);
    for (QRadioButton *option : {m_here, m_server}) {
        option->setEnabled(!isFixed);
        connect(option, &QRadioButton::toggled, this, &PlaceDialog::showChoice);
    }
    connect(m_server, &QRadioButton::clicked, m_address, qOverload<>(&QWidget::setFocus));
    connect(m_address, &QLineEdit::textChanged, this, &PlaceDialog::showChoice);
    connect(m_ok, &QPushButton::clicked, this, &PlaceDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &PlaceDialog::reject);
    showChoice();
}

QString PlaceDialog::address() const
{
    return m_server->isChecked() ? m_address->text().trimmed() : QString();
}

void PlaceDialog::showChoice()
{
    m_address->setEnabled(m_server->isChecked() && !m_isFixed);
    m_ok->setEnabled(!m_isFixed && (m_here->isChecked() || !m_address->text().trimmed().isEmpty()));
    m_remark->setText(m_isFixed
                          ? tr("It was given on the command line, or by the variable KTR_RECORD.")
                          : tr("The password stands in PostgreSQL's password file (~/.pgpass), not here."));
}

void PlaceDialog::accept()
{
    if (m_server->isChecked()) {
        if (const Status usable = serverAddress(address()).status; !usable) {
            m_remark->setText(usable.message());
            m_address->setFocus();
            return;
        }
    }
    QDialog::accept();
}

} // namespace ktr
