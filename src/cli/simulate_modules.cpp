#include "cli/simulate_modules.h"

#include "cli/console.h"
#include "cli/interruption.h"
#include "config/configuration_file.h"
#include "platform/output_check.h"
#include "platform/timers.h"
#include "simulator/fleet.h"
#include "simulator/module_on_udp.h"

#include <QCoreApplication>
#include <QDir>

#include <memory>
#include <vector>

namespace ktr::cli {

namespace {

const QString modulesOption = QStringLiteral("modules");
constexpr int mostModules = 2'000;

} // namespace

void addModulesOption(Arguments &arguments)
{
    arguments.addOption(
        {modulesOption,
         QStringLiteral("Plays COUNT modules to be configured, at 127.0.1.1, 127.0.1.2, ... and "
                        "the port of --ethernet; --save names a folder then, in which each has "
                        "a file by its address."),
         QStringLiteral("COUNT")});
}

bool wantsModules(const Arguments &arguments)
{
    return arguments.isSet(modulesOption);
}

bool areModulesUsable(const Arguments &arguments)
{
    return arguments.number(modulesOption, 1, mostModules) && arguments.number(ethernetOption, 0, 65'535);
}

int simulateModules(const Arguments &arguments, const ModuleOptions &options, const DatagramFaults &network)
{
    const Environment environment = systemEnvironment();
    const QDir folder(arguments.value(saveOption));
    const Status usable = arguments.isSet(saveOption) ? makeOutputFolder(folder.path()) : Status::done();
    if (!usable) {
        return fail(usable.message());
    }
    EventLoopTimers timers;
    IoThread io;
    Interruption interruption(io, [] { QCoreApplication::quit(); });
    std::vector<std::unique_ptr<ModuleOnUdp>> modules;
    const int count = *arguments.number(modulesOption, 1, mostModules);
    for (int number = 0; number < count; ++number) {
        DatagramFaults faults = network;
        faults.seed += static_cast<quint32>(number); // each loses others
        modules.push_back(std::make_unique<ModuleOnUdp>(timers, options, faults));
        const QString address = Fleet::address(number);
        if (arguments.isSet(saveOption)) {
            modules.back()->module().onConfigured([path = folder.filePath(address + QLatin1String(".xml")),
                                                   &environment](const ModuleMemory &memory) {
                const Status saved = writeConfigurationFile(path, memory.configuration, environment);
                if (!saved) {
                    complain(saved.message());
                }
            });
        }
        if (const Status opened = modules.back()->open(address + u':' + arguments.value(ethernetOption));
            !opened) {
            return fail(opened.message());
        }
    }
    for (const auto &module : modules) {
        print(QLatin1String("listening at ") + module->address());
    }
    print(QStringLiteral("all are listening"));
    showNow();
    return QCoreApplication::exec() == 0 ? done : failed;
}

} // namespace ktr::cli
