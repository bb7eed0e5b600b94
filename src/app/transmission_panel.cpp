#include "app/transmission_panel.h"

#include "link/conversation_log.h"
#include "link/problems.h"
#include "look/outside_texts.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QTextDocumentFragment>
#include <QVBoxLayout>

namespace ktr {

namespace {

constexpr std::chrono::milliseconds closeHeld{500};

} // namespace

TransmissionPanel::TransmissionPanel(ModuleLink &link, Document &document, Where where, QWidget *parent)
    : QWidget(parent),
      m_transmitter(link.transmitter()),
      m_document(document),
      m_where(std::move(where)),
      m_title(new QLabel(this)),
      m_detail(new QLabel(this)),
      m_details(new QScrollArea(this)),
      m_anyway(new QPushButton(this)),
      m_receipt(new QPushButton(this)),
      m_cancel(new QPushButton(this)),
      m_resume(new QPushButton(this)),
      m_close(new QPushButton(this))
{
    m_title->setObjectName(QStringLiteral("lbl_transmission"));
    QFont bold = font();
    bold.setBold(true);
    m_title->setFont(bold);
    m_detail->setObjectName(QStringLiteral("lbl_transmission_detail"));
    m_detail->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_detail->setWordWrap(true);
    m_detail->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_details->setWidget(m_detail);
    m_details->setWidgetResizable(true);
    m_details->setFrameShape(QFrame::NoFrame);
    m_details->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_details->viewport()->setAutoFillBackground(false);
    m_detail->setAutoFillBackground(false);
    m_details->viewport()->installEventFilter(this);
    m_detail->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    m_anyway->setObjectName(QStringLiteral("cmd_transmission_anyway"));
    m_receipt->setObjectName(QStringLiteral("cmd_transmission_receipt"));
    m_cancel->setObjectName(QStringLiteral("cmd_transmission_cancel"));
    m_resume->setObjectName(QStringLiteral("cmd_transmission_resume"));
    m_close->setObjectName(QStringLiteral("cmd_transmission_close"));
    m_closeHeld.setSingleShot(true);
    connect(&m_closeHeld, &QTimer::timeout, this, [this] { m_close->setEnabled(true); });

    auto *texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addWidget(m_title);
    texts->addWidget(m_details);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(12, 4, 12, 4);
    layout->addLayout(texts, 1);
    layout->addWidget(m_anyway);
    layout->addWidget(m_receipt);
    layout->addWidget(m_resume);
    layout->addWidget(m_cancel);
    layout->addWidget(m_close);
    hide();

    connect(&m_transmitter, &Transmitter::started, this, &TransmissionPanel::begin);
    connect(&m_transmitter, &Transmitter::stepDone, this, &TransmissionPanel::takeStep);
    connect(&link, &ModuleLink::stalled, this, &TransmissionPanel::showDetail);
    connect(&m_transmitter, &Transmitter::ended, this, &TransmissionPanel::end);
    connect(&link, &ModuleLink::changed, this, &TransmissionPanel::showButtons);
    connect(&m_document, &Document::changed, this, &TransmissionPanel::showButtons);
    connect(m_cancel, &QPushButton::clicked, &m_transmitter, &Transmitter::cancel);
    connect(m_resume, &QPushButton::clicked, &m_transmitter, &Transmitter::resume);
    connect(m_close, &QPushButton::clicked, this, &QWidget::hide);
    connect(m_close, &QPushButton::clicked, this, &TransmissionPanel::leaveQuestion);
    connect(m_anyway, &QPushButton::clicked, this, [this] {
        const std::function<void()> go = m_go;
        leaveQuestion();
        if (go) {
            go();
        }
    });
    connect(m_receipt, &QPushButton::clicked, this, &TransmissionPanel::receiptWanted);
    connect(m_detail, &QLabel::linkActivated, this, [this](const QString &step) {
        const StepPlace place = placeOfStep(step.toInt());
        Q_EMIT placeChosen({place.control, place.entry});
    });
    applyTexts();
}

void TransmissionPanel::applyTexts()
{
    m_cancel->setText(tr("Cancel"));
    m_cancel->setToolTip(tr("Ends the transmission before its next step"));
    m_anyway->setText(tr("Transmit anyway"));
    m_receipt->setText(tr("Receipt..."));
    m_receipt->setToolTip(tr("Writes what was transmitted and what became of it into a PDF"));
    m_resume->setText(tr("Continue"));
    m_close->setText(tr("Close"));
    if (m_go) {
        showQuestion();
    } else if (m_ended) {
        showSummary();
    } else {
        showRunning();
    }
    showButtons();
}

void TransmissionPanel::showLook(const TransmissionLook &look, const std::function<void()> &go)
{
    m_look = look;
    if (look.misfits().isEmpty()) {
        leaveQuestion();
        go();
        return;
    }
    m_go = go;
    showQuestion();
    show();
    showButtons();
    m_anyway->setFocus();
}

/// Nothing was sent yet; it stands here instead of in a box, beside what it is about.
void TransmissionPanel::showQuestion()
{
    m_title->setText(tr("This may be the wrong configuration for this module"));
    showDetail(m_look.misfits().join(u'\n') + u'\n' + m_look.summary());
}

void TransmissionPanel::leaveQuestion()
{
    m_go = nullptr;
    showButtons();
}

void TransmissionPanel::begin()
{
    m_go = nullptr;
    m_started = m_document.environment().now();
    m_firstStep = m_transmitter.step();
    m_ended = false;
    m_command.clear();
    showRunning();
    show();
    if (m_resume->hasFocus()) { // "cancel" takes its place
        m_details->setFocus();
    }
    showButtons();
}

/// Estimated from the pace so far; empty while it is too early for that.
QString TransmissionPanel::timeLeft(int step) const
{
    const int done = step - m_firstStep;
    constexpr int enoughToTell = 5;
    if (done < enoughToTell) {
        return {};
    }
    // The clock may have been put back meanwhile.
    const qint64 spent = std::max(qint64{0}, m_started.msecsTo(m_document.environment().now()));
    const qint64 left = spent * (steps::last - step) / done;
    return tr("about %1 s left").arg((left + 999) / 1000);
}

void TransmissionPanel::takeStep(int step, const QString &command)
{
    m_step = step;
    m_command = command;
    showRunning();
}

void TransmissionPanel::showRunning()
{
    if (m_command.isEmpty()) {
        m_title->setText(tr("Transmitting the configuration"));
        const QString look = m_look.commands > 0 ? u'\n' + m_look.summary() : QString();
        showDetail(tr("Waiting until the module reads its SMS") + look);
        return;
    }
    const QString left = timeLeft(m_step);
    m_title->setText(tr("Transmitting the configuration: step %1 of %2").arg(m_step).arg(steps::last) +
                     (left.isEmpty() ? QString() : QStringLiteral(", ") + left));
    showDetail(m_detail->fontMetrics().elidedText(shortenedLine(logText(m_command)), Qt::ElideRight,
                                                  m_detail->width()));
}

void TransmissionPanel::showDetail(const QString &text)
{
    m_detail->setTextFormat(Qt::PlainText);
    m_detail->setText(text);
    fitDetail();
    m_detail->setToolTip(QString());
}

/// As high as its text, up to a few lines; beyond that it scrolls.
void TransmissionPanel::fitDetail()
{
    constexpr int mostLines = 6;
    const int wanted = m_detail->heightForWidth(m_details->viewport()->width());
    m_details->setFixedHeight(std::min(wanted, mostLines * m_detail->fontMetrics().lineSpacing()));
}

bool TransmissionPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_details->viewport() && event->type() == QEvent::Resize) {
        fitDetail();
    }
    return QWidget::eventFilter(watched, event);
}

void TransmissionPanel::end()
{
    m_ended = true;
    holdClose();
    showSummary();
    showButtons();
}

/// A click or key press meant for "cancel" must not hit the buttons that take its place.
void TransmissionPanel::holdClose()
{
    if (m_cancel->hasFocus()) {
        m_details->setFocus();
    }
    m_close->setEnabled(false);
    m_closeHeld.start(closeHeld);
}

QString TransmissionPanel::links(const QList<int> &list) const
{
    QStringList parts;
    for (const int step : list) {
        const StepPlace place = placeOfStep(step);
        const QString where = m_where({place.control, place.entry});
        const QString name = where.isEmpty() ? tr("step %1").arg(step) : where;
        parts += where.isEmpty()
                     ? name.toHtmlEscaped()
                     : QStringLiteral("<a href=\"%1\">%2</a>").arg(step).arg(name.toHtmlEscaped());
    }
    return parts.join(QStringLiteral(", "));
}

void TransmissionPanel::showSummary()
{
    const TransmissionReport &report = m_transmitter.report();
    m_title->setText(report.title());
    QString text = report.counts();
    for (const TransmissionReport::Finding &finding : report.findings()) {
        text += u". " + finding.text;
        if (!finding.steps.isEmpty()) {
            text += u' ' + links(finding.steps);
        }
    }
    m_detail->setTextFormat(Qt::RichText);
    m_detail->setText(text);
    fitDetail();
    m_detail->setToolTip(QTextDocumentFragment::fromHtml(text).toPlainText());
}

void TransmissionPanel::showButtons()
{
    const bool running = m_transmitter.isTransmitting();
    const bool broken = m_ended && m_transmitter.report().brokenAt.has_value();
    m_anyway->setVisible(m_go != nullptr);
    m_receipt->setVisible(m_ended && !running && !m_go);
    m_cancel->setVisible(running);
    m_close->setVisible(!running);
    m_resume->setVisible(broken && !m_go);
    m_resume->setEnabled(m_transmitter.canResume(m_document.configuration()));
    m_resume->setToolTip(m_resume->isEnabled()
                             ? tr("Goes on at the step where the transmission stopped")
                             : tr("Possible with the same configuration over the same connection only"));
}

} // namespace ktr
