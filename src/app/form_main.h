#pragma once

#include "app/command_line.h"
#include "app/operational_mode_opener.h"
#include "app/page_tabs.h"
#include "app/single_instance.h"
#include "app/take_over.h"
#include "app/translations.h"
#include "link/module_link.h"
#include "printout/printout.h"

#include <QMainWindow>
#include <QPointer>
#include <QTimer>

class QMessageBox;

namespace ktr {

class FileCommands;
class InfoPage;
class LinkPresenter;
class MainMenu;
class ProblemPanel;
class StatusLine;
class TransmissionPanel;
class frmAbout;
class frmSettings;
class frm_preview;

/// What the main window needs of the world around it.
struct Services
{
    Environment environment;
    Timers &timers;
    Transport &serial;
    Transport &ethernet;
    std::function<QStringList()> ports;
    QString instanceName; ///< under which instances find each other; empty for the user's own

    /// The lines of the stations of the operational mode, and what they dropped as a stranger's.
    cStations::LineFactory stationLine = {};
    std::function<qint64()> foreignDatagrams = [] { return 0; };
};

/// The main window. start() is the start of the program, and closing the window is its end.
class FormMain : public QMainWindow
{
    Q_OBJECT

public:
    explicit FormMain(const Services &services);
    ~FormMain() override;

    /// Language, second instance, port search, "new", last file, command line, in this order; then the
    /// window is shown. Where another instance runs, this waits for its end.
    void start(const QStringList &arguments);

    /// The system asks the program to end: edits are kept, then the window closes as ever.
    void endOnRequest();
    /// The same without any window, when the program ends under its hands.
    void keepEdits();

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

    void refuseClose(QEvent &event);
    void connectInstances();
    Works works() const;
    void closeWhenFree();
    bool mayEndWork();
    void comeToFront();
    void finishStart();
    bool applyCommandLine();
    void buildRemainingPages();

    Page *buildPage(PageIndex index);
    void connectInfoPage(InfoPage &page);
    void askForExportFile();
    void offerToStop(const QString &text);
    void saveText(const QString &text);
    void openFile(const QString &path);

    QString languageFile() const;
    void setLanguage(const QString &language);
    void applyTexts();
    void tellMissingTexts();
    void updateTitle();
    void tell(const QString &line);
    void showMessage(const QString &text);
    void askForAddress(bool exclusive);
    void connectEthernet(const QString &address, bool exclusive);
    void connectOperationalMode();
    void openOperationalMode();

    PrintoutOptions printoutOptions() const;
    void print();
    void showPreview();
    void showSettings();
    void showAbout();

    void findProblemsSoon();
    void findProblemsNow();

    Services m_services;
    CommandLine m_options;
    TextTable m_texts;
    Translations m_translations;
    Document m_document;
    EditHistory m_history;
    EditorContext m_context;
    ModuleLink m_link;
    SingleInstance m_instance;
    QString m_settingsTrouble; ///< told when the start is over
    QString m_missingTexts;    ///< what is to be said once the window is there

    MainMenu *m_menu;
    PageTabs *m_tabs;
    ProblemPanel *m_problemPanel;
    TransmissionPanel *m_transmissionPanel;
    StatusLine *m_status;
    std::unique_ptr<FileCommands> m_files;
    std::unique_ptr<LinkPresenter> m_linkPresenter;
    OperationalModeOpener m_operationalMode;
    QTimer m_problemTimer;
    QTimer m_wait; ///< Tmr_wait
    QTimer m_closeTimer;
    TakeOver m_takeOver;
    QPointer<frm_preview> m_preview;
    QPointer<frmAbout> m_about;
    QPointer<frmSettings> m_settings;
    QPointer<QMessageBox> m_overwriting; ///< offers to stop a transmission
    bool m_firstShow = true;
    bool m_isStarted = false;
    bool m_isEndAgreed = false; ///< to what is being sent
};

} // namespace ktr
