#include "editor/service_tasks.h"

#include "link/conversation_log.h"
#include "link/reply_interpreter.h"
#include "link/service_commands.h"
#include "link/transmission.h"
#include "look/outside_texts.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

#include <algorithm>

namespace ktr {

namespace {

constexpr std::array taskNames = {"clock", "version", "signal"};
const QString qualityMark = QStringLiteral("+CSQ:");

/// "18,0" as "-77 dBm (18)", 99 as not known.
QString signalText(const QString &quality)
{
    constexpr int unknown = 99;
    constexpr int weakest = -113;
    bool isNumber = false;
    const int number = quality.section(u',', 0, 0).trimmed().toInt(&isNumber);
    return !isNumber           ? shortenedLine(quality.trimmed())
           : number == unknown ? ServiceTasks::tr("not known to the module")
                               : ServiceTasks::tr("%1 dBm (%2 of 31)").arg(weakest + 2 * number).arg(number);
}

} // namespace

ServiceTasks::ServiceTasks(QWidget *parent) : QGroupBox(parent)
{
    setObjectName(QStringLiteral("Fra_tasks"));
    auto *grid = new QGridLayout(this);
    grid->setColumnStretch(1, 1);
    for (std::size_t index = 0; index < count; ++index) {
        Row &made = m_rows[index];
        const QString name = QLatin1String(taskNames[index]);
        const auto task = static_cast<Task>(index);
        made.button = new QPushButton(this);
        made.button->setObjectName(QLatin1String("cmd_task_") + name);
        made.button->setEnabled(false);
        made.label = new QLabel(this);
        made.label->setObjectName(QLatin1String("lbl_task_") + name);
        made.label->setWordWrap(true);
        made.label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        connect(made.button, &QPushButton::clicked, this, [this, task] { click(task); });
        grid->addWidget(made.button, static_cast<int>(index), 0);
        grid->addWidget(made.label, static_cast<int>(index), 1);
    }
    grid->setRowStretch(static_cast<int>(count), 1);
}

void ServiceTasks::applyTexts()
{
    setTitle(tr("First tasks at the module"));
    row(Task::Clock).button->setText(tr("Set the clock"));
    row(Task::Clock).button->setToolTip(tr("Sets the module's clock by this computer's"));
    row(Task::Version).button->setText(tr("Read the version"));
    row(Task::Version).button->setToolTip(tr("Sends %1").arg(serviceCommands::version));
    row(Task::Signal).button->setText(tr("Check the signal"));
    row(Task::Signal)
        .button->setToolTip(
            tr("Sends nothing and waits for the module's own report: one that keeps its GSM connection tells "
               "its signal by itself"));
    for (std::size_t index = 0; index < count; ++index) {
        m_rows[index].label->setText(stateText(m_rows[index], static_cast<Task>(index)));
    }
}

QString ServiceTasks::stateText(const Row &row, Task task)
{
    switch (row.state) {
    case State::Idle:
        break;
    case State::Next:
        return tr("is sent next");
    case State::Waiting:
        return task == Task::Signal ? tr("waits for the module's own report; nothing is sent")
                                    : tr("waits until the module reads an SMS");
    case State::Sent:
        return tr("handed over, not answered yet");
    case State::Answered:
        return row.answer.isEmpty() ? tr("done") : row.answer;
    case State::Refused:
        return tr("the module says: %1").arg(row.answer);
    case State::NotSent:
        return tr("not sent");
    }
    return QStringLiteral("–");
}

void ServiceTasks::show(Task task, State state, const QString &answer)
{
    Row &shown = row(task);
    shown.state = state;
    shown.answer = answer;
    shown.label->setText(stateText(shown, task));
}

void ServiceTasks::setOpen(bool open)
{
    if (open == row(Task::Clock).button->isEnabled()) {
        return;
    }
    m_next.clear();
    m_placed.reset();
    for (std::size_t index = 0; index < count; ++index) {
        m_rows[index].button->setEnabled(open);
        if (open) { // of a line that was closed the answers stay to be read
            show(static_cast<Task>(index), State::Idle);
        } else if (const State state = m_rows[index].state; state == State::Next || state == State::Waiting) {
            show(static_cast<Task>(index), State::NotSent);
        }
    }
}

void ServiceTasks::click(Task task)
{
    if (task == Task::Signal) {
        show(task, State::Waiting);
        return;
    }
    if (m_placed == task || std::ranges::find(m_next, task) != m_next.end()) {
        return; // it is on its way
    }
    m_next.push_back(task);
    show(task, State::Next);
    placeNext();
}

/// A command of the user's that waits is not replaced.
void ServiceTasks::placeNext()
{
    if (m_placed || m_next.empty() || !m_waiting.isEmpty()) {
        return;
    }
    const Task task = m_next.front();
    m_next.pop_front();
    m_placed = task;
    show(task, State::Waiting);
    Q_EMIT wanted(task);
}

bool ServiceTasks::isCommandOf(Task task, const QString &command)
{
    return task == Task::Version ? command == serviceCommands::version
                                 : command.startsWith(QLatin1String("T,"));
}

void ServiceTasks::showWaiting(const QString &command)
{
    m_waiting = command;
    if (m_placed && !isCommandOf(*m_placed, command)) {
        const Task task = *m_placed;
        m_placed.reset();
        if (row(task).state == State::Waiting) { // refused, taken back or replaced
            show(task, State::NotSent);
        }
    }
    placeNext();
}

void ServiceTasks::commandLeft(const QString &command)
{
    for (const Task task : {Task::Clock, Task::Version}) {
        if (isCommandOf(task, command) && row(task).state == State::Waiting) {
            m_sentClock = task == Task::Clock ? command : m_sentClock;
            show(task, State::Sent);
        }
    }
}

void ServiceTasks::showReply(const ModuleDialogue::Reply &reply)
{
    if (row(Task::Version).state == State::Sent) {
        for (const ReplyEvent &event : interpretReply(reply)) {
            if (const auto *version = std::get_if<VersionReply>(&event)) {
                const auto known = [](const QString &text) {
                    return text.isEmpty() ? QStringLiteral("–") : shortenedLine(logText(text));
                };
                show(Task::Version, State::Answered,
                     tr("application %1, configuration %2")
                         .arg(known(version->application), known(version->configuration)));
                return;
            }
        }
    }
    for (const auto &[task, command] :
         {std::pair{Task::Clock, m_sentClock}, std::pair{Task::Version, serviceCommands::version}}) {
        if (row(task).state == State::Sent && isAnswerTo(command, reply)) {
            show(task, reply.refuses() ? State::Refused : State::Answered,
                 reply.refuses() ? shortenedLine(logText(reply.text)) : QString());
        }
    }
}

void ServiceTasks::showLine(const QString &line)
{
    const qsizetype start = line.indexOf(qualityMark);
    if (start >= 0 && row(Task::Signal).state == State::Waiting) {
        show(Task::Signal, State::Answered, signalText(line.mid(start + qualityMark.size())));
    }
}

} // namespace ktr
