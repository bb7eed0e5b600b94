#include "cli/commands.h"
#include "cli/console.h"
#include "cli/link_job.h"
#include "cli/loading.h"

namespace ktr::cli {

namespace {

const QString answerOption = QStringLiteral("answer");
const QString resumeOption = QStringLiteral("resume");

} // namespace

void describeTransmit(Arguments &arguments)
{
    arguments.setSummary(
        QStringLiteral("Transmits the configuration FILE: waits until the module starts its modem, then "
                       "hands it the commands of steps 0 to 78."));
    LinkJob::addOptions(arguments);
    arguments.addOption(
        {answerOption, QStringLiteral("The module is to answer each command; one that it does "
                                      "not answer is told.")});
    arguments.addOption({resumeOption,
                         QStringLiteral("Goes on at the step at which an earlier transmission stopped; the "
                                        "configuration and the module must be as they were."),
                         QStringLiteral("STEP"), QString::number(steps::first)});
}

std::optional<int> checkTransmit(const Arguments &arguments)
{
    if (!arguments.number(resumeOption, steps::first, steps::last)) {
        return wrongUsage;
    }
    return LinkJob::check(arguments);
}

int transmit(const Arguments &arguments)
{
    const std::optional<int> firstStep = arguments.number(resumeOption, steps::first, steps::last);
    Document document(systemEnvironment());
    if (load(document, arguments.positional(0)) != Loaded::Whole) {
        return failed; // fall-backs are no configuration that anybody meant
    }

    LinkJob job(arguments);
    ModuleSession &session = job.session();
    Configuration configuration = document.configuration();
    Progress progress(steps::last);
    int sent = 0;
    int refused = 0;
    bool isDoubtful = false;
    bool started = false;
    const auto uncaught = job.timers().create();
    job.setState([&] {
        return QStringLiteral("stopped at step %1").arg(started ? session.resumeStep() : *firstStep);
    });

    const auto start = [&] {
        uncaught->stop();
        if (!started) { // a module that starts anew in the middle goes on where it was
            started = true;
            session.startTransmission(configuration, arguments.isSet(answerOption), *firstStep);
        }
    };
    QObject::connect(&session, &ModuleSession::caught, &session, start);
    QObject::connect(&session, &ModuleSession::nothingToRead, &session, [&] {
        if (!started && !uncaught->isRunning()) {
            uncaught->start(job.timeout(), [&job] {
                job.abandon(
                    QStringLiteral("the module reads its messages but does not start its modem (at+cpin); "
                                   "switch it off and on"));
            });
        }
    });
    QObject::connect(&session, &ModuleSession::commandSent, &session,
                     [&](std::optional<int> step, const QString &command) {
                         ++sent;
                         progress.show(step.value_or(0), logText(command));
                     });
    QObject::connect(&session, &ModuleSession::commandRefused, &session,
                     [&](std::optional<int> step, const QString &command) {
                         ++refused;
                         complainTooLong(step, command);
                     });
    QObject::connect(&session, &ModuleSession::replied, &session, [&](const ModemDialogue::Reply &reply) {
        if (reply.text.startsWith(QLatin1String("fail"))) {
            isDoubtful = true;
            complain(QLatin1String("the module answers: ") + logText(reply.text));
        }
    });
    QObject::connect(&session, &ModuleSession::unconfirmed, &session, [&](int step) {
        isDoubtful = true;
        complain(QStringLiteral("step %1: the module did not confirm the command").arg(step));
    });
    QObject::connect(&session, &ModuleSession::transmitted, &session, [&] {
        // A configuration that arrived in part is none.
        job.finishWhenDrained(refused == 0 && !isDoubtful ? done : failed);
    });

    if (const auto end = job.open(arguments)) {
        return *end;
    }
    if (job.isEthernet()) {
        start(); // a module behind Ethernet is caught for a transmission that runs
    }
    print(QStringLiteral("waiting for the module"));
    showNow();
    const int code = job.run();
    progress.end();
    print(QStringLiteral("%1 commands sent, %2 refused").arg(sent).arg(refused));
    if (job.isEthernet() && !arguments.isSet(answerOption) && code == done) {
        print(QStringLiteral("whether the network lost one of them is only known with --answer"));
    }
    return code;
}

void describeSend(Arguments &arguments)
{
    arguments.setSummary(
        QStringLiteral("Hands one command to the module when it next reads a message, and prints what "
                       "it answers. A command whose letter is lower-case is not answered."));
    LinkJob::addOptions(arguments);
}

std::optional<int> checkSend(const Arguments &arguments)
{
    const QString command = arguments.positional(0);
    if (command.isEmpty()) {
        return arguments.wrong(QStringLiteral("the command is empty"));
    }
    if (announcesFirmware(command)) { // the module would wait for an image in vain
        return arguments.wrong(
            QStringLiteral("§88 announces a firmware image; \"ktrcli firmware\" sends one"));
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
    bool sent = false;
    bool history = false;
    session.place(command);
    QObject::connect(&session, &ModuleSession::commandSent, &session, [&] {
        sent = true;
        if (!expectsAnswer) {
            job.finishWhenDrained(done);
        }
    });
    QObject::connect(&session, &ModuleSession::commandRefused, &session,
                     [&](std::optional<int> step, const QString &text) {
                         complainTooLong(step, text);
                         job.finish(failed);
                     });
    QObject::connect(&session, &ModuleSession::replied, &session, [&](const ModemDialogue::Reply &reply) {
        print(logText(reply.text)); // no control character of a device reaches the terminal
        history = reply.kind == ModemDialogue::ReplyKind::History;
        if (sent && !history) {
            job.finishWhenDrained(done);
        }
    });
    QObject::connect(&session, &ModuleSession::nothingToRead, &session, [&] {
        if (history) { // the archive's last line was before this
            job.finishWhenDrained(done);
        }
    });
    return job.run();
}

} // namespace ktr::cli
