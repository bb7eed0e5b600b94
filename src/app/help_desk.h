#pragma once

#include "app/trial/trial_launcher.h"
#include "app/welcome_window.h"
#include "help/help_keys.h"
#include "help/key_list.h"
#include "help/report.h"

#include <QMainWindow>
#include <QPointer>

#include <functional>
#include <optional>

namespace ktr {

class KeysWindow;
class ReportWindow;

/// The menus "Help" of the program's two windows and what they open.
class HelpDesk : public QObject
{
    Q_OBJECT

public:
    struct Services
    {
        const TextTable &texts;
        std::function<QString()> logFile;       ///< of the conversation with the module
        std::function<QString()> events;        ///< of the status bar, a line each
        std::function<QStringList()> listFacts; ///< of the operational mode
        std::function<QString(const QString &proposal, const QString &filter)> askSave;
        std::function<void(const QString &line)> showStatus;
        std::function<Status(const QString &folder)> prepareModuleTrial; ///< puts what it begins with there
        std::function<void()> newStation;
        std::function<void()> open;
        std::function<QString()> language;
        std::function<std::vector<LanguageChoice>()> languages;
        std::function<void(const QString &language)> chooseLanguage; ///< from now on
        std::function<void()> keepLanguage; ///< of this run, where it was proposed to the user
        QString trialProgram{};             ///< what is started to try things out; empty for nothing
        std::optional<TrialKind> trial{};   ///< this run is such a trial
        QString trialTrouble{};             ///< what keeps its modules from working
    };

    /// All that is handed in must outlive it.
    HelpDesk(QMainWindow &window, Services services);
    ~HelpDesk() override;

    /// Fills the help menu of another window, such as that of the operational mode.
    void serve(QMainWindow &window);

    /// Shows what one can begin with.
    void welcome();
    /// The same at a start, unless it was put away before.
    void welcomeOnce();
    /// With the main window, which ends what it offers.
    void closeWelcome();

    HelpKeys &keys() { return m_keys; }

private:
    QList<KeyEntry> operationalKeys();
    void showKeys(QMainWindow &window);
    void report(QMainWindow &window);
    void tellFailure(const QString &text);
    ReportSources sources() const;
    std::function<void()> trial(TrialKind kind);

    QMainWindow &m_main;
    Services m_services;
    HelpKeys m_keys;
    TrialLauncher m_trials;
    QPointer<WelcomeWindow> m_welcome;
    QPointer<KeysWindow> m_keysWindow;
    QPointer<ReportWindow> m_report;
};

} // namespace ktr
