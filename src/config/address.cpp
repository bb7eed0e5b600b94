#include "config/address.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <limits>

namespace ktr {

namespace {

using Groups = std::array<int, 4>;

/// Nothing unless the text is four whole numbers of whatever size.
std::optional<Groups> groupsOf(const QString &text)
{
    const QStringList parts = text.split(u'.');
    Groups groups{};
    if (parts.size() != static_cast<qsizetype>(groups.size())) {
        return std::nullopt;
    }
    bool areNumbers = true;
    std::ranges::transform(parts, groups.begin(), [&](const QString &part) {
        bool isNumber = false;
        const int number = part.trimmed().toInt(&isNumber);
        areNumbers = areNumbers && isNumber;
        return number;
    });
    return areNumbers ? std::optional(groups) : std::nullopt;
}

bool areBytes(const Groups &groups)
{
    return std::ranges::all_of(groups, [](int group) { return group >= 0 && group <= 255; });
}

} // namespace

AddressDefect addressDefect(const QString &text)
{
    switch (text.count(u'.')) {
    case 0:
        return AddressDefect::NoDots;
    case 3:
        break;
    default:
        return AddressDefect::NotFourNumbers;
    }
    const auto groups = groupsOf(text);
    return groups && areBytes(*groups) ? AddressDefect::None : AddressDefect::NumberOutOfRange;
}

std::optional<quint32> addressNumber(const QString &text)
{
    const auto groups = groupsOf(text);
    if (!groups) {
        return std::nullopt;
    }
    qint64 number = 0;
    for (const int group : *groups) {
        number = number * 256 + group;
    }
    const bool fits = number >= 0 && number <= std::numeric_limits<quint32>::max();
    return fits ? std::optional(static_cast<quint32>(number)) : std::nullopt;
}

QString withoutLeadingZeros(const QString &address)
{
    const auto groups = groupsOf(address);
    if (!groups || !areBytes(*groups)) {
        return address;
    }
    QStringList parts;
    for (const int group : *groups) {
        parts += QString::number(group);
    }
    return parts.join(u'.');
}

} // namespace ktr
