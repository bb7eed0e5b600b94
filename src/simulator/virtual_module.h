#pragma once

#include "platform/timers.h"
#include "simulator/command_interpreter.h"
#include "simulator/module_memory.h"

#include <QByteArray>

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <random>

namespace ktr {

struct ModuleTimes
{
    Milliseconds bootInterval{1000}; ///< between two "at+cpin?"
    Milliseconds readInterval{200};  ///< before it looks for an SMS again
    Milliseconds answerTimeout{5000};
};

/// What goes wrong with what the module sends. A line is counted with its end, without what garbage and
/// merging put in front of it.
struct ModuleFaults
{
    Milliseconds delayBeforeLine{0};
    std::optional<int> silentAfterLines{}; ///< sends this many lines and nothing more
    qsizetype chunkSize = 0;               ///< bytes sent at once; 0: whole lines
    Milliseconds chunkPause{0};            ///< between the chunks of a line
    bool mergesStatus = false;             ///< "+CSQ: 18,0" CR LF in front of every line, in the same write
    bool garbageInFront = false;           ///< random bytes in front of every line
    bool garbageLines = false;             ///< a line of random bytes before every line
    quint32 seed = 1;                      ///< of the random bytes, which are never CR or Ctrl-Z
    std::optional<qint64> hangUpAtByte{};  ///< sends this many bytes, then the line is gone
};

struct ModuleOptions
{
    ModuleTimes times;
    ModuleFaults faults;
    ModuleMemory memory;
    bool tellsEnd = false; ///< "donE" when it leaves configuration mode, as over Ethernet
};

struct ModuleCounts
{
    int linesSent = 0;
    int boots = 0;           ///< times it began to ask for its modem
    int reads = 0;           ///< times it looked for an SMS
    int unexpectedLines = 0; ///< heard at a moment when they mean nothing, and ignored
    int overlongLines = 0;   ///< dropped because no line end came within 64 KiB
    qint64 firmwareBytes = 0;
};

/// A telemetry module as its GSM modem sees it: it starts the modem, reads its configuration commands as
/// incoming SMS and answers by SMS. Knows neither port nor clock.
///
///     Off --start--> Booting --"config"--> Caught --OK--> Reading <--readInterval-- Pausing
///                      ^                                   |   `--OK without an SMS---^
///                      |                                   | an SMS with a command
///                      |     +-----------------------------+--------------------+
///                      |     v                             v                    v
///                      |   Announcing --OK--> Answering   SendingArchive   TakingFirmware
///                      |     (then Reading again at once)                       |
///                      `--- the closing command, an answer that never comes, ---'
///
/// A line sent counts as answered by an "OK" behind its own echo only: with faults in play, or after a
/// restart, answers to something else may still arrive.
class VirtualModule
{
public:
    using Send = std::function<void(const QByteArray &)>;

    /// The timers and what `send` needs must outlive the module. `send` may call receive() at once.
    VirtualModule(Timers &timers, Send send, ModuleOptions options = {});
    Q_DISABLE_COPY_MOVE(VirtualModule)

    /// Called when the closing command was taken.
    void onConfigured(std::function<void(const ModuleMemory &)> call) { m_onConfigured = std::move(call); }
    /// Called for every command read, after it was applied or refused.
    void onCommand(std::function<void(const QString &, const Understood &)> call)
    {
        m_onCommand = std::move(call);
    }
    /// Called with the number of bytes when a firmware image was taken, or no more of it comes.
    void onFirmware(std::function<void(qint64)> call) { m_onFirmware = std::move(call); }
    /// Called when the fault of that name strikes; the module neither sends nor hears anything afterwards.
    void onHangUp(std::function<void()> call) { m_onHangUp = std::move(call); }

    /// Switches the module on, or off and on again; its memory stays.
    void start();
    /// Bytes from whoever plays the modem, cut anywhere.
    void receive(const QByteArray &bytes);

    /// In configuration mode: caught, and not yet back at asking for its modem.
    bool isCaught() const { return m_state != State::Off && m_state != State::Booting; }
    const ModuleMemory &memory() const { return m_memory; }
    ModuleMemory &memory() { return m_memory; }
    const ModuleCounts &counts() const { return m_counts; }

private:
    enum class State {
        Off,
        Booting,
        Caught,
        Reading,
        Pausing,
        Announcing,
        Answering,
        SendingArchive,
        TakingFirmware,
    };

    /// Bytes that go out together, after a pause.
    struct Write
    {
        QByteArray bytes;
        Milliseconds pause;
    };

    void enter(State state);
    void boot();
    void askForModem();
    void read();
    void act();
    void sendArchiveLine();
    void takeFirmware(qsizetype bytes);
    void endFirmware();

    std::optional<QByteArray> takeLine();
    void hear(const QByteArray &line);
    void hearInBoot(const QByteArray &line);
    bool hearEcho(const QByteArray &line);
    void hearWhileReading(const QByteArray &line);
    void hearAnswered();

    void request(State state, const QByteArray &text, char end = '\r');
    void queueLine(const QByteArray &line);
    void pump();
    void transmit(const QByteArray &bytes);
    QByteArray garbage();

    Send m_send;
    ModuleTimes m_times;
    ModuleFaults m_faults;
    bool m_tellsEnd;
    ModuleMemory m_memory;
    CommandInterpreter m_interpreter;
    ModuleCounts m_counts;
    std::function<void(const ModuleMemory &)> m_onConfigured;
    std::function<void(const QString &, const Understood &)> m_onCommand;
    std::function<void(qint64)> m_onFirmware;
    std::function<void()> m_onHangUp;

    State m_state = State::Off;
    std::unique_ptr<OneShotTimer> m_wait;
    QByteArray m_received;
    bool m_isHearing = false;

    QByteArray m_awaitedEcho;
    bool m_echoHeard = false;
    bool m_smsFollows = false;
    std::optional<QString> m_command;
    QByteArray m_answer;
    QStringList m_archive;

    std::unique_ptr<OneShotTimer> m_outputPause;
    std::deque<Write> m_output;
    bool m_isPumping = false;
    bool m_answerDue = false; ///< the wait for it begins when the output is empty
    qint64 m_bytesSent = 0;
    std::minstd_rand m_random;
};

} // namespace ktr
