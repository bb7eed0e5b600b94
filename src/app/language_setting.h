#pragma once

#include <QString>

namespace ktr {

/// The name under which `language.ini` and the registry know the built-in language.
inline constexpr QLatin1StringView englishLanguage("english");
inline constexpr QLatin1StringView germanLanguage("deutsch");

/// The language that the user's registry names, whatever it is; empty when there is none.
QString languageSetting();

/// Keeps the language for the next start. The key must exist; a failure is not told.
void setLanguageSetting(const QString &language);

/// The language to start with. Where none is kept yet, English is, and its key is created.
QString languageAtStart();

} // namespace ktr
