#pragma once

#include "link/command_sequence.h"

#include <QString>

#include <functional>
#include <optional>
#include <variant>
#include <vector>

namespace ktr {

/// Whether a command typed by the user tells the module to expect a firmware image. No step of a transmission
/// does that.
bool announcesFirmware(QStringView command);

/// The program's part of the conversation. The module believes that it talks to its GSM modem: it sends modem
/// commands, and the program answers them as a modem would. Takes one line of the module, returns what has to
/// be done about it; has neither port nor clock. This class has what serial lines and Ethernet share, which
/// is SMS in both directions; the derived ones have how a module is caught.
///
///     module                 program
///     at+cmgr=1          ->  ,"+IP", command, OK       an incoming SMS: the next command, if there is one
///     at+cmgs="number"   ->  OK
///     text Ctrl-Z        ->  OK                        an outgoing SMS: the module's answer
///
/// Example: after place("T,1"), lineReceived("at+cmgr=1\r") of a ModemDialogue returns, apart from what goes
/// into the log: Send "at+cmgr=1" (the echo), Send ",\"+IP\"", Send "T,1", CommandSent "T,1", Send "OK".
class ModuleDialogue
{
public:
    /// A line to the module, without its line end.
    struct Send
    {
        QString line;
        bool operator==(const Send &) const = default;
    };
    /// A line for the conversation log.
    struct Log
    {
        QString line;
        bool operator==(const Log &) const = default;
    };
    /// The module is in configuration mode: the search for its port can end.
    struct Caught
    {
        bool operator==(const Caught &) const = default;
    };
    enum class ReplyKind {
        Sms,     ///< an SMS of the module
        History, ///< a line of its archive
        Message, ///< a message that it sends by itself
    };
    /// A text of the module for the reply interpreter. `number` is where an SMS was sent to, or the number in
    /// front of a message.
    struct Reply
    {
        ReplyKind kind;
        QString number;
        QString text;

        /// The text behind its number and its marker: "+IP <-- OK: G,1", "+4917012345 --> M,Pump 1 fail".
        QString shown() const;
        /// An SMS to "+IP": an answer, or a report.
        bool isForProgram() const;
        /// An answer saying that a command failed.
        bool refuses() const;

        bool operator==(const Reply &) const = default;
    };
    /// The module asked for an SMS, and no command was waiting.
    struct NothingToRead
    {
        bool operator==(const NothingToRead &) const = default;
    };
    /// A command was handed to the module. `step` is empty for a command of the user.
    struct CommandSent
    {
        std::optional<int> step;
        QString command;
        bool operator==(const CommandSent &) const = default;
    };
    /// A command was dropped because it is too long for an SMS.
    struct CommandRefused
    {
        std::optional<int> step;
        QString command;
        bool operator==(const CommandRefused &) const = default;
    };
    /// The module was told to expect a firmware image.
    struct FirmwareAnnounced
    {
        bool operator==(const FirmwareAnnounced &) const = default;
    };
    /// The module confirmed a service command; `text` is what follows "OK: §,".
    struct ServiceConfirmed
    {
        QString text;
        bool operator==(const ServiceConfirmed &) const = default;
    };
    using Action = std::variant<Send, Log, Caught, Reply, NothingToRead, CommandSent, CommandRefused,
                                FirmwareAnnounced, ServiceConfirmed>;

    /// Returns the command of the transmission's next step; nothing when no transmission runs.
    using NextCommand = std::function<std::optional<StepCommand>()>;

    virtual ~ModuleDialogue() = default;
    Q_DISABLE_COPY_MOVE(ModuleDialogue)

    /// Places a command of the user; the module gets it when it next reads an SMS. If a transmission is
    /// running then, its step goes instead and the command is lost. `atHandOver` is for a text that depends
    /// on that moment (the clock): it returns what is sent, and `command` only shows what is waiting.
    void place(const QString &command, std::function<QString()> atHandOver = {})
    {
        m_outgoing = asOneLine(command);
        m_atHandOver = std::move(atHandOver);
    }
    const QString &outgoing() const { return m_outgoing; }

    /// What to do about a line. Its last character is the carriage return or Ctrl-Z that ended it.
    virtual std::vector<Action> lineReceived(const QString &line) = 0;

    /// The same while nothing may be sent: the line is only logged.
    std::vector<Action> lineOverheard(const QString &line);

    /// What to do when a connection begins.
    virtual std::vector<Action> connected() { return {}; }

    /// The line was closed: what the module began to say will not be ended, least of all by another module.
    std::vector<Action> lineClosed();

    /// A transmission has ended, with its last command or earlier.
    virtual void transmissionEnded() {}

protected:
    /// `linePrefix` stands for the kind of line in the log: "com" or "eth".
    ModuleDialogue(NextCommand nextCommand, const QString &linePrefix)
        : m_nextCommand(std::move(nextCommand)), m_linePrefix(linePrefix)
    {}

    /// Answers a line that has been logged and echoed already: what it asks for, then OK.
    void dispatch(const QString &line);

    void act(Action action) { m_actions.push_back(std::move(action)); }
    /// "<prefix> <---- line"
    void logReceived(QStringView prefix, const QString &line);
    void logReceived(const QString &line) { logReceived(m_linePrefix, line); }
    void sendLogged(const QString &line);
    std::vector<Action> takeActions() { return std::exchange(m_actions, {}); }

private:
    QStringView takeSms(QStringView line);
    void dropSms();
    void addReply(Reply reply);
    void takeConfirmations(QStringView text);
    void handOverCommand();

    NextCommand m_nextCommand;
    QString m_linePrefix;
    QString m_outgoing;
    std::function<QString()> m_atHandOver;
    std::optional<QString> m_smsNumber; ///< of the SMS whose text the module is about to send
    QString m_smsText;
    std::vector<Action> m_actions;
};

} // namespace ktr
