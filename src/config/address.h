#pragma once

#include <QString>

#include <optional>

namespace ktr {

/// What keeps a text from being an IPv4 address or subnet mask, looked for in this order.
enum class AddressDefect { None, NoDots, NotFourNumbers, NumberOutOfRange };

/// An address is four whole numbers from 0 to 255 with dots between them; leading zeros are sound, as in
/// "010.000.000.001". In "192,168.20.15.1" a number is none.
AddressDefect addressDefect(const QString &text);

/// The number that stands for an address in a command: its four numbers weigh 256³, 256², 256 and 1.
/// Numbers outside 0..255 count, too, as long as the sum has 32 bits; nothing for any other text.
std::optional<quint32> addressNumber(const QString &text);

/// "010.000.000.001" as 10.0.0.1, since systems read 010 as an octal number. What is no address stays as it
/// is.
QString withoutLeadingZeros(const QString &address);

} // namespace ktr
