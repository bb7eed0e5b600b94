#pragma once

#include "platform/status.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace ktr {

/// What a user keeps about a list of stations in a file of its own: "nodes.groups" beside "nodes.xml". For
/// the address of a record on a server it stands among this user's data on this machine. `suffix` as in
/// ".groups".
QString fileBesideList(const QString &list, QLatin1StringView suffix);

/// Nothing in `text` and success where there is no such file. One that is not in UTF-8 is refused, so that it
/// is not written over either.
Status readBesideList(const QString &path, QByteArray &text);
/// What of such a file cannot be used, as a sentence with its name: why it cannot be read, or the first lines
/// that are not understood. Empty where all of it can be used.
QString troubleBesideList(const QString &path, const Status &read, const QStringList &remarks);
Status writeBesideList(const QString &path, const QByteArray &text);

} // namespace ktr
