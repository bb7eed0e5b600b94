#pragma once

#include "config/edit_history.h"
#include "lang/languages.h"
#include "lang/text_table.h"

#include <QCoreApplication>
#include <QString>

#include <functional>

namespace ktr {

/// What the pages work on, and where their messages go.
struct EditorContext
{
    Document &document;
    EditHistory &history;
    const TextTable &texts;
    QString language =
        QStringLiteral("english"); ///< the section of language.ini, or the code of an added one
    bool expert = false;           ///< the last three bytes of the MAC address may be edited

    /// A line in the status bar.
    std::function<void(const QString &line)> showStatus = [](const QString &) {};
    /// A message in a window of its own; returns at once.
    std::function<void(const QString &text)> showMessage = [](const QString &) {};

    /// Tells what the last change did: again when it is undone, and how, where it replaced something.
    enum class Replaced { Nothing, Something };
    void tellStep(const QString &words, Replaced replaced = Replaced::Nothing) const
    {
        history.describe(words);
        showStatus(replaced == Replaced::Something ? withUndoHint(words) : words);
    }
    static QString withUndoHint(const QString &words)
    {
        return QCoreApplication::translate("Entries", "%1. Ctrl+Z takes it back").arg(words);
    }

    bool isGerman() const { return language == QLatin1String("deutsch"); }
    /// Of names of days and months.
    QLocale textLocale() const { return localeOf(language); }
};

} // namespace ktr
