#pragma once

#include "app/link_log.h"
#include "app/version_check.h"
#include "link/module_link.h"
#include "link/reply_handler.h"

#include <QObject>

#include <functional>

namespace ktr {

class CalibrationPage;
class ConnectionPage;
class Document;
class InfoPage;
class MainMenu;
class ServiceTasks;
class StatusLine;
class TestPage;
class TextTable;

/// Connects the link to the module with the windows. What the user chooses in menu and pages goes to the
/// link; what happens on the link is shown in the menu, the status bar and the pages, and written to the log.
class LinkPresenter : public QObject
{
    Q_OBJECT

public:
    /// What messages are about that there is no line, or none can be opened.
    static inline const QString portTopic = QStringLiteral("port");

    LinkPresenter(ModuleLink &link, Timers &timers, Document &document, const TextTable &texts,
                  MainMenu &menu, StatusLine &status);

    void attach(TestPage &page);
    void attach(ConnectionPage &page);
    void attach(CalibrationPage &page);
    void attach(InfoPage &page);

    /// The version text that the module told over the line in use, or was given since; nothing while it told
    /// nothing. One that starts anew may be another one, at the same port.
    std::optional<QString> toldVersion() const;

    /// Shows the link's state.
    void show();
    /// The same in another language.
    void applyTexts();
    /// In place of what was told in another language tells what is so now.
    void tellAnew();

    /// Looks at a transmission before it begins, and calls `go` when it is to. `version` is what the module
    /// told, or has to tell; nothing while that is not known.
    using Gate = std::function<void(std::function<void()> go, const std::optional<QString> &version)>;
    void setGate(Gate gate) { m_gate = std::move(gate); }
    /// The choice whether the module confirms each command is "yes" until the user changes it.
    void confirmFromTheBeginning() { m_confirmsAtFirst = true; }
    /// Transmits the configuration, as soon as the module reads its SMS.
    void transmit();
    /// The same without what a module holds already that tells this version (see Transmitter).
    void transmitChanges(const StepSet &leftOut, const QString &version, qint64 basis);
    /// Transmits these steps alone.
    void transmitSteps(const StepSet &steps);
    /// The version text told or given last over this line, by whichever module; empty for none.
    const QString &lastVersion() const { return m_versions.module().configuration; }

    /// Places one command, and shows what becomes of it; the fast export's only if its file can be written.
    void place(const QString &command);
    void placeClock();

Q_SIGNALS:
    /// A line for the status bar.
    void statusMessage(const QString &line);
    /// A link to this address is wanted; one whose address is to be asked for first.
    void ethernetWanted(const QString &address, bool exclusive);
    void addressWanted(bool exclusive);
    /// lastVersion() is another one.
    void versionChanged();
    /// The firmware image can be sent. `what` says what that means, and the user has to agree.
    void firmwareReady(const QString &what);
    /// The fast export was not placed: it needs a file that can be written.
    void exportFileWanted();
    /// The configuration in the module is not the one that is being transmitted.
    void overwritingFound(const QString &text);
    /// That is out of date: another transmission begins, or something newer is known.
    void overwritingPassed();
    /// A message that must not be overlooked, in place of an earlier one about the same topic.
    void messageWanted(const QString &text, const QString &topic);
    /// The message about this topic is out of date.
    void messagePassed(const QString &topic);
    /// A line for the one message that collects all of its kind under this heading.
    void lineWanted(const QString &heading, const QString &line);
    void operationalModeWanted();

private:
    void connectLink();
    void connectReplies();
    void connectUpload();
    void connectMenu();
    void withdrawPassed();
    void forgetOtherModule();
    QString askedLine() const;
    void showUsedLine();
    void rememberLine();
    void connectTasks(ServiceTasks &tasks);
    void showState(const std::function<QString()> &line);
    bool isStateShown() const;
    void reportPlacing(WaitingCommand::Placing placing, const QString &command, const QString &replaced);
    void findPorts();
    void tickLine();
    void showProgress(int step);
    void showEnd();
    bool useShown();
    bool refuseUnused(const QString &name);
    bool hasLine();
    void transmitBy(const std::optional<QString> &version,
                    const std::function<void(const Configuration &configuration, bool answer)> &start);
    void sendFirmware();
    void takeOverTransmitted();
    void showVersion();

    ModuleLink &m_link;
    ModuleLine &m_line;
    Transmitter &m_transmitter;
    WaitingCommand &m_waiting;
    Document &m_document;
    const TextTable &m_texts;
    MainMenu &m_menu;
    StatusLine &m_status;
    TestPage *m_test = nullptr;
    ConnectionPage *m_connection = nullptr;
    InfoPage *m_info = nullptr;
    CalibrationPage *m_calibration = nullptr;
    QString m_lastLine; ///< that was remembered
    QString m_asked;    ///< which line the user asked for
    QString m_lineName; ///< of the line that was open last
    LinkLog m_log;
    VersionCheck m_versions;
    ReplyHandler m_replies;
    bool m_hasTold = false;      ///< the module that talks now has told its version, or was given it
    bool m_isRestartDue = false; ///< it was given one, and starts anew
    bool m_confirmsAtFirst = false;
    Gate m_gate = [](const std::function<void()> &go, const std::optional<QString> &) { go(); };
    std::function<QString()> m_stateText; ///< returns the state of the transmission in the present language
    QString m_stateLine;                  ///< the same as it was shown last
};

} // namespace ktr
