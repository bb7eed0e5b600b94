#pragma once

#include <QString>
#include <QStringList>

namespace ktr {

/// The name of a local socket under which the programs of one user find each other. Where such sockets are
/// files, it leads into a folder that no other user can enter, so that nobody else can put a socket there;
/// empty when there is no such folder.
QString privateSocketName(const QString &name);

/// The same of programs which belong to a folder; where sockets are no files, its last name leads.
QString socketNameIn(const QString &folder, const QString &name);

/// Several programs meet under a name. Where sockets are files each of them has one of its own, so that none
/// can take away another's: newSocketName() is a name for one more, and socketNames() are those that are
/// there, the ones that killed programs left included.
QString newSocketName(const QString &name);
QStringList socketNames(const QString &name);

/// Lets another process bring its window to the front, where the system would refuse that to a program that
/// the user is not working with.
void allowToFront(qint64 processId);

} // namespace ktr
