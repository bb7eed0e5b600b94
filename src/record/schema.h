#pragma once

#include "record/record_database.h"

namespace ktr {

/// The version of the tables that this program knows, of a file or of a server's database.
int newestSchema(const RecordDatabase &database);

/// The version of a record's tables: 0 of an empty file, -1 of another program's database or after a failure.
int schemaOf(RecordDatabase &database);

/// Makes the tables, or brings older ones forward. A record of a newer program and another program's database
/// are refused with a message; nothing is written to them.
Status bringForward(RecordDatabase &database);

/// The same in a server's database that may have none yet; needs the right to make a schema there.
Status makeTables(RecordDatabase &database);

} // namespace ktr
