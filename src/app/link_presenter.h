#pragma once

#include "link/conversation_log.h"
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
class StatusLine;
class TestPage;
class TextTable;

/// Brings the link to the module and the windows together: what is chosen there goes to the link, what
/// happens on the link is shown in the menu, the status bar and the pages that are there, and logged.
class LinkPresenter : public QObject
{
    Q_OBJECT

public:
    LinkPresenter(ModuleLink &link, Timers &timers, Document &document, const TextTable &texts,
                  MainMenu &menu, StatusLine &status);

    void attach(TestPage &page);
    void attach(ConnectionPage &page);
    void attach(CalibrationPage &page);
    void attach(InfoPage &page);

    /// Shows the link's state.
    void show();
    /// The same in another language.
    void applyTexts();

    /// Transmits the configuration once the module reads its messages.
    void transmit();

    /// Places one command, and tells what becomes of it; that of the fast export only when its file can be
    /// written.
    void place(const QString &command);
    void placeClock();

Q_SIGNALS:
    /// A line for the status bar.
    void statusMessage(const QString &line);
    /// A link to this address is wanted; one whose address is to be asked for first.
    void ethernetWanted(const QString &address, bool exclusive);
    void addressWanted(bool exclusive);
    /// The firmware image was found sound; `what` tells what is about to be sent, and is to be agreed to.
    void firmwareReady(const QString &what);
    /// The fast export needs a file that can be written before it is placed.
    void exportFileWanted();
    /// What the module holds is another configuration than the one that is being transmitted.
    void overwritingFound(const QString &text);
    /// That is told no longer: another transmission begins, or something newer is known.
    void overwritingPassed();
    /// A message that must not be overlooked, in place of an earlier one about the same topic.
    void messageWanted(const QString &text, const QString &topic);
    /// What the message about this topic told is so no longer.
    void messagePassed(const QString &topic);
    /// A message, one of several of a kind that go into one message below the heading.
    void lineWanted(const QString &heading, const QString &line);
    void operationalModeWanted();

private:
    void connectLink();
    void connectReplies();
    void connectUpload();
    void connectMenu();
    void withdrawPassed();
    void showState(const std::function<QString()> &line);
    bool isStateShown() const;
    void reportPlacing(WaitingCommand::Placing placing, const QString &command, const QString &replaced);
    void findPorts();
    void tickLine();
    void showProgress(int step);
    void showEnd();
    void sendFirmware();
    void takeOverTransmitted();
    void takeVersion(const VersionReply &version);
    void showVersion();
    void takeStationType(const QString &type);
    void reportDifference(const QString &moduleVersion);
    void writeLog(const QString &line);

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
    ReplyHandler m_replies;
    VersionReply m_version;               ///< as last reported
    bool m_isDifferenceReported = false;  ///< on this connection
    bool m_isOverwritingReported = false; ///< in this transmission
    ConversationLog m_log;
    QString m_logPath;
    bool m_isLogFailureReported = false;
    std::function<QString()> m_stateText; ///< gives in the present language what was told of the transmission
    QString m_stateLine;                  ///< the same as it was told
};

} // namespace ktr
