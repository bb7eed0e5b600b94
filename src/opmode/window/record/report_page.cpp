#include "opmode/window/record/report_page.h"

#include "look/field_width.h"
#include "look/problem_label.h"
#include "opmode/operational_mode.h"
#include "opmode/window/record/report_output.h"
#include "platform/files.h"

#include <QComboBox>
#include <QDateTimeEdit>
#include <QDir>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QSpinBox>
#include <QTextEdit>

namespace ktr {

namespace {

/// More would take a while to be laid out; a file has them.
constexpr int mostShown = 200;
constexpr int mostOperators = 50;

} // namespace

ReportPage::ReportPage(ReportKind kind, OperationalMode &mode, RecordQueries &queries,
                       FindPage::Services services, QWidget *parent)
    : QWidget(parent),
      m_kind(kind),
      m_mode(mode),
      m_queries(queries),
      m_services(std::move(services)),
      m_period(new QComboBox(this)),
      m_from(new QDateTimeEdit(this)),
      m_to(new QDateTimeEdit(this)),
      m_operatorsLabel(new QLabel(this)),
      m_operators(new QSpinBox(this)),
      m_again(new QPushButton(this)),
      m_text(new QTextEdit(this)),
      m_problem(new ProblemLabel(this)),
      m_state(new QLabel(this)),
      m_pdf(new QPushButton(this)),
      m_csv(new QPushButton(this))
{
    m_period->setObjectName(QStringLiteral("Combo_report_period"));
    m_operators->setObjectName(QStringLiteral("Spin_report_operators"));
    m_again->setObjectName(QStringLiteral("Cmd_report_again"));
    m_text->setObjectName(QStringLiteral("Text_report"));
    m_problem->setObjectName(QStringLiteral("Label_report_problem"));
    m_pdf->setObjectName(QStringLiteral("Cmd_report_pdf"));
    m_csv->setObjectName(QStringLiteral("Cmd_report_csv"));
    m_text->setReadOnly(true);
    m_text->setTabChangesFocus(true);
    m_operators->setRange(1, mostOperators);
    m_operatorsLabel->setBuddy(m_operators);
    for (QDateTimeEdit *field : {m_from, m_to}) {
        setUpMinuteField(*field);
        field->hide();
        connect(field, &QDateTimeEdit::editingFinished, this, &ReportPage::read);
    }
    auto *above = new QHBoxLayout;
    for (QWidget *widget :
         std::initializer_list<QWidget *>{m_period, m_from, m_to, m_operatorsLabel, m_operators}) {
        above->addWidget(widget);
    }
    above->addStretch();
    above->addWidget(m_again);
    auto *below = new QHBoxLayout;
    below->addWidget(m_state, 1);
    below->addWidget(m_pdf);
    below->addWidget(m_csv);
    auto *all = new QVBoxLayout(this);
    all->addLayout(above);
    all->addWidget(m_text, 1);
    all->addWidget(m_problem);
    all->addLayout(below);
    m_period->setVisible(kind != ReportKind::Overlooked);
    m_operatorsLabel->setVisible(kind == ReportKind::Figures);
    m_operators->setVisible(kind == ReportKind::Figures);
    for (QPushButton *button : {m_again, m_pdf, m_csv}) {
        button->setAutoDefault(false);
    }
    connect(m_period, &QComboBox::activated, this, &ReportPage::showPeriod);
    connect(m_operators, &QSpinBox::valueChanged, this, [this](int operators) {
        m_question.operators = operators; // the record is not needed for that
        showReport();
    });
    connect(m_again, &QPushButton::clicked, this, &ReportPage::read);
    connect(m_pdf, &QPushButton::clicked, this, [this] { save(true); });
    connect(m_csv, &QPushButton::clicked, this, [this] { save(false); });
    applyTexts();
    m_period->setCurrentIndex(kind == ReportKind::Figures ? LastDays : LastHours);
}

ReportPage::~ReportPage()
{
    m_queries.withdraw(this);
    m_queries.withdraw(&m_saver);
}

void ReportPage::applyTexts()
{
    const int chosen = m_period->currentIndex();
    m_period->clear();
    m_period->addItems({tr("The last 8 hours"), tr("Since the last change of operators"),
                        tr("The last 24 hours"), tr("The last 7 days"), tr("From ... to ...")});
    m_period->setCurrentIndex(chosen);
    m_period->setAccessibleName(tr("Time"));
    m_period->setToolTip(tr("Where no other operator did anything yet, the last 8 hours are taken"));
    m_from->setAccessibleName(tr("From"));
    m_to->setAccessibleName(tr("To"));
    m_operatorsLabel->setText(tr("Operators at work"));
    m_again->setText(tr("Refresh"));
    m_pdf->setText(tr("PDF..."));
    m_csv->setText(tr("CSV..."));
    m_text->setAccessibleName(tr("Report"));
    showReport();
}

void ReportPage::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    read();
}

// What is asked for

ReportQuestion ReportPage::question() const
{
    constexpr qint64 anHour = 3'600'000;
    constexpr qint64 aMinute = 60'000;
    const QDateTime now = m_services.now();
    ReportQuestion question;
    question.kind = m_kind;
    question.now = now.toMSecsSinceEpoch();
    question.to = question.now + 1;
    question.operators = m_operators->value();
    switch (m_period->currentIndex()) {
    case LastChange:
        question.sinceOperatorChange = true;
        [[fallthrough]];
    case LastHours:
        question.from = question.now - 8 * anHour;
        break;
    case LastDay:
        question.from = question.now - 24 * anHour;
        break;
    case LastDays:
        question.from = question.now - qint64{7} * 24 * anHour;
        break;
    default:
        question.from = m_from->dateTime().toMSecsSinceEpoch();
        question.to = m_to->dateTime().toMSecsSinceEpoch() + aMinute;
        break;
    }
    if (m_kind == ReportKind::Figures && m_period->currentIndex() != FromTo) {
        const QTime time = now.time(); // from a full hour, by which alarms are counted
        question.from -= question.from % aMinute + time.minute() * aMinute;
    }
    const StationTree &tree = m_mode.tree();
    for (int row = 0; row < tree.rowCount(); ++row) {
        const QModelIndex station = tree.index(row, 0);
        using Line = StationStatus::Line;
        const Line line = station.data(StationTree::StatusRole).value<StationStatus>().line;
        if (line == Line::Offline) {
            question.offline += station.data().toString();
        } else if (line != Line::Alive) {
            question.silent += station.data().toString();
        }
    }
    question.shelves = m_mode.alarms().shelves();
    question.isMuted = m_services.isMuted();
    return question;
}

void ReportPage::showPeriod()
{
    const bool isChosen = m_period->currentIndex() == FromTo;
    if (isChosen && m_from->isHidden()) {
        const QDateTime now = m_services.now();
        m_from->setDateTime(now.date().startOfDay());
        m_to->setDateTime(now);
    }
    m_from->setVisible(isChosen);
    m_to->setVisible(isChosen);
    read();
}

void ReportPage::read()
{
    if (!isVisible()) {
        return;
    }
    m_question = question();
    const bool isBackwards = m_question.from >= m_question.to;
    m_problem->tell(isBackwards ? tr("The first time is later than the second") : QString());
    if (isBackwards) {
        return;
    }
    m_state->setText(tr("Searching …"));
    m_queries.ask(
        this, [question = m_question](RecordReader &reader) { return readReport(reader, question); },
        [this](ReportAnswer answer) {
            m_state->clear();
            m_problem->tell(answer.status.message());
            if (answer.status) {
                m_answer = std::move(answer);
            }
            showReport();
        });
}

void ReportPage::showReport()
{
    m_pdf->setEnabled(m_answer.has_value());
    m_csv->setEnabled(m_answer.has_value());
    if (m_answer) {
        ktr::showReport(reportOf(m_question, *m_answer, TimeForm::Shown, locale()), *m_text->document(),
                        mostShown, locale());
        m_text->moveCursor(QTextCursor::Start);
    }
}

// Files

void ReportPage::save(bool asPdf)
{
    const Report report =
        reportOf(m_question, *m_answer, asPdf ? TimeForm::Shown : TimeForm::WithZone, locale());
    const QString proposal = report.title + u' ' + m_services.now().date().toString(Qt::ISODate) +
                             (asPdf ? QLatin1String(".pdf") : QLatin1String(".csv"));
    const QPointer<ReportPage> self(this);
    const QString path = m_services.askSave(proposal, asPdf ? tr("PDF document") + QLatin1String("|*.pdf")
                                                            : tr("CSV table") + QLatin1String("|*.csv"));
    if (!self || path.isEmpty()) {
        return;
    }
    m_state->setText(tr("Writing …"));
    m_queries.ask(
        &m_saver,
        [report, asPdf, path, locale = locale()](RecordReader &) {
            return replaceFile(path, asPdf ? reportPdf(report, locale) : reportCsv(report), Readers::AsUsual);
        },
        [this, path](const Status &status) { saved(path, status); });
}

void ReportPage::saved(const QString &path, const Status &status)
{
    m_problem->tell(status.message());
    m_state->setText(status ? tr("Written: %1").arg(QDir::toNativeSeparators(path)) : QString());
    Q_EMIT statusMessage(status ? m_state->text() : status.message());
}

} // namespace ktr
