#include "app/interface_language.h"

#include "app/language_setting.h"
#include "lang/load_texts.h"
#include "look/program_name.h"
#include "platform/files.h"

#include <QApplication>
#include <QFileInfo>
#include <QMessageBox>

namespace ktr {

InterfaceLanguage::InterfaceLanguage(QWidget &window, TextTable &texts, EditorContext &context,
                                     QString programFolder)
    : m_window(window), m_texts(texts), m_context(context), m_programFolder(std::move(programFolder))
{}

QString InterfaceLanguage::file() const
{
    const QString own = joinPath(m_programFolder, QStringLiteral("language.ini"));
    return QFileInfo::exists(own) ? own : deliveredFile(QStringLiteral("language.ini"));
}

bool InterfaceLanguage::useAdded(const QString &code)
{
    const std::optional<AddedLanguage> language = addedLanguage(code, m_programFolder);
    QTranslator texts;
    if (!language || !texts.load(language->file)) {
        m_unreadable = language ? language->file : QString();
        return false;
    }
    takeTexts(m_texts, texts);
    m_context.language = code;
    m_translations.use(code, language->file);
    showLocale();
    Q_EMIT changed();
    return true;
}

QString InterfaceLanguage::nameOf(const QString &called) const
{
    for (const auto &[code, name] :
         {std::pair(QLatin1String("en"), englishLanguage), std::pair(QLatin1String("de"), germanLanguage)}) {
        if (called.compare(code, Qt::CaseInsensitive) == 0 ||
            called.compare(name, Qt::CaseInsensitive) == 0) {
            return name;
        }
    }
    return addedLanguage(called, m_programFolder) ? called : QString();
}

void InterfaceLanguage::use(const QString &language)
{
    if (useAdded(language)) {
        return;
    }
    const LoadedTexts loaded = LoadTexts(m_texts, language, file());
    const bool builtIn = loaded.source == LoadedTexts::Source::BuiltIn;
    m_context.language = builtIn ? QString(englishLanguage) : language;
    if (builtIn) {
        m_missingTexts = loaded.message;
        showMissingTexts();
    }
    m_translations.use(m_context.language);
    showLocale();
    Q_EMIT changed(); // what was told before goes
    if (!builtIn && !loaded.message.isEmpty()) {
        Q_EMIT statusMessage(loaded.message);
    }
    if (!m_unreadable.isEmpty()) {
        Q_EMIT statusMessage(
            tr("The file of a language cannot be read: %1").arg(std::exchange(m_unreadable, QString())));
    }
}

/// What is there and what is still to come has it; what is written for the module and into files does not.
void InterfaceLanguage::showLocale() const
{
    const QLocale locale = shownLocale(m_context.language, m_context.document.environment().locale);
    QLocale::setDefault(locale);
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows) {
        window->setLocale(locale);
    }
}

void InterfaceLanguage::showMissingTexts()
{
    if (m_window.isVisible() && !m_missingTexts.isEmpty()) {
        auto *box = new QMessageBox(QMessageBox::Information, QString(programName),
                                    std::exchange(m_missingTexts, QString()), QMessageBox::Ok, &m_window);
        box->setAttribute(Qt::WA_DeleteOnClose);
        box->open();
    }
}

QList<StationCaptions> InterfaceLanguage::captionsOfAll() const
{
    QList<StationCaptions> result;
    for (const QLatin1StringView language : {englishLanguage, germanLanguage}) {
        TextTable texts;
        LoadTexts(texts, language, file());
        result += stationCaptions(texts);
    }
    for (const AddedLanguage &language : added()) {
        QTranslator translator;
        if (TextTable texts; translator.load(language.file)) {
            takeTexts(texts, translator);
            result += stationCaptions(texts);
        }
    }
    return result;
}

} // namespace ktr
