#pragma once

#include <QStringView>

#include <optional>

namespace ktr {

/// What the text of an entry of the history says: "DD.MM.YYYY HH:MM : IPn = value", or "?" for the time.
struct HistoryEntryText
{
    std::optional<qint32> minute; ///< of wall time since 2000; nothing for "?"
    QStringView time;             ///< as it stands there
    int input;
    QStringView value;
};

/// The text must outlive the result. Nothing for a text of another form or a time outside of this century.
std::optional<HistoryEntryText> splitHistoryEntry(QStringView text);

} // namespace ktr
