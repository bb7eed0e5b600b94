#pragma once

#include "platform/status.h"

#include <QByteArray>
#include <QString>

namespace ktr {

/// Reads a whole file of at most `limit` bytes into `content`.
Status readFile(const QString &path, QByteArray &content, qint64 limit);

/// Replaces a file whole or not at all, and so that it outlives a power cut: what stood there before
/// stays untouched until the new content is on the disk. A new file is readable for its owner only
/// (a configuration holds the SIM's PIN); an existing one keeps its permissions, a link its target.
/// A device or a pipe is simply written to.
Status replaceFile(const QString &path, const QByteArray &content);

} // namespace ktr
