#include "app/side_windows.h"

#include "app/about_window.h"
#include "app/appearance_setting.h"
#include "app/preview_window.h"
#include "app/printing.h"
#include "app/settings_window.h"
#include "look/style.h"

#include <QApplication>

namespace ktr {

SideWindows::SideWindows(QWidget &window, const Document &document, const TextTable &texts)
    : m_window(window), m_document(document), m_texts(texts)
{}

PrintoutOptions SideWindows::printoutOptions() const
{
    const Environment &environment = m_document.environment();
    return {m_document.fileName(), environment.locale, environment.now()};
}

void SideWindows::print()
{
    const Printout printout(m_document.configuration(), m_texts, printoutOptions());
    printWithDialog(&m_window, printout);
}

void SideWindows::showPreview()
{
    if (m_preview == nullptr) {
        m_preview = new frm_preview(m_texts, &m_window);
        m_preview->setAttribute(Qt::WA_DeleteOnClose);
    }
    m_preview->showConfiguration(m_document.configuration(), printoutOptions());
}

void SideWindows::showSettings()
{
    if (m_settings == nullptr) {
        const auto changeAppearance = [](Appearance appearance) {
            setAppearanceSetting(appearance);
            applyAppearance(*qApp, appearance);
        };
        m_settings = new frmSettings(
            m_texts, [this](const QString &language) { Q_EMIT languageChosen(language); },
            appearanceSetting(), changeAppearance, &m_window);
        m_settings->setAttribute(Qt::WA_DeleteOnClose);
    }
    m_settings->show();
    m_settings->activateWindow();
}

void SideWindows::showAbout()
{
    if (m_about == nullptr) {
        m_about = new frmAbout(m_texts, &m_window);
        m_about->setAttribute(Qt::WA_DeleteOnClose);
    }
    m_about->show();
    m_about->activateWindow();
}

void SideWindows::applyTexts()
{
    const auto apply = [](auto &window) {
        if (window != nullptr) {
            window->applyTexts();
        }
    };
    apply(m_preview);
    apply(m_about);
    apply(m_settings);
}

void SideWindows::close()
{
    for (QWidget *window : std::initializer_list<QWidget *>{m_preview, m_about, m_settings}) {
        if (window != nullptr) {
            window->close();
        }
    }
}

} // namespace ktr
