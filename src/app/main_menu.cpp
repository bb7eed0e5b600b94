#include "app/main_menu.h"

#include "look/icons.h"
#include "look/mnemonics.h"

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
    neu = add(m_file, "mnu_neu", QKeySequence::New);
    load = add(m_file, "mnu_Load", QKeySequence::Open);
    m_recent = m_file->addMenu(QString());
    m_recent->setObjectName(QStringLiteral("mnu_recent"));
    save = add(m_file, "mnu_Save", QKeySequence::Save);
    saveAs = add(m_file, "mnu_SaveAs", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S));
    m_file->addSeparator();
    preview = add(m_file, "mnu_preview", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_P));
    print = add(m_file, "mnu_print", QKeySequence::Print);
    m_file->addSeparator();
    close = add(m_file, "mnu_close", QKeySequence(Qt::CTRL | Qt::Key_Q));
    exit = add(m_file, "nmu_Exit");

    m_edit = bar->addMenu(QString());
    undo = add(m_edit, "mnu_undo", QKeySequence(Qt::CTRL | Qt::Key_Z));
    redo = add(m_edit, "mnu_redo");
    redo->setShortcuts({QKeySequence(Qt::CTRL | Qt::Key_Y), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z)});

    m_transmit = bar->addMenu(QString());
    doConfig = add(m_transmit, "mnu_doConfig", QKeySequence(Qt::Key_F5));
    doApplication = add(m_transmit, "mnu_doApplication");

    m_connection = bar->addMenu(QString());
    search = add(m_connection, "mnu_verbindung_seriell");
    m_endOfPorts = m_connection->addSeparator();
    ethernet = add(m_connection, "mnu_verbindung_ethernet");
    exclusive = add(m_connection, "mnu_verbindung_exclusive");
    m_connection->addSeparator();
    offline = add(m_connection, "mnu_verbindung_offline");
    m_lines = new QActionGroup(this);
    for (QAction *line : {search, ethernet, exclusive, offline}) {
        line->setCheckable(true);
        m_lines->addAction(line);
    }
    offline->setChecked(true);
    connect(m_connection, &QMenu::aboutToShow, this, &MainMenu::portsWanted);

    operationalMode = bar->addAction(QString());
    operationalMode->setObjectName(QStringLiteral("mnu_betriebsmodus"));

    m_tools = bar->addMenu(QString());
    problems = add(m_tools, "mnu_problems", QKeySequence(Qt::Key_F8));
    problems->setCheckable(true);
    settings = add(m_tools, "mnu_settings");

    about = bar->addAction(QString());
    about->setObjectName(QStringLiteral("mnu_about"));

    m_bar = window.addToolBar(QString());
    m_bar->setObjectName(QStringLiteral("toolBar"));
    m_bar->setMovable(false);
    m_bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_bar->setContextMenuPolicy(Qt::PreventContextMenu);
    m_bar->addActions({neu, load, save});
    m_bar->addSeparator();
    m_bar->addActions({undo, redo});
    m_bar->addSeparator();
    m_bar->addAction(doConfig);

    const std::pair<QAction *, IconName> icons[] = {
        {neu, IconName::New},
        {load, IconName::Open},
        {save, IconName::Save},
        {saveAs, IconName::SaveAs},
        {preview, IconName::PrintPreview},
        {print, IconName::Print},
        {undo, IconName::Undo},
        {redo, IconName::Redo},
        {doConfig, IconName::Transmit},
        {settings, IconName::Settings},
    };
    for (const auto &[action, name] : icons) {
        action->setIcon(icon(name));
    }
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
    neu->setText(text(Text::New));
    load->setText(text(Text::Open));
    m_recent->setTitle(tr("Recent files"));
    save->setText(text(Text::Save));
    saveAs->setText(text(Text::SaveAs));
    preview->setText(text(Text::PrintPreview));
    print->setText(text(Text::Print));
    close->setText(tr("Close"));
    exit->setText(text(Text::Exit));
    m_edit->setTitle(tr("Edit"));
    undo->setText(tr("Undo"));
    redo->setText(tr("Redo"));
    m_transmit->setTitle(text(Text::Transmit));
    doConfig->setText(text(Text::Configuration));
    doApplication->setText(text(Text::Application));
    m_connection->setTitle(text(Text::Connection));
    search->setText(tr("Search serial ports"));
    ethernet->setText(text(Text::Ethernet) + u' ' + text(Text::PlusGsm));
    exclusive->setText(text(Text::Ethernet) + u' ' + text(Text::ExclusiveInBrackets));
    offline->setText(text(Text::Offline));
    operationalMode->setText(text(Text::OperationalMode));
    m_tools->setTitle(text(Text::Tools));
    problems->setText(tr("Show problems"));
    settings->setText(text(Text::Settings));
    about->setText(text(Text::About));
    m_bar->setWindowTitle(tr("Toolbar"));
    giveMnemonics(m_window.menuBar()->actions());
    for (const QMenu *menu : {m_file, m_edit, m_transmit, m_tools}) {
        giveMnemonics(menu->actions());
    }
    giveMnemonics({search, ethernet, exclusive, offline});

    // In the tool bar the menu's title is missing that tells what is done with the configuration.
    const QString whole = text(Text::Transmit);
    doConfig->setIconText(whole);
    doConfig->setToolTip(whole + u": " + text(Text::Configuration) + u" (" +
                         doConfig->shortcut().toString(QKeySequence::NativeText) + u')');
    for (QAction *action : {neu, load, save, undo, redo}) {
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

void MainMenu::showPorts(const QStringList &ports)
{
    qDeleteAll(m_ports);
    m_ports.clear();
    for (int index = 0; const QString &port : ports) {
        auto *action = new QAction(this);
        QString shown = port;
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
