#include "app/form_main.h"

#include "app/about_window.h"
#include "app/appearance_setting.h"
#include "app/icons.h"
#include "app/language_setting.h"
#include "app/main_menu.h"
#include "app/message_dialog.h"
#include "app/preview_window.h"
#include "app/printing.h"
#include "app/problem_panel.h"
#include "app/program_name.h"
#include "app/settings_window.h"
#include "app/status_line.h"
#include "app/style.h"
#include "editor/gsm_page.h"
#include "lang/load_texts.h"
#include "platform/helper_program.h"
#include "platform/settings_store.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QFileInfo>
#include <QMessageBox>
#include <QMimeData>
#include <QScreen>
#include <QVBoxLayout>

namespace ktr {

namespace {

const QString storeName = QStringLiteral("KTR_Config");
const QString configurationFilter = QStringLiteral("*.xml|*.xml");
constexpr Milliseconds otherEnds{1000};
constexpr qsizetype titleCharacters = 74;

/// A question without a way out: it must be answered.
class Answered : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *, QEvent *event) override
    {
        const bool escape =
            event->type() == QEvent::KeyPress && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape;
        if (escape || (event->type() == QEvent::Close && event->spontaneous())) {
            event->ignore();
            return true;
        }
        return false;
    }
};

bool ask(QWidget *parent, const QString &caption, const QString &question)
{
    QMessageBox box(QMessageBox::Question, caption, question, QMessageBox::Yes | QMessageBox::No, parent);
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(QMessageBox::Yes);
    Answered answered;
    box.installEventFilter(&answered);
    return box.exec() == QMessageBox::Yes;
}

} // namespace

FormMain::FormMain(const Services &services)
    : m_services(services),
      m_document(services.environment),
      m_history(m_document),
      m_context{m_document, m_history, m_texts},
      m_link(services.serial, services.timers, services.environment, services.ports),
      m_dialogs(this, services.environment.programFolder),
      m_instance(services.timers, services.instanceName)
{
    setObjectName(QStringLiteral("FormMain"));
    setWindowIcon(icon(IconName::Application));
    setAcceptDrops(true);
    m_context.tell = [this](const QString &line) { tell(line); };
    m_context.showMessage = [this](const QString &text) { showMessage(text); };
    m_wait.setObjectName(QStringLiteral("Tmr_wait"));
    m_wait.setSingleShot(true);
    m_problemTimer.setSingleShot(true);
    layOut();
    connectMenu();
    connectDocument();
    connectLink();
    connect(&m_instance, &SingleInstance::closeRequested, this, &QWidget::close);
}

FormMain::~FormMain() = default;

void FormMain::layOut()
{
    m_menu = new MainMenu(*this);
    auto *body = new QWidget(this);
    auto *layout = new QVBoxLayout(body);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    m_tabs = new PageTabs(
        m_context, [this](PageIndex index) { return buildPage(index); }, body);
    m_problemPanel = new ProblemPanel(
        [this](const Problem &problem) {
            return m_tabs->describe({problem.control, problem.entry});
        },
        body);
    layout->addWidget(m_tabs, 1);
    layout->addWidget(m_problemPanel);
    setCentralWidget(body);
    m_status = new StatusLine(this);
    setStatusBar(m_status);

    constexpr QSize comfortable(1240, 760);
    const QSize room = screen()->availableSize() - QSize(20, 60);
    resize(comfortable.boundedTo(room));
    const QByteArray kept = QByteArray::fromBase64(
        SettingsStore()
            .GetSetting(storeName, QStringLiteral("Window"), QStringLiteral("geometry"))
            .toLatin1());
    if (!kept.isEmpty()) {
        restoreGeometry(kept);
    }
    m_problemPanel->unfold(
        SettingsStore().GetSetting(storeName, QStringLiteral("Window"), QStringLiteral("problems")) == u"1");
}

// Start-up

void FormMain::start(const QStringList &arguments)
{
    m_options = CommandLine::parse(arguments);
    setLanguage(languageAtStart());
    if (m_instance.otherIsRunning()) {
        startWithOtherEnding();
    } else {
        m_instance.claim();
        finishStart();
    }
}

void FormMain::startWithOtherEnding()
{
    // Under this title the program that ends the other instance does not take this one for it.
    setWindowTitle(m_texts.text(Text::ExclusiveInBrackets));
    const QString helper = findHelper(m_services.environment.programFolder, QStringLiteral("tasklist"));
    if (helper.isEmpty()) {
        m_instance.askOtherToClose();
    } else if (const Status started = startProgram(helper, {QString(programName)}, ProgramWindow::Minimised);
               !started) {
        tell(started.message());
    }
    connect(&m_wait, &QTimer::timeout, this, [this] {
        m_instance.claim();
        finishStart();
    });
    m_wait.start(otherEnds);
}

void FormMain::finishStart()
{
    m_link.searchOnce();
    m_document.makeNew();
    m_document.setFileName(
        SettingsStore().GetSetting(storeName, QStringLiteral("Startup"), QStringLiteral("filename")));
    if (applyCommandLine()) {
        const QString fileName = m_document.fileName();
        const ReadReport report = m_document.readPresentFile();
        if (!fileName.isEmpty()) {
            tellRead(report, fileName);
        }
        m_document.setModified(false);
    }
    m_history.clear();
    updateTitle();
    showLink();
    m_tabs->enterPage();
    show();
    if (!m_missingTexts.isEmpty()) {
        auto *box = new QMessageBox(QMessageBox::Information, QString(programName), m_missingTexts,
                                    QMessageBox::Ok, this);
        box->setAttribute(Qt::WA_DeleteOnClose);
        box->open(); // the program goes on meanwhile
    }
}

/// Gives false when the file to load cannot be opened, which ends the start at once.
bool FormMain::applyCommandLine()
{
    if (m_options.debug) {
        m_tabs->page(PageIndex::Test);
    }
    if (m_options.english) {
        setLanguage(englishLanguage);
    }
    if (m_options.german) {
        setLanguage(germanLanguage);
    }
    m_context.expert = m_options.expert;
    if (m_options.load) {
        QString wanted = m_options.fileName;
        ReadReport report = m_document.load(wanted);
        if (!report.opened) {
            // Where "A.xml" and "a.xml" are two files, the one that was meant.
            wanted = m_options.fileNameAsWritten;
            report = m_document.load(wanted);
        }
        if (!report.opened) {
            m_document.setFileName(QString());
            tell(report.document.message());
            return false;
        }
    }
    return true;
}

void FormMain::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    if (std::exchange(m_firstShow, false)) {
        QTimer::singleShot(0, this, &FormMain::buildRemainingPages);
    }
}

/// One a turn, so that the window answers meanwhile.
void FormMain::buildRemainingPages()
{
    if (m_tabs->buildNext()) {
        QTimer::singleShot(0, this, &FormMain::buildRemainingPages);
    } else {
        findProblemsSoon();
    }
}

// Window

Page *FormMain::buildPage(PageIndex index)
{
    Page *page = nullptr;
    switch (index) {
    case PageIndex::Gsm:
    default:
        page = new GsmPage(m_context);
    }
    // A file that is dropped on a field is meant for the window.
    for (QWidget *field : page->findChildren<QWidget *>()) {
        if (field->acceptDrops()) {
            field->installEventFilter(this);
        }
    }
    return page;
}

void FormMain::connectMenu()
{
    connect(m_menu->neu, &QAction::triggered, this, &FormMain::makeNew);
    connect(m_menu->load, &QAction::triggered, this, &FormMain::loadChosen);
    connect(m_menu, &MainMenu::recentChosen, this, &FormMain::load);
    connect(m_menu->save, &QAction::triggered, this, &FormMain::save);
    connect(m_menu->saveAs, &QAction::triggered, this, &FormMain::saveAs);
    connect(m_menu->preview, &QAction::triggered, this, &FormMain::showPreview);
    connect(m_menu->print, &QAction::triggered, this, &FormMain::print);
    connect(m_menu->exit, &QAction::triggered, this, &FormMain::exitWanted);
    connect(m_menu->undo, &QAction::triggered, &m_history, &EditHistory::undo);
    connect(m_menu->redo, &QAction::triggered, &m_history, &EditHistory::redo);
    connect(m_menu->doConfig, &QAction::triggered, this, &FormMain::transmit);
    connect(m_menu->doApplication, &QAction::triggered, this, &FormMain::notAvailable);
    connect(m_menu->search, &QAction::triggered, this, [this] { m_link.connectSerial(QString()); });
    connect(m_menu, &MainMenu::portChosen, &m_link, &ModuleLink::connectSerial);
    connect(m_menu, &MainMenu::portsWanted, this, &FormMain::refreshPorts);
    connect(m_menu->ethernet, &QAction::triggered, this, &FormMain::notAvailable);
    connect(m_menu->exclusive, &QAction::triggered, this, &FormMain::notAvailable);
    connect(m_menu->offline, &QAction::triggered, &m_link, &ModuleLink::goOffline);
    connect(m_menu->operationalMode, &QAction::triggered, this, [this] {
        m_link.goOffline();
        notAvailable();
    });
    connect(m_menu->problems, &QAction::toggled, m_problemPanel, &ProblemPanel::unfold);
    connect(m_problemPanel, &ProblemPanel::unfolded, this, [this](bool unfolded) {
        m_menu->problems->setChecked(unfolded);
        SettingsStore().SaveSetting(storeName, QStringLiteral("Window"), QStringLiteral("problems"),
                                    QString::number(unfolded ? 1 : 0));
    });
    m_menu->problems->setChecked(m_problemPanel->isUnfolded());
    connect(m_problemPanel, &ProblemPanel::chosen, this, [this](const Problem &problem) {
        m_tabs->goTo({problem.control, problem.entry});
    });
    connect(m_menu->settings, &QAction::triggered, this, [this] {
        if (m_settings == nullptr) {
            m_settings = new frmSettings(
                m_texts, [this](const QString &language) { setLanguage(language); }, appearanceSetting(),
                [](Appearance appearance) {
                    setAppearanceSetting(appearance);
                    applyAppearance(*qApp, appearance);
                },
                this);
            m_settings->setAttribute(Qt::WA_DeleteOnClose);
        }
        m_settings->show();
        m_settings->activateWindow();
    });
    connect(m_menu->about, &QAction::triggered, this, [this] {
        if (m_about == nullptr) {
            m_about = new frmAbout(m_texts, this);
            m_about->setAttribute(Qt::WA_DeleteOnClose);
        }
        m_about->show();
        m_about->activateWindow();
    });
}

void FormMain::connectDocument()
{
    connect(&m_document, &Document::changed, m_tabs, &PageTabs::showRecords);
    connect(&m_document, &Document::changed, this, &FormMain::findProblemsSoon);
    connect(&m_document, &Document::modifiedChanged, m_status, &StatusLine::showModified);
    connect(&m_document, &Document::fileNameChanged, this,
            [this](const QString &fileName) { m_dialogs.setCurrentFile(fileName); });
    connect(&m_history, &EditHistory::availabilityChanged, this, [this] {
        m_menu->undo->setEnabled(m_history.canUndo());
        m_menu->redo->setEnabled(m_history.canRedo());
    });
    connect(&m_history, &EditHistory::moved, this, [this](const EditPlace &place) {
        m_tabs->goTo(place);
        updateTitle();
    });
    connect(&m_problemTimer, &QTimer::timeout, this, &FormMain::findProblemsNow);
    m_menu->undo->setEnabled(false);
    m_menu->redo->setEnabled(false);
    m_menu->showRecent(m_recent.names());
}

void FormMain::setLanguage(const QString &language)
{
    const QString own = joinPath(m_services.environment.programFolder, QStringLiteral("language.ini"));
    const QString path = QFileInfo::exists(own) ? own : deliveredFile(QStringLiteral("language.ini"));
    const LoadedTexts loaded = LoadTexts(m_texts, language, path);
    if (loaded.source == LoadedTexts::Source::BuiltIn) {
        m_missingTexts = loaded.message;
        m_context.language = englishLanguage;
    } else {
        m_context.language = language;
    }
    if (loaded.source == LoadedTexts::Source::UnreadableFile) {
        tell(loaded.message);
    }
    m_translations.use(m_context.language);
    applyTexts();
}

void FormMain::applyTexts()
{
    m_menu->applyTexts(m_texts);
    m_tabs->applyTexts();
    m_problemPanel->applyTexts();
    showLink();
    if (m_preview != nullptr) {
        m_preview->applyTexts();
    }
    if (m_about != nullptr) {
        m_about->applyTexts();
    }
    if (m_settings != nullptr) {
        m_settings->applyTexts();
    }
    findProblemsSoon();
}

void FormMain::updateTitle()
{
    setWindowTitle(programName + QLatin1String("  ") + m_document.fileName().right(titleCharacters));
}

void FormMain::tell(const QString &line)
{
    m_status->tell(line);
}

void FormMain::showMessage(const QString &text)
{
    Dialog::message(this, m_texts, text);
}

void FormMain::dragEnterEvent(QDragEnterEvent *event)
{
    const QList<QUrl> urls = event->mimeData()->urls();
    if (urls.size() == 1 && urls.front().isLocalFile()) {
        event->acceptProposedAction();
    }
}

void FormMain::dropEvent(QDropEvent *event)
{
    event->acceptProposedAction();
    load(event->mimeData()->urls().constFirst().toLocalFile());
}

bool FormMain::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::DragEnter && static_cast<QDragEnterEvent *>(event)->mimeData()->hasUrls()) {
        event->ignore(); // it goes on to the window
        return true;
    }
    return QMainWindow::eventFilter(watched, event);
}

// Files

void FormMain::makeNew()
{
    m_history.makeNew();
    m_tabs->enterPage();
    tell(tr("New configuration"));
}

void FormMain::save()
{
    if (m_dialogs.isBusy()) {
        return;
    }
    if (m_document.fileName().isEmpty()) {
        m_document.setFileName(m_dialogs.askSave(
            QLatin1String("KTR_") + m_document.configuration().gsm.stationId, configurationFilter));
    }
    if (m_document.fileName().isEmpty()) {
        tell(tr("Not saved: no file was chosen"));
        return;
    }
    if (const Status saved = m_document.save(); !saved) {
        tell(m_texts.text(Text::SavingFailed) + u": " + saved.message());
        return;
    }
    updateTitle();
    addRecent();
    tell(tr("Saved: %1").arg(m_document.fileName()));
}

void FormMain::saveAs()
{
    if (!m_dialogs.isBusy()) {
        m_document.setFileName(QString());
        save();
    }
}

void FormMain::loadChosen()
{
    const QString fileName = m_dialogs.askOpen(configurationFilter);
    if (!fileName.isEmpty()) {
        load(fileName);
    }
}

void FormMain::load(const QString &fileName)
{
    const bool unsaved = m_document.isModified();
    const ReadReport report = m_history.load(fileName);
    if (report.opened) {
        updateTitle();
        m_tabs->enterPage();
    }
    tellRead(report, fileName);
    if (report.opened && unsaved) {
        tell(m_status->lastEvent() + u"  " +
             tr("What was not saved comes back with %1.")
                 .arg(m_menu->undo->shortcut().toString(QKeySequence::NativeText)));
    }
}

void FormMain::tellRead(const ReadReport &report, const QString &fileName)
{
    if (!report.document) {
        tell(report.document.message());
        return;
    }
    addRecent();
    tell(report.remarks.isEmpty() ? tr("Loaded: %1").arg(fileName)
                                  : tr("Loaded: %1. %n field(s) took a fall-back: %2", nullptr,
                                       static_cast<int>(report.remarks.size()))
                                        .arg(fileName, report.remarks.join(QLatin1String("; "))));
}

void FormMain::addRecent()
{
    if (!m_recent.add(m_document.fileName())) {
        tell(tr("The list of recent files could not be kept"));
    }
    m_menu->showRecent(m_recent.names());
}

void FormMain::closeEvent(QCloseEvent *event)
{
    if (m_dialogs.isBusy()) {
        event->ignore();
        QApplication::beep();
        return;
    }
    if (m_preview != nullptr) {
        m_preview->close();
    }
    if (m_about != nullptr) {
        m_about->close();
    }
    m_wait.stop();
    m_link.goOffline();
    if (m_document.isModified()) {
        askToSave();
    }
    SettingsStore store;
    store.SaveSetting(storeName, QStringLiteral("Startup"), QStringLiteral("filename"),
                      m_document.fileName());
    store.SaveSetting(storeName, QStringLiteral("Window"), QStringLiteral("geometry"),
                      QString::fromLatin1(saveGeometry().toBase64()));
    event->accept();
    Q_EMIT closed();
}

void FormMain::askToSave()
{
    const QString caption = m_texts.text(Text::SaveCaption);
    if (!ask(this, caption, m_texts.text(Text::SaveQuestion) + u' ' + m_document.fileName())) {
        return;
    }
    save();
    // A disk that is full must not cost the edits: the close goes on, but not without another try.
    while (m_document.isModified() && !m_document.fileName().isEmpty() &&
           ask(this, caption, m_status->lastEvent() + u'\n' + m_texts.text(Text::SaveUnderOtherName))) {
        saveAs();
    }
}

// Printing

PrintoutOptions FormMain::printoutOptions() const
{
    const Environment &environment = m_services.environment;
    return {m_document.fileName(), environment.locale, environment.now()};
}

void FormMain::print()
{
    const Printout printout(m_document.configuration(), m_texts, printoutOptions());
    tellFailure(this, printWithDialog(this, printout));
}

void FormMain::showPreview()
{
    if (m_preview == nullptr) {
        m_preview = new frm_preview(m_texts, this);
        m_preview->setAttribute(Qt::WA_DeleteOnClose);
    }
    m_preview->showConfiguration(m_document.configuration(), printoutOptions());
}

// Link

void FormMain::connectLink()
{
    connect(&m_link, &ModuleLink::changed, this, &FormMain::showLink);
    connect(&m_link, &ModuleLink::told, this, &FormMain::tell);
    connect(&m_link, &ModuleLink::logged, this, &FormMain::writeLog);
    connect(&m_link, &ModuleLink::stepSent, this, [this](int step) {
        m_status->showProgress(step);
        tell(tr("Step %1 of %2 sent").arg(step).arg(steps::last));
    });
    connect(&m_link, &ModuleLink::transmissionEnded, this, [this](int sent, int refused) {
        m_status->showProgress(0);
        takeOverTransmitted();
        tell(refused == 0 ? tr("Configuration transmitted: %n command(s)", nullptr, sent)
                          : tr("Transmission ended: %1 commands sent, %2 refused").arg(sent).arg(refused));
    });
    connect(&m_link, &ModuleLink::transmissionBroke, this, [this](int step) {
        m_status->showProgress(0);
        tell(tr("The transmission was broken off before step %1").arg(step));
    });
}

void FormMain::showLink()
{
    QString text;
    switch (m_link.state()) {
    case ModuleLink::State::Offline:
        text = m_texts.text(Text::Offline);
        break;
    case ModuleLink::State::Searching:
        text = m_link.port().isEmpty() ? tr("searching") : m_link.port();
        break;
    case ModuleLink::State::Caught:
        text = m_link.port();
        break;
    }
    m_status->showLink(text, m_link.isConnected());
    refreshPorts();
}

void FormMain::refreshPorts()
{
    QStringList ports = m_link.ports();
    const QString &wanted = m_link.wantedPort();
    if (!wanted.isEmpty() && !ports.contains(wanted)) {
        ports += wanted;
    }
    m_menu->showPorts(ports, nullptr);
    const bool offline = m_link.state() == ModuleLink::State::Offline;
    QAction *chosen = offline            ? m_menu->offline
                      : wanted.isEmpty() ? m_menu->search
                                         : m_menu->portAction(wanted);
    if (chosen != nullptr) {
        chosen->setChecked(true);
    }
}

void FormMain::notAvailable()
{
    refreshPorts();
    tell(tr("This is not part of the program yet"));
}

void FormMain::transmit()
{
    if (m_link.state() == ModuleLink::State::Offline) {
        showMessage(m_texts.text(Text::EstablishConnection));
        return;
    }
    m_link.transmit(m_document.configuration(), false);
    tell(tr("Waiting until the module reads its messages"));
}

/// The command sequence may have set a value; the user sees what the module got.
void FormMain::takeOverTransmitted()
{
    m_document.adjust([this](Configuration &configuration) {
        const Configuration &sent = m_link.transmitted();
        for (std::size_t i = 0; i < configuration.switchPoints.size(); ++i) {
            SwitchPoint asSent = sent.switchPoints[i];
            asSent.value = configuration.switchPoints[i].value;
            if (asSent == configuration.switchPoints[i]) {
                configuration.switchPoints[i] = sent.switchPoints[i];
            }
        }
    });
}

void FormMain::writeLog(const QString &line)
{
    const QString &path = m_document.configuration().info.logFile;
    if (path != m_logPath) {
        m_logPath = path;
        if (const Status opened = m_log.open(path); !opened) {
            tell(opened.message());
        }
    }
    m_log.write(m_services.environment.now(), line);
}

// Problems

void FormMain::findProblemsSoon()
{
    m_problemTimer.start(0);
}

void FormMain::findProblemsNow()
{
    const Environment &environment = m_services.environment;
    const QList<Problem> problems =
        findProblems(m_document.configuration(), {false, environment.locale, environment.now()});
    m_tabs->setProblems(problems);
    m_problemPanel->show(problems);
}

} // namespace ktr
