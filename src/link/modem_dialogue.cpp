#include "link/modem_dialogue.h"

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

void ModemDialogue::sendLogged(const QString &line)
{
    m_actions.emplace_back(Log{QLatin1String("com ----> ") + line});
    send(line);
}

std::vector<ModemDialogue::Action> ModemDialogue::lineReceived(const QString &line)
{
    m_actions.clear();
    m_actions.emplace_back(Log{QLatin1String("com <---- ") + line});
    send(line.chopped(1));

    if (line.contains(QLatin1String("at+cpin"))) {
        m_actions.emplace_back(Caught{});
        sendLogged(QStringLiteral("config"));
    }
    QString other; // what belongs to no SMS
    for (qsizetype at = 0; at < line.size();) {
        const qsizetype end = line.indexOf(endOfSms, at);
        const qsizetype next = end < 0 ? line.size() : end + 1;
        other += takeSms(line.sliced(at, next - at));
        at = next;
    }
    if (other.contains(QLatin1String("H,"))) {
        m_actions.emplace_back(Reply{ReplyKind::History, {}, withoutLineEnds(other)});
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
        m_actions.emplace_back(
            Reply{ReplyKind::Message, {}, withoutLineEnds(QStringView(other).mid(message + 1))});
    }
    const qsizetype confirmed = line.indexOf(QStringLiteral("OK: §"));
    if (confirmed >= 0) {
        m_actions.emplace_back(ServiceConfirmed{withoutLineEnds(QStringView(line).mid(confirmed + 6))});
    }
    sendLogged(QStringLiteral("OK"));
    return std::move(m_actions);
}

/// Takes the lines of an SMS that the module sends, which may come as one or several; hands its text on
/// once, at its Ctrl-Z. Gives back what does not belong to an SMS.
QString ModemDialogue::takeSms(const QString &line)
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
    if (line.endsWith(endOfSms)) {
        const QString whole = withoutLineEnds(m_smsText);
        // By how it begins: an alarm's text may have an "H," anywhere.
        const ReplyKind kind = whole.startsWith(QLatin1String("H,")) ? ReplyKind::History : ReplyKind::Sms;
        m_actions.emplace_back(Reply{kind, *m_smsNumber, whole});
        m_smsNumber.reset();
    }
    return inFront;
}

void ModemDialogue::takeNumber(const QString &line)
{
    qsizetype start = line.indexOf(QLatin1String(",\"+"));
    if (start < 0) {
        start = line.indexOf(QLatin1String(",\"0"));
    }
    m_currentNumber = start < 0 ? QString() : line.mid(start + 3);
}

void ModemDialogue::handOverCommand()
{
    std::optional<int> step;
    if (std::optional<StepCommand> next = m_nextCommand()) {
        step = next->step;
        m_outgoing = std::move(next->command);
    }
    m_transmissionSent = true;
    const QString command = std::exchange(m_outgoing, QString());
    if (command.isEmpty()) {
        m_actions.emplace_back(NothingToRead{});
    } else if (command.size() > longestCommand) {
        m_actions.emplace_back(CommandRefused{step, command});
    } else {
        sendLogged(smsHeader);
        sendLogged(command);
        m_actions.emplace_back(CommandSent{step, command});
        if (command.contains(QStringLiteral("§88"))) {
            m_actions.emplace_back(FirmwareAnnounced{});
        }
    }
}

} // namespace ktr
