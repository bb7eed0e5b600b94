#include "link/module_dialogue.h"

#include "link/line_assembler.h"

#include <QCoreApplication>

namespace ktr {

namespace {

constexpr QChar endOfSms = u'\x1A';
const QString sendSms = QStringLiteral("at+cmgs");
const QString readSms = QStringLiteral("at+cmgr=");
const QString smsHeader = QStringLiteral(",\"+IP\"");

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
    QString other; // what belongs to no SMS
    for (qsizetype at = 0; at < line.size();) {
        const qsizetype end = line.indexOf(endOfSms, at);
        const qsizetype next = end < 0 ? line.size() : end + 1;
        other += takeSms(line.sliced(at, next - at));
        at = next;
    }
    if (other.contains(QLatin1String("H,"))) {
        act(Reply{ReplyKind::History, {}, withoutLineEnds(other)});
    }
    if (m_transmissionSent) {
        takeNumber(line);
    } else {
        m_currentNumber.clear();
    }
    if (line.contains(readSms)) {
        handOverCommand();
    }
    const qsizetype message = other.indexOf(QLatin1String(" --> "));
    if (message >= 0) {
        act(Reply{ReplyKind::Message, {}, withoutLineEnds(QStringView(other).mid(message + 1))});
    }
    const qsizetype confirmed = line.indexOf(QStringLiteral("OK: §"));
    if (confirmed >= 0) {
        act(ServiceConfirmed{withoutLineEnds(QStringView(line).mid(confirmed + 6))});
    }
    sendLogged(QStringLiteral("OK"));
}

/// Takes the lines of an SMS that the module sends, which may come as one or several; hands its text on
/// once, at its Ctrl-Z. Gives back what does not belong to an SMS.
QString ModuleDialogue::takeSms(const QString &line)
{
    QStringView text = line;
    QString inFront;
    if (const qsizetype start = line.indexOf(sendSms); start >= 0) {
        // at+cmgs="number": the number begins with the tenth character.
        const QStringView number = text.mid(start + 9);
        const qsizetype quote = number.indexOf(u'"');
        m_smsNumber = quote < 0 ? QString() : number.first(quote).toString();
        m_smsText.clear();
        inFront = line.first(start);
        const qsizetype end = line.indexOf(u'\r', start);
        text = end < 0 ? QStringView() : text.mid(end);
    } else if (line.contains(QLatin1String("at+"))) {
        m_smsNumber.reset(); // another command: the text will not come any more
    }
    if (!m_smsNumber) {
        return line;
    }
    m_smsText += text;
    if (m_smsText.size() > LineAssembler::longestLine) {
        act(Log{QCoreApplication::translate("Files", "an SMS without an end was dropped: %1 characters")
                    .arg(m_smsText.size())});
        m_smsText.clear();
        m_smsNumber.reset();
        return inFront;
    }
    if (line.endsWith(endOfSms)) {
        const QString whole = withoutLineEnds(m_smsText);
        // By how it begins: an alarm's text may have an "H," anywhere.
        const ReplyKind kind = whole.startsWith(QLatin1String("H,")) ? ReplyKind::History : ReplyKind::Sms;
        act(Reply{kind, *m_smsNumber, whole});
        m_smsNumber.reset();
    }
    return inFront;
}

void ModuleDialogue::takeNumber(const QString &line)
{
    qsizetype start = line.indexOf(QLatin1String(",\"+"));
    if (start < 0) {
        start = line.indexOf(QLatin1String(",\"0"));
    }
    m_currentNumber = start < 0 ? QString() : line.mid(start + 3);
}

void ModuleDialogue::handOverCommand()
{
    std::optional<int> step;
    if (std::optional<StepCommand> next = m_nextCommand()) {
        step = next->step;
        m_outgoing = std::move(next->command);
    }
    m_transmissionSent = true;
    const QString command = std::exchange(m_outgoing, QString());
    if (command.isEmpty()) {
        act(NothingToRead{});
    } else if (command.size() > longestCommand) {
        act(CommandRefused{step, command});
    } else {
        sendLogged(smsHeader);
        sendLogged(command);
        act(CommandSent{step, command});
        if (command.contains(QStringLiteral("§88"))) {
            act(FirmwareAnnounced{});
        }
    }
}

} // namespace ktr
