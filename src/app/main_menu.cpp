#include "app/main_menu.h"

#include "look/icons.h"
#include "look/mnemonics.h"
#include "look/outside_texts.h"

#include <QActionGroup>
#include <QDir>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>

namespace ktr {

MainMenu::MainMenu(QMainWindow &window) : QObject(&window), m_window(window)
{
    QMenuBar *bar = window.menuBar();
    m_file = bar->addMenu(QString());
    newFile = add(m_file, "mnu_neu", QKeySequence::New);
    newLikeThis = add(m_file, "mnu_another", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_N));
    loadFile = add(m_file, "mnu_Load", QKeySequence::Open);
    m_recent = m_file->addMenu(QString());
    m_recent->setObjectName(QStringLiteral("mnu_recent"));
    saveFile = add(m_file, "mnu_Save", QKeySequence::Save);
    saveFileAs = add(m_file, "mnu_SaveAs", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S));
    m_file->addSeparator();
    printPreview = add(m_file, "mnu_preview", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_P));
    printConfiguration = add(m_file, "mnu_print", QKeySequence::Print);
    m_file->addSeparator();
    closeWindow = add(m_file, "mnu_close", QKeySequence(Qt::CTRL | Qt::Key_Q));
    exitAtOnce = add(m_file, "nmu_Exit");

    m_edit = bar->addMenu(QString());
    undo = add(m_edit, "mnu_undo", QKeySequence(Qt::CTRL | Qt::Key_Z));
    redo = add(m_edit, "mnu_redo");
    redo->setShortcuts({QKeySequence(Qt::CTRL | Qt::Key_Y), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z)});

    addEntryCommands();

    m_edit->addSeparator();
    nextEntry = add(m_edit, "mnu_nextEntry", QKeySequence(Qt::ALT | Qt::Key_PageDown));
    previousEntry = add(m_edit, "mnu_previousEntry", QKeySequence(Qt::ALT | Qt::Key_PageUp));

    m_transmit = bar->addMenu(QString());
    transmitConfiguration = add(m_transmit, "mnu_doConfig", QKeySequence(Qt::Key_F5));
    transmitChanges = add(m_transmit, "mnu_doChanges", QKeySequence(Qt::SHIFT | Qt::Key_F5));
    transmitChanges->setEnabled(false);
    transmitEntry = add(m_transmit, "mnu_doEntry", QKeySequence(Qt::CTRL | Qt::Key_F5));
    connect(m_transmit, &QMenu::aboutToShow, this, &MainMenu::transmitAboutToShow);
    sendFirmware = add(m_transmit, "mnu_doApplication");
    m_transmit->addSeparator();
    showTransmissions = add(m_transmit, "mnu_transmissions", QKeySequence(Qt::CTRL | Qt::Key_T));

    m_connection = bar->addMenu(QString());
    searchPorts = add(m_connection, "mnu_verbindung_seriell");
    m_endOfPorts = m_connection->addSeparator();
    connectEthernet = add(m_connection, "mnu_verbindung_ethernet");
    connectExclusively = add(m_connection, "mnu_verbindung_exclusive");
    m_connection->addSeparator();
    goOffline = add(m_connection, "mnu_verbindung_offline");
    m_lines = new QActionGroup(this);
    for (QAction *line : {searchPorts, connectEthernet, connectExclusively, goOffline}) {
        line->setCheckable(true);
        m_lines->addAction(line);
    }
    goOffline->setChecked(true);
    connect(m_connection, &QMenu::aboutToShow, this, &MainMenu::portsWanted);

    openOperationalMode = bar->addAction(QString());
    openOperationalMode->setObjectName(QStringLiteral("mnu_betriebsmodus"));

    m_tools = bar->addMenu(QString());
    compareConfigurations = add(m_tools, "mnu_compare", QKeySequence(Qt::CTRL | Qt::Key_D));
    foretell = add(m_tools, "mnu_foretell", QKeySequence(Qt::CTRL | Qt::Key_H));
    showProblems = add(m_tools, "mnu_problems", QKeySequence(Qt::Key_F8));
    showProblems->setCheckable(true);
    openSettings = add(m_tools, "mnu_settings");

    help = bar->addMenu(QString());
    help->setObjectName(QStringLiteral("mnu_help"));
    showAbout = bar->addAction(QString());
    showAbout->setObjectName(QStringLiteral("mnu_about"));

    m_bar = window.addToolBar(QString());
    m_bar->setObjectName(QStringLiteral("toolBar"));
    m_bar->setMovable(false);
    m_bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_bar->setContextMenuPolicy(Qt::PreventContextMenu);
    m_bar->addActions({newFile, loadFile, saveFile});
    m_bar->addSeparator();
    m_bar->addActions({undo, redo});
    m_bar->addSeparator();
    m_bar->addAction(transmitConfiguration);
    m_bar->addAction(transmitChanges);

    const std::pair<QAction *, IconName> icons[] = {
        {newFile, IconName::New},
        {loadFile, IconName::Open},
        {saveFile, IconName::Save},
        {saveFileAs, IconName::SaveAs},
        {printPreview, IconName::PrintPreview},
        {printConfiguration, IconName::Print},
        {undo, IconName::Undo},
        {redo, IconName::Redo},
        {transmitConfiguration, IconName::Transmit},
        {transmitChanges, IconName::Transmit},
        {openSettings, IconName::Settings},
    };
    for (const auto &[action, name] : icons) {
        action->setIcon(icon(name));
    }
}

/// Their keys hold where the list of entries has the focus: elsewhere they belong to the fields.
void MainMenu::addEntryCommands()
{
    m_edit->addSeparator();
    cutEntry = add(m_edit, "mnu_entry_cut", QKeySequence::Cut);
    copyEntry = add(m_edit, "mnu_entry_copy", QKeySequence::Copy);
    pasteEntry = add(m_edit, "mnu_entry_paste", QKeySequence::Paste);
    duplicateEntry = add(m_edit, "mnu_entry_duplicate", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_D));
    clearEntry = add(m_edit, "mnu_entry_clear", QKeySequence(Qt::Key_Delete));
    m_edit->addSeparator();
    moveEntryUp = add(m_edit, "mnu_entry_up", QKeySequence(Qt::ALT | Qt::Key_Up));
    moveEntryDown = add(m_edit, "mnu_entry_down", QKeySequence(Qt::ALT | Qt::Key_Down));
    moveEntryTo = add(m_edit, "mnu_entry_to");
    m_edit->addSeparator();
    fillDown = add(m_edit, "mnu_fillDown", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_D));
    editNames = add(m_edit, "mnu_names", QKeySequence(Qt::CTRL | Qt::Key_I));
    for (QAction *action : entryActions() + QList<QAction *>{fillDown}) {
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    }
}

QList<QAction *> MainMenu::entryActions() const
{
    return {cutEntry,   copyEntry,   pasteEntry,    duplicateEntry,
            clearEntry, moveEntryUp, moveEntryDown, moveEntryTo};
}

QAction *MainMenu::add(QMenu *menu, const char *name, const QKeySequence &shortcut)
{
    QAction *action = menu->addAction(QString());
    action->setObjectName(QLatin1String(name));
    action->setShortcut(shortcut);
    return action;
}

void MainMenu::applyTexts(const TextTable &texts)
{
    const auto text = [&texts](Text name) { return texts.text(name); };
    m_file->setTitle(text(Text::File));
    newFile->setText(text(Text::New));
    newLikeThis->setText(tr("New from this one"));
    loadFile->setText(text(Text::Open));
    m_recent->setTitle(tr("Recent files"));
    saveFile->setText(text(Text::Save));
    saveFileAs->setText(text(Text::SaveAs));
    printPreview->setText(text(Text::PrintPreview));
    printConfiguration->setText(text(Text::Print));
    closeWindow->setText(tr("Close"));
    exitAtOnce->setText(text(Text::Exit));
    m_edit->setTitle(tr("Edit"));
    undo->setText(tr("Undo"));
    redo->setText(tr("Redo"));
    cutEntry->setText(tr("Cut entry"));
    copyEntry->setText(tr("Copy entry"));
    pasteEntry->setText(tr("Paste entry"));
    duplicateEntry->setText(tr("Duplicate entry"));
    clearEntry->setText(tr("Clear entry"));
    moveEntryUp->setText(tr("Move up"));
    moveEntryDown->setText(tr("Move down"));
    moveEntryTo->setText(tr("Move to..."));
    fillDown->setText(tr("Fill down"));
    nextEntry->setText(tr("Next entry"));
    previousEntry->setText(tr("Previous entry"));
    editNames->setText(tr("Names of the inputs and outputs..."));
    m_transmit->setTitle(text(Text::Transmit));
    transmitConfiguration->setText(text(Text::Configuration));
    transmitEntry->setText(tr("This entry"));
    sendFirmware->setText(text(Text::Application));
    showTransmissions->setText(tr("Transmissions..."));
    m_connection->setTitle(text(Text::Connection));
    searchPorts->setText(tr("Search serial ports"));
    connectEthernet->setText(text(Text::Ethernet) + u' ' + text(Text::PlusGsm));
    connectExclusively->setText(text(Text::Ethernet) + u' ' + text(Text::ExclusiveInBrackets));
    goOffline->setText(text(Text::Offline));
    openOperationalMode->setText(text(Text::OperationalMode));
    m_tools->setTitle(text(Text::Tools));
    compareConfigurations->setText(tr("Compare..."));
    foretell->setText(tr("What would happen..."));
    showProblems->setText(tr("Show problems"));
    openSettings->setText(text(Text::Settings));
    help->setTitle(tr("Help"));
    showAbout->setText(text(Text::About));
    m_bar->setWindowTitle(tr("Toolbar"));
    giveMnemonics(m_window.menuBar()->actions());
    for (const QMenu *menu : {m_file, m_edit, m_transmit, m_tools}) {
        giveMnemonics(menu->actions());
    }
    giveMnemonics({searchPorts, connectEthernet, connectExclusively, goOffline});

    // In the menu the title above says what is done with the configuration; the tool bar has no title.
    const QString whole = text(Text::Transmit);
    transmitConfiguration->setIconText(whole);
    transmitConfiguration->setToolTip(whole + u": " + text(Text::Configuration) + u" (" +
                                      transmitConfiguration->shortcut().toString(QKeySequence::NativeText) +
                                      u')');
    for (QAction *action : {newFile, loadFile, saveFile, undo, redo}) {
        const QString plain = QString(action->text()).remove(u'&');
        action->setIconText(plain);
        action->setToolTip(plain + u" (" + action->shortcut().toString(QKeySequence::NativeText) + u')');
    }
}

void MainMenu::showRecent(const QStringList &names)
{
    m_recent->clear();
    m_recent->setEnabled(!names.isEmpty());
    for (int number = 1; const QString &name : names) {
        QString shown = QDir::toNativeSeparators(name);
        shown.replace(u'&', QLatin1String("&&"));
        QAction *action = m_recent->addAction(u'&' + QString::number(number) + u' ' + shown);
        action->setObjectName(QStringLiteral("mnu_recent_%1").arg(number - 1));
        connect(action, &QAction::triggered, this, [this, name] { Q_EMIT recentChosen(name); });
        ++number;
    }
}

void MainMenu::showPorts(const QStringList &ports, const QStringList &adapters)
{
    qDeleteAll(m_ports);
    m_ports.clear();
    for (int index = 0; const QString &port : ports) {
        auto *action = new QAction(this);
        const QString adapter = adapters.value(index);
        QString shown = adapter.isEmpty() ? port : port + QLatin1String("  –  ") + shortenedLine(adapter, 60);
        action->setText(shown.replace(u'&', QLatin1String("&&")));
        action->setData(port);
        action->setObjectName(QStringLiteral("mnu_verbindung_seriell_%1").arg(index++));
        action->setCheckable(true);
        m_lines->addAction(action);
        connect(action, &QAction::triggered, this, [this, port] { Q_EMIT portChosen(port); });
        m_connection->insertAction(m_endOfPorts, action);
        m_ports += action;
    }
}

QAction *MainMenu::portAction(const QString &port) const
{
    for (QAction *action : m_ports) {
        if (action->data().toString() == port) {
            return action;
        }
    }
    return nullptr;
}

} // namespace ktr
