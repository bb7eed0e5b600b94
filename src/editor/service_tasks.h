#pragma once

#include "link/module_dialogue.h"

#include <QGroupBox>

#include <array>
#include <deque>
#include <optional>

class QLabel;
class QPushButton;

namespace ktr {

/// What a technician does first at a module, each with one click: set its clock, read its version, look at
/// its signal. Nothing is sent unasked. One command waits at a time: what is clicked meanwhile comes next.
///
///     idle --click--> next --the slot is free--> waiting --handed over--> sent --answer--> answered
class ServiceTasks : public QGroupBox
{
    Q_OBJECT

public:
    enum class Task { Clock, Version, Signal };
    static constexpr std::size_t count = 3;

    explicit ServiceTasks(QWidget *parent = nullptr);

    void applyTexts();
    /// Whether there is a line to a module. A new line begins anew.
    void setOpen(bool open);
    /// The command that waits; empty for none.
    void showWaiting(const QString &command);
    void commandLeft(const QString &command);
    void showReply(const ktr::ModuleDialogue::Reply &reply);
    /// A line of the conversation.
    void showLine(const QString &line);

Q_SIGNALS:
    /// Wants the command of a task to be placed; showWaiting() tells then whether it was.
    void wanted(ktr::ServiceTasks::Task task);

private:
    enum class State { Idle, Next, Waiting, Sent, Answered, Refused, NotSent };
    struct Row
    {
        QPushButton *button = nullptr;
        QLabel *label = nullptr;
        State state = State::Idle;
        QString answer{};
    };

    Row &row(Task task) { return m_rows[static_cast<std::size_t>(task)]; }
    void click(Task task);
    void placeNext();
    void show(Task task, State state, const QString &answer = {});
    static bool isCommandOf(Task task, const QString &command);
    static QString stateText(const Row &row, Task task);

    std::array<Row, count> m_rows;
    std::deque<Task> m_next;
    QString m_waiting;            ///< in the only slot, whoever placed it
    std::optional<Task> m_placed; ///< the task whose command waits
    QString m_sentClock;          ///< the command as it left
};

} // namespace ktr
