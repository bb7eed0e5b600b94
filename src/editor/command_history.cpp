#include "editor/command_history.h"

namespace ktr {

void CommandHistory::add(const QString &command)
{
    m_commands[m_index] = command;
    m_index = (m_index + 1) % capacity;
}

std::optional<QString> CommandHistory::back()
{
    if (m_index == 0) {
        return std::nullopt;
    }
    return m_commands[--m_index];
}

std::optional<QString> CommandHistory::forth()
{
    if (m_index + 1 == capacity) {
        return std::nullopt;
    }
    return m_commands[++m_index];
}

} // namespace ktr
