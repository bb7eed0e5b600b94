#pragma once

#include "config/edit_history.h"
#include "lang/text_table.h"

#include <QString>

#include <functional>

namespace ktr {

/// What the pages work on, and where their messages go.
struct EditorContext
{
    Document &document;
    EditHistory &history;
    const TextTable &texts;
    QString language = QStringLiteral("english"); ///< the section of language.ini that is in the table
    bool expert = false;                          ///< the last three bytes of the MAC address may be edited

    /// A line in the status bar.
    std::function<void(const QString &line)> showStatus = [](const QString &) {};
    /// A message in a window of its own; returns at once.
    std::function<void(const QString &text)> showMessage = [](const QString &) {};

    bool isGerman() const { return language == QLatin1String("deutsch"); }
};

} // namespace ktr
