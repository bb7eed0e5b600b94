#pragma once

#include "link/command_sequence.h"

#include <QString>

#include <functional>
#include <optional>
#include <variant>
#include <vector>

namespace ktr {

/// Whether a command of the user tells the module to expect a firmware image. No step of a transmission does.
bool announcesFirmware(QStringView command);

/// The program in the place of the module's GSM modem: a line of the module in, actions out. It knows no
/// port and no clock. What the kinds of line have in common: reading and sending SMS, the module's texts.
///
///     module                 program
///     at+cmgr=1          ->  ,"+IP", command, OK       an incoming SMS: the next command, if there is one
///     at+cmgs="number"   ->  OK
///     text Ctrl-Z        ->  OK                        an outgoing SMS: the module's answer
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
    /// The module is in configuration mode: no port needs to be searched any longer.
    struct Caught
    {
        bool operator==(const Caught &) const = default;
    };
    enum class ReplyKind {
        Sms,     ///< an SMS of the module
        History, ///< a line of its archive
        Message, ///< a message that it sends by itself
    };
    /// A text of the module for the reply interpreter. `number` is the SMS's destination, or stood in front
    /// of a message.
    struct Reply
    {
        ReplyKind kind;
        QString number;
        QString text;

        /// The text behind its number and its marker: "+IP <-- OK: G,1", "+4917012345 --> M,Pump 1 fail".
        QString shown() const;
        /// An SMS to "+IP": an answer, or a report.
        bool isForProgram() const;
        /// An answer that tells that a command failed.
        bool refuses() const;

        bool operator==(const Reply &) const = default;
    };
    /// The module read an SMS and there was none for it.
    struct NothingToRead
    {
        bool operator==(const NothingToRead &) const = default;
    };
    /// A command was handed to the module. `step` is empty for a service command.
    struct CommandSent
    {
        std::optional<int> step;
        QString command;
        bool operator==(const CommandSent &) const = default;
    };
    /// A command was not sent because it is too long for an SMS.
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

    /// Gives the command of the transmission's next step, nothing when none runs.
    using NextCommand = std::function<std::optional<StepCommand>()>;

    virtual ~ModuleDialogue() = default;
    Q_DISABLE_COPY_MOVE(ModuleDialogue)

    /// Places a service command; the module gets it when it next reads an SMS. A transmission that runs
    /// then goes first and overwrites it. Where its text depends on when that is, `atHandOver` gives it then,
    /// and `command` only says what waits.
    void place(const QString &command, std::function<QString()> atHandOver = {})
    {
        m_outgoing = asOneLine(command);
        m_atHandOver = std::move(atHandOver);
    }
    const QString &outgoing() const { return m_outgoing; }

    /// What a line that ends with a carriage return or Ctrl-Z, its last character, leads to.
    virtual std::vector<Action> lineReceived(const QString &line) = 0;

    /// The same for a line that is only logged, since nothing may be sent at the moment.
    std::vector<Action> lineOverheard(const QString &line);

    /// What the beginning of a connection leads to.
    virtual std::vector<Action> connected() { return {}; }

    /// A transmission ended, whether with its last command or before.
    virtual void transmissionEnded() {}

protected:
    /// `linePrefix` names the kind of line in the log.
    ModuleDialogue(NextCommand nextCommand, const QString &linePrefix)
        : m_nextCommand(std::move(nextCommand)), m_linePrefix(linePrefix)
    {}

    /// Answers a line that was logged and echoed: what it asks for, then OK.
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
