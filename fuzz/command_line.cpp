// Any words on the command lines of both programs, a line each. Nothing that they ask for is done.

#include "app/command_line.h"

#include "cli/console.h"
#include "cli/usage.h"
#include "support/require.h"

#include <algorithm>

using namespace ktr;

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    // Help texts and complaints; reports of the fuzzer and the sanitizers do not come this way.
    stdout = std::fopen("/dev/null", "w");
    stderr = std::fopen("/dev/null", "w");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QStringList words =
        QString::fromLocal8Bit(QByteArrayView(data, static_cast<qsizetype>(size))).split(u'\n');

    const CommandLine options = CommandLine::parse(words);
    fuzz::require(options.load || options.fileName.isEmpty(), "a file is named by -load only");
    const auto isLower = [](QChar a, QChar b) { return a.toLower() == b; };
    fuzz::require(std::ranges::equal(options.fileNameAsWritten, options.fileName, isLower),
                  "both spellings are the same part of the line");

    const cli::Call call = cli::understand(words);
    fuzz::require(!call.code || *call.code == cli::done || *call.code == cli::wrongUsage,
                  "a command line is understood or wrong");
    fuzz::require(call.code || (call.command != nullptr && call.arguments != nullptr),
                  "there is something to do, or a reason why not");
    return 0;
}
