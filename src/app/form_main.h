#pragma once

#include "app/operational_mode_opener.h"
#include "app/page_tabs.h"
#include "app/program_end.h"
#include "app/program_start.h"
#include "app/side_windows.h"
#include "app/trial/trial_run.h"
#include "link/module_link.h"

#include <QMainWindow>
#include <QPointer>
#include <QTimer>

namespace ktr {

class ChangesOffer;
class EntryCommands;
class FileCommands;
class HelpDesk;
class IoThread;
class LinkDialogs;
class LinkPresenter;
class MainMenu;
class NeighbourWatch;
class PageBuilder;
class ProblemPanel;
class StatusLine;
class TransmissionNotes;
class TransmissionPanel;
class TrialConduct;

/// What the main window needs from its surroundings.
struct Services
{
    Environment environment;
    Timers &timers;
    Transport &serial;
    Transport &ethernet;
    std::function<QStringList()> ports;
    QString instanceName; ///< by which instances find each other; empty for the name of this user

    /// The lines of the stations of the operational mode, and how many datagrams of strangers they dropped.
    cStations::LineFactory stationLine = {};
    std::function<qint64()> foreignDatagrams = [] { return 0; };
    /// Of the lines to several stations at once; without it there is no such thing.
    IoThread *io = nullptr;

    /// Who starts the program without asking for anything is welcomed, once.
    bool welcomes = false;
    /// That the user's system speaks, "de-AT", the most liked first.
    QStringList systemLanguages{};
    /// What is started to try things out; empty for nothing.
    QString trialProgram{};
    /// This run is such a trial, or null; and why its modules do not work.
    TrialRun *trial = nullptr;
    QString trialTrouble{};
};

/// The main window. start() is the start of the program, and closing the window is its end. It owns the parts
/// of the program and connects them.
class FormMain : public QMainWindow
{
    Q_OBJECT

public:
    explicit FormMain(const Services &services);
    ~FormMain() override;

    /// Language, second instance, port search, "new", last file, command line, in this order; then the
    /// window is shown. Where another instance runs, this waits for its end.
    void start(const QStringList &arguments);

    /// The system asks the program to end: edits are kept, what the operational mode asks is taken back, then
    /// the window closes as usual.
    void endOnRequest();
    /// Keeps the edits alone, when the program is about to end abruptly.
    void keepEdits();

    /// Opens the window that compares with this configuration, such as what a module holds.
    void compareWith(const Configuration &other, const QString &title);

    Document &document() { return m_document; }
    PageTabs &tabs() { return *m_tabs; }

Q_SIGNALS:
    /// The window was closed: the program may end.
    void closed();
    /// The exit menu: the program ends at once.
    void exitWanted();

protected:
    void closeEvent(QCloseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void showEvent(QShowEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void layOut();
    void connectMenu();
    void connectDocument();
    void connectProblems();
    void lookForConfigurations();
    void focusProblems(bool shown);
    void leaveProblems();

    void refuseClose(QEvent &event);
    void connectStart();
    Works works() const;
    void comeToFront();
    void finishStart();
    bool applyCommandLine();
    void buildRemainingPages();

    void applyTexts();
    void updateTitle();
    void showStatus(const QString &line);
    void showNotice();
    void showMessage(const QString &text);
    void askForAddress(bool exclusive);
    void connectEthernet(const QString &address, bool exclusive);
    void connectOperationalMode();
    void openHelpDesk();
    void beginHelp();
    bool welcomes() const;
    void useChosenLanguage(const QString &language);
    void openOperationalMode(const std::optional<QPoint> &place);
    void showTransmissions();
    void editNames();

    void showField(const EditPlace &place);

    void watchLengths(const QWidget *focused);
    void tellCut();
    void findProblemsSoon();
    void findProblemsNow();

    Services m_services;
    CommandLine m_options;
    TextTable m_texts;
    Document m_document;
    EditHistory m_history;
    EditorContext m_context;
    QString m_shownLanguage; ///< of what stands there
    InterfaceLanguage m_language;
    ModuleLink m_link;
    ProgramStart m_start;
    ProgramEnd m_end;

    MainMenu *m_menu;
    PageTabs *m_tabs;
    ProblemPanel *m_problemPanel;
    NeighbourWatch *m_neighbours;
    TransmissionPanel *m_transmissionPanel;
    StatusLine *m_status;
    std::unique_ptr<FileCommands> m_files;
    std::unique_ptr<LinkPresenter> m_linkPresenter;
    std::unique_ptr<LinkDialogs> m_linkDialogs;
    std::unique_ptr<TransmissionNotes> m_transmissions;
    std::unique_ptr<PageBuilder> m_pageBuilder;
    std::unique_ptr<ChangesOffer> m_changes;
    std::unique_ptr<EntryCommands> m_entries;
    std::unique_ptr<HelpDesk> m_help;
    std::unique_ptr<TrialConduct> m_trial; ///< null unless this run is one
    SideWindows m_sideWindows;
    OperationalModeOpener m_operationalMode;
    QTimer m_problemTimer;
    QPointer<QWidget> m_beforeProblems; ///< had the focus when the problems were shown
    bool m_firstShow = true;
};

} // namespace ktr
