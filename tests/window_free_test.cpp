// Links every library without windows against Qt Core and Sql alone and lets them work together: a library
// that comes to need more fails to link here, or shows among the loaded ones.

#include "config/configuration_file.h"
#include "config/fields.h"
#include "lang/text_table.h"
#include "link/command_sequence.h"
#include "link/io_thread.h"
#include "link/serial_transport.h"
#include "opmode/keeping/nodes_file.h"
#include "opmode/station/station_sockets.h"
#include "opmode/tree/station_tree.h"
#include "record/record_file.h"
#include "simulator/command_interpreter.h"
#include "simulator/held_form.h"

#include <QCoreApplication>
#include <QFile>
#include <QRegularExpression>

#include <cstdio>

using namespace ktr;

namespace {

int fail(const char *what)
{
    std::fprintf(stderr, "FAIL: %s\n", what);
    return 1;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const Environment environment = systemEnvironment();
    Configuration configuration;
    const QString sample = QStringLiteral(KTR_SOURCE_DIR "/samples/pumping-station.xml");
    if (!readConfigurationFile(sample, configuration, environment).document) {
        return fail("the sample is not read");
    }
    ModuleMemory memory;
    CommandInterpreter interpreter(memory);
    CommandSequence sequence;
    sequence.start();
    while (const auto next = sequence.next(configuration, {false, environment.locale, environment.now()})) {
        interpreter.apply(next->command);
    }
    if (!differences(asHeld(configuration, environment.locale), memory.configuration, environment.locale)
             .isEmpty()) {
        return fail("the module does not hold the sample");
    }
    IoThread io;
    SerialTransport port(io);
    if (port.open(QStringLiteral("/no/such/port")) || TextTable().text(Text::MessageTooLong).isEmpty()) {
        return fail("a port that is not there opens, or a text is missing");
    }
    StationSockets stations(io);
    if (stations.createLine()->open(QString())) {
        return fail("a station without an address is opened");
    }

    StationTree tree({});
    tree.addStation(QStringLiteral("a"));
    if (writeNodes(tree.nodes(), [](const QString &) { return StationAttributes(); }).count("<item") != 22) {
        return fail("a station is not written with its nodes");
    }

    if (openRecord(QStringLiteral("/no/such/folder/record")).status) {
        return fail("a record is made where nothing can be");
    }

    QFile maps(QStringLiteral("/proc/self/maps"));
    if (maps.open(QIODevice::ReadOnly)) { // where the system tells what is loaded
        static const QRegularExpression library(QStringLiteral("libQt6([A-Za-z]+)"));
        for (auto found = library.globalMatch(QString::fromUtf8(maps.readAll())); found.hasNext();) {
            if (const QString name = found.next().captured(1);
                name != QStringLiteral("Core") && name != QStringLiteral("Sql")) {
                std::fprintf(stderr, "Qt6%s is loaded\n", qPrintable(name));
                return fail("more than Qt Core and Sql is loaded");
            }
        }
    }
    return 0;
}
