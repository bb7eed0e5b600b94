// Any file as a configuration: what was read, written and read again is the same, and what is found to have
// no problem reaches a module as it is meant.

#include "config/configuration_file.h"
#include "config/fields.h"
#include "link/problems.h"
#include "simulator/command_interpreter.h"
#include "simulator/held_form.h"
#include "support/environment.h"
#include "support/require.h"

#include <algorithm>

using namespace ktr;

namespace {

Configuration throughFile(const Configuration &configuration, const Environment &environment)
{
    Configuration read;
    const QByteArray written = writeConfiguration(configuration, environment);
    const ReadReport report = readConfiguration(written, read, environment);
    fuzz::require(bool(report.document), "a configuration that was written can be read");
    return read;
}

void transmit(const Configuration &configuration, const Environment &environment)
{
    const CommandContext context = {false, environment.locale, environment.now()};
    const bool isSound = findProblems(configuration, context, {}).isEmpty();
    ModuleMemory memory;
    CommandInterpreter module(memory);
    Configuration sent = configuration;
    CommandSequence sequence;
    sequence.start();
    while (const auto next = sequence.next(sent, context)) {
        const auto isControl = [](QChar c) { return c < u' ' && c != u'\t'; };
        fuzz::require(std::ranges::none_of(next->command, isControl), "a command is one line");
        if (next->command.size() <= longestCommand) {
            const Understood understood = module.apply(next->command);
            fuzz::require(understood.accepted || !isSound, "a module takes a command without a problem");
        }
    }
    if (isSound) {
        const Configuration meant = throughFile(asHeld(configuration, environment.locale), environment);
        fuzz::require(
            differences(meant, throughFile(memory.configuration, environment), environment.locale).isEmpty(),
            "a module holds what was meant");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray document(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const QLocale locale = size % 2 == 0 ? test::english() : test::german();
    const Environment environment = test::fixedEnvironment(locale);
    Configuration read;
    if (!readConfiguration(document, read, environment).document) {
        return 0;
    }
    const Configuration again = throughFile(read, environment);
    fuzz::require(differences(read, again, locale).isEmpty(), "what was written is read again");
    fuzz::require(writeConfiguration(again, environment) == writeConfiguration(read, environment),
                  "what was read again is written as before");
    transmit(read, environment);
    return 0;
}
