#pragma once

#include <QString>

namespace ktr {

/// A folder that no other user of a Unix system can enter: the session's, or where there is none, one in the
/// user's own. It is made where it is missing; empty when there is none.
QString privateFolder();

/// Whether a path is that of a folder itself, not of a link to one, that is this user's and that, on a Unix
/// system, no other user can enter.
bool isPrivateFolder(const QString &path);

} // namespace ktr
