#include "cli/changes_basis.h"

#include "cli/console.h"
#include "cli/loading.h"
#include "link/conversation_log.h"
#include "link/reply_interpreter.h"
#include "link/service_commands.h"
#include "link/transmitter.h"
#include "transmissions/held_configuration.h"

namespace ktr::cli {

namespace {

const QString changesFromOption = QStringLiteral("changes-from");
constexpr int mostQuestions = 10;

/// Why the memory does not prove what a module holds that told this version.
QString doubtText(const HeldConfiguration &held, const QString &version)
{
    const QString told = version.isEmpty() ? QStringLiteral("no version")
                                           : QStringLiteral("the version %1").arg(logText(version));
    const QString begin = QStringLiteral("the module tells %1; ").arg(told);
    switch (held.proof) {
    case HeldConfiguration::Proof::Failed:
        return begin + held.status.message();
    case HeldConfiguration::Proof::Ambiguous:
        return begin + QStringLiteral("different configurations with that version were transmitted");
    case HeldConfiguration::Proof::InPart:
        return begin +
               (held.disturbedBy != 0
                    ? QStringLiteral("transmission %1 may have changed it since").arg(held.disturbedBy)
                    : QStringLiteral("it may not have all of transmission %1").arg(held.transmission.id));
    case HeldConfiguration::Proof::None:
    case HeldConfiguration::Proof::Whole:
        break;
    }
    return begin + QStringLiteral("no transmission of that version is remembered");
}

} // namespace

void ChangesBasis::addOptions(Arguments &arguments)
{
    arguments.addOption(
        {changesOption,
         QStringLiteral("Sends only the commands that differ from what the module holds. It is "
                        "asked for its version, and the memory has to know what was "
                        "transmitted with that; otherwise nothing is sent.")});
    arguments.addOption({changesFromOption,
                         QStringLiteral("Sends only the commands that differ from those of the configuration "
                                        "FROM. The module has to tell its version; otherwise nothing is "
                                        "sent. What was sent to it since then without an end is not seen in "
                                        "that."),
                         QStringLiteral("FROM")});
}

std::optional<int> ChangesBasis::check(const Arguments &arguments)
{
    const bool asks = arguments.isSet(changesOption);
    const bool hasFile = arguments.isSet(changesFromOption);
    if (asks && hasFile) {
        return arguments.wrong(QStringLiteral("--changes and --changes-from exclude each other"));
    }
    if ((asks || hasFile) && arguments.isSet(QStringLiteral("resume"))) {
        return arguments.wrong(QStringLiteral("changes are sent from the beginning; --resume goes without"));
    }
    return std::nullopt;
}

ChangesBasis::ChangesBasis(const Arguments &arguments, const Configuration &wanted, bool answer,
                           const Environment &environment, TransmissionMemory &memory)
    : m_from(arguments.value(changesFromOption)),
      m_asks(arguments.isSet(changesOption)),
      m_wanted(wanted),
      m_answer(answer),
      m_environment(environment),
      m_memory(memory),
      m_isReady(!m_asks)
{}

CommandContext ChangesBasis::context() const
{
    return {m_answer, m_environment.locale, m_environment.now()};
}

bool ChangesBasis::load()
{
    if (m_from.isEmpty()) {
        return true;
    }
    Document document(m_environment);
    if (!cli::load(document, m_from)) {
        return false;
    }
    const Configuration &held = document.configuration();
    const QString version = Transmitter::versionOnLine(held);
    if (!isProvedBy(held, version)) {
        complain(QStringLiteral("%1: its version, by which a module would prove to hold it, is %2")
                     .arg(m_from, version.isEmpty() ? QStringLiteral("empty") : QStringLiteral("too long")));
        return false;
    }
    prepare(changesSince(held, m_wanted, context()), version);
    return true;
}

void ChangesBasis::prepare(const Changes &changes, const QString &version)
{
    m_leftOut = changes.leftOut;
    m_version = version;
    m_isReady = true;
    print(changes.commands == 1 ? QStringLiteral("1 command differs")
                                : QStringLiteral("%1 commands differ").arg(changes.commands));
}

void ChangesBasis::ask(ModuleSession &session, std::function<void()> ready,
                       std::function<void(const QString &why)> refused)
{
    if (!m_ready) {
        QObject::connect(&session, &ModuleSession::replied, &m_asker,
                         [this](const ModuleDialogue::Reply &reply) { hear(reply); });
    }
    m_ready = std::move(ready);
    m_refused = std::move(refused);
    if (m_isLooking || !session.waiting().isEmpty()) {
        return;
    }
    if (m_questions++ >= mostQuestions) {
        m_refused(QStringLiteral("the module does not tell its version"));
        return;
    }
    session.place(serviceCommands::version); // once more, when an answer was lost
}

void ChangesBasis::hear(const ModuleDialogue::Reply &reply)
{
    for (const ReplyEvent &event : interpretReply(reply)) {
        const auto *version = std::get_if<VersionReply>(&event);
        if (version != nullptr && !m_isReady && !std::exchange(m_isLooking, true)) {
            look(version->configuration);
        }
    }
}

void ChangesBasis::look(const QString &version)
{
    const auto find = [version, station = m_wanted.gsm.stationId,
                       environment = m_environment](TransmissionTable &table) {
        HeldConfiguration held = whatHolds(table, station, version, environment);
        // It may be given another identifier now.
        return held.proof == HeldConfiguration::Proof::None ? whatHolds(table, {}, version, environment)
                                                            : held;
    };
    m_memory.ask<HeldConfiguration>(
        &m_asker, find,
        [](const Status &why) {
            return HeldConfiguration{.proof = HeldConfiguration::Proof::Failed, .status = why};
        },
        [this, version](const HeldConfiguration &held) {
            const bool isTold = isProvedBy(held.configuration, version);
            if (held.proof != HeldConfiguration::Proof::Whole || !isTold) {
                m_refused(doubtText(held, version));
                return;
            }
            m_basedOn = held.transmission.id;
            prepare(changesSince(held, m_wanted, context()), version);
            m_ready();
        });
}

void ChangesBasis::apply(Transmission &transmission) const
{
    if (m_leftOut) {
        transmission.leaveOut(*m_leftOut);
        transmission.expectVersion(m_version);
    }
}

} // namespace ktr::cli
