#pragma once

#include "lang/text_table.h"

#include <QKeySequence>
#include <QObject>
#include <QStringList>

class QAction;
class QActionGroup;
class QMainWindow;
class QMenu;
class QToolBar;

namespace ktr {

enum class IconName;

/// The main window's menus and tool bar. It holds the actions; what they do is connected by the window.
class MainMenu : public QObject
{
    Q_OBJECT

public:
    explicit MainMenu(QMainWindow &window);

    void applyTexts(const TextTable &texts);

    /// What can be done with entries.
    QList<QAction *> entryActions() const;

    /// The files used last, for their menu.
    void showRecent(const QStringList &names);

    /// The serial ports found, for the connection menu.
    /// Those in `adapters` stand beside them, in words.
    void showPorts(const QStringList &ports, const QStringList &adapters);
    /// The action of a port's menu entry; null when there is none.
    QAction *portAction(const QString &port) const;

    QAction *newFile;
    QAction *newLikeThis;
    QAction *loadFile;
    QAction *saveFile;
    QAction *saveFileAs;
    QAction *printPreview;
    QAction *printConfiguration;
    QAction *closeWindow; ///< with the question whether to save
    QAction *exitAtOnce;  ///< without it
    QAction *undo;
    QAction *redo;
    QAction *nextEntry;
    QAction *previousEntry;
    QAction *cutEntry;
    QAction *copyEntry;
    QAction *pasteEntry;
    QAction *duplicateEntry;
    QAction *clearEntry;
    QAction *moveEntryUp;
    QAction *moveEntryDown;
    QAction *moveEntryTo;
    QAction *editNames;
    QAction *fillDown; ///< in a column of the inputs
    QAction *transmitConfiguration;
    QAction *transmitChanges;
    QAction *transmitEntry;
    QAction *sendFirmware;
    QAction *showTransmissions;
    QAction *searchPorts;
    QAction *connectEthernet;
    QAction *connectExclusively;
    QAction *goOffline;
    QAction *openOperationalMode;
    QAction *openSettings;
    QAction *compareConfigurations;
    QAction *foretell;
    QAction *showProblems;
    QMenu *help; ///< filled by others
    QAction *showAbout;

Q_SIGNALS:
    void recentChosen(const QString &fileName);
    void portChosen(const QString &port);
    /// The connection menu opens: the ports may have changed.
    void portsWanted();
    /// The menu of transmissions opens.
    void transmitAboutToShow();

private:
    QAction *add(QMenu *menu, const char *name, const QKeySequence &shortcut = {});
    void addEntryCommands();

    QMainWindow &m_window;
    QMenu *m_file;
    QMenu *m_recent;
    QMenu *m_edit;
    QMenu *m_transmit;
    QMenu *m_connection;
    QMenu *m_tools;
    QToolBar *m_bar;
    QActionGroup *m_lines;
    QAction *m_endOfPorts;
    QList<QAction *> m_ports;
};

} // namespace ktr
