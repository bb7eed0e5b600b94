#pragma once

#include "platform/status.h"

#include <QByteArray>
#include <QString>

namespace ktr {

/// What a user keeps about a list of stations in a file of its own: "nodes.groups" beside "nodes.xml". For
/// the address of a record on a server it stands among this user's data on this machine. `suffix` as in
/// ".groups".
QString fileBesideList(const QString &list, QLatin1StringView suffix);

/// Nothing in `text` and success where there is no such file. One that is not in UTF-8 is refused, so that it
/// is not written over either.
Status readBesideList(const QString &path, QByteArray &text);
Status writeBesideList(const QString &path, const QByteArray &text);

} // namespace ktr
