#include "link/transmission.h"

#include "link/conversation_log.h"
#include "link/module_text.h"
#include "link/reply_interpreter.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <algorithm>

namespace ktr {

namespace {

/// Which command a text of the module answers.
enum class Answers {
    Nobody,  ///< none: it is a report, or it answers another command
    Unnamed, ///< it does not say which
    Command, ///< the one in question
};

bool beginsWithOneOf(QStringView text, std::initializer_list<const char16_t *> beginnings)
{
    return std::ranges::any_of(beginnings, [text](const char16_t *each) { return text.startsWith(each); });
}

/// An answer names its command by the letter, mostly with the first number: "OK: G,3", "OK: Z20". A bad line
/// may put something in front. A module that lost a line may have taken another line of ours for the command;
/// then it names that, such as "OK: at+cmgr=1".
Answers namedBy(const QString &text, const QString &command)
{
    static const QRegularExpression head(QStringLiteral("^([A-Za-z§])(?:,?([0-9]+))?(?![A-Za-z0-9])"));
    const QString named = namedInAnswer(text);
    if (beginsWithOneOf(named, {u"OK", u"at+", u",\"+", u"config"})) {
        return Answers::Nobody;
    }
    const QRegularExpressionMatch match = head.match(named);
    if (!match.hasMatch()) {
        return Answers::Unnamed;
    }
    const bool isLetter = match.captured(1).compare(command.left(1), Qt::CaseInsensitive) == 0;
    const QString number = match.captured(2);
    return isLetter && (number.isEmpty() || number == command.section(u',', 1, 1)) ? Answers::Command
                                                                                   : Answers::Nobody;
}

/// Whether a text answers the command. An answer is an SMS to "+IP" that is no report, but "A*" asks for one
/// of all values; the version may also come by itself.
Answers answersTo(const QString &command, const ModuleDialogue::Reply &reply)
{
    const QStringView text = plainText(reply.text);
    if (command.startsWith(QLatin1String("V,"))) {
        const bool mayTell = reply.isForProgram() || reply.kind == ModuleDialogue::ReplyKind::Message;
        return mayTell && text.contains(u"V,") ? Answers::Command : Answers::Nobody;
    }
    if (!reply.isForProgram() || text.startsWith(u"V,")) {
        return Answers::Nobody;
    }
    if (isReport(text)) {
        return text.startsWith(u'R') && command.startsWith(u'A') ? Answers::Command : Answers::Nobody;
    }
    return namedBy(text.toString(), command);
}

} // namespace

bool isAnswerTo(const QString &command, const ModuleDialogue::Reply &reply)
{
    return answersTo(command, reply) != Answers::Nobody;
}

// What became of it

TransmissionReport::Verdict TransmissionReport::verdict() const
{
    if (brokenAt) {
        return Verdict::BrokenOff;
    }
    if (!refused.isEmpty() || !failed.isEmpty() || !unconfirmed.isEmpty()) {
        return Verdict::InPart;
    }
    return isUnwatched ? Verdict::Unknown : Verdict::Whole;
}

QString TransmissionReport::title() const
{
    switch (verdict()) {
    case Verdict::Whole:
        if (isPartAlone) {
            return QCoreApplication::translate(
                "Transmission", "The entry was transmitted; the module's version no longer fits");
        }
        break;
    case Verdict::Unknown:
        return QCoreApplication::translate(
            "Transmission", "The configuration was sent; whether all of it arrived is not known");
    case Verdict::InPart:
        return QCoreApplication::translate("Transmission", "The configuration was transmitted in part");
    case Verdict::BrokenOff:
        return QCoreApplication::translate("Transmission", "The transmission was broken off before step %1")
            .arg(*brokenAt);
    }
    return QCoreApplication::translate("Transmission", "The configuration was transmitted");
}

QString TransmissionReport::counts() const
{
    return QCoreApplication::translate("Transmission", "%1 commands sent, %2 refused, %3 answered")
        .arg(sent)
        .arg(refused.size())
        .arg(answered);
}

std::vector<TransmissionReport::Finding> TransmissionReport::findings() const
{
    std::vector<Finding> findings;
    const auto add = [&findings](const QString &text, const QList<int> &steps) {
        if (!steps.isEmpty()) {
            findings.push_back({text, steps});
        }
    };
    add(QCoreApplication::translate("Transmission", "Too long:"), refused);
    add(QCoreApplication::translate("Transmission", "Answered as failed:"), failed);
    add(QCoreApplication::translate("Transmission", "Not confirmed by the module:"), unconfirmed);
    if (otherVersion) {
        findings.push_back(
            {otherVersion->isEmpty()
                 ? QCoreApplication::translate("Transmission", "The module does not tell its version")
                 : QCoreApplication::translate("Transmission",
                                               "The module does not hold what the changes were made from; it "
                                               "tells the version %1")
                       .arg(logText(*otherVersion)),
             {}});
    }
    if (isUnwatched) {
        findings.push_back(
            {QCoreApplication::translate(
                 "Transmission", "Whether the network lost a command is only known when the module answers"),
             {}});
    }
    return findings;
}

// Its course

Transmission::Transmission(Configuration &configuration, bool answer, int step)
    : m_configuration(&configuration), m_answer(answer), m_firstStep(step)
{}

void Transmission::leaveOut(const StepSet &steps)
{
    m_leftOut = steps;
    m_sequence.leaveOut(steps);
    m_report.isPartAlone = !isClosing();
}

void Transmission::run(LineKind kind)
{
    m_kind = kind;
    m_isProved = false;
    m_report.otherVersion.reset();
    m_sequence.start(std::exchange(m_report.brokenAt, std::nullopt).value_or(m_firstStep));
    m_open.reset();
    m_unanswered.reset();
    m_lastStep = steps::idle;
    m_isDeaf = m_isAnswerDoubtful = m_isDoubtReported = m_awaitsEnd = false;
    m_isDisturbed = isConfirmed() && m_sequence.step() == steps::last;
}

void Transmission::breakOff()
{
    if (!isRunning()) {
        return;
    }
    m_report.brokenAt = resumeStep();
    m_sequence.stop();
    m_awaitsEnd = false;
    m_open.reset();
    m_unanswered.reset();
}

int Transmission::resumeStep() const
{
    const std::optional<int> doubtful = m_kind == LineKind::Ethernet && m_unanswered ? m_unanswered : m_open;
    return doubtful.value_or(std::min(step(), steps::last));
}

/// Answers that name their command cannot be mixed up with older ones. Those that do not can, and so can the
/// restart that confirms the closing command.
bool Transmission::isUnsettled() const
{
    return m_isDisturbed && isRunning() && (m_namesNothing || step() == steps::last);
}

std::optional<StepCommand> Transmission::next(const QLocale &locale, const QDateTime &now)
{
    if (m_configuration == nullptr || isUnsettled()) {
        return std::nullopt;
    }
    if (isProofMissing()) {
        if (m_attempts >= mostAttempts) {
            endUnproved({});
            return std::nullopt;
        }
        m_sequence.start(steps::first); // the answer was lost
    }
    return m_sequence.next(*m_configuration, {m_answer, locale, now});
}

/// A change comes next, and the module has not told that it holds what the changes were made from.
bool Transmission::isProofMissing() const
{
    return m_expectedVersion && !m_isProved && m_sequence.isRunning() && m_sequence.step() != steps::first;
}

void Transmission::endUnproved(const QString &version)
{
    breakOff();
    m_report.brokenAt = steps::first;
    m_report.otherVersion = version;
    ++m_progress;
}

/// It may tell its version by itself, too.
void Transmission::hearVersion(const ModuleDialogue::Reply &reply)
{
    for (const ReplyEvent &event : interpretReply(reply)) {
        if (const auto *told = std::get_if<VersionReply>(&event)) {
            if (told->configuration != *m_expectedVersion) {
                endUnproved(told->configuration);
                return;
            }
            m_isProved = true;
        }
    }
}

void Transmission::handOver(int step, const QString &command)
{
    m_attempts = step == m_lastStep ? m_attempts + 1 : 1;
    m_lastStep = step;
    m_command = command;
    m_open = step;
    m_isDoubtReported = false;
    m_report.unconfirmed.removeAll(step); // it gets another chance
    m_report.isUnwatched = m_report.isUnwatched || (m_kind == LineKind::Ethernet && !m_answer);
    const auto bit = static_cast<std::size_t>(step);
    if (!m_handedOver.test(bit)) {
        m_handedOver.set(bit);
        ++m_report.sent;
    }
    ++m_progress;              // also once more, since that has its bound
    if (step == steps::last) { // the closing command is never answered
        m_awaitsEnd = isConfirmed();
    } else if (m_answer) {
        m_unanswered = step;
    }
    if (std::exchange(m_isAnswerDoubtful, false)) {
        noteUnconfirmed(step);
    }
}

void Transmission::refuse(int step)
{
    if (!m_report.refused.contains(step)) {
        m_report.refused += step;
    }
    ++m_progress;
}

void Transmission::noteConfirmed(int step)
{
    if (!m_report.confirmed.contains(step)) {
        m_report.confirmed += step;
    }
}

void Transmission::noteUnconfirmed(int step)
{
    if (!m_report.unconfirmed.contains(step)) {
        m_report.unconfirmed += step;
    }
}

/// The transmission goes on without this command.
void Transmission::giveUp(int step)
{
    noteUnconfirmed(step);
    m_unanswered.reset();
    m_awaitsEnd = false;
    m_isDeaf = true;
    m_isAnswerDoubtful = m_answer && step != steps::last;
    ++m_progress;
}

void Transmission::moduleReads()
{
    m_open.reset();
    const std::optional<int> missed = m_awaitsEnd ? steps::last : m_unanswered;
    if (!missed || !isRunning()) { // one that was broken off must not reach whatever module reads next
        return;
    }
    if (isRepeated() && mayRepeat()) {
        m_unanswered.reset();
        m_awaitsEnd = false;
        m_sequence.start(*missed); // the network lost it, or this is an old reading: it does no harm
    } else {
        giveUp(*missed);
    }
}

void Transmission::moduleStarts(bool isPrompt)
{
    if (!isRunning()) {
        return;
    }
    if (m_awaitsEnd && isPrompt) {
        m_awaitsEnd = false;
        noteConfirmed(steps::last);
        m_open.reset();
        return;
    }
    m_isDisturbed = isConfirmed() && m_lastStep != steps::idle;
    const std::optional<int> doubtful = m_awaitsEnd ? steps::last : m_open ? m_open : m_unanswered;
    if (!doubtful) {
        return;
    }
    if (!isRepeated()) {
        if (m_open && !std::exchange(m_isDoubtReported, true)) {
            m_unanswered.reset(); // it is noted now
            noteUnconfirmed(*m_open);
        }
        return;
    }
    m_open.reset();
    if (mayRepeat()) {
        m_unanswered.reset();
        m_awaitsEnd = false;
        m_sequence.start(*doubtful);
    } else {
        giveUp(*doubtful);
    }
}

void Transmission::moduleSays(const ModuleDialogue::Reply &reply)
{
    if (m_expectedVersion && !m_isProved && isRunning()) {
        hearVersion(reply);
    }
    if (!m_unanswered || !isRunning()) {
        return;
    }
    const Answers answers = answersTo(m_command, reply);
    if (answers == Answers::Nobody) {
        return;
    }
    if (answers == Answers::Command) {
        m_report.unconfirmed.removeAll(*m_unanswered);
    }
    m_namesNothing = m_namesNothing || answers == Answers::Unnamed;
    m_isDisturbed =
        m_isDisturbed || (isConfirmed() && m_attempts > 1); // a repeated command may be answered twice
    ++m_report.answered;
    ++m_progress;
    noteConfirmed(*m_unanswered);
    m_report.failed.removeAll(*m_unanswered);
    if (reportsFailure(reply.text)) {
        m_report.failed += *m_unanswered;
    }
    m_isDeaf = false;
    m_open.reset();
    m_unanswered.reset();
}

} // namespace ktr
