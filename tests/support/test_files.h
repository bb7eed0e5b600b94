#pragma once

#include <QFile>
#include <QTemporaryFile>

namespace ktr::test {

/// All that stands in a file; empty where it cannot be read.
inline QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Writes a file as any program does, not with our own routines.
[[nodiscard]] inline bool writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

/// Whether others than the owner may read a file; never where folders alone protect files, as on Windows.
inline bool othersMayRead(const QString &path)
{
    const auto others = QFile::ReadGroup | QFile::ReadOther;
    QTemporaryFile owners; // is made for its owner alone
    const bool isTold = owners.open() && (owners.permissions() & others) == QFile::Permissions();
    return isTold && (QFile::permissions(path) & others) != QFile::Permissions();
}

} // namespace ktr::test
