#include "app/take_over.h"

#include "look/icons.h"
#include "look/program_name.h"
#include "platform/helper_program.h"

#include <QPushButton>
#include <QScreen>

namespace ktr {

namespace {

constexpr Milliseconds otherEnds{1000};
constexpr int noteMargin = 60; // with room for the frame of the window manager

QString whatEndingCosts(Works works)
{
    QStringList costs;
    if (works.testFlag(Work::Watching)) {
        costs += TakeOver::tr("The KTRconfig that is open already watches stations in its operational mode. "
                              "When it is ended, nobody "
                              "is told of their alarms until the operational mode is opened again.");
    }
    if (works.testFlag(Work::Transmitting)) {
        costs +=
            TakeOver::tr("The KTRconfig that is open already transmits a configuration. When it is ended, "
                         "the module holds a part of it only.");
    }
    if (works.testFlag(Work::Uploading)) {
        costs +=
            TakeOver::tr("The KTRconfig that is open already sends firmware to a module. When it is ended, "
                         "the module has a part of it only and may not work until it gets all of it.");
    }
    return costs.join(QLatin1String("\n\n"));
}

QMessageBox *createBox(QMessageBox::Icon kind, const char *name, const QString &text)
{
    auto *box = new QMessageBox(kind, QString(programName), text);
    box->setObjectName(QLatin1String(name));
    box->setTextFormat(Qt::PlainText);
    box->setWindowIcon(icon(IconName::Application));
    box->setAttribute(Qt::WA_DeleteOnClose);
    return box;
}

} // namespace

TakeOver::TakeOver(SingleInstance &instance, const TextTable &texts, QTimer &wait, QString programFolder,
                   QObject *parent)
    : QObject(parent),
      m_instance(instance),
      m_texts(texts),
      m_wait(wait),
      m_programFolder(std::move(programFolder))
{
    connect(&m_instance, &SingleInstance::otherAnswered, this, &TakeOver::decide);
    connect(&m_instance, &SingleInstance::otherEnded, this, [this] {
        m_otherHasEnded = true;
        if (m_phase != Phase::Ending) {
            finish(Other::Ended);
        }
    });
    connect(&m_instance, &SingleInstance::otherSilent, this, [this] { finish(Other::Silent); });
    connect(&m_wait, &QTimer::timeout, this, &TakeOver::waited);
}

TakeOver::~TakeOver()
{
    delete m_question;
    delete m_note;
}

void TakeOver::begin()
{
    m_phase = Phase::Asking;
    m_otherHasEnded = false;
    m_instance.askWhatOtherDoes();
    m_wait.start(otherEnds);
}

void TakeOver::decide(Works otherWorks)
{
    if (m_phase == Phase::Deciding && otherWorks && m_question != nullptr) {
        m_question->setText(whatEndingCosts(otherWorks));
    }
    if (m_phase != Phase::Asking) {
        return;
    }
    delete m_note; // that it does not answer
    if (!otherWorks) {
        endOther();
        return;
    }
    m_phase = Phase::Deciding;
    m_wait.stop();
    m_question = createBox(QMessageBox::Warning, "box_otherWorks", whatEndingCosts(otherWorks));
    QAbstractButton *end = m_question->addButton(tr("End it and start here"), QMessageBox::AcceptRole);
    const QAbstractButton *join = nullptr;
    if (otherWorks == Works(Work::Watching)) {
        join = m_question->addButton(tr("Start here, too, and look on"), QMessageBox::ActionRole);
    }
    QPushButton *leave = m_question->addButton(tr("Leave it running"), QMessageBox::RejectRole);
    m_question->setDefaultButton(leave);
    m_question->setEscapeButton(leave);
    connect(m_question, &QDialog::finished, this, [this, end, join] {
        const QAbstractButton *clicked = m_question->clickedButton();
        if (clicked == end) {
            endOther();
        } else if (clicked != nullptr && clicked == join) {
            finish(Other::StaysOn);
        } else {
            giveUp();
        }
    });
    m_question->show();
}

/// The helper ends whatever has the name of this program, so this instance has another title meanwhile.
void TakeOver::endOther()
{
    m_phase = Phase::Ending;
    Q_EMIT titleWanted(m_texts.text(Text::ExclusiveInBrackets));
    const QString helper = findHelper(m_programFolder, QStringLiteral("tasklist"));
    if (helper.isEmpty()) {
        m_instance.askOtherToClose();
    } else if (const Status started = startProgram(helper, {QString(programName)}, ProgramWindow::Minimised);
               !started) {
        Q_EMIT statusMessage(started.message());
    }
    m_wait.start(otherEnds);
}

void TakeOver::waited()
{
    if (m_phase == Phase::Asking) {
        showNote();
        return;
    }
    Q_EMIT titleWanted(QString(programName));
    if (m_otherHasEnded) {
        finish(Other::Ended);
        return;
    }
    m_phase = Phase::Waiting;
    showNote();
    m_instance.askOtherToFront();
}

/// Where the other instance will ask its user, the note stays visible, but leaves the focus and the middle of
/// the screen to that question.
void TakeOver::showNote()
{
    if (m_note != nullptr) {
        return;
    }
    const bool isUnanswered = m_phase == Phase::Asking;
    m_note = createBox(
        QMessageBox::Information, "box_waiting",
        isUnanswered
            ? tr("The KTRconfig that is open already does not answer. It is waited for a few seconds longer, "
                 "then this one starts all the same.")
            : tr("Waiting for the other KTRconfig window to close. It may ask whether to save."));
    m_note->setWindowFlag(Qt::WindowStaysOnTopHint);
    m_note->setModal(false);
    const QAbstractButton *start =
        isUnanswered ? m_note->addButton(tr("Do not wait, start here"), QMessageBox::AcceptRole) : nullptr;
    QPushButton *quit = m_note->addButton(tr("Do not wait, quit"), QMessageBox::RejectRole);
    m_note->setDefaultButton(quit);
    m_note->setEscapeButton(quit);
    connect(m_note, &QDialog::finished, this, [this, start] {
        const bool starts = start != nullptr && m_note->clickedButton() == start;
        starts ? finish(Other::Silent) : giveUp();
    });
    if (!isUnanswered) {
        m_note->setAttribute(Qt::WA_ShowWithoutActivating);
        m_note->adjustSize();
        m_note->move(m_note->screen()->availableGeometry().bottomRight() -
                     QPoint(m_note->width() + noteMargin, m_note->height() + noteMargin));
    }
    m_note->show();
}

void TakeOver::giveUp()
{
    m_wait.stop();
    m_instance.askOtherToFront();
    Q_EMIT givenUp();
}

void TakeOver::finish(Other other)
{
    m_wait.stop();
    for (const auto &box : {m_question, m_note}) {
        if (box != nullptr) {
            box->disconnect(this);
            box->close();
        }
    }
    m_hasEndedOther =
        m_hasEndedOther || (other == Other::Ended && (m_phase == Phase::Ending || m_phase == Phase::Waiting));
    m_metSilent = m_metSilent || other == Other::Silent;
    m_isBeside = m_isBeside || other == Other::StaysOn;
    if (other != Other::Ended) {
        m_instance.passOver();
    }
    if (!m_instance.claim()) { // there is one more, or another waiting instance was faster
        begin();
        return;
    }
    QStringList remarks;
    if (m_metSilent) {
        remarks += tr("Another KTRconfig is open and does not answer. It was not waited for.");
    }
    if (m_instance.metStranger()) {
        remarks +=
            tr("Something stands in the place of an open KTRconfig and hangs up whenever it is asked. It was "
               "not waited for.");
    }
    if (m_isBeside) {
        remarks += tr("Another KTRconfig watches the stations; the operational mode here joins it.");
    }
    if (!remarks.isEmpty()) {
        remarks += tr("What is saved there and here into the same file replaces each other.");
    }
    Q_EMIT done(remarks.join(u' '));
}

} // namespace ktr
