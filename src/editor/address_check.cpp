#include "editor/address_check.h"

#include "platform/text_rules.h"

#include <QStringList>

#include <algorithm>

namespace ktr {

std::optional<Text> addressProblem(const QString &address)
{
    if (!address.contains(u'.')) {
        return Text::AddressWithoutDots;
    }
    const QStringList parts = address.split(u'.');
    if (parts.size() != 4) {
        return Text::AddressNotFourNumbers;
    }
    const auto isByte = [](const QString &part) {
        const auto number = toNumber(part);
        return number && *number > -1 && *number < 256;
    };
    return std::ranges::all_of(parts, isByte) ? std::nullopt : std::optional(Text::AddressNumberOutOfRange);
}

QString withoutLeadingZeros(const QString &address)
{
    QStringList parts = address.split(u'.');
    for (QString &part : parts) {
        while (part.size() > 1 && part.startsWith(u'0')) {
            part.remove(0, 1);
        }
    }
    return parts.join(u'.');
}

} // namespace ktr
