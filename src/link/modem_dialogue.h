#pragma once

#include "link/module_dialogue.h"

namespace ktr {

/// The dialogue over a serial line. Every line is handled in this order: log it, echo it, answer it, send OK.
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
