#include "link/module_dialogue.h"

#include "link/line_assembler.h"
#include "link/modem_words.h"
#include "link/module_text.h"
#include "link/service_commands.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <algorithm>

namespace ktr {

namespace {

using modem_words::endOfSms;
const QString sendSms = QLatin1String(modem_words::sendSms);
const QString readSms = QLatin1String(modem_words::readSms);
const QString smsHeader = QLatin1String(modem_words::programsHeader);

/// Whether a line is a reply of its own, even in the middle of an SMS.
bool isReplyLine(QStringView line)
{
    const QStringView text = line.startsWith(u'\n') ? line.sliced(1) : line;
    return markerOf(text) || withoutPrompt(text).startsWith(QLatin1String("H,")) || insideMarker(text) >= 0;
}

/// The number in front of a marker inside a line.
QString numberBefore(QStringView text)
{
    static const QRegularExpression number(QStringLiteral("(?:^|[\\s\x1A])(\\+?[0-9]+|\\+IP) $"));
    return number.match(text.toString()).captured(1);
}

QString withoutLineEnds(QStringView text)
{
    while (!text.isEmpty() && (text.front() == u'\r' || text.front() == u'\n')) {
        text = text.sliced(1);
    }
    while (!text.isEmpty() && (text.back() == u'\r' || text.back() == u'\n' || text.back() == endOfSms)) {
        text.chop(1);
    }
    return text.toString();
}

} // namespace

QString ModuleDialogue::Reply::shown() const
{
    if (markerOf(text)) {
        return number + u' ' + withoutPrompt(text);
    }
    const bool isOfModem = kind == ReplyKind::Message && number.isEmpty();
    return isOfModem ? text : number + QLatin1String(" <-- ") + text;
}

bool ModuleDialogue::Reply::isForProgram() const
{
    return kind == ReplyKind::Sms && number == u"+IP";
}

bool ModuleDialogue::Reply::refuses() const
{
    return isForProgram() && reportsFailure(text);
}

bool announcesFirmware(QStringView command)
{
    return command.contains(serviceCommands::firmware);
}

std::vector<ModuleDialogue::Action> ModuleDialogue::lineOverheard(const QString &line)
{
    logReceived(line);
    dropSms(); // later lines are not part of it
    return takeActions();
}

std::vector<ModuleDialogue::Action> ModuleDialogue::lineClosed()
{
    dropSms();
    return takeActions();
}

void ModuleDialogue::logReceived(QStringView prefix, const QString &line)
{
    act(Log{prefix + QLatin1String(" <---- ") + line});
}

void ModuleDialogue::sendLogged(const QString &line)
{
    act(Log{m_linePrefix + QLatin1String(" ----> ") + line});
    act(Send{line});
}

void ModuleDialogue::dispatch(const QString &line)
{
    QString other; // what is not part of an SMS
    for (QStringView rest = line; !rest.isEmpty();) {
        const QStringView one = rest.first(endOfLine(rest));
        other += takeSms(one);
        rest = rest.sliced(one.size());
    }
    const bool isHistory = other.contains(QLatin1String("H,"));
    if (isHistory) {
        addReply({ReplyKind::History, {}, withoutLineEnds(other)});
    }
    if (line.contains(readSms)) {
        handOverCommand();
    }
    // With a line of the archive, a leading marker is part of the reply that was added above.
    const qsizetype leading = isHistory ? -1 : leadingMarker(other);
    const qsizetype inside = insideMarker(other);
    const bool isInside = inside >= 0 && (leading < 0 || inside < leading);
    if (const qsizetype message = isInside ? inside : leading; message >= 0) {
        const QStringView text(other);
        addReply({ReplyKind::Message, isInside ? numberBefore(text.first(message)) : QString(),
                  withoutLineEnds(text.sliced(message))});
    }
    takeConfirmations(other);
    sendLogged(QStringLiteral("OK"));
}

void ModuleDialogue::addReply(Reply reply)
{
    act(Log{reply.shown()});
    act(std::move(reply));
}

void ModuleDialogue::takeConfirmations(QStringView text)
{
    while (!text.isEmpty()) {
        const QStringView line = text.first(endOfLine(text));
        text = text.sliced(line.size());
        const qsizetype confirmed = line.indexOf(QStringLiteral("OK: §"));
        if (confirmed < 0) {
            continue;
        }
        const qsizetype message = insideMarker(line.first(confirmed));
        if (!isReport(line.sliced(std::max<qsizetype>(message, 0)))) {
            act(ServiceConfirmed{withoutLineEnds(line.sliced(confirmed + 6))});
        }
    }
}

/// Collects the lines of an SMS that the module sends; adds its text as one reply at its Ctrl-Z. Returns what
/// is not part of an SMS.
QStringView ModuleDialogue::takeSms(QStringView line)
{
    const bool isEnd = line.endsWith(endOfSms);
    QStringView text = line;
    QStringView inFront;
    if (const qsizetype start = line.indexOf(sendSms); start >= 0) {
        dropSms();
        // at+cmgs="number": the number starts at the tenth character.
        text = line.mid(start + 9);
        const qsizetype quote = text.indexOf(u'"');
        m_smsNumber = quote < 0 ? QString() : text.first(quote).toString();
        text = quote < 0 ? QStringView() : text.sliced(quote + 1);
        inFront = line.first(start);
    } else if (!m_smsNumber) {
        return line;
    } else if (const bool isCommand = line.contains(QLatin1String("at+"));
               !isEnd && (isCommand || isReplyLine(line))) {
        if (isCommand) {
            dropSms(); // its text will not come any more
        }
        return line;
    }
    m_smsText += text;
    if (m_smsText.size() > LineAssembler::longestLine) {
        act(Log{QCoreApplication::translate("Files", "an SMS without an end was dropped: %1 characters")
                    .arg(m_smsText.size())});
        m_smsText.clear();
        m_smsNumber.reset();
    } else if (isEnd) {
        const QString whole = withoutLineEnds(std::exchange(m_smsText, QString()));
        // Only the beginning counts: an alarm's text may have an "H," anywhere.
        const bool isHistory = plainText(whole).startsWith(QLatin1String("H,"));
        addReply({isHistory ? ReplyKind::History : ReplyKind::Sms, *std::exchange(m_smsNumber, std::nullopt),
                  whole});
        takeConfirmations(whole);
    }
    return inFront;
}

/// The part of an SMS that broke off is added as a message: it may be half an answer, but must not count as
/// one.
void ModuleDialogue::dropSms()
{
    const QString text = withoutLineEnds(std::exchange(m_smsText, QString()));
    const std::optional<QString> number = std::exchange(m_smsNumber, std::nullopt);
    if (number && !text.isEmpty()) {
        addReply({ReplyKind::Message, *number, text});
    }
}

void ModuleDialogue::handOverCommand()
{
    std::optional<int> step;
    const std::function<QString()> atHandOver = std::exchange(m_atHandOver, {});
    if (std::optional<StepCommand> next = m_nextCommand()) {
        step = next->step;
        m_outgoing = std::move(next->command);
    } else if (atHandOver) {
        m_outgoing = atHandOver();
    }
    const QString command = std::exchange(m_outgoing, QString());
    if (command.isEmpty()) {
        act(NothingToRead{});
    } else if (command.size() > longestCommand) {
        act(CommandRefused{step, command});
    } else {
        sendLogged(smsHeader);
        sendLogged(command);
        act(CommandSent{step, command});
        // A step carries texts and numbers of the configuration, whatever they look like.
        if (!step && announcesFirmware(command)) {
            act(FirmwareAnnounced{});
        }
    }
}

} // namespace ktr
