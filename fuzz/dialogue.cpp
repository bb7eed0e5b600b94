// Anything that a module may send to a session, on a serial line and over Ethernet, cut and repeated
// anywhere.
//
//     s, e      the kind of line, of the first step; a serial one otherwise
//     r b f     received: in one piece, byte by byte, too much without an end
//     t         so many milliseconds pass
//     T A S     a transmission starts at a step, with answers too, or is stopped
//     p         a command is placed
//     x o c l   exclusive; the line is opened, closed, lost

#include "link/conversation_log.h"
#include "link/module_session.h"
#include "link/reply_interpreter.h"
#include "support/environment.h"
#include "support/manual_timers.h"
#include "support/require.h"
#include "support/script.h"
#include "support/silent_line.h"

#include <algorithm>

using namespace ktr;

namespace {

bool isLineEnd(char c)
{
    return c == '\r' || c == '\x1A';
}

/// An assembler's lines and what they are made of.
class WatchedAssembler
{
public:
    void push(QByteArrayView bytes)
    {
        m_pushed += bytes.size();
        if (const auto line = m_lines.push(bytes)) {
            fuzz::require(!line->isEmpty() && isLineEnd(line->back()), "a line ends with its end");
            m_joined += *line;
        }
        const qint64 kept = m_pushed - m_joined.size() - m_lines.dropped();
        fuzz::require(kept >= 0 && kept <= LineAssembler::longestLine, "what is kept is bounded");
    }
    const QByteArray &joined() const { return m_joined; }
    bool hasAll() const { return m_lines.dropped() == 0; }

private:
    LineAssembler m_lines;
    qint64 m_pushed = 0;
    QByteArray m_joined;
};

class Conversation
{
public:
    explicit Conversation(LineKind kind)
        : m_session(m_line, m_timers, test::fixedEnvironment(), kind), m_isSerial(kind == LineKind::Serial)
    {
        QObject::connect(&m_session, &ModuleSession::logged, [](const QString &line) {
            const QString text = logText(line.left(1000));
            const auto isControl = [](QChar c) { return c.category() == QChar::Other_Control; };
            fuzz::require(std::ranges::none_of(text, isControl), "a log's line has no control character");
        });
        QObject::connect(&m_session, &ModuleSession::replied, [](const ModemDialogue::Reply &reply) {
            fuzz::require(reply.text.size() + reply.number.size() <= 3 * LineAssembler::longestLine,
                          "a reply is bounded");
            interpretReply(reply);
        });
        QObject::connect(&m_session, &ModuleSession::commandSent,
                         [](std::optional<int> step, const QString &command) {
                             fuzz::require(!step || (*step >= steps::first && *step <= steps::last),
                                           "a command belongs to a step");
                             fuzz::require(command.size() <= longestCommand && !command.contains(u'\r') &&
                                               !command.contains(u'\n') && !command.contains(u'\x1A'),
                                           "a command is one line that fits an SMS");
                         });
        (void)m_session.open(QStringLiteral("line"));
    }

    void carryOut(const fuzz::Step &step)
    {
        switch (step.what) {
        case 'b':
            for (const char byte : step.bytes) {
                receive(QByteArray(1, byte));
            }
            break;
        case 'f':
            receive(step.flood());
            break;
        case 't':
            m_timers.advance(Milliseconds(step.number(100'000)));
            break;
        case 'T':
        case 'A':
            m_session.startTransmission(m_configuration, step.what == 'A', step.number(steps::last));
            break;
        case 'S':
            m_session.stopTransmission();
            break;
        case 'p':
            m_session.place(QString::fromUtf8(step.bytes));
            break;
        case 'x':
            m_session.setExclusive(step.number(1) == 1);
            break;
        case 'o':
            (void)m_session.open(QStringLiteral("line"));
            break;
        case 'c':
            m_session.close();
            break;
        case 'l':
            m_line.close();
            Q_EMIT m_line.lost(QStringLiteral("gone"), false);
            break;
        default:
            receive(step.bytes);
        }
        fuzz::require(m_session.resumeStep() >= steps::first && m_session.resumeStep() <= steps::last,
                      "a transmission can be resumed at a step");
        fuzz::require(m_line.sent.isEmpty() || m_line.sent.endsWith("\r\n"), "whole lines are sent");
    }

    void check() const
    {
        fuzz::require(!m_whole.hasAll() || !m_cut.hasAll() || m_whole.joined() == m_cut.joined(),
                      "bytes make the same lines however they are cut");
    }

private:
    void receive(const QByteArray &bytes)
    {
        m_whole.push(bytes);
        constexpr qsizetype piece = 7;
        for (qsizetype at = 0; at < bytes.size(); at += piece) {
            m_cut.push(QByteArrayView(bytes).sliced(at, std::min(piece, bytes.size() - at)));
        }
        const qsizetype before = m_line.sent.size();
        Q_EMIT m_line.received(bytes);
        // An echo, the command that was waited for, and OK.
        const qsizetype most = LineAssembler::longestLine + bytes.size() + 1000;
        fuzz::require(!m_isSerial || m_line.sent.size() - before <= most, "an answer is bounded");
    }

    test::ManualTimers m_timers;
    test::SilentLine m_line;
    Configuration m_configuration;
    ModuleSession m_session;
    bool m_isSerial;
    WatchedAssembler m_whole;
    WatchedAssembler m_cut;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::vector<fuzz::Step> steps = fuzz::stepsOf(data, size);
    const bool isEthernet = !steps.empty() && steps.front().what == 'e';
    Conversation conversation(isEthernet ? LineKind::Ethernet : LineKind::Serial);
    for (const fuzz::Step &step : steps) {
        conversation.carryOut(step);
    }
    conversation.check();
    return 0;
}
