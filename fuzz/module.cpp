// Anything that a program may send to the virtual module: commands are taken whole or not at all, and bytes
// mean the same however they are cut.
//
//     g D m h    faults, of the first steps: garbage with a seed, over Ethernet, merged, hang-up
//     c          a command by itself
//     r f        received; too much without an end
//     t          so many milliseconds pass
//     o          switched off and on
//     d w        a datagram to a module of a fleet, and that one is woken

#include "config/configuration_file.h"
#include "platform/text_rules.h"
#include "simulator/field_module.h"
#include "simulator/virtual_module.h"
#include "support/environment.h"
#include "support/manual_timers.h"
#include "support/require.h"
#include "support/script.h"

using namespace ktr;

namespace {

bool isSame(const ModuleMemory &a, const ModuleMemory &b)
{
    return a.configuration == b.configuration && a.clock == b.clock && a.archiveBlocked == b.archiveBlocked &&
           a.notifications == b.notifications && a.calibrated == b.calibrated &&
           a.firmwareRequested == b.firmwareRequested;
}

void applyByItself(const QString &command)
{
    ModuleMemory memory;
    memory.notifications = {QStringLiteral("a")};
    const ModuleMemory before = memory;
    const Understood understood = CommandInterpreter(memory).apply(command);
    fuzz::require(memory.accepted + memory.refused == 1, "a command is taken or refused");
    fuzz::require(understood.accepted == (memory.accepted == 1), "what became of it is told");
    fuzz::require(understood.accepted || isSame(memory, before), "a refused command changes nothing");
    fuzz::require(understood.accepted || understood.answerText.size() <= CommandInterpreter::longestSms,
                  "a refusal fits an SMS");
    if (memory.clock.isValid()) {
        for (const QString &line : archiveLines(memory)) {
            fuzz::require(line.startsWith(QLatin1String("H,")), "the archive is told at any time");
        }
    }
}

/// A module and what it made of what it received.
struct Heard
{
    explicit Heard(const ModuleOptions &options)
        : module(
              timers, [this](const QByteArray &bytes) { sent += bytes; }, options)
    {
        module.onCommand([this](const QString &command, const Understood &) { commands += command; });
        module.start();
    }

    bool operator==(const Heard &other) const
    {
        const ModuleCounts &a = module.counts();
        const ModuleCounts &b = other.module.counts();
        return sent == other.sent && commands == other.commands && a.linesSent == b.linesSent &&
               a.boots == b.boots && a.reads == b.reads && a.firmwareBytes == b.firmwareBytes &&
               isSame(module.memory(), other.module.memory());
    }

    test::ManualTimers timers;
    QByteArray sent;
    QStringList commands;
    VirtualModule module;
};

ModuleOptions optionsOf(const std::vector<fuzz::Step> &steps)
{
    ModuleOptions options;
    for (const fuzz::Step &step : steps) {
        if (step.what == 'g') {
            options.faults.garbageInFront = true;
            options.faults.garbageLines = true;
            options.faults.seed = static_cast<quint32>(step.number(100'000));
        } else if (step.what == 'h') {
            options.faults.hangUpAtByte = step.number(10'000);
        } else if (step.what == 'm') {
            options.faults.mergesStatus = true;
        } else if (step.what == 'D') {
            options.tellsEnd = true;
        } else {
            break;
        }
    }
    return options;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::vector<fuzz::Step> steps = fuzz::stepsOf(data, size);
    Heard whole(optionsOf(steps));
    Heard cut(optionsOf(steps));
    FieldModule inTheField(
        {},
        [](const QByteArray &datagram) {
            fuzz::require(datagram.size() <= CommandInterpreter::longestSms + 100,
                          "what a module sends is bounded");
        },
        test::fixedEnvironment().now);
    const auto receive = [&](const QByteArray &bytes) {
        whole.module.receive(bytes);
        for (const char byte : bytes) {
            cut.module.receive(QByteArray(1, byte));
        }
    };
    for (const fuzz::Step &step : steps) {
        switch (step.what) {
        case 'c':
            applyByItself(fromWindows1252(step.bytes));
            break;
        case 'r':
            receive(step.bytes);
            break;
        case 'f':
            if (!step.bytes.contains('\n')) { // one by one, what comes behind the drop may become a line
                whole.module.receive(step.flood());
                cut.module.receive(step.flood());
            }
            break;
        case 't':
            whole.timers.advance(Milliseconds(step.number(20'000)));
            cut.timers.advance(Milliseconds(step.number(20'000)));
            break;
        case 'd':
            inTheField.receive(step.bytes);
            break;
        case 'w':
            inTheField.wake();
            break;
        case 'o':
            whole.module.start();
            cut.module.start();
            break;
        default:
            break;
        }
    }
    fuzz::require(whole == cut, "bytes mean the same however they are cut");
    return 0;
}
