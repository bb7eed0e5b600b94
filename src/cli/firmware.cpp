#include "cli/commands.h"
#include "cli/console.h"
#include "cli/link_job.h"
#include "cli/memory_troubles.h"
#include "link/self_programming.h"
#include "link/service_commands.h"
#include "transmissions/memory_place.h"
#include "transmissions/single_commands.h"

namespace ktr::cli {

namespace {

const QString imageOption = QStringLiteral("image");

} // namespace

void describeFirmware(Arguments &arguments)
{
    arguments.setSummary(
        QStringLiteral("Sends a firmware image to the module: announces it when the module next reads a "
                       "message, and a second later sends %1 bytes. A shorter file is filled up with FF, a "
                       "longer one cut.")
            .arg(firmwareImageSize));
    arguments.addOption({imageOption, QStringLiteral("The image."), QStringLiteral("FILE")});
    LinkJob::addOptions(arguments);
}

std::optional<int> checkFirmware(const Arguments &arguments)
{
    if (!arguments.isSet(imageOption)) {
        return arguments.wrong(QStringLiteral("--image is missing"));
    }
    const std::optional<int> code = LinkJob::check(arguments);
    return code ? code : arguments.distinctFiles({imageOption, QStringLiteral("log")});
}

int firmware(const Arguments &arguments)
{
    QString file = arguments.value(imageOption);
    FirmwareImage image;
    if (const Status read = readFirmware(file, image); !read) {
        return fail(read.message()); // before the module is told of one
    }

    LinkJob job(arguments);
    ModuleSession &session = job.session();
    SelfProgramming programming(session, job.line(), job.timers(),
                                job.isEthernet() ? datagramPace : serialPace, [&file] { return file; });
    Progress progress(firmwareImageSize);
    qint64 sent = 0;
    bool announced = false;
    TransmissionMemory memory(transmissionsPlace({}, systemEnvironment())); // it may hold something else then
    setUpMemory(memory, QStringLiteral("the firmware"));
    SingleCommandKeeper keeper(memory, systemEnvironment());
    keeper.watch(session, [&job] {
        return SingleCommandKeeper::About{.line = job.lineName(), .operatorName = fullUserName()};
    });
    job.setState([&] {
        return announced ? QStringLiteral("%1 of %2 bytes sent").arg(sent).arg(firmwareImageSize)
                         : QStringLiteral("nothing of the image was sent");
    });
    session.place(serviceCommands::firmware);
    QObject::connect(&session, &ModuleSession::commandSent, &session, [&] { announced = true; });
    QObject::connect(&session, &ModuleSession::replied, &session, [&](const ModemDialogue::Reply &reply) {
        print(logText(reply.text));
        if (announced && reply.refuses()) {
            job.abandon(QStringLiteral("the module refuses the image"));
        }
    });
    QObject::connect(&programming, &SelfProgramming::statusMessage, &session, &complain);
    QObject::connect(&programming, &SelfProgramming::refused, &session,
                     [&job](const QString &reason) { job.abandon(reason); });
    QObject::connect(&programming, &SelfProgramming::progressed, &session, [&](qint64 bytes, qint64) {
        sent = bytes;
        progress.show(static_cast<int>(bytes), QStringLiteral("bytes"));
        session.setTimeout(job.timeout()); // the module says nothing meanwhile
    });
    QObject::connect(&programming, &SelfProgramming::ended, &session, [&](bool complete) {
        if (complete) {
            job.finish(job.isEthernet() ? notKnown : done);
        }
    });

    if (const auto end = job.open(arguments)) {
        return *end;
    }
    print(QStringLiteral("waiting for the module"));
    showNow();
    const int code = job.run();
    progress.end();
    if (code == done || code == notKnown) {
        print(QStringLiteral("%1 bytes sent").arg(sent));
    }
    if (code == notKnown) {
        complain(QStringLiteral("whether the network lost some of them is not known"));
    }
    return code;
}

} // namespace ktr::cli
