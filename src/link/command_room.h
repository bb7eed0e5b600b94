#pragma once

#include "config/fields_in_files.h"
#include "link/command_sequence.h"

#include <QHash>
#include <QString>
#include <QStringList>

namespace ktr {

/// For which of the fields (by their keys) the values of `wanted`, where they were those of `before`, make a
/// command that is too long to be sent: why, to go on from the value in a message. A command that is too long
/// for other fields' sake is none of theirs.
QHash<QString, QString> fieldsWithoutRoom(const Configuration &before, const Configuration &wanted,
                                          const QStringList &keys, const CommandContext &context);

/// The same as FieldsInFiles wants it. How long a command is does not depend on the rest of its context.
FieldsInFiles::Check roomCheck();

} // namespace ktr
