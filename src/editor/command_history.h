#pragma once

#include <QString>

#include <array>
#include <optional>

namespace ktr {

/// The commands that were sent from an input line, for going back to them. The place for the next command
/// moves with going back and forth; after the last place comes the first again.
class CommandHistory
{
public:
    static constexpr std::size_t capacity = 101;

    void add(const QString &command);

    /// The command one place back; nothing at the first place.
    std::optional<QString> back();
    /// The command one place on, empty where none was stored yet; nothing at the last place.
    std::optional<QString> forth();

private:
    std::array<QString, capacity> m_commands;
    std::size_t m_index = 0;
};

} // namespace ktr
