#include "lang/translations.h"

#include <QCoreApplication>

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

void Translations::use(const QString &language)
{
    const bool german = language == QLatin1String("deutsch");
    if (german == m_german) {
        return;
    }
    m_german = german;
    if (!german) {
        QCoreApplication::removeTranslator(&m_program);
        QCoreApplication::removeTranslator(&m_toolkit);
        return;
    }
    // What was loaded once stays loaded; an installed translator that is empty would not be asked again.
    if (m_program.isEmpty()) {
        const QString folder = QStringLiteral(":/translations");
        if (!m_toolkit.load(QStringLiteral("qtbase_de"), folder) ||
            !m_program.load(QStringLiteral("ktrconfig_de"), folder)) {
            qWarning("The German texts are missing in the program's resources.");
        }
    }
    QCoreApplication::installTranslator(&m_toolkit);
    QCoreApplication::installTranslator(&m_program);
}

} // namespace ktr
