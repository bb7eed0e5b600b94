#include "simulator/replay.h"

#include "link/conversation_log.h"
#include "platform/text_rules.h"

#include <QDateTime>
#include <QRegularExpression>

#include <algorithm>

namespace ktr {

namespace {

using Line = RecordedConversation::Line;

const QString programsMark = QStringLiteral("com ----> ");

/// A program's line as the log would show it behind its mark. What the wire's character set lacks was logged
/// as it was meant.
QString asLogged(const QString &line)
{
    const QString text = logText(programsMark + fromWindows1252(toWindows1252(line)));
    return text.startsWith(programsMark) ? text.mid(programsMark.size()) : text;
}

/// The clock command differs from one transmission to the next.
bool isSameClock(const QString &expected, const QString &heard)
{
    static const QRegularExpression clock(QStringLiteral("^[Tt](,[0-9]{2}){6},[1-7]$"));
    return expected.left(1) == heard.left(1) && clock.match(expected).hasMatch() &&
           clock.match(heard).hasMatch();
}

bool isSame(const QString &expected, const QString &heard)
{
    return expected == heard || isSameClock(expected, heard);
}

/// The module's line with its end. The log keeps Ctrl-Z and leaves carriage returns out.
QByteArray moduleBytes(const Line &line)
{
    const QByteArray bytes = toWindows1252(fromLogText(line.text));
    if (line.from == Line::From::Modem) {
        return bytes + "\r\n";
    }
    return bytes.endsWith('\x1A') ? bytes : bytes + '\r';
}

std::optional<Line> readLine(const QString &text)
{
    static const QRegularExpression form(QStringLiteral(
        R"(^(?:\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} )?(?:(com|eth|gsm) (<----|---->)(?: (.*))?|(at\+(?:cpin|cpwd|clck)=.*))$)"));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    Line line{0, Line::From::Module, false, Milliseconds{0}, match.captured(3)};
    if (match.hasCaptured(4)) {
        line.text = match.captured(4); // a PIN: the log hides even who sent it
    } else if (match.capturedView(2) == u"---->") {
        line.from = Line::From::Program;
    } else if (match.capturedView(1) == u"gsm") {
        line.from = Line::From::Modem;
    }
    line.overNetwork = match.capturedView(1) == u"eth";
    return line;
}

/// The time that a line begins with, "yyyy-MM-dd hh:mm:ss.zzz"; of use for differences alone.
QDateTime timeOf(const QString &text)
{
    const auto number = [&text](qsizetype at, qsizetype digits) {
        return QStringView(text).mid(at, digits).toInt();
    };
    return {QDate(number(0, 4), number(5, 2), number(8, 2)),
            QTime(number(11, 2), number(14, 2), number(17, 2), number(20, 3)), Qt::UTC};
}

/// What a line of the module was understood as stands behind it.
bool isReply(const QString &text)
{
    static const QRegularExpression form(
        QStringLiteral(R"(^(?:\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} )?\S* (?:<--|-->) )"));
    return form.match(text).hasMatch();
}

} // namespace

Status readConversation(const QByteArray &log, RecordedConversation &conversation)
{
    conversation = {};
    QDateTime before;
    int number = 0;
    for (QByteArray bytes : log.split('\n')) {
        ++number;
        if (bytes.endsWith('\r')) {
            bytes.chop(1);
        }
        if (bytes.isEmpty()) {
            continue;
        }
        const QString text = QString::fromUtf8(bytes);
        std::optional<Line> line = readLine(text);
        if (!line) {
            conversation.leftOut += isReply(text) ? 0 : 1;
            continue;
        }
        const QDateTime time = timeOf(text);
        if (time.isValid() && before.isValid()) {
            line->pause =
                Milliseconds(std::clamp<qint64>(before.msecsTo(time), 0, Replay::longestPause.count()));
        }
        before = time;
        line->number = number;
        conversation.lines.push_back(*line);
    }
    if (std::ranges::none_of(conversation.lines,
                             [](const Line &line) { return line.from != Line::From::Program; })) {
        return Status::failed(QStringLiteral("no line of a module is in it"));
    }
    return Status::done();
}

Replay::Replay(RecordedConversation conversation, Timers &timers,
               std::function<void(const QByteArray &)> send)
    : m_conversation(std::move(conversation)),
      m_send(std::move(send)),
      m_pause(timers.create()),
      m_silence(timers.create())
{}

/// Says the module's next line when everything before it was heard.
void Replay::goOn()
{
    if (m_ended || m_pause->isRunning() || !allHeard()) {
        return;
    }
    if (m_next == m_conversation.lines.size()) {
        end();
    } else if (m_conversation.lines[m_next].from == Line::From::Program) { // only where the log begins
        expectAnswers();
    } else {
        m_silence->stop();
        m_pause->start(m_conversation.lines[m_next].pause, [this] { say(m_conversation.lines[m_next++]); });
    }
}

void Replay::say(const Line &line)
{
    const QByteArray bytes = moduleBytes(line);
    m_number = line.number;
    m_expected.clear();
    m_met = 0;
    m_reported = false;
    expectEcho(line, bytes);
    expectAnswers();
    if (m_answered) {
        awaitAnswers();
        m_send(bytes);
    } else {
        m_opening.clear();
        for (const Expected &expected : m_expected) {
            m_opening.push_back(expected.text);
        }
        sendOpening(bytes);
    }
    goOn(); // where no answer is expected
}

/// A program that is not there yet, or drops what came before it opened the port, gets the first line later.
void Replay::sendOpening(const QByteArray &bytes)
{
    if (!m_opening.empty()) {
        m_silence->start(openingInterval, [this, bytes] {
            m_openingAnswers += m_opening.size();
            sendOpening(bytes);
        });
    }
    m_send(bytes);
}

/// The log leaves echoes out. Over the network not every line has one.
void Replay::expectEcho(const Line &line, const QByteArray &bytes)
{
    if (line.from == Line::From::Modem) {
        return;
    }
    const bool isLogged = m_next < m_conversation.lines.size() &&
                          m_conversation.lines[m_next].from == Line::From::Program &&
                          asLogged(m_conversation.lines[m_next].text) == asLogged(line.text);
    if (line.overNetwork && isLogged) {
        return;
    }
    QByteArray echo = bytes.chopped(1);
    while (echo.startsWith('\n')) { // belongs to the line before
        echo.remove(0, 1);
    }
    for (const QByteArray &part : echo.split('\n')) {
        m_expected.push_back({line.number, asLogged(fromWindows1252(part)), !line.overNetwork});
    }
}

void Replay::expectAnswers()
{
    for (; m_next < m_conversation.lines.size(); ++m_next) {
        const Line &answer = m_conversation.lines[m_next];
        if (answer.from != Line::From::Program) {
            break;
        }
        m_expected.push_back({answer.number, asLogged(answer.text)});
    }
}

void Replay::awaitAnswers()
{
    m_silence->start(answerTimeout, [this] {
        const auto missing = std::find_if(m_expected.begin() + static_cast<std::ptrdiff_t>(m_met),
                                          m_expected.end(), [](const Expected &each) { return each.needed; });
        differs(missing->number, QStringLiteral("expected \"%1\", heard nothing for %2 s")
                                     .arg(missing->text)
                                     .arg(answerTimeout.count() / 1000));
        end();
    });
}

bool Replay::allHeard() const
{
    return std::none_of(m_expected.begin() + static_cast<std::ptrdiff_t>(m_met), m_expected.end(),
                        [](const Expected &each) { return each.needed; });
}

void Replay::receive(const QByteArray &bytes)
{
    m_answered = true;
    m_received += bytes;
    for (qsizetype end = m_received.indexOf('\n'); end >= 0 && !m_ended; end = m_received.indexOf('\n')) {
        const QByteArray line = m_received.left(end);
        m_received.remove(0, end + 1);
        hear(asLogged(fromWindows1252(line)));
    }
    if (!m_ended && !allHeard()) {
        awaitAnswers();
    }
}

void Replay::hear(const QString &text)
{
    const auto next = m_expected.begin() + static_cast<std::ptrdiff_t>(m_met);
    const auto met = std::find_if(next, m_expected.end(),
                                  [&text](const Expected &each) { return isSame(each.text, text); });
    if (met == m_expected.end()) {
        if (answersRepeatedOpening(text)) {
            return;
        }
        const auto awaited =
            std::find_if(next, m_expected.end(), [](const Expected &each) { return each.needed; });
        if (awaited == m_expected.end()) {
            differs(m_number, QStringLiteral("expected nothing more, heard \"%1\"").arg(text));
        } else {
            differs(awaited->number,
                    QStringLiteral("expected \"%1\", heard \"%2\"").arg(awaited->text, text));
            m_reported = true; // it may still come
        }
        return;
    }
    for (auto passed = next; passed != met; ++passed) {
        if (passed->needed && !std::exchange(m_reported, false)) {
            differs(passed->number, QStringLiteral("expected \"%1\", heard \"%2\"").arg(passed->text, text));
        }
    }
    m_reported = false;
    m_met = static_cast<std::size_t>(met - m_expected.begin()) + 1;
    goOn();
}

bool Replay::answersRepeatedOpening(const QString &text)
{
    if (m_openingAnswers == 0 || std::ranges::find(m_opening, text) == m_opening.end()) {
        return false;
    }
    --m_openingAnswers;
    return true;
}

void Replay::differs(int number, const QString &difference)
{
    ++m_differences;
    m_onDifference(QStringLiteral("differs at line %1: ").arg(number) + difference);
}

void Replay::end()
{
    m_ended = true;
    m_pause->stop();
    m_silence->stop();
    m_onEnd();
}

} // namespace ktr
