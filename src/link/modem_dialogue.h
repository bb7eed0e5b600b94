#pragma once

#include "link/module_dialogue.h"

namespace ktr {

/// The dialogue over a serial line. Every line is answered in the order: log, echo, what the line asks for,
/// OK.
///
///     module                 program
///     at+cpin?           ->  echo, config, OK          the module is caught in configuration mode
///     any other          ->  echo, see ModuleDialogue
class ModemDialogue : public ModuleDialogue
{
public:
    explicit ModemDialogue(NextCommand nextCommand)
        : ModuleDialogue(std::move(nextCommand), QStringLiteral("com"))
    {}

    std::vector<Action> lineReceived(const QString &received) override;
};

} // namespace ktr
