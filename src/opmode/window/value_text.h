#pragma once

#include "platform/text_rules.h"

namespace ktr {

/// A value as it was received, a number with the decimal sign of the locale.
inline QString localValue(QStringView value, const QLocale &locale)
{
    QString text = value.trimmed().toString();
    if (toNumber(text)) {
        text = withDecimalPoint(text).replace(u'.', locale.decimalPoint());
    }
    return text;
}

} // namespace ktr
