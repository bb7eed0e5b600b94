#include "link/ethernet_dialogue.h"

#include "link/modem_words.h"
#include "link/module_text.h"

namespace ktr {

namespace {

bool isModemReport(QStringView text)
{
    return text.startsWith(u'+') || text.startsWith(QLatin1String("OK\r")) ||
           text.startsWith(QLatin1String("ERROR\r"));
}

} // namespace

std::vector<ModuleDialogue::Action> EthernetDialogue::connected()
{
    m_claimed = false;
    m_isReading = false;
    sendLogged(QLatin1String(modem_words::config));
    return takeActions();
}

std::vector<ModuleDialogue::Action> EthernetDialogue::lineReceived(const QString &piece)
{
    if (piece.contains(QLatin1String("donE"))) {
        logReceived(piece);
        m_claimed = false;
        return takeActions();
    }
    QStringView rest = piece;
    while (!rest.isEmpty()) {
        if (rest.startsWith(u'\n')) {
            rest = rest.sliced(1);
            continue;
        }
        const qsizetype end = isModemReport(rest) ? endOfLine(rest) : rest.size();
        const QString line = rest.first(end).toString();
        isModemReport(rest) ? takeReport(line) : takeLine(line);
        rest = rest.sliced(end);
    }
    return takeActions();
}

void EthernetDialogue::takeReport(const QString &line)
{
    QString report = line.chopped(1);
    if (report.contains(QLatin1String(modem_words::error))) {
        if (m_isReading || report.contains(QLatin1String(modem_words::noSmsCode))) {
            report = QLatin1String(modem_words::noSms);
        } else {
            act(Reply{ReplyKind::Message, {}, QLatin1String("failed (") + report + u')'});
        }
    }
    logReceived(u"gsm", report);
}

void EthernetDialogue::takeLine(const QString &line)
{
    logReceived(line);
    m_isReading = line.contains(QLatin1String(modem_words::readSms));
    const bool asks = line.contains(QLatin1String(modem_words::askPinState));
    m_asks = asks && m_claimed ? m_asks + 1 : 0;
    if (asks && (!m_claimed || m_asks > asksUntilClaimedAnew) && m_isWanted()) {
        m_claimed = true;
        m_asks = 0;
        act(Caught{});
        sendLogged(QLatin1String(modem_words::config));
        return;
    }
    sendLogged(line.chopped(1));
    dispatch(line);
}

} // namespace ktr
