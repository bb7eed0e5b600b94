#pragma once

#include <QString>
#include <QVariant>

namespace ktr {

// Values as statements get them bound. Overloads of these in a namespace without a name would hide them from
// other sources that are compiled as one with theirs.

/// A server's texts cannot hold a NUL; its symbol stands for it.
inline QString withoutNul(const QString &text)
{
    return text.contains(QChar(u'\0')) ? QString(text).replace(QChar(u'\0'), QChar(u'\u2400')) : text;
}

/// Never NULL, which an empty text would be bound as.
inline QVariant bound(const QString &text)
{
    return text.isNull() ? QStringLiteral("") : text;
}

inline QVariant bound(qint64 number)
{
    return number;
}

inline QVariant bound(int number)
{
    return number;
}

inline QVariant bound(const QVariant &value)
{
    return value;
}

inline QVariant textOrNull(const QString &text)
{
    return text.isEmpty() ? QVariant() : QVariant(text);
}

inline QVariant numberOrNull(qint64 number)
{
    return number == 0 ? QVariant() : QVariant(number);
}

} // namespace ktr
