#include "cli/changes_basis.h"
#include "cli/commands.h"
#include "cli/console.h"
#include "cli/link_job.h"
#include "cli/loading.h"
#include "cli/memory_troubles.h"
#include "cli/receipts.h"
#include "cli/shared_record.h"
#include "cli/transmit_fleet.h"
#include "config/neighbours.h"
#include "link/problems.h"
#include "link/reply_interpreter.h"
#include "link/service_commands.h"
#include "transmissions/memory_place.h"
#include "transmissions/single_commands.h"
#include "transmissions/transmission_keeper.h"
#include "transmissions/transmission_look.h"

#include <QEventLoop>
#include <QTimer>

namespace ktr::cli {

namespace {

const QString answerOption = QStringLiteral("answer");
const QString unconfirmedOption = QStringLiteral("unconfirmed");
const QString receiptOption = QStringLiteral("receipt");

/// What is known before anything is sent. A memory that does not answer soon is done without.
TransmissionLook lookBefore(TransmissionMemory &memory, const TransmissionLook &look)
{
    constexpr std::chrono::seconds longestWait{2};
    QEventLoop loop;
    QObject asker;
    TransmissionLook result = look;
    memory.ask<TransmissionLook>(
        &asker, [look](TransmissionTable &table) { return withMemory(look, table); },
        [look](const Status &) { return look; },
        [&](const TransmissionLook &answer) {
            result = answer;
            loop.quit();
        });
    QTimer::singleShot(longestWait, &loop, &QEventLoop::quit);
    loop.exec();
    return result;
}

/// Shows what is known, and complains about what does not fit; false: nothing is to be sent.
bool agreesTo(const TransmissionLook &look, bool anyway)
{
    for (const auto &[name, value] : look.facts()) {
        print(name + QLatin1String(": ") + value);
    }
    const QStringList misfits = look.misfits();
    for (const QString &misfit : misfits) {
        complain(misfit);
    }
    if (!misfits.isEmpty() && !anyway) {
        complain(QStringLiteral("nothing was sent; --anyway transmits all the same"));
    }
    return misfits.isEmpty() || anyway;
}

/// The version text that a reply tells, if it is one.
std::optional<QString> versionIn(const ModemDialogue::Reply &reply)
{
    for (const ReplyEvent &event : interpretReply(reply)) {
        if (const auto *version = std::get_if<VersionReply>(&event)) {
            return version->configuration;
        }
    }
    return std::nullopt;
}

/// What became of the transmission, in the words of the panel of the main window.
void printReport(const TransmissionReport &report)
{
    print(report.title());
    print(report.counts());
    for (const TransmissionReport::Finding &finding : report.findings()) {
        QStringList steps;
        for (const int step : finding.steps) {
            steps += QStringLiteral("step %1").arg(step);
        }
        complain(finding.text + (steps.isEmpty() ? QString() : u' ' + steps.join(QLatin1String(", "))));
    }
}

int giveReceipt(const Arguments &arguments, const RememberedTransmission &transmission)
{
    if (!arguments.isSet(receiptOption)) {
        return done;
    }
    const Status written = writeReceiptFile(arguments.value(receiptOption), arguments, transmission);
    return written ? done : fail(written.message());
}

int exitCode(TransmissionReport::Verdict verdict)
{
    switch (verdict) {
    case TransmissionReport::Verdict::Whole:
        return done;
    case TransmissionReport::Verdict::Unknown:
        return notKnown;
    case TransmissionReport::Verdict::InPart:
    case TransmissionReport::Verdict::BrokenOff:
        break;
    }
    return failed; // a configuration that arrived in part is none
}

} // namespace

void describeTransmit(Arguments &arguments)
{
    arguments.setSummary(
        QStringLiteral("Transmits the configuration FILE: waits until the module starts its modem or reads a "
                       "message, then hands it the commands of steps %1 to %2.")
            .arg(steps::first)
            .arg(steps::last));
    LinkJob::addOptions(arguments);
    arguments.addOption(
        {answerOption, QStringLiteral("The module is to answer each command; one that it does not answer is "
                                      "told. Over Ethernet it always is, and what the network lost is handed "
                                      "over again.")});
    arguments.addOption({unconfirmedOption,
                         QStringLiteral("The module is not to answer. Over Ethernet nobody knows then what "
                                        "the network lost: the exit code is 3 at best.")});
    arguments.addOption({resumeOption,
                         QStringLiteral("Goes on at the step at which an earlier transmission stopped; the "
                                        "configuration and the module must be as they were. With --fleet "
                                        "STEP is a table of results: goes on after a break, leaves out the "
                                        "stations that are whole in it and whose files are as they were, and "
                                        "goes on at the step where one stopped if its module proves that it "
                                        "is as it was. Writes the table anew."),
                         QStringLiteral("STEP"), QString::number(steps::first)});
    ChangesBasis::addOptions(arguments);
    addFleetTransmission(arguments);
    addMemoryOption(arguments);
    arguments.addOption(
        {anywayOption, QStringLiteral("Transmits also what is known not to fit: to another station, or an "
                                      "older version than the module holds or was transmitted last.")});
    arguments.addOption({receiptOption,
                         QStringLiteral("Writes a receipt of the transmission, as FILE.pdf or FILE.json."),
                         QStringLiteral("FILE")});
    addOverwriteOption(arguments);
    addLanguageOption(arguments);
}

std::optional<int> checkTransmit(const Arguments &arguments)
{
    if (wantsFleetTransmission(arguments)) {
        return checkFleetTransmission(arguments);
    }
    if (const QString option = fleetOptionOfOne(arguments); !option.isEmpty()) {
        return arguments.wrong(QStringLiteral("--%1 needs --fleet").arg(option));
    }
    if (arguments.positional(0).isEmpty()) {
        return arguments.wrong(QStringLiteral("FILE is missing"));
    }
    if (!arguments.number(resumeOption, steps::first, steps::last)) {
        return wrongUsage;
    }
    if (arguments.isSet(answerOption) && arguments.isSet(unconfirmedOption)) {
        return arguments.wrong(QStringLiteral("--answer and --unconfirmed exclude each other"));
    }
    if (const std::optional<int> code = LinkJob::check(arguments)) {
        return code;
    }
    if (const std::optional<int> code = checkRecordAddress(arguments, arguments.value(recordOption))) {
        return code;
    }
    if (const std::optional<int> code = ChangesBasis::check(arguments)) {
        return code;
    }
    if (arguments.isSet(receiptOption)) {
        if (const std::optional<int> code = checkReceipt(arguments, arguments.value(receiptOption))) {
            return code;
        }
    }
    return arguments.distinctFiles({QStringLiteral("[FILE]"), QStringLiteral("log"), receiptOption});
}

int transmit(const Arguments &arguments)
{
    if (wantsFleetTransmission(arguments)) {
        return transmitToFleet(arguments);
    }
    const std::optional<int> firstStep = arguments.number(resumeOption, steps::first, steps::last);
    Document document(systemEnvironment());
    if (!load(document, arguments.positional(0))) {
        return failed;
    }

    if (arguments.isSet(receiptOption)) { // before the module hears of anything
        const Status usable = checkReceiptFile(arguments, arguments.value(receiptOption));
        if (!usable) {
            return fail(usable.message() + QLatin1String("; nothing was sent"));
        }
    }

    LinkJob job(arguments);
    ModuleSession &session = job.session();
    Configuration configuration = document.configuration();
    const bool answer =
        arguments.isSet(answerOption) || (job.isEthernet() && !arguments.isSet(unconfirmedOption));
    Progress progress(steps::last);
    TransmissionMemory memory(transmissionsPlace(arguments.value(recordOption), document.environment()));
    setUpMemory(memory, QStringLiteral("the transmission"));
    TransmissionKeeper keeper(memory, document.environment());
    const bool anyway = arguments.isSet(anywayOption);
    TransmissionLook look =
        lookAt(configuration, {answer, document.environment().locale, document.environment().now()},
               Neighbours().of(document.fileName()));
    look.line = arguments.value(job.isEthernet() ? ethernetOption : serialOption);
    look.isAddress = job.isEthernet();
    look = lookBefore(memory, look);
    ChangesBasis basis(arguments, document.configuration(), answer, document.environment(), memory);
    if (!agreesTo(look, anyway) || !basis.load()) {
        return failed;
    }
    bool started = false;
    job.setState([&] {
        return QStringLiteral("stopped at step %1").arg(started ? session.resumeStep() : *firstStep);
    });

    const auto start = [&] {
        if (!started) { // a module that restarts in the middle goes on where it was
            started = true;
            Transmission transmission(configuration, answer, *firstStep);
            basis.apply(transmission);
            session.startTransmission(transmission);
            keeper.begin(session, configuration,
                         {.file = document.fileName(),
                          .line = job.lineName(),
                          .operatorName = fullUserName(),
                          .basedOn = basis.basedOn(),
                          .firstStep = *firstStep,
                          .answers = answer});
        }
    };
    const std::function<void()> startOrAsk = [&] {
        if (basis.isReady()) {
            start();
        } else {
            basis.ask(session, start, [&job](const QString &why) { job.abandon(why); });
        }
    };
    QObject::connect(&session, &ModuleSession::caught, &session, startOrAsk);
    // A module that was caught earlier is still in configuration mode and goes on reading while it is
    // answered.
    QObject::connect(&session, &ModuleSession::nothingToRead, &session, startOrAsk);
    QObject::connect(&session, &ModuleSession::commandSent, &session,
                     [&](std::optional<int> step, const QString &command) {
                         progress.show(step.value_or(0), logText(command));
                     });
    QObject::connect(&session, &ModuleSession::commandRefused, &session, &complainTooLong);
    QObject::connect(&session, &ModuleSession::replied, &session, [&](const ModemDialogue::Reply &reply) {
        if (reply.refuses()) {
            complain(QLatin1String("the module says: ") + logText(reply.text));
        }
        // It tells its version before it is given anything that changes it.
        look.moduleVersion = versionIn(reply);
        const bool isAsked =
            !started || (*firstStep == steps::first && session.transmission().report().sent <= 1);
        if (look.moduleVersion && !anyway && isAsked && !look.misfits().isEmpty()) {
            job.abandon(look.misfits().join(QLatin1String("; ")) +
                        QLatin1String("; nothing was changed in it, --anyway transmits all the same"));
        }
    });
    QObject::connect(&session, &ModuleSession::transmitted, &session,
                     [&] { job.finishWhenDrained(exitCode(session.transmission().report().verdict())); });

    if (const auto end = job.open(arguments)) {
        return *end;
    }
    if (job.isEthernet()) {
        startOrAsk(); // over Ethernet a module is only caught while a transmission runs
    }
    print(QStringLiteral("waiting for the module"));
    showNow();
    int code = job.run();
    progress.end();
    if (started) {
        session.stopTransmission();
        if (code != exitCode(session.transmission().report().verdict())) {
            session.loseLastCommand(); // the line ended while it was still in the machine
        }
        keeper.end();
        printReport(session.transmission().report());
        (void)memory.flush(); // what goes wrong is told
        if (giveReceipt(arguments, keeper.transmission()) != done) {
            code = failed;
        }
    }
    return code;
}

void describeSend(Arguments &arguments)
{
    arguments.setSummary(
        QStringLiteral("Hands one command to the module when it next reads a message, and prints what "
                       "it answers. A command whose letter is lower-case is not answered; over Ethernet "
                       "nobody knows then whether the network lost it, and the exit code is 3 at best. One "
                       "that may change the configuration is remembered: what was transmitted before proves "
                       "nothing any more."));
    LinkJob::addOptions(arguments);
    addMemoryOption(arguments);
}

std::optional<int> checkSend(const Arguments &arguments)
{
    const QString command = arguments.positional(0);
    if (command.isEmpty()) {
        return arguments.wrong(QStringLiteral("the command is empty"));
    }
    if (const QString fault = commandFault(command); !fault.isEmpty()) {
        return arguments.wrong(fault);
    }
    if (command != asOneLine(command)) {
        return arguments.wrong(QStringLiteral("the command has a control character"));
    }
    if (announcesFirmware(command)) { // the module would wait for an image in vain
        return arguments.wrong(serviceCommands::firmware +
                               QLatin1String(" announces a firmware image; \"ktrcli firmware\" sends one"));
    }
    if (const std::optional<int> code = checkRecordAddress(arguments, arguments.value(recordOption))) {
        return code;
    }
    return LinkJob::check(arguments);
}

int send(const Arguments &arguments)
{
    const QString command = arguments.positional(0);
    const bool expectsAnswer = !command.front().isLower();

    LinkJob job(arguments);
    if (const auto end = job.open(arguments)) {
        return *end;
    }
    ModuleSession &session = job.session();
    TransmissionMemory memory(transmissionsPlace(arguments.value(recordOption), systemEnvironment()));
    setUpMemory(memory, QStringLiteral("the command"));
    SingleCommandKeeper keeper(memory, systemEnvironment());
    keeper.watch(session, [&job] {
        return SingleCommandKeeper::About{.line = job.lineName(), .operatorName = fullUserName()};
    });
    const bool asksArchive = command == serviceCommands::archive;
    bool sent = false;
    bool history = false; // some of it has come
    session.place(command);
    QObject::connect(&session, &ModuleSession::commandSent, &session, [&] {
        sent = true;
        if (!expectsAnswer) {
            job.finishWhenDrained(job.isEthernet() ? notKnown : done);
        }
    });
    QObject::connect(&session, &ModuleSession::replied, &session, [&](const ModemDialogue::Reply &reply) {
        const bool isAnswer = isAnswerTo(command, reply);
        if (sent && asksArchive && reply.kind == ModemDialogue::ReplyKind::History) {
            history = true;
            job.session().setTimeout(job.timeout());
        }
        if (sent && isAnswer && reply.refuses()) {
            complain(QLatin1String("the module says: ") + logText(reply.text));
            job.finishWhenDrained(failed);
            return;
        }
        // No control character of the module may reach the terminal.
        print(logText(isAnswer || reply.kind == ModemDialogue::ReplyKind::History ? reply.text
                                                                                  : reply.shown()));
        if (sent && isAnswer) {
            job.finishWhenDrained(done);
        }
    });
    QObject::connect(&session, &ModuleSession::nothingToRead, &session, [&] {
        if (history) { // the archive's last line was before this
            job.finishWhenDrained(done);
        }
    });
    const int code = job.run();
    (void)memory.flush(); // what goes wrong is told
    if (code == notKnown) {
        complain(QStringLiteral("the command was sent; whether it arrived is only known when its letter is "
                                "upper-case and the module answers"));
    }
    return code;
}

} // namespace ktr::cli
