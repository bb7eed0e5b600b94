#pragma once

#include "platform/status.h"
#include "year/stories.h"

namespace ktr::year {

/// Plays the days of so many stations in fast motion into a new `nodes.xml` in a folder and the record beside
/// it: through what interprets the messages, the book of alarms and the record's writer, by a clock of its
/// own. The list holds the last month, the record all.
Status play(const QString &folder, int stations, int days);

/// Compares what the record tells of each alarm, page by page, with the stories: when it came, how often, who
/// acknowledged it when, what was written, when it was over, and the events that belong to it. A failure
/// names the first difference. `alarms`: how many there are.
Status compare(const QString &folder, int stations, int days, qint64 &alarms);

/// Writes the lines that `ktrcli record export --kind alarms` must have, without the alarms' numbers, in the
/// order of their letters.
Status writeExpected(const QString &path, int stations, int days);

/// How the file of nodes in such a folder is called.
QString listOf(const QString &folder);

} // namespace ktr::year
