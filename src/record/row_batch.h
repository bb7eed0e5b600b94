#pragma once

#include "record/record_rows.h"

#include <vector>

namespace ktr {

/// Rows that are written together, or not at all. On a server the name of their writer and their number say
/// which they are: a batch that is there is not written a second time, whoever tries it.
struct RowBatch
{
    QString writer{};
    qint64 number = 0; ///< of the writer's batches; each is higher than the one before
    qint64 keeper = 0; ///< in whose time the rows came; 0: stations are not shared
    qint64 at = 0;     ///< when it was put together
    std::vector<RecordRow> rows{};
};

} // namespace ktr
