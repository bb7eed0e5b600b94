#include "opmode/station/station.h"

#include "link/line_assembler.h"
#include "link/modem_words.h"
#include "platform/text_rules.h"

#include <QCoreApplication>

namespace ktr {

namespace {

using modem_words::endOfSms;
const QString lineEnd = QStringLiteral("\r\n");
const QString announcement = QLatin1String(modem_words::config) + lineEnd;
const QString unknownQuality = QStringLiteral("99,99");

bool isReport(const QString &text)
{
    return text.startsWith(u'+') || text == QLatin1String("OK\r\n") || text == QLatin1String("ERROR\r\n");
}

} // namespace

cStation::cStation(const QString &kennung, StationLine &line, MLiteTimer &timers, StationOwner &stations)
    : m_kennung(kennung),
      m_line(line),
      m_stations(stations),
      m_csq(unknownQuality),
      Tmr_sendSettle(timers),
      Tmr_eth_brokenConnection(timers),
      Tmr_pause(timers),
      Tmr_gsm_reset(timers)
{
    m_line.setListener(this);
    Tmr_sendSettle.Interval(settleTime);
    Tmr_sendSettle.Timer = [this] { Tmr_sendSettle_Timer(); };
    Tmr_eth_brokenConnection.Interval(announceInterval);
    Tmr_eth_brokenConnection.Timer = [this] { Tmr_eth_brokenConnection_Timer(); };
    Tmr_pause.Timer = [this] { Tmr_pause_Timer(); };
    Tmr_gsm_reset.Interval(dialogueTime);
    Tmr_gsm_reset.Timer = [this] { Tmr_gsm_reset_Timer(); };
}

cStation::~cStation()
{
    disconnect();
    m_line.setListener(nullptr);
}

void cStation::setExclusiveMode(bool exclusiveMode)
{
    m_exclusiveMode = exclusiveMode;
    if (exclusiveMode) {
        m_csq = unknownQuality;
    }
}

bool cStation::send(const QString &text)
{
    if (!m_msgText.isEmpty()) {
        return false;
    }
    m_msgText = text;
    return true;
}

void cStation::disconnect()
{
    Tmr_eth_brokenConnection.Enabled(false);
    m_line.close();
    m_online = false;
    Tmr_pause.Enabled(false);
    m_owesAnswer = false;
    handleArrivals(); // what came during the pause may be a text of the module
    if (m_loss) {
        DatagramLoss loss = *m_loss;
        loss.isOver = true;
        linesLost(loss);
    }
    m_state = 0;
    m_liveness = Liveness::Unknown;
    m_csq = unknownQuality;
    m_trouble.clear();
}

bool cStation::connectStation()
{
    if (!m_online) { // what was begun on one connection is not continued on another
        m_receiveBuffer.clear();
    }
    if (!m_line.isOpen() || m_openedFor != m_hostAddress) {
        openLine();
    }
    announce();
    m_online = true;
    Tmr_eth_brokenConnection.Enabled(true);
    return true;
}

void cStation::openLine()
{
    m_openedFor = m_hostAddress;
    if (const Status opened = m_line.open(m_hostAddress); !opened) {
        lineTrouble(opened.message());
    }
}

void cStation::announce()
{
    if (m_line.mayBegin()) {
        m_line.send(toWindows1252(announcement));
    }
}

void cStation::socket_SendComplete()
{
    Tmr_sendSettle.Enabled(true);
}

void cStation::lineTrouble(const QString &text)
{
    if (text != m_trouble) {
        m_trouble = text;
        m_stations.stationTrouble(m_kennung, text);
    }
}

void cStation::linesLost(const DatagramLoss &loss)
{
    const StationChange what = loss.isOver ? StationChange::LossOver
                               : m_loss    ? StationChange::LossGoesOn
                                           : StationChange::LossBegan;
    m_loss = loss;
    m_stations.stationChanged(m_kennung, what);
    if (loss.isOver) {
        m_loss.reset();
    }
}

void cStation::show(const Seen &seen)
{
    m_online = seen.online;
    m_liveness = seen.liveness;
    m_state = seen.liveness == Liveness::Alive ? alive : qint16{0};
    m_csq = seen.csq;
    m_pukNeeded = seen.pukNeeded;
    m_loss = seen.loss;
    m_lastHeard = seen.lastHeard;
}

void cStation::resume(const Seen &seen)
{
    m_lastHeard = seen.lastHeard;
    m_pukNeeded = seen.pukNeeded || m_pukNeeded;
    if (m_online) {
        m_liveness = seen.liveness;
        m_csq = m_exclusiveMode ? unknownQuality : seen.csq;
    }
}

void cStation::Tmr_sendSettle_Timer()
{
    m_sendSettling = false;
    Tmr_sendSettle.Enabled(false);
}

void cStation::Tmr_eth_brokenConnection_Timer()
{
    if (!m_line.mayBegin()) { // who is not asked is not silent
        return;
    }
    // A silent module may have got another address behind its name.
    if (!m_line.isOpen() || (m_liveness == Liveness::Silent && m_line.mayMove())) {
        openLine();
    }
    announce();
    if (std::exchange(m_state, qint16{0}) == 0 && m_liveness != Liveness::Silent) {
        m_liveness = Liveness::Silent;
        m_stations.stationChanged(m_kennung, StationChange::Silent);
    }
}

void cStation::Tmr_gsm_reset_Timer()
{
    m_dialogueOpen = false;
    Tmr_gsm_reset.Enabled(false);
}

void cStation::Tmr_pause_Timer()
{
    Tmr_pause.Enabled(false);
    if (m_dialogueOpen) { // otherwise it ended meanwhile: the text waits for the next one
        sendToModule(m_msgText + lineEnd);
        m_msgText.clear();
        m_stations.stationChanged(m_kennung, StationChange::TextDelivered);
    }
    handleArrivals();
}

void cStation::sendToModule(const QString &text)
{
    if (m_dialogueOpen) {
        trace(QLatin1String("eth ----> "), text);
        m_line.send(toWindows1252(text));
    }
}

void cStation::report(const QString &text)
{
    trace(QLatin1String(), text);
    m_stations.station_message(m_kennung, text);
}

void cStation::trace(QLatin1String direction, const QString &text) const
{
    if (traced) {
        traced(direction + text);
    }
}

void cStation::DataArrival(const QByteArray &data)
{
    if (m_arrivals.size() >= mostArrivals) {
        lineTrouble(
            QCoreApplication::translate("Station", "datagrams were dropped: too many wait for their turn"));
        return;
    }
    m_state = alive;
    m_trouble.clear();
    m_lastHeard = m_stations.moment();
    if (m_liveness != Liveness::Alive) {
        m_liveness = Liveness::Alive;
        m_stations.stationChanged(m_kennung, StationChange::Alive);
    }
    m_arrivals.push_back(data);
    handleArrivals();
}

void cStation::handleWaiting()
{
    answer();
    m_line.takeArrived();
    handleArrivals(true);
}

void cStation::answer()
{
    if (std::exchange(m_owesAnswer, false)) {
        sendToModule(QLatin1String("OK") + lineEnd);
        handleArrivals();
    }
}

void cStation::handleArrivals(bool inPausesToo)
{
    if (m_isHandling) {
        return; // the owner asks the user something meanwhile
    }
    m_isHandling = true;
    while (!m_arrivals.empty() && (inPausesToo || (!Tmr_pause.Enabled() && !m_owesAnswer))) {
        const QByteArray data = m_arrivals.takeFirst();
        handle(data);
    }
    m_isHandling = false;
}

void cStation::handle(const QByteArray &data)
{
    m_receiveBuffer += fromWindows1252(data);
    if (!m_receiveBuffer.contains(u'\r') && !m_receiveBuffer.contains(endOfSms)) {
        if (m_receiveBuffer.size() > LineAssembler::longestLine) {
            m_receiveBuffer.clear();
            lineTrouble(QCoreApplication::translate("Station", "a line without an end was dropped"));
        }
        return;
    }
    const QString line = std::exchange(m_receiveBuffer, QString());
    if (isReport(line)) {
        handleReport(line);
    } else {
        handleLine(line);
    }
}

void cStation::handleReport(QString report)
{
    if (report.contains(QLatin1String(modem_words::error))) {
        if (report.contains(QLatin1String(modem_words::noSmsCode))) {
            report = QLatin1String(modem_words::noSms);
        } else if (report.endsWith(lineEnd)) {
            report.chop(lineEnd.size());
        }
    }
    trace(QLatin1String("gsm <---- "), report);
    const bool isReady = report.contains(QLatin1String("+CPIN: READY"));
    if (report.contains(QLatin1String("+CPIN: SIM PUK"))) {
        m_pukNeeded = true;
        m_stations.stationChanged(m_kennung, StationChange::PukNeeded);
    }
    if (report.contains(QLatin1String("+CPIN: SIM PIN")) || (m_pukNeeded && isReady)) {
        if (std::exchange(m_pukNeeded, false)) {
            m_stations.stationChanged(m_kennung, StationChange::PukCleared);
        }
    }
    const qsizetype quality = report.indexOf(QLatin1String("+CSQ:"));
    if (!m_exclusiveMode && quality >= 0) {
        m_csq = report.mid(quality + 6).remove(lineEnd);
        m_stations.stationChanged(m_kennung, StationChange::Quality);
    }
}

void cStation::handleLine(const QString &line)
{
    trace(QLatin1String("eth <---- "), line);
    Tmr_sendSettle.Enabled(false);
    m_sendSettling = false;
    const bool isWanted = !m_msgText.isEmpty() || m_exclusiveMode;
    if (line.contains(QLatin1String(modem_words::askPinState)) && isWanted && !m_dialogueOpen) {
        m_dialogueOpen = true;
        sendToModule(announcement);
        return;
    }
    sendToModule(line.chopped(1) + lineEnd);
    handleCommand(line);
}

void cStation::handleCommand(const QString &line)
{
    if (line.contains(QLatin1String(modem_words::askPin))) {
        sendToModule(announcement);
        return;
    }
    if (line.contains(QLatin1String(modem_words::sendSms))) {
        constexpr qsizetype start = 9; // behind at+cmgs="
        if (const qsizetype end = line.indexOf(u'"', start); end >= 0) {
            m_smsNumber = line.mid(start, end - start);
        }
    }
    if (!m_replyFrom.isEmpty()) {
        report(m_replyFrom + QLatin1String(" <-- ") + line);
    }
    takeReplyFrom(line);
    if (line.contains(QLatin1String(modem_words::readSms)) && handleReadRequest()) {
        return;
    }
    if (line.contains(endOfSms)) {
        report(m_smsNumber + QLatin1String(" --> ") + line.chopped(1));
        m_owesAnswer = m_dialogueOpen && m_stations.answersLater(m_kennung);
    }
    if (m_owesAnswer) {
        return;
    }
    sendToModule(QLatin1String("OK") + lineEnd);
}

/// A line with a sender's number that follows a read request goes in front of the line after it.
void cStation::takeReplyFrom(const QString &line)
{
    const bool isHeader = line.contains(QLatin1String(",\"+")) || line.contains(QLatin1String(",\"0"));
    m_replyFrom = std::exchange(m_afterReadRequest, false) && isHeader ? line.chopped(1) : QString();
}

bool cStation::handleReadRequest()
{
    if (!m_dialogueOpen) {
        return true;
    }
    m_afterReadRequest = true;
    if (!m_msgText.isEmpty()) {
        if (m_line.isOpen()) {
            sendToModule(QLatin1String(modem_words::programsHeader) + lineEnd);
            Tmr_pause.Interval(textDelay);
            Tmr_pause.Enabled(true); // goes on in Tmr_pause_Timer
        }
        return true;
    }
    if (!m_exclusiveMode && !Tmr_gsm_reset.Enabled()) {
        Tmr_gsm_reset.Enabled(true);
    }
    return false;
}

} // namespace ktr
