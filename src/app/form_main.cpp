#include "app/form_main.h"

#include "app/changes_offer.h"
#include "app/entry_commands.h"
#include "app/file_commands.h"
#include "app/help_desk.h"
#include "app/language_setting.h"
#include "app/link_dialogs.h"
#include "app/link_presenter.h"
#include "app/main_menu.h"
#include "app/names_window.h"
#include "app/neighbour_watch.h"
#include "app/page_builder.h"
#include "app/problem_panel.h"
#include "app/status_line.h"
#include "app/transmission_notes.h"
#include "app/transmission_panel.h"
#include "app/trial/trial_conduct.h"
#include "config/address.h"
#include "config/fields.h"
#include "link/problems.h"
#include "look/icons.h"
#include "look/kept_focus.h"
#include "look/message_dialog.h"
#include "look/one_line.h"
#include "look/outside_texts.h"
#include "look/program_name.h"
#include "look/text_keys.h"
#include "look/window_place.h"
#include "platform/settings_store.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QMimeData>
#include <QScreen>
#include <QUrl>
#include <QVBoxLayout>
#include <QWindow>

namespace ktr {

namespace {

const QString windowSection = QStringLiteral("Window");
const QString geometryKey = QStringLiteral("geometry");
const QString problemsKey = QStringLiteral("problems");
constexpr QSize comfortableSize(1240, 760);
constexpr qsizetype titleCharacters = 74;

/// Each by its own name.
std::vector<LanguageChoice> languageChoices(const QList<AddedLanguage> &added)
{
    std::vector<LanguageChoice> choices{{QStringLiteral("English"), englishLanguage},
                                        {QStringLiteral("Deutsch"), germanLanguage}};
    for (const AddedLanguage &language : added) {
        choices.push_back({language.name(), language.code});
    }
    return choices;
}

OperationalMode::Services operationalServices(const Services &services)
{
    OperationalMode::Services result{services.environment, services.timers, services.stationLine,
                                     [] { QApplication::beep(); }};
    result.foreignDatagrams = services.foreignDatagrams;
    return result;
}

} // namespace

FormMain::FormMain(const Services &services)
    : m_services(services),
      m_document(services.environment),
      m_history(m_document),
      m_context{m_document, m_history, m_texts},
      m_language(*this, m_texts, m_context, services.environment.programFolder),
      m_link(services.serial, services.ethernet, services.timers, services.environment, services.ports),
      m_start(services.environment, services.timers, services.instanceName, m_texts, m_language,
              [this] { return works(); }),
      m_end(*this, m_texts,
            {[this] { return m_files->dialogs().isBusy() || m_operationalMode.isBusy(); },
             [this](const QWidget &question) { return m_operationalMode.mayTakeBack(question); }},
            [this] { return works(); }),
      m_sideWindows(*this, m_document, m_history, m_texts,
                    [this](const EditPlace &place) { showField(place); }),
      m_operationalMode(operationalServices(services), m_texts)
{
    showOutsideTextsPlain(*qApp);
    keepFieldsOnOneLine(*qApp);
    keepFocusOfDisabledButtons(*qApp);
    sortTextKeys(*qApp);
    connect(qApp, &QApplication::focusChanged, this,
            [this](const QWidget *, const QWidget *now) { watchLengths(now); });
    setObjectName(QStringLiteral("FormMain"));
    setWindowIcon(icon(IconName::Application));
    setAcceptDrops(true);
    m_context.showStatus = [this](const QString &line) { showStatus(line); };
    m_context.showMessage = [this](const QString &text) { showMessage(text); };
    connect(&m_language, &InterfaceLanguage::changed, this, &FormMain::applyTexts);
    connect(&m_language, &InterfaceLanguage::statusMessage, this, &FormMain::showStatus);
    layOut();
    m_files = std::make_unique<FileCommands>(*this, m_document, m_history, m_texts);
    m_linkPresenter =
        std::make_unique<LinkPresenter>(m_link, m_services.timers, m_document, m_texts, *m_menu, *m_status);
    m_linkDialogs = std::make_unique<LinkDialogs>(*this, m_context, *m_linkPresenter, m_link.transmitter(),
                                                  m_files->dialogs());
    connect(m_linkDialogs.get(), &LinkDialogs::connectionWanted, this,
            [this] { showField({QStringLiteral("Cmb_connection_port")}); });
    m_transmissions = std::make_unique<TransmissionNotes>(
        m_link, m_document, *m_neighbours, [this] { return m_linkPresenter->toldVersion(); },
        [this] {
            const QString onDuty = m_operationalMode.operatorName();
            return onDuty.isEmpty() ? fullUserName() : onDuty;
        });
    connect(m_transmissions.get(), &TransmissionNotes::statusMessage, this, &FormMain::showStatus);
    connect(m_transmissions.get(), &TransmissionNotes::noticed, this, &FormMain::showMessage);
    connect(m_transmissionPanel, &TransmissionPanel::receiptWanted, this, [this] {
        const auto askSave = [this](const QString &proposal, const QString &filter) {
            return m_files->dialogs().askSave(proposal, filter);
        };
        const QString told = saveReceipt(m_transmissions->last(), askSave, m_texts, m_services.environment);
        if (!told.isEmpty()) {
            showStatus(told);
        }
    });
    m_linkPresenter->setGate([this](const std::function<void()> &go, const std::optional<QString> &version) {
        m_transmissions->look(
            version, [this, go](const TransmissionLook &look) { m_transmissionPanel->showLook(look, go); });
    });
    m_pageBuilder = std::make_unique<PageBuilder>(m_context, *m_linkPresenter, m_files->dialogs(), m_options);
    m_changes = std::make_unique<ChangesOffer>(ChangesOffer::Parts{
        m_link, *m_linkPresenter, m_document, m_transmissions->memory(), *m_menu, *m_tabs, m_texts});
    connect(m_changes.get(), &ChangesOffer::statusMessage, this, &FormMain::showStatus);
    m_entries = std::make_unique<EntryCommands>(EntryCommands::Parts{*this, *m_menu, *m_tabs, m_context});
    connect(m_entries.get(), &EntryCommands::statusMessage, this, &FormMain::showStatus);
    connect(m_files.get(), &FileCommands::replaced, m_entries.get(), &EntryCommands::forgetCut);
    connectMenu();
    connectDocument();
    connectProblems();
    connect(m_linkPresenter.get(), &LinkPresenter::statusMessage, this, &FormMain::showStatus);
    connect(m_linkPresenter.get(), &LinkPresenter::addressWanted, this, &FormMain::askForAddress);
    connect(m_linkPresenter.get(), &LinkPresenter::ethernetWanted, this, &FormMain::connectEthernet);
    connectStart();
    connectOperationalMode();
    openHelpDesk();
    if (m_services.trial != nullptr) {
        m_trial = std::make_unique<TrialConduct>(TrialConduct::Parts{
            *this, *m_services.trial, m_document, m_history, *m_files, m_link, *m_linkPresenter});
    }
}

FormMain::~FormMain()
{
    // The widgets use the members until they are gone, for example when they lose the focus.
    qDeleteAll(findChildren<QWidget *>(Qt::FindDirectChildrenOnly));
}

void FormMain::layOut()
{
    m_menu = new MainMenu(*this);
    auto *body = new QWidget(this);
    auto *layout = new QVBoxLayout(body);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    const auto build = [this](PageIndex index) { return m_pageBuilder->build(index); };
    const auto describe = [this](const Problem &problem) {
        return m_tabs->describe({problem.control, problem.entry});
    };
    m_tabs = new PageTabs(m_context, build, body);
    m_problemPanel = new ProblemPanel(describe, body);
    m_neighbours = new NeighbourWatch(this);
    // Pages are built after the panel, but the Tab key reaches them first.
    connect(m_tabs, &PageTabs::built, m_problemPanel, [this](Page *page) {
        QWidget *last = page;
        while (page->isAncestorOf(last->nextInFocusChain())) {
            last = last->nextInFocusChain();
        }
        m_problemPanel->followInTabOrder(last);
    });
    m_transmissionPanel = new TransmissionPanel(
        m_link, m_document, [this](const EditPlace &place) { return m_tabs->describe(place); }, body);
    connect(m_transmissionPanel, &TransmissionPanel::placeChosen, m_tabs, &PageTabs::goTo);
    layout->addWidget(m_tabs, 1);
    layout->addWidget(m_transmissionPanel);
    layout->addWidget(m_problemPanel);
    setCentralWidget(body);
    m_status = new StatusLine(this);
    setStatusBar(m_status);

    constexpr QSize smallest(560, 320); // fits the screen of a laptop at twice the scale
    setMinimumSize(smallest);
    constexpr QSize frame(16, 56); // of the window manager, at most
    resize(comfortableSize.boundedTo(screen()->availableSize() - frame));
    const SettingsStore store;
    restorePlace(*this, QByteArray::fromBase64(
                            store.GetSetting(settingsOwner, windowSection, geometryKey).toLatin1()));
    m_problemPanel->unfold(store.GetSetting(settingsOwner, windowSection, problemsKey) == u"1");
}

// Start and end

void FormMain::start(const QStringList &arguments)
{
    m_options = CommandLine::parse(arguments);
    m_start.begin(m_options, welcomes(), m_services.systemLanguages);
    m_sideWindows.setLanguageOfRun(m_start.isLanguageOfRun() ? m_context.language : QString());
}

void FormMain::connectStart()
{
    connect(&m_start, &ProgramStart::titleWanted, this, &QWidget::setWindowTitle);
    connect(&m_start, &ProgramStart::statusMessage, this, &FormMain::showStatus);
    connect(&m_start, &ProgramStart::givenUp, this, &FormMain::exitWanted);
    connect(&m_start, &ProgramStart::done, this, [this](const QString &remark) {
        finishStart();
        if (!remark.isEmpty()) {
            showMessage(remark);
        }
    });
    connect(&m_start, &ProgramStart::frontRequested, this, &FormMain::comeToFront);
    connect(&m_start, &ProgramStart::closeRequested, this, [this] {
        if (m_document.isModified() || QApplication::activeModalWidget() != nullptr) {
            comeToFront(); // the user will be asked, or is being asked
        }
        m_end.closeAsAgreed();
    });
    connect(qApp, &QGuiApplication::commitDataRequest, this, &FormMain::keepEdits);
}

void FormMain::keepEdits()
{
    m_files->keepEdits();
}

void FormMain::endOnRequest()
{
    if (!m_start.isDone()) { // waiting for another instance: there is nothing to keep yet
        Q_EMIT exitWanted();
        return;
    }
    if (m_document.isModified()) {
        m_files->keepEdits();
        comeToFront();
    }
    m_end.closeOnRequest();
}

Works FormMain::works() const
{
    Works works;
    works.setFlag(Work::Watching, m_operationalMode.isOpen());
    works.setFlag(Work::Transmitting, m_link.transmitter().isSending() || m_operationalMode.isTransmitting());
    works.setFlag(Work::Uploading, m_link.line().isUploading());
    return works;
}

void FormMain::comeToFront()
{
    QWidget *modal = QApplication::activeModalWidget();
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->isWindow() && window->isVisible() && window->isMinimized()) {
            window->showNormal();
        }
    }
    QWidget *wanted = modal != nullptr ? modal : isVisible() ? this : m_operationalMode.window();
    if (wanted != nullptr) {
        wanted->raise();
        wanted->activateWindow();
        QApplication::alert(wanted);
    }
}

void FormMain::finishStart()
{
    m_link.searchOnce();
    m_document.makeNew();
    m_document.setFileName(FileCommands::lastFileName());
    if (applyCommandLine() && !(m_trial && m_trial->openPrepared())) {
        m_files->readPresent();
        m_document.setModified(false);
    }
    m_history.clear();
    updateTitle();
    m_linkPresenter->show();
    m_tabs->enterPage();
    const QString troubles = m_start.troubles().join(u'\n');
    if (!troubles.isEmpty()) {
        showStatus(troubles);
    }
    m_operationalMode.setRecord(m_options.record);
    m_transmissions->setRecord(m_options.record);
    if (m_options.operationalMode) {
        openOperationalMode({});   // this one was nowhere
        if (!troubles.isEmpty()) { // this window is not seen
            m_operationalMode.tell(troubles);
        }
    } else {
        show();
        m_language.showMissingTexts();
        beginHelp();
    }
}

/// False when the file to load cannot be opened; then no other file is loaded.
bool FormMain::applyCommandLine()
{
    m_context.expert = m_options.expert;
    if (m_options.design) { // the folder that developers build it in
        m_link.line().setFirmwareFile(joinPath(QDir::homePath(), QStringLiteral("KTRconfig/upgrade.bin")));
    }
    if (!m_options.bareFileName.isEmpty()) {
        return m_files->loadFirst(m_options.bareFileName, m_options.bareFileName);
    }
    return !m_options.load || m_files->loadFirst(m_options.fileName, m_options.fileNameAsWritten);
}

void FormMain::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    if (std::exchange(m_firstShow, false)) {
        windowHandle()->installEventFilter(this);
        QTimer::singleShot(0, this, &FormMain::buildRemainingPages);
        QTimer::singleShot(0, m_files.get(), &FileCommands::offerKept);
    }
    m_files->lookAtDisk();
}

/// One page for each turn of the event loop, so that the window stays responsive.
void FormMain::buildRemainingPages()
{
    if (m_tabs->buildNext()) {
        QTimer::singleShot(0, this, &FormMain::buildRemainingPages);
    }
}

void FormMain::refuseClose(QEvent &event)
{
    event.ignore();
    QApplication::beep();
    showStatus(tr("A file dialog is still open; the window can be closed after it"));
}

void FormMain::closeEvent(QCloseEvent *event)
{
    if (m_files->dialogs().isBusy()) {
        refuseClose(*event);
        return;
    }
    if (!m_end.mayEndWork()) {
        event->ignore();
        return;
    }
    if (m_trial && !m_trial->mayEnd()) {
        event->ignore();
        return;
    }
    m_sideWindows.close();
    using Asking = OperationalModeOpener::Asking;
    if (!m_operationalMode.close(m_end.isUsersWish() ? Asking::Asks : Asking::Agreed)) {
        event->ignore();
        return;
    }
    m_help->closeWelcome();
    m_start.stopWaiting();
    m_link.goOffline();
    m_files->askToSave();
    m_files->keepFileName();
    SettingsStore().SaveSetting(settingsOwner, windowSection, geometryKey,
                                QString::fromLatin1(saveGeometry().toBase64()));
    event->accept();
    Q_EMIT closed();
}

// Wiring

void FormMain::connectMenu()
{
    FileCommands *files = m_files.get();
    connect(m_menu->newFile, &QAction::triggered, files, &FileCommands::makeNew);
    connect(m_menu->newLikeThis, &QAction::triggered, this, [this, files] {
        files->makeAnother();
        m_tabs->goTo({fieldOf<GsmSettings>(&GsmSettings::stationId).control.forIndex(0)});
    });
    connect(m_menu->loadFile, &QAction::triggered, files, &FileCommands::loadChosen);
    connect(m_menu, &MainMenu::recentChosen, files, &FileCommands::load);
    connect(m_menu->saveFile, &QAction::triggered, files, &FileCommands::save);
    connect(m_menu->saveFileAs, &QAction::triggered, files, &FileCommands::saveAs);
    connect(files, &FileCommands::statusMessage, this, &FormMain::showStatus);
    connect(files, &FileCommands::noticeChanged, this, &FormMain::showNotice);
    connect(files, &FileCommands::replaced, m_tabs, &PageTabs::enterPage);
    connect(files, &FileCommands::titleChanged, this, &FormMain::updateTitle);
    connect(files, &FileCommands::recentChanged, this, [this] { m_menu->showRecent(m_files->recent()); });
    m_menu->showRecent(files->recent());

    connect(m_menu->printPreview, &QAction::triggered, &m_sideWindows, &SideWindows::showPreview);
    connect(m_menu->printConfiguration, &QAction::triggered, &m_sideWindows, &SideWindows::print);
    connect(m_menu->closeWindow, &QAction::triggered, this, &QWidget::close);
    connect(m_menu->exitAtOnce, &QAction::triggered, this, [this] {
        m_files->declineEdits();
        Q_EMIT exitWanted();
    });
    connect(m_menu->undo, &QAction::triggered, &m_history, &EditHistory::undo);
    connect(m_menu->redo, &QAction::triggered, &m_history, &EditHistory::redo);
    connect(m_menu->nextEntry, &QAction::triggered, m_tabs, [this] { m_tabs->moveEntry(1); });
    connect(m_menu->previousEntry, &QAction::triggered, m_tabs, [this] { m_tabs->moveEntry(-1); });
    connect(m_menu->showTransmissions, &QAction::triggered, this, &FormMain::showTransmissions);
    connect(m_menu->openSettings, &QAction::triggered, &m_sideWindows, &SideWindows::showSettings);
    connect(m_menu->compareConfigurations, &QAction::triggered, &m_sideWindows,
            [this] { m_sideWindows.showCompare(m_files->dialogs()); });
    connect(m_menu->foretell, &QAction::triggered, &m_sideWindows,
            [this] { m_sideWindows.showForetell(m_files->dialogs()); });
    connect(m_menu->editNames, &QAction::triggered, this, &FormMain::editNames);
    connect(m_menu->showAbout, &QAction::triggered, &m_sideWindows, &SideWindows::showAbout);
    connect(&m_sideWindows, &SideWindows::languageChosen, this, &FormMain::useChosenLanguage);
}

/// It is in the settings, too, unless they cannot be written.
void FormMain::useChosenLanguage(const QString &language)
{
    m_start.proposeNone();
    m_language.use(language);
    if (languageSetting() != language) {
        showStatus(tr("The settings cannot be written; what is chosen holds for this run"));
    }
}

void FormMain::compareWith(const Configuration &other, const QString &title)
{
    m_sideWindows.showCompareWith(m_files->dialogs(), other, title);
}

/// From a window beside this one.
void FormMain::showField(const EditPlace &place)
{
    if (isMinimized()) {
        showNormal();
    }
    raise();
    activateWindow();
    m_tabs->goTo(place);
}

/// No module knows them: the configuration is to be saved, but its version stays.
void FormMain::editNames()
{
    auto *window = new NamesWindow(m_document.configuration().names, m_texts, this);
    window->setAttribute(Qt::WA_DeleteOnClose);
    connect(window, &NamesWindow::chosen, this, [this](const ChannelNames &names) {
        if (names == m_document.configuration().names) {
            return;
        }
        m_history.endGroup();
        m_history.adjust({QStringLiteral("Txt_ip_interval_0")},
                         [&names](Configuration &changed) { changed.names = names; });
        m_history.endGroup();
        m_document.setModified(true);
    });
    window->open();
}

void FormMain::showTransmissions()
{
    bool isNew = false;
    TransmissionsWindow &window =
        m_sideWindows.showTransmissions({m_transmissions->memory(), m_services.environment, m_texts,
                                         [this](const QString &proposal, const QString &filter) {
                                             return m_files->dialogs().askSave(proposal, filter);
                                         },
                                         [this](const Configuration &configuration, const QString &name) {
                                             compareWith(configuration, name);
                                         }},
                                        isNew);
    if (isNew) {
        connect(&window, &TransmissionsWindow::openWanted, m_files.get(), &FileCommands::openUnsaved);
        connect(&window, &TransmissionsWindow::statusMessage, this, &FormMain::showStatus);
        connect(&window, &TransmissionsWindow::yearsChosen, m_transmissions.get(),
                &TransmissionNotes::setYears);
    }
}

void FormMain::connectDocument()
{
    connect(&m_document, &Document::changed, m_tabs, &PageTabs::showRecords);
    connect(&m_document, &Document::changed, this, &FormMain::findProblemsSoon);
    connect(&m_document, &Document::modifiedChanged, m_status, &StatusLine::showModified);
    const auto showAvailable = [this] {
        m_menu->undo->setEnabled(m_history.canUndo());
        m_menu->redo->setEnabled(m_history.canRedo());
    };
    connect(&m_history, &EditHistory::availabilityChanged, this, showAvailable);
    showAvailable();
    connect(&m_history, &EditHistory::undone, this, [this](const QString &words) {
        if (!words.isEmpty()) {
            showStatus(tr("Taken back: %1").arg(words));
        }
    });
    connect(&m_history, &EditHistory::redone, this, [this](const QString &words) {
        if (!words.isEmpty()) {
            showStatus(tr("Done again: %1").arg(words));
        }
    });
    connect(&m_history, &EditHistory::moved, this, [this](const EditPlace &place) {
        m_tabs->goTo(place);
        const QString title = windowTitle();
        updateTitle();
        if (place.control.isEmpty() || windowTitle() != title) {
            m_files->reportPresentFile();
        }
    });
}

void FormMain::connectProblems()
{
    m_problemTimer.setSingleShot(true);
    const auto lookBeside = [this] { m_neighbours->look(m_document.fileName()); };
    connect(&m_document, &Document::fileNameChanged, m_neighbours, lookBeside);
    connect(&m_document, &Document::saved, m_neighbours, lookBeside);
    connect(qApp, &QGuiApplication::applicationStateChanged, m_neighbours, lookBeside);
    connect(qApp, &QGuiApplication::applicationStateChanged, m_files.get(),
            [this](Qt::ApplicationState state) {
                if (state == Qt::ApplicationActive) {
                    m_files->lookAtDisk();
                }
            });
    const auto lookWhileOpen = [this] {
        if (m_operationalMode.isOpen()) {
            lookForConfigurations();
        }
    };
    connect(&m_document, &Document::saved, this, lookWhileOpen);
    connect(qApp, &QGuiApplication::applicationStateChanged, this,
            [lookWhileOpen](Qt::ApplicationState state) {
                if (state == Qt::ApplicationActive) { // somebody else may have written some
                    lookWhileOpen();
                }
            });
    connect(m_files.get(), &FileCommands::comparisonWanted, m_menu->compareConfigurations, &QAction::trigger);
    connect(m_neighbours, &NeighbourWatch::changed, this, &FormMain::findProblemsSoon);
    connect(&m_problemTimer, &QTimer::timeout, this, &FormMain::findProblemsNow);
    connect(m_menu->showProblems, &QAction::toggled, m_problemPanel, &ProblemPanel::unfold);
    connect(m_problemPanel, &ProblemPanel::unfolded, this, [this](bool unfolded) {
        m_menu->showProblems->setChecked(unfolded);
        SettingsStore().SaveSetting(settingsOwner, windowSection, problemsKey,
                                    QString::number(unfolded ? 1 : 0));
    });
    connect(m_menu->showProblems, &QAction::triggered, this, &FormMain::focusProblems);
    connect(m_problemPanel, &ProblemPanel::focusLeft, this, &FormMain::leaveProblems);
    m_menu->showProblems->setChecked(m_problemPanel->isUnfolded());
    connect(m_problemPanel, &ProblemPanel::chosen, this, [this](const Problem &problem) {
        m_tabs->goTo({problem.control, problem.entry});
    });
}

/// By key or menu: the focus goes to the list, and back to where it was once that is hidden.
void FormMain::focusProblems(bool shown)
{
    if (shown) {
        m_beforeProblems = focusWidget();
        findProblemsNow();
        m_problemPanel->focusList();
    }
}

void FormMain::leaveProblems()
{
    if (m_beforeProblems != nullptr && m_beforeProblems->isVisible()) {
        m_beforeProblems->setFocus(Qt::ShortcutFocusReason);
    } else {
        m_tabs->focusFirst();
    }
}

// Texts

void FormMain::applyTexts()
{
    m_menu->applyTexts(m_texts);
    m_tabs->applyTexts();
    m_problemPanel->applyTexts();
    m_transmissionPanel->applyTexts();
    m_linkPresenter->applyTexts();
    if (std::exchange(m_shownLanguage, m_context.language) != m_context.language) {
        m_linkPresenter->tellAnew();
    }
    m_changes->applyTexts();
    m_sideWindows.applyTexts();
    m_operationalMode.applyTexts();
    showNotice();
    findProblemsSoon();
}

void FormMain::updateTitle()
{
    setWindowTitle(programName + QLatin1String("  ") + m_document.fileName().right(titleCharacters));
}

void FormMain::showStatus(const QString &line)
{
    m_status->tell(line);
}

void FormMain::showNotice()
{
    const FileCommands::Notice notice = m_files->notice();
    m_status->showNotice(notice.text, notice.details);
}

/// Of every field in which one types, wherever it is.
void FormMain::watchLengths(const QWidget *focused)
{
    if (const auto *field = qobject_cast<const QLineEdit *>(focused)) {
        connect(field, &QLineEdit::inputRejected, this, &FormMain::tellCut, Qt::UniqueConnection);
    }
}

/// A field takes of a pasted text what it has room for, and says nothing.
void FormMain::tellCut()
{
    const auto *field = qobject_cast<const QLineEdit *>(sender());
    if (field != nullptr && field->text().size() >= field->maxLength()) {
        showStatus(tr("The field takes no more than %1 characters; the others were left out")
                       .arg(field->maxLength()));
    }
}

void FormMain::showMessage(const QString &text)
{
    Dialog::message(this, m_texts, text);
}

void FormMain::askForAddress(bool exclusive)
{
    const QString proposal = withoutLeadingZeros(m_document.configuration().ethernet.ip);
    if (const auto address = Dialog::input(this, m_texts, m_texts.text(Text::Ip), proposal)) {
        connectEthernet(address->trimmed(), exclusive);
    }
}

/// A module answers one program at a time: the operational mode must release it first.
void FormMain::connectEthernet(const QString &address, bool exclusive)
{
    const QString station = m_operationalMode.stationAt(address);
    if (!station.isEmpty()) {
        if (!Dialog::questionOfLoss(
                this, m_texts,
                station + u' ' + m_texts.text(Text::ActiveInOperationalMode) + u'\n' +
                    m_texts.text(Text::OperationalModeClosed) + QLatin1String("\n\n") +
                    tr("While this window is connected with the station, its alarms do not arrive in the "
                       "operational mode."))) {
            return;
        }
        m_operationalMode.lend(address);
    }
    m_link.connectEthernet(address, exclusive);
}

void FormMain::lookForConfigurations()
{
    m_operationalMode.lookForConfigurations(m_files->folders() +
                                            QStringList{QFileInfo(m_document.fileName()).path()});
}

/// It replaces this window; both are visible only while one of its modules is configured.
void FormMain::connectOperationalMode()
{
    connect(m_linkPresenter.get(), &LinkPresenter::operationalModeWanted, this,
            [this] { openOperationalMode(pos()); });
    connect(&m_operationalMode, &OperationalModeOpener::closed, this, [this](int stationsWithoutWatch) {
        m_status->showUnwatched(stationsWithoutWatch);
        show();
    });
    connect(m_status, &StatusLine::watchWanted, this, [this] { openOperationalMode(pos()); });
    if (m_services.io != nullptr) {
        m_operationalMode.setFleetMeans(*m_services.io, m_transmissions->memory());
    }
    connect(&m_operationalMode, &OperationalModeOpener::configurationWanted, this,
            [this](const QString &address, const QString &file) {
                show();
                raise();
                activateWindow();
                m_tabs->goTo({QStringLiteral("Txt_connection_address"), 0});
                if (auto *field = findChild<QLineEdit *>(QStringLiteral("Txt_connection_address"))) {
                    field->setText(address);
                    field->setModified(true);
                }
                connectEthernet(address, false);
                if (m_link.line().kind() !=
                    ModuleLine::Kind::Ethernet) { // refused, or the user changed his mind
                    openOperationalMode(pos());
                } else if (!file.isEmpty()) {
                    m_files->openFor(file);
                }
            });
    // A station that was lent goes back once this window has closed its line; opening a line closes it first.
    const auto takeBack = [this] {
        if (m_link.line().kind() != ModuleLine::Kind::Ethernet &&
            m_link.line().kind() != ModuleLine::Kind::EthernetExclusive) {
            m_operationalMode.takeBack();
        }
    };
    connect(&m_link, &ModuleLink::changed, this, takeBack, Qt::QueuedConnection);
}

void FormMain::openHelpDesk()
{
    const auto newStation = [this] {
        m_menu->newFile->trigger();
        m_tabs->goTo({fieldOf<GsmSettings>(&GsmSettings::stationId).control.forIndex(0)});
    };
    HelpDesk::Services services{
        m_texts,
        [this] { return m_document.configuration().info.logFile; },
        [this] { return m_status->events(); },
        [this] { return m_operationalMode.facts(); },
        [this](const QString &proposal, const QString &filter) {
            return m_files->dialogs().askSave(proposal, filter, proposal);
        },
        [this](const QString &line) { showStatus(line); },
        [this](const QString &folder) {
            return TrialConduct::prepare(folder, m_document.configuration(), m_services.environment);
        },
        newStation,
        [this] { m_menu->loadFile->trigger(); },
        [this] { return m_context.language; },
        [this] { return languageChoices(m_language.added()); },
        [this](const QString &language) {
            setLanguageSetting(language);
            m_sideWindows.setLanguageOfRun({});
            useChosenLanguage(language);
        },
        [this] {
            m_start.keepProposed();
            m_sideWindows.setLanguageOfRun(m_start.isLanguageOfRun() ? m_context.language : QString());
        },
        m_services.trialProgram,
        m_services.trial != nullptr ? std::optional(m_services.trial->kind()) : std::nullopt,
        m_services.trialTrouble};
    m_help = std::make_unique<HelpDesk>(*this, std::move(services));
    connect(&m_operationalMode, &OperationalModeOpener::windowMade, m_help.get(), &HelpDesk::serve);
    if (m_services.trial != nullptr && m_services.trial->kind() == TrialKind::Fleet) {
        connect(&m_operationalMode, &OperationalModeOpener::closed, this, &FormMain::exitWanted);
    }
}

/// Whoever starts the program without a file or a job. A language or a toolkit's option is none.
bool FormMain::welcomes() const
{
    return m_services.welcomes && m_services.trial == nullptr && !m_options.namesWork() &&
           !WelcomeWindow::isDismissed();
}

/// Behind the first frame, so that it stands above the window.
void FormMain::beginHelp()
{
    if (m_trial) {
        m_trial->connectModule();
    } else if (welcomes() && m_document.fileName().isEmpty()) {
        QTimer::singleShot(0, m_help.get(), &HelpDesk::welcomeOnce);
    }
}

void FormMain::openOperationalMode(const std::optional<QPoint> &place)
{
    m_sideWindows.closeCompare();
    m_status->showUnwatched(0);
    hide();
    lookForConfigurations();
    m_operationalMode.open(place, m_language.captionsOfAll());
}

// Dropped files

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
    m_files->load(event->mimeData()->urls().constFirst().toLocalFile());
}

bool FormMain::eventFilter(QObject *watched, QEvent *event)
{
    // The dialog was opened by a close: the toolkit would silently ignore a second one.
    if (watched == windowHandle() && event->type() == QEvent::Close && m_files->dialogs().isBusy()) {
        refuseClose(*event);
        return true;
    }
    return QMainWindow::eventFilter(watched, event);
}

// Problems

void FormMain::findProblemsSoon()
{
    m_problemTimer.start(0);
}

void FormMain::findProblemsNow()
{
    const Environment &environment = m_services.environment;
    const QList<Problem> problems = findProblems(
        m_document.configuration(), {false, environment.locale, environment.now()}, m_neighbours->found());
    m_tabs->setProblems(problems);
    m_problemPanel->show(problems);
}

} // namespace ktr
