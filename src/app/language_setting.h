#pragma once

#include <QString>

namespace ktr {

/// The name under which `language.ini` and the registry know the built-in language.
inline constexpr QLatin1StringView englishLanguage("english");
inline constexpr QLatin1StringView germanLanguage("deutsch");

/// The language in the user's registry, known or not; empty when there is none.
QString languageSetting();

/// Keeps the language for the next start. The key must exist; a failure is ignored.
void setLanguageSetting(const QString &language);

/// The language to start with. If none is kept yet, creates the key with English.
QString languageAtStart();

} // namespace ktr
