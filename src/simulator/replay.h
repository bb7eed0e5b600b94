#pragma once

#include "platform/status.h"
#include "platform/timers.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace ktr {

/// What was said in a conversation log, line by line.
struct RecordedConversation
{
    struct Line
    {
        enum class From {
            Module,
            Modem, ///< the status line of a real modem: the program does not echo it
            Program,
        };
        int number; ///< in the file, counted from 1
        From from;
        bool overNetwork;   ///< an "eth" line, whose echo may be left out
        Milliseconds pause; ///< since the line before, zero when the log has no times
        QString text;       ///< as in the log
    };
    std::vector<Line> lines;
    int leftOut = 0; ///< lines of the file that do not belong to the conversation
};

/// Reads a log as the program writes it: "com <---- " and "eth <---- " are the module's lines, "gsm <---- "
/// those of its real modem, "com ----> " and "eth ----> " the program's. Times may be missing. Fails when no
/// line of the module is in it.
Status readConversation(const QByteArray &log, RecordedConversation &conversation);

/// Plays the module's part of a recorded conversation and listens whether the program says what it said then.
/// Bytes in, bytes out: it knows neither port nor clock.
///
/// After a line of the module it waits for all that the program said next, then sends the next line with the
/// log's pause. A PIN that the log hides may be any, the clock command any of its form. A line that differs
/// is reported and skipped; what was expected in its place is still waited for.
class Replay
{
public:
    static constexpr Milliseconds longestPause{1000};
    /// The first line is repeated at this interval until the program is heard.
    static constexpr Milliseconds openingInterval{5000};
    /// The program counts as silent after this time; before its first line it may take as long as it likes.
    static constexpr Milliseconds answerTimeout{60000};

    /// The timers and what `send` needs must outlive the replay. `send` may call receive() at once.
    Replay(RecordedConversation conversation, Timers &timers, std::function<void(const QByteArray &)> send);
    Q_DISABLE_COPY_MOVE(Replay)

    /// Called with each difference, a line for the user.
    void onDifference(std::function<void(const QString &)> call) { m_onDifference = std::move(call); }
    /// Called once, at the end of the log or when the program has fallen silent.
    void onEnd(std::function<void()> call) { m_onEnd = std::move(call); }

    void start() { goOn(); }
    /// Bytes of the program, cut anywhere.
    void receive(const QByteArray &bytes);

    /// The program was heard.
    bool isAnswered() const { return m_answered; }
    /// So far, of the program from the log.
    int differences() const { return m_differences; }

private:
    /// A line that the program is to say, as the log shows it.
    struct Expected
    {
        int number;
        QString text;
        bool needed = true;
    };

    void goOn();
    void say(const RecordedConversation::Line &line);
    void sendOpening(const QByteArray &bytes);
    void expectEcho(const RecordedConversation::Line &line, const QByteArray &bytes);
    void expectAnswers();
    void awaitAnswers();
    bool allHeard() const;
    void hear(const QString &text);
    bool answersRepeatedOpening(const QString &text);
    void differs(int number, const QString &difference);
    void end();

    RecordedConversation m_conversation;
    std::function<void(const QByteArray &)> m_send;
    std::function<void(const QString &)> m_onDifference = [](const QString &) {};
    std::function<void()> m_onEnd = [] {};
    std::unique_ptr<OneShotTimer> m_pause;
    std::unique_ptr<OneShotTimer> m_silence;
    std::size_t m_next = 0; ///< of the conversation's lines
    int m_number = 0;       ///< in the file, of the line said last
    std::vector<Expected> m_expected;
    std::size_t m_met = 0;   ///< how many of the expected lines were heard or skipped
    bool m_reported = false; ///< the line that is waited for was already reported as differing
    QByteArray m_received;
    bool m_answered = false;
    std::vector<QString> m_opening;   ///< what answers the first line
    std::size_t m_openingAnswers = 0; ///< lines that may come because the first line was said again
    int m_differences = 0;
    bool m_ended = false;
};

} // namespace ktr
