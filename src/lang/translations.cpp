#include "lang/translations.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLibraryInfo>

/// The linker would drop the resources of a static library that nobody names. (The macro declares a function
/// of the global namespace.)
static void takeResources()
{
    Q_INIT_RESOURCE(translations);
}

namespace ktr {

Translations::Translations()
{
    takeResources();
}

Translations::~Translations()
{
    use(QString());
}

bool Translations::use(const QString &language, const QString &file)
{
    const QString wanted = language == u"deutsch" || !file.isEmpty() ? language : QString();
    if (wanted == m_language) {
        return true;
    }
    if (!m_language.isEmpty()) {
        QCoreApplication::removeTranslator(&m_program);
        QCoreApplication::removeTranslator(&m_toolkit);
    }
    m_language = wanted;
    if (wanted.isEmpty()) {
        return true;
    }
    if (!load(language, file)) {
        m_language.clear();
        return false;
    }
    QCoreApplication::installTranslator(&m_toolkit);
    QCoreApplication::installTranslator(&m_program);
    return true;
}

/// The toolkit's own texts of another language stand beside the file, or where the system keeps them; without
/// them its buttons stay English.
bool Translations::load(const QString &language, const QString &file)
{
    if (file.isEmpty()) {
        const QString folder = QStringLiteral(":/translations");
        return m_toolkit.load(QStringLiteral("qtbase_de"), folder) &&
               m_program.load(QStringLiteral("ktrconfig_de"), folder);
    }
    const QString toolkit = QStringLiteral("qtbase_") + language;
    if (!m_toolkit.load(toolkit, QFileInfo(file).path())) {
        static_cast<void>(m_toolkit.load(toolkit, QLibraryInfo::path(QLibraryInfo::TranslationsPath)));
    }
    return m_program.load(file);
}

} // namespace ktr
