#pragma once

#include <QTranslator>

namespace ktr {

/// The program's own texts, and those of the toolkit, in the user's language: English as written in the
/// source, German from the resources, or another from a file. Needs the application object; takes the
/// language away when destroyed.
class Translations
{
public:
    Translations();
    Translations(const Translations &) = delete;
    Translations &operator=(const Translations &) = delete;
    ~Translations();

    /// "deutsch" gives German, a file (`ktrconfig_CODE.qm`) the language whose texts it has, all else
    /// English. Open windows are told by a language change event, and only when the language really changes.
    /// False when the file cannot be read; the language is English then.
    bool use(const QString &language, const QString &file = {});

private:
    bool load(const QString &language, const QString &file);

    QTranslator m_toolkit;
    QTranslator m_program;
    QString m_language; ///< installed; empty for English
};

} // namespace ktr
