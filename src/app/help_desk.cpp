#include "app/help_desk.h"

#include "app/trial/trial_folder.h"
#include "app/trial/trial_notice.h"
#include "config/configuration_file.h"
#include "help/help_menu.h"
#include "help/keys_window.h"
#include "help/manual_texts.h"
#include "help/report_window.h"
#include "lang/text_table.h"
#include "look/palettes.h"
#include "look/program_name.h"
#include "opmode/window/opmode_menus.h"

#include <QApplication>
#include <QMessageBox>
#include <QThreadPool>

namespace ktr {

namespace {

const QString operationalWindow = QStringLiteral("Form_betriebsmodus");

void bringUp(QWidget &window)
{
    window.show();
    window.raise();
    window.activateWindow();
}

/// The keys of the operational mode, of its window where it is open.
QList<KeyEntry> operationalKeys(const TextTable &texts)
{
    const QString name = texts.text(Text::OperationalMode);
    for (const QWidget *window : QApplication::topLevelWidgets()) {
        if (window->objectName() == operationalWindow) {
            return keysOf(*window, name);
        }
    }
    QMainWindow unused;
    OpmodeMenus(unused).applyTexts(texts);
    return keysOf(unused, name);
}

} // namespace

HelpDesk::HelpDesk(QMainWindow &window, Services services)
    : m_main(window),
      m_services(std::move(services)),
      m_keys(m_services.texts),
      m_trials(m_services.trialProgram)
{
    connect(&m_trials, &TrialLauncher::statusMessage, this, m_services.showStatus);
    connect(&m_trials, &TrialLauncher::failed, this, &HelpDesk::tellFailure);
    serve(window);
    if (m_trials.isAvailable() && !m_services.trial) { // what a killed one has left may be much
        QThreadPool::globalInstance()->start([] { TrialFolder::removeAbandoned(); });
    }
}

HelpDesk::~HelpDesk() = default;

void HelpDesk::serve(QMainWindow &window)
{
    HelpMenu::Commands commands;
    commands.showKeys = [this, &window] { showKeys(window); };
    commands.report = [this, &window] { report(window); };
    commands.welcome = [this] { welcome(); };
    commands.tryModule = trial(TrialKind::Module);
    commands.tryFleet = trial(TrialKind::Fleet);
    new HelpMenu(window, m_keys, commands);
    if (m_services.trial) {
        auto *notice = new TrialNotice(*m_services.trial, m_services.trialTrouble, &window);
        window.addToolBarBreak();
        window.addToolBar(notice);
    }
}

/// Nothing where no program can be started, and in a trial itself.
std::function<void()> HelpDesk::trial(TrialKind kind)
{
    if (!m_trials.isAvailable() || m_services.trial) {
        return nullptr;
    }
    return [this, kind] {
        const TrialLooks looks{m_services.language(), isDark(QApplication::palette())};
        m_trials.start(kind, looks, [this, kind](const QString &folder, QStringList &arguments) {
            if (kind == TrialKind::Module) {
                return m_services.prepareModuleTrial(folder);
            }
            arguments += QStringLiteral("-operational");
            return Status::done();
        });
    };
}

/// In front of whatever window is in use: that of the operational mode hides the other.
void HelpDesk::tellFailure(const QString &text)
{
    QWidget *above = QApplication::activeWindow();
    auto *box = new QMessageBox(QMessageBox::Warning, QString(programName), text, QMessageBox::Ok,
                                above != nullptr     ? above
                                : m_main.isVisible() ? &m_main
                                                     : nullptr);
    box->setObjectName(QStringLiteral("box_trialFailed"));
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

void HelpDesk::welcome()
{
    if (m_welcome == nullptr) {
        WelcomeWindow::Commands commands;
        commands.newStation = m_services.newStation;
        commands.open = m_services.open;
        commands.tryModule = trial(TrialKind::Module);
        commands.tryFleet = trial(TrialKind::Fleet);
        commands.manual = [this] { m_keys.showAbout(nullptr); };
        commands.languages = m_services.languages();
        commands.language = m_services.language;
        commands.chooseLanguage = m_services.chooseLanguage;
        m_welcome = new WelcomeWindow(commands, &m_main);
    }
    bringUp(*m_welcome);
}

/// Who puts it away goes on in the language that is shown.
void HelpDesk::welcomeOnce()
{
    if (!WelcomeWindow::isDismissed()) {
        welcome();
        connect(m_welcome, &QDialog::finished, this, [this] {
            WelcomeWindow::dismiss();
            m_services.keepLanguage();
        });
    }
}

void HelpDesk::closeWelcome()
{
    if (m_welcome != nullptr) {
        m_welcome->close();
    }
}

void HelpDesk::showKeys(QMainWindow &window)
{
    if (m_keysWindow == nullptr) {
        m_keysWindow =
            new KeysWindow(keysOf(m_main, QString(programName)) + operationalKeys(m_services.texts), &window);
    }
    bringUp(*m_keysWindow);
}

ReportSources HelpDesk::sources() const
{
    ReportSources sources;
    sources.version = programName + u' ' + programVersion();
    sources.language = ManualTexts::presentLanguage();
    sources.logFiles = {m_services.logFile()};
    sources.events = m_services.lastEvent();
    return sources;
}

void HelpDesk::report(QMainWindow &window)
{
    if (m_report == nullptr) {
        m_report = new ReportWindow(sources(), m_services.askSave, &window);
    }
    bringUp(*m_report);
}

} // namespace ktr
