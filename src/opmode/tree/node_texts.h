#pragma once

#include "lang/text_table.h"

#include <QString>

#include <string>
#include <string_view>

namespace ktr {

/// The texts of a station's fixed nodes in the language of the program.
struct StationCaptions
{
    QString notifications;
    QString history;
    QString inputValues;
    bool operator==(const StationCaptions &) const = default;
};

StationCaptions stationCaptions(const TextTable &texts);

/// The caption of an input value, channel 1 to 18; the blanks at its end align the values.
QString channelCaption(int channel);

/// A text as nodes and their file hold it, UTF-8: without what no such file can hold, which are control
/// characters and halves of characters.
std::string storedText(const QString &text);

/// The text that is stored as these bytes. A byte-order mark that it begins with belongs to it.
QString textOf(std::string_view stored);

/// The key of a station's branch, one of `branches`, and that of an entry under it, from its last part.
QString branchKey(const QString &kennung, std::string_view branch);
QString entryKey(const QString &kennung, std::string_view branch, const QString &entry);

} // namespace ktr
