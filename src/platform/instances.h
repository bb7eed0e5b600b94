#pragma once

#include <QString>

namespace ktr {

/// The name of a local socket under which the programs of one user find each other. Where such sockets are
/// files, it leads into a folder that no other user can enter, so that nobody else can stand there; empty
/// when there is no such folder.
QString privateSocketName(const QString &name);

/// Lets another process bring its window to the front, where the system would refuse that to a program that
/// the user is not working with.
void allowToFront(qint64 processId);

} // namespace ktr
