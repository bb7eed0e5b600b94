#pragma once

#include "editor/command_history.h"
#include "editor/page.h"

class QBoxLayout;

namespace ktr {

class LogView;

/// Single commands to the module, and the conversation with it.
class TestPage : public Page
{
    Q_OBJECT

public:
    explicit TestPage(EditorContext &context, QWidget *parent = nullptr);

    /// Whether no transmission runs: only then typed commands are taken.
    void setIdle(bool idle);

    /// The module is to answer each command.
    bool answerWanted() const;
    void setAnswerWanted(bool wanted);

    /// Offers to hide the log, which without this is always shown.
    void showDebugOption();

    /// A line of the conversation, put in front of the earlier ones; a PIN is not shown.
    void appendLog(const QString &line);
    /// A reply of the module, put in front of the earlier ones with the present time.
    void showReply(const QString &text);
    /// The typed command has left.
    void clearInput();

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void answerWantedChanged(bool wanted);
    void commandPlaced(const QString &command);
    /// The module's clock is to be set.
    void clockPlaced();
    /// The user wants what a display shows in a file.
    void saveWanted(const QString &text);

private:
    QWidget *commandCard();
    QWidget *logCard();
    QWidget *repliesCard();
    QPushButton *addButton(QBoxLayout *row, const char *name, std::function<void()> clicked);
    QPushButton *addCommand(QBoxLayout *row, const char *name, std::function<QString()> command);
    QPushButton *addCommand(QBoxLayout *row, const char *name, const QString &command);
    LogView *newDisplay(const char *name, int last);
    void send();

    CommandHistory m_sent;
    bool m_idle = true;
    QLineEdit *m_input = nullptr;
    QPushButton *m_send = nullptr;
    QCheckBox *m_answer = nullptr;
    QCheckBox *m_logOption = nullptr;
    LogView *m_log = nullptr;
    LogView *m_replies = nullptr;
};

} // namespace ktr
