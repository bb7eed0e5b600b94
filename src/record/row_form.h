#pragma once

#include "platform/status.h"
#include "record/record_rows.h"

#include <QByteArray>

#include <vector>

namespace ktr {

/// Rows as they wait in a file, which another version of the program may read: a JSON object with the form's
/// number and the rows in their order, each with the name of its kind and its fields; what has the value of a
/// fresh row is left out. Example: {"form":1,"rows":[{"row":"value","station":3,"channel":1,"value":"22"}]}
QByteArray rowForm(const std::vector<RecordRow> &rows);

/// False where it is no such thing, or of a newer form.
bool readRowForm(const QByteArray &form, std::vector<RecordRow> &rows);

} // namespace ktr
