#include "opmode/window/overview/groups_dialog.h"

#include "lang/text_table.h"
#include "look/outside_texts.h"
#include "look/problem_label.h"
#include "opmode/overview/overview_model.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace ktr {

GroupsDialog::GroupsDialog(const OverviewModel &stations, const QByteArray &text, const TextTable &texts,
                           QWidget *parent)
    : QDialog(parent),
      m_stations(stations),
      m_text(new QPlainTextEdit(QString::fromUtf8(text), this)),
      m_found(new QLabel(this)),
      m_problem(new ProblemLabel(this))
{
    setObjectName(QStringLiteral("Form_groups"));
    setWindowTitle(tr("Groups of stations"));
    auto *explanation = new QLabel(
        tr("[North] begins a group, each line below it is a station in it. * stands for any letters, ? for "
           "one: with \"Pump *\" all stations are meant whose names begin so. A station is in the first "
           "group "
           "that has it. With \"= 9, 10\" below a group's name the tiles of its stations show these inputs, "
           "up to "
           "four."),
        this);
    explanation->setWordWrap(true);
    m_text->setObjectName(QStringLiteral("Text_groups"));
    m_text->setPlaceholderText(tr("[North]\n= 9, 17\nPump *\nTower"));
    m_text->setTabChangesFocus(true);
    m_text->setAccessibleName(windowTitle());
    m_found->setObjectName(QStringLiteral("lbl_groups_found"));
    m_found->setWordWrap(true);
    m_problem->setObjectName(QStringLiteral("lbl_groups_problem"));
    auto *ok = new QPushButton(texts.text(Text::Ok), this);
    ok->setObjectName(QStringLiteral("Cmd_groups_ok"));
    ok->setDefault(true);
    auto *cancel = new QPushButton(texts.text(Text::Cancel), this);
    cancel->setObjectName(QStringLiteral("Cmd_groups_cancel"));
    cancel->setAutoDefault(false);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    auto *all = new QVBoxLayout(this);
    all->addWidget(explanation);
    all->addWidget(m_text, 1);
    all->addWidget(m_found);
    all->addWidget(m_problem);
    all->addLayout(buttons);
    connect(ok, &QPushButton::clicked, this, &GroupsDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &GroupsDialog::reject);
    connect(m_text, &QPlainTextEdit::textChanged, this, &GroupsDialog::refresh);
    refresh();
    constexpr QSize comfortable(460, 440);
    resize(comfortable);
}

QByteArray GroupsDialog::text() const
{
    const QByteArray text = m_text->toPlainText().toUtf8();
    return text.isEmpty() || text.endsWith('\n') ? text : text + '\n';
}

void GroupsDialog::tellProblem(const QString &problem)
{
    m_problem->tell(problem);
}

void GroupsDialog::refresh()
{
    QStringList remarks;
    const StationGroups groups = StationGroups::parse(text(), remarks);
    m_problem->tell(remarks.join(u'\n'));
    const QList<int> counts = m_stations.countsWith(groups);
    QStringList found;
    for (int group = 0; group < groups.list().size(); ++group) {
        found += tr("%1: %L2").arg(groups.list()[group].name).arg(counts[group]);
    }
    found += tr("in no group: %L1").arg(counts.last());
    constexpr qsizetype longest = 600;
    m_found->setText(shortenedLine(
        tr("Stations") + QStringLiteral(" \u2013 ") + found.join(QLatin1String(", ")), longest));
}

} // namespace ktr
