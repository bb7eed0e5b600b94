#pragma once

#include <QFileInfo>
#include <QUuid>

namespace ktr {

// The name that a file's new content has until it takes the place of the old: ".NAME.ktr-" and eight digits.

inline constexpr qsizetype digitsOfTemporaryName = 8;

inline QString beginOfTemporaryName(const QFileInfo &file)
{
    return u'.' + file.fileName() + QStringLiteral(".ktr-");
}

/// One that no other save has by chance.
inline QString newTemporaryName(const QFileInfo &file)
{
    return beginOfTemporaryName(file) +
           QUuid::createUuid().toString(QUuid::Id128).left(digitsOfTemporaryName);
}

inline bool isTemporaryName(const QString &name, const QFileInfo &file)
{
    const QString begin = beginOfTemporaryName(file);
    return name.startsWith(begin) && name.size() == begin.size() + digitsOfTemporaryName;
}

} // namespace ktr
