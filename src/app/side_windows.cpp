#include "app/side_windows.h"

#include "app/about_window.h"
#include "app/appearance_setting.h"
#include "app/compare_window.h"
#include "app/file_dialogs.h"
#include "app/foretell_window.h"
#include "app/preview_window.h"
#include "app/printing.h"
#include "app/settings_window.h"
#include "look/style.h"

#include <QApplication>

namespace ktr {

SideWindows::SideWindows(QWidget &window, Document &document, EditHistory &history, const TextTable &texts,
                         GoTo goTo)
    : m_window(window), m_document(document), m_history(history), m_texts(texts), m_goTo(std::move(goTo))
{}

SideWindows::~SideWindows() = default;

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
            m_texts,
            [this](const QString &language) {
                m_languageOfRun.clear();
                Q_EMIT languageChosen(language);
            },
            appearanceSetting(), changeAppearance, &m_window);
        m_settings->offerLanguages(addedLanguages(m_document.environment().programFolder));
        m_settings->setLanguageOfRun(m_languageOfRun);
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

CompareWindow &SideWindows::compareWindow(FileDialogs &dialogs)
{
    if (m_compare == nullptr) {
        m_compare = std::make_unique<CompareWindow>(
            CompareWindow::Services{m_document, m_history, m_texts,
                                    [&dialogs] { return dialogs.askOpen(QStringLiteral("*.xml|*.xml")); },
                                    [&dialogs](const QString &proposal) {
                                        return dialogs.askSave(proposal, QStringLiteral("*.csv|*.csv"));
                                    },
                                    m_goTo});
    }
    return *m_compare;
}

void SideWindows::showCompare(FileDialogs &dialogs)
{
    compareWindow(dialogs).appear();
}

void SideWindows::showCompareWith(FileDialogs &dialogs, const Configuration &other, const QString &title)
{
    CompareWindow &window = compareWindow(dialogs);
    window.compareWith(other, title);
    window.appear();
}

void SideWindows::showForetell(FileDialogs &dialogs)
{
    if (m_foretell == nullptr) {
        m_foretell = new ForetellWindow(
            {m_document, m_texts, [&dialogs] { return dialogs.askOpen(QStringLiteral("*.csv|*.csv")); },
             [&dialogs](const QString &proposal) {
                 return dialogs.askSave(proposal, QStringLiteral("*.csv|*.csv"));
             }},
            &m_window);
        m_foretell->setAttribute(Qt::WA_DeleteOnClose);
    }
    m_foretell->show();
    m_foretell->raise();
    m_foretell->activateWindow();
}

void SideWindows::closeCompare()
{
    if (m_compare != nullptr) {
        m_compare->close();
    }
}

TransmissionsWindow &SideWindows::showTransmissions(const TransmissionsWindow::Services &services,
                                                    bool &isNew)
{
    isNew = m_transmissions == nullptr;
    if (isNew) {
        m_transmissions = new TransmissionsWindow(services, &m_window);
        m_transmissions->setAttribute(Qt::WA_DeleteOnClose);
    }
    m_transmissions->show();
    m_transmissions->raise();
    m_transmissions->activateWindow();
    return *m_transmissions;
}

void SideWindows::applyTexts()
{
    const auto apply = [](auto &window) {
        if (window != nullptr) {
            window->applyTexts();
        }
    };
    apply(m_compare);
    apply(m_preview);
    apply(m_about);
    apply(m_settings);
    apply(m_transmissions);
    apply(m_foretell);
}

void SideWindows::close()
{
    for (QWidget *window : std::initializer_list<QWidget *>{m_compare.get(), m_preview, m_about, m_settings,
                                                            m_transmissions, m_foretell}) {
        if (window != nullptr) {
            window->close();
        }
    }
}

} // namespace ktr
