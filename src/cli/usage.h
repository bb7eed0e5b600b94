#pragma once

#include "cli/arguments.h"

#include <QCoreApplication>

#include <memory>

namespace ktr::cli {

/// What a command line asks for.
struct Call
{
    std::optional<int>
        code; ///< the exit code when there is nothing left to do: after a help text or a complaint
    int (*command)(const Arguments &arguments) = nullptr;
    std::unique_ptr<Arguments> arguments{};
    bool isPatient = false; ///< it goes on while nobody reads what it prints

    /// Gives the exit code.
    int run() const;
};

/// Understands the words behind the program's name, or complains; nothing that they ask for is done.
Call understand(const QStringList &words);

/// The application object that a command line needs. `argc` must outlive it.
std::unique_ptr<QCoreApplication> applicationFor(int &argc, char **argv);

} // namespace ktr::cli
