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
#include "opmode/window/message_line.h"
#include "opmode/window/opmode_menus.h"
#include "opmode/window/opmode_pages.h"
#include "opmode/window/pane_keys.h"

#include <QApplication>
#include <QLibrary>
#include <QMessageBox>
#include <QSqlDatabase>
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

/// Null while it is not open.
const QWidget *openOperationalWindow()
{
    for (const QWidget *window : QApplication::topLevelWidgets()) {
        if (window->objectName() == operationalWindow) {
            return window;
        }
    }
    return nullptr;
}

/// What its status bar told; empty while it is not open.
QString operationalMessages()
{
    const QWidget *window = openOperationalWindow();
    const auto *line = window == nullptr ? nullptr : window->findChild<const MessageLine *>();
    return line == nullptr ? QString() : line->messages().join(u'\n');
}

/// The drivers, and the version of PostgreSQL's library where there is one.
QStringList databaseFacts()
{
    QStringList facts{QStringLiteral("Database drivers: ") +
                      QSqlDatabase::drivers().join(QLatin1String(", "))};
    for (const char *name : {"pq", "libpq"}) {
        constexpr int interface = 5;
        QLibrary library(QLatin1String(name), interface);
        using Version = int (*)();
        if (const auto version = reinterpret_cast<Version>(library.resolve("PQlibVersion"))) {
            constexpr int major = 10'000; // 150016 is 15.16
            facts +=
                QStringLiteral("PostgreSQL library: %1.%2").arg(version() / major).arg(version() % major);
            break;
        }
    }
    return facts;
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

/// Also of a window that is not open.
QList<KeyEntry> HelpDesk::operationalKeys()
{
    const QString name = m_services.texts.text(Text::OperationalMode);
    QList<KeyEntry> keys;
    if (const QWidget *window = openOperationalWindow()) {
        keys = keysOf(*window, name);
    } else {
        QMainWindow unused;
        OpmodeMenus menus(unused);
        menus.applyTexts(m_services.texts);
        menus.setPages(OpmodePages::captionsIn(m_services.texts));
        const HelpMenu help(unused, m_keys, {});
        keys = keysOf(unused, name);
        keys += KeyEntry{name,
                         {},
                         QCoreApplication::translate("ktr::CurvesPage", "Remove from the curves"),
                         QKeySequence(Qt::Key_Delete).toString(QKeySequence::NativeText)};
        keys += KeyEntry{name,
                         {},
                         QCoreApplication::translate("ktr::NotificationPage", "Copy"),
                         QKeySequence(QKeySequence::Copy).toString(QKeySequence::NativeText)};
        QWidget parts;
        const PaneKeys turns(parts, {});
        keys += keysOf(parts, name);
    }
    return keys << KeyEntry{name,
                            {},
                            tr("Acknowledge, in the lists of alarms and notifications"),
                            QKeySequence(Qt::Key_Space).toString(QKeySequence::NativeText)};
}

void HelpDesk::showKeys(QMainWindow &window)
{
    if (m_keysWindow == nullptr) {
        const QWidget &manual = m_keys.manualWindow();
        m_keysWindow = new KeysWindow(keysOf(m_main, QString(programName)) + operationalKeys() +
                                          keysOf(manual, manual.windowTitle()),
                                      &window);
    }
    bringUp(*m_keysWindow);
}

ReportSources HelpDesk::sources() const
{
    ReportSources sources;
    sources.version = programName + u' ' + programVersion();
    sources.language = ManualTexts::presentLanguage();
    sources.logFiles = {m_services.logFile()};
    sources.facts = databaseFacts();
    sources.facts += m_services.listFacts();
    sources.excerpts += {QStringLiteral("Told by the main window"), m_services.events()};
    sources.excerpts += {QStringLiteral("Told by the operational mode"), operationalMessages()};
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
