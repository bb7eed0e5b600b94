#include "simulator/virtual_module.h"

#include "platform/text_rules.h"

#include <algorithm>
#include <utility>

namespace ktr {

namespace {

constexpr char ctrlZ = '\x1A';
constexpr qsizetype longestLine = qsizetype{64} * 1024;
constexpr qint64 firmwareImageSize = 43'008;

} // namespace

// cppcheck-suppress passedByValue ; its memory is moved out of it
VirtualModule::VirtualModule(Timers &timers, Send send, ModuleOptions options)
    : m_send(std::move(send)),
      m_times(options.times),
      m_faults(options.faults),
      m_tellsEnd(options.tellsEnd),
      m_memory(std::move(options.memory)),
      m_interpreter(m_memory),
      m_wait(timers.create()),
      m_outputPause(timers.create()),
      m_random(options.faults.seed)
{}

// States

void VirtualModule::start()
{
    m_received.clear();
    boot();
}

void VirtualModule::enter(State state)
{
    m_state = state;
    m_wait->stop();
    m_answerDue = false;
}

void VirtualModule::boot()
{
    const bool ends = m_tellsEnd && isCaught();
    enter(State::Booting);
    ++m_counts.boots;
    m_output.clear();
    m_outputPause->stop();
    if (ends) {
        queueLine("donE\r");
    }
    askForModem();
}

void VirtualModule::askForModem()
{
    m_wait->start(m_times.bootInterval, [this] { askForModem(); });
    m_awaitedEcho = "at+cpin?";
    if (m_output.empty()) { // otherwise the last one is still on its way
        queueLine(m_awaitedEcho + '\r');
    }
    pump();
}

void VirtualModule::read()
{
    ++m_counts.reads;
    m_command.reset();
    m_smsFollows = false;
    request(State::Reading, "at+cmgr=1");
}

void VirtualModule::act()
{
    const QString command = *std::exchange(m_command, std::nullopt);
    const Understood understood = m_interpreter.apply(command);
    if (m_onCommand) {
        m_onCommand(command, understood);
    }
    if (understood.isClosing() && m_onConfigured) {
        m_onConfigured(m_memory);
    }
    switch (understood.then) {
    case Understood::Then::Restart:
        boot(); // the closing command's letter is a small one: nobody waits for an answer
        return;
    case Understood::Then::SendArchive:
        m_archive = archiveLines(m_memory);
        sendArchiveLine();
        return;
    case Understood::Then::TakeFirmware:
        enter(State::TakingFirmware);
        m_counts.firmwareBytes = 0;
        takeFirmware(0);
        return;
    case Understood::Then::Nothing:
        break;
    }
    if (understood.wantsAnswer) {
        m_answer = toWindows1252(understood.answerText);
        request(State::Announcing, "at+cmgs=\"+IP\"");
    } else {
        read();
    }
}

void VirtualModule::sendArchiveLine()
{
    request(State::SendingArchive, toWindows1252(m_archive.takeFirst()));
}

/// The image is counted, not kept; the module restarts when it is complete or nothing more of it comes.
void VirtualModule::takeFirmware(qsizetype bytes)
{
    m_counts.firmwareBytes += bytes;
    if (m_counts.firmwareBytes >= firmwareImageSize) {
        endFirmware();
    } else {
        m_wait->start(m_times.answerTimeout, [this] { endFirmware(); });
    }
}

void VirtualModule::endFirmware()
{
    if (m_onFirmware) {
        m_onFirmware(m_counts.firmwareBytes);
    }
    boot();
}

// Hearing

void VirtualModule::receive(const QByteArray &bytes)
{
    if (m_state == State::Off) {
        return;
    }
    m_received += bytes;
    if (m_isHearing) {
        return; // called while an answer to an earlier line is being sent: the loop below comes to it
    }
    m_isHearing = true;
    while (true) {
        if (m_state == State::TakingFirmware) { // also what came in one piece with the line before it
            const qint64 taken =
                std::min(qint64{m_received.size()}, firmwareImageSize - m_counts.firmwareBytes);
            if (taken == 0) {
                break;
            }
            m_received.remove(0, taken);
            takeFirmware(taken);
        } else if (const std::optional<QByteArray> line = takeLine()) {
            hear(*line);
        } else {
            break;
        }
    }
    m_isHearing = false;
    if (m_received.size() > longestLine) {
        m_received.clear();
        ++m_counts.overlongLines;
    }
}

/// The next complete line without its end.
std::optional<QByteArray> VirtualModule::takeLine()
{
    const qsizetype end = m_received.indexOf('\n');
    if (end < 0) {
        return std::nullopt;
    }
    QByteArray line = m_received.left(end);
    m_received.remove(0, end + 1);
    if (line.endsWith('\r')) {
        line.chop(1);
    }
    return line;
}

void VirtualModule::hear(const QByteArray &line)
{
    switch (m_state) {
    case State::Booting:
    case State::Caught:
        hearInBoot(line);
        return;
    case State::Reading:
        hearWhileReading(line);
        return;
    case State::Announcing:
    case State::Answering:
    case State::SendingArchive:
        if (!hearEcho(line)) {
            line == "OK" ? hearAnswered() : void(++m_counts.unexpectedLines);
        }
        return;
    case State::Off:
        return;
    case State::Pausing:
    case State::TakingFirmware:
        ++m_counts.unexpectedLines;
        return;
    }
}

void VirtualModule::hearInBoot(const QByteArray &line)
{
    if (line == "config") {
        // Not every line sends an "OK" behind it.
        enter(State::Caught);
        m_wait->start(m_times.readInterval, [this] { read(); });
    } else if (line == "OK") {
        if (m_state == State::Caught) {
            read();
        }
    } else if (!line.contains(m_awaitedEcho)) {
        ++m_counts.unexpectedLines;
    }
}

/// True for everything up to the echo of what was sent, the echo included.
bool VirtualModule::hearEcho(const QByteArray &line)
{
    if (m_echoHeard) {
        return false;
    }
    m_echoHeard = line.contains(m_awaitedEcho); // garbage may stand in front of it
    m_counts.unexpectedLines += m_echoHeard ? 0 : 1;
    return true;
}

void VirtualModule::hearWhileReading(const QByteArray &line)
{
    if (hearEcho(line)) {
        return;
    }
    if (line == ",\"+IP\"" && !m_command) {
        m_smsFollows = true; // also when the network brings it twice
    } else if (m_smsFollows) {
        m_smsFollows = false;
        m_command = fromWindows1252(line);
    } else if (line != "OK") {
        ++m_counts.unexpectedLines;
    } else if (m_command) {
        act();
    } else {
        enter(State::Pausing);
        m_wait->start(m_times.readInterval, [this] { read(); });
    }
}

void VirtualModule::hearAnswered()
{
    if (m_state == State::Announcing) {
        request(State::Answering, m_answer, ctrlZ);
    } else if (m_state == State::SendingArchive && !m_archive.isEmpty()) {
        sendArchiveLine();
    } else {
        read();
    }
}

// Sending

/// Sends a line that has to be answered.
void VirtualModule::request(State state, const QByteArray &text, char end)
{
    enter(state);
    m_awaitedEcho = text;
    m_echoHeard = false;
    m_answerDue = true;
    queueLine(text + end);
    pump();
}

void VirtualModule::queueLine(const QByteArray &line)
{
    if (m_faults.silentAfterLines && m_counts.linesSent >= *m_faults.silentAfterLines) {
        return;
    }
    ++m_counts.linesSent;
    QByteArray bytes;
    if (m_faults.garbageLines) {
        bytes += garbage() + '\r';
    }
    if (m_faults.mergesStatus) {
        bytes += "+CSQ: 18,0\r\n";
    }
    if (m_faults.garbageInFront) {
        bytes += garbage();
    }
    bytes += line;
    const qsizetype chunk = m_faults.chunkSize > 0 ? m_faults.chunkSize : bytes.size();
    for (qsizetype at = 0; at < bytes.size(); at += chunk) {
        m_output.push_back({bytes.mid(at, chunk), at == 0 ? m_faults.delayBeforeLine : m_faults.chunkPause});
    }
}

void VirtualModule::pump()
{
    if (m_isPumping || m_outputPause->isRunning()) {
        return;
    }
    m_isPumping = true;
    while (!m_output.empty()) {
        Write &next = m_output.front();
        if (next.pause > Milliseconds{0}) {
            const Milliseconds pause = std::exchange(next.pause, Milliseconds{0});
            m_outputPause->start(pause, [this] { pump(); });
            m_isPumping = false;
            return;
        }
        const QByteArray bytes = std::move(next.bytes);
        m_output.pop_front();
        transmit(bytes);
    }
    m_isPumping = false;
    if (std::exchange(m_answerDue, false)) {
        m_wait->start(m_times.answerTimeout, [this] { boot(); });
    }
}

void VirtualModule::transmit(const QByteArray &bytes)
{
    const qint64 left = m_faults.hangUpAtByte ? *m_faults.hangUpAtByte - m_bytesSent : bytes.size();
    const QByteArray sent = bytes.left(left);
    m_bytesSent += sent.size();
    if (!m_faults.hangUpAtByte || left > bytes.size()) {
        m_send(sent);
        return;
    }
    enter(State::Off);
    m_output.clear();
    if (!sent.isEmpty()) {
        m_send(sent);
    }
    if (m_onHangUp) {
        m_onHangUp();
    }
}

/// 1 to 16 random bytes.
QByteArray VirtualModule::garbage()
{
    QByteArray bytes(1 + static_cast<qsizetype>(m_random() >> 8) % 16, '\0');
    for (char &byte : bytes) {
        do {
            byte = static_cast<char>(m_random() >> 8);
        } while (byte == '\r' || byte == ctrlZ);
    }
    return bytes;
}

} // namespace ktr
