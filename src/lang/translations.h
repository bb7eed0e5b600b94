#pragma once

#include <QTranslator>

namespace ktr {

/// The program's own texts, and those of the toolkit, in the user's language: English as written in the
/// source, or German from the resources. Needs the application object; takes the German away when destroyed.
class Translations
{
public:
    Translations();
    Translations(const Translations &) = delete;
    Translations &operator=(const Translations &) = delete;
    ~Translations();

    /// "deutsch" gives German, whatever else English. Open windows are told by a language change event, and
    /// only when the language really changes.
    void use(const QString &language);

private:
    QTranslator m_toolkit;
    QTranslator m_program;
    bool m_german = false;
};

} // namespace ktr
