#pragma once

#include <QString>
#include <QStringList>

namespace ktr {

/// Up to which event texts are in the index; NULL when none is.
inline const QString searchableUpto =
    QStringLiteral("(SELECT CAST(value AS BIGINT) FROM setting WHERE name = 'searchable')");

/// Up to which event the table of kinds has them; NULL when it has none.
inline const QString sortedUpto =
    QStringLiteral("(SELECT CAST(value AS BIGINT) FROM setting WHERE name = 'sorted')");

/// Sets a setting; `values` are its name and its value.
inline QString settingStatement(const QString &values)
{
    return QStringLiteral("INSERT INTO setting(name, value) VALUES(%1) ON CONFLICT(name)"
                          " DO UPDATE SET value = excluded.value")
        .arg(values);
}

/// Numbers as a statement has them behind IN.
inline QString listOf(const auto &numbers)
{
    QStringList texts;
    for (const auto number : numbers) {
        texts += QString::number(static_cast<qint64>(number));
    }
    return u'(' + texts.join(u',') + u')';
}

} // namespace ktr
