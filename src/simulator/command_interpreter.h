#pragma once

#include "simulator/module_memory.h"

#include <QString>

namespace ktr {

/// What the module made of one command.
struct Understood
{
    enum class Then { Nothing, SendArchive, TakeFirmware, Restart };

    bool accepted = false;    ///< applied to the memory; a refused command changes nothing there
    bool wantsAnswer = false; ///< upper-case letters and "§" ask for an answer
    QString answerText;       ///< at most 160 characters; a refusal says what was expected
    Then then = Then::Nothing;

    /// The command that ends a configuration.
    bool isClosing() const { return then == Then::Restart; }
};

/// Takes the commands of a configuration and of the service page, in both letter cases, and keeps their
/// contents in a module's memory.
class CommandInterpreter
{
public:
    static constexpr int longestSms = 160; ///< characters

    /// The memory must outlive the interpreter.
    explicit CommandInterpreter(ModuleMemory &memory) : m_memory(memory) {}

    /// Applies one command, given without line end.
    Understood apply(const QString &command);

private:
    ModuleMemory &m_memory;
};

} // namespace ktr
