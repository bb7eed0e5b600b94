#include "simulator/field_module.h"

#include "platform/text_rules.h"

#include <utility>

namespace ktr {

namespace {

constexpr int bestQuality = 31;
constexpr std::size_t mostTexts = 50; ///< that wait; a module forgets what happens beyond

const QString readRequest = QStringLiteral("at+cmgr=1\r");
const QString endOfSms = QStringLiteral("\x1A");

} // namespace

FieldModule::FieldModule(const FieldModuleOptions &options, Send send, Now now, Told told)
    : m_options(options),
      m_send(std::move(send)),
      m_now(std::move(now)),
      m_told(std::move(told)),
      m_texts(options.seed, options.language),
      m_random(chanceFrom(~options.seed)),
      m_number(QStringLiteral("+49170%1").arg(options.seed % 10'000'000, 7, 10, QLatin1Char('0')))
{
    m_quality = 8 + chance(20);
}

std::optional<Milliseconds> FieldModule::receive(const QByteArray &datagram)
{
    m_wait.reset();
    const QString text = fromWindows1252(datagram);
    for (const QString &line : text.split(QStringLiteral("\r\n"), Qt::SkipEmptyParts)) {
        hear(line);
    }
    return m_wait;
}

void FieldModule::hear(const QString &line)
{
    if (m_step == Step::TakingText) {
        takeCommand(line);
    } else if (line == QLatin1String("config")) {
        hearConfig();
    } else if (line.contains(QLatin1String(",\"+IP\""))) {
        waitFor(Step::TakingText, longestWait);
    } else if (line == m_said) {
        m_isRepeated = true;
    } else if (line == QLatin1String("OK") && std::exchange(m_isRepeated, false)) {
        hearOk();
    }
}

void FieldModule::hearOk()
{
    if (m_step == Step::Addressing) {
        tell(m_toSend.front(), false);
        say(m_toSend.front() + endOfSms);
        waitFor(Step::Sending, longestWait);
    } else if (m_step == Step::Sending) {
        tell(m_toSend.front(), true);
        dropSms();
        sendNextSms();
    } else if (m_step == Step::Reading) {
        sendNextSms();
    }
}

/// An announcement, or the answer to its question for the SIM.
void FieldModule::hearConfig()
{
    if (m_step == Step::AskedForSim) {
        say(readRequest);
        waitFor(Step::Reading, longestWait);
        return;
    }
    if (m_step == Step::Unknown) { // what it has to tell at first is much: modules do not all begin together
        waitFor(Step::Resting, Milliseconds(chance(static_cast<int>(m_options.every.count()) * 3 / 10 + 1)));
    }
    if (m_step == Step::Resting) { // so that it counts as alive
        say(quality());
    }
}

void FieldModule::takeCommand(const QString &command)
{
    ++m_commandsTaken;
    if (command == QLatin1String("A*") && !m_options.isCounted) {
        m_toSend.push_back(m_texts.allValues(m_now()));
    }
    m_lookAgain = true;
    sendNextSms();
}

std::optional<Milliseconds> FieldModule::wake()
{
    m_wait.reset();
    switch (m_step) {
    case Step::Unknown:
        break;
    case Step::Resting:
        begin();
        break;
    case Step::AskedForSim:
        if (m_options.isCounted) { // there is no other modem
            rest();
            break;
        }
        say(m_lockedFor > 0 ? QStringLiteral("+CPIN: SIM PUK\r\n") : QStringLiteral("+CPIN: READY\r\n"));
        if (m_lockedFor > 0) {
            --m_lockedFor;
            rest();
            break;
        }
        m_quality = std::clamp(m_quality + chance(5) - 2, 3, bestQuality);
        m_ownDialogue = {QStringLiteral("at+csq\r"),
                         chance(50) == 0 ? QStringLiteral("ERROR\r\n") : quality(), QStringLiteral("OK\r\n"),
                         readRequest, QStringLiteral("+CMS ERROR: 321\r\n")};
        waitFor(Step::OnOwnModem, pace);
        break;
    case Step::OnOwnModem:
        useOwnModem();
        break;
    case Step::Reading:
    case Step::TakingText:
    case Step::Addressing:
    case Step::Sending: // the program fell silent
        rest();
        break;
    }
    return m_wait;
}

void FieldModule::addTexts()
{
    if (m_options.isCounted) {
        if (m_toSend.empty()) {
            m_toSend.push_back(FieldTexts::counted(++m_count));
        }
    } else if (!std::exchange(m_reportedHistory, true)) {
        for (const QString &text : m_texts.history(m_now(), hoursOfHistory)) {
            m_toSend.push_back(text);
        }
        m_toSend.push_back(m_texts.allValues(m_now()));
    } else if (m_toSend.size() < mostTexts) {
        for (const QString &text : m_texts.next(m_now())) {
            m_toSend.push_back(text);
        }
    }
}

void FieldModule::begin()
{
    addTexts();
    if (m_lockedFor == 0 && chance(400) == 0) {
        m_lockedFor = 3;
    }
    m_lookAgain = false;
    m_isAddressed = false;
    say(QStringLiteral("at+cpin?\r"));
    waitFor(Step::AskedForSim, patience);
}

void FieldModule::useOwnModem()
{
    if (!m_ownDialogue.empty()) {
        say(m_ownDialogue.front());
        m_ownDialogue.pop_front();
    } else if (m_toSend.empty()) {
        rest();
        return;
    } else if (!std::exchange(m_isAddressed, !m_isAddressed)) {
        say(addressing());
    } else {
        say(m_toSend.front() + endOfSms);
        dropSms();
        m_ownDialogue.push_back(QStringLiteral("OK\r\n"));
    }
    waitFor(Step::OnOwnModem, pace);
}

/// Through the program.
void FieldModule::sendNextSms()
{
    if (!m_toSend.empty()) {
        say(addressing());
        waitFor(Step::Addressing, longestWait);
    } else if (std::exchange(m_lookAgain, false)) {
        say(readRequest);
        waitFor(Step::Reading, longestWait);
    } else {
        rest();
    }
}

void FieldModule::dropSms()
{
    ++m_smsSent;
    m_toSend.pop_front();
}

void FieldModule::tell(const QString &text, bool isAnswered) const
{
    if (m_told) {
        m_told(text, isAnswered);
    }
}

void FieldModule::rest()
{
    const auto every = static_cast<int>(m_options.every.count());
    waitFor(Step::Resting, Milliseconds(every / 2 + chance(every + 1)));
}

void FieldModule::say(const QString &text)
{
    m_said = text.chopped(1);
    m_isRepeated = false;
    m_send(toWindows1252(text));
}

void FieldModule::waitFor(Step step, Milliseconds wait)
{
    m_step = step;
    m_wait = wait;
}

} // namespace ktr
