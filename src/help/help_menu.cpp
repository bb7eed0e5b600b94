#include "help/help_menu.h"

#include "help/help_keys.h"
#include "look/mnemonics.h"

#include <QAction>
#include <QApplication>
#include <QEvent>
#include <QMainWindow>
#include <QMenu>
#include <QWhatsThis>

namespace ktr {

namespace {

const QString commandsChapter = QStringLiteral("commands");
const QString newsChapter = QStringLiteral("news");

} // namespace

QString HelpMenu::menuName()
{
    return QStringLiteral("mnu_help");
}

HelpMenu::HelpMenu(QMainWindow &window, HelpKeys &help, const Commands &commands)
    : QObject(&window), m_window(window), m_menu(window.findChild<QMenu *>(menuName()))
{
    const auto entry = [this](const char *name, const char *caption, const std::function<void()> &act) {
        QAction *action = add(name, act);
        m_captions.emplace_back(action, caption);
        return action;
    };
    QAction *manual = entry("mnu_help_manual", QT_TR_NOOP("Manual"), [this, &help] {
        help.showAbout(m_window.focusWidget() != nullptr ? m_window.focusWidget() : &m_window);
    });
    manual->setShortcut(QKeySequence(Qt::Key_F1));
    QAction *meaning = entry("mnu_help_meaning", QT_TR_NOOP("What this field means"),
                             [&help] { help.explain(QApplication::focusWidget()); });
    meaning->setShortcut(QKeySequence(Qt::SHIFT | Qt::Key_F1));
    entry("mnu_help_what", QT_TR_NOOP("What is this?"), [] { QWhatsThis::enterWhatsThisMode(); });
    entry("mnu_help_commands", QT_TR_NOOP("Service commands"), [&help] { help.showPlace(commandsChapter); });
    entry("mnu_help_keys", QT_TR_NOOP("Keyboard shortcuts..."), commands.showKeys);
    entry("mnu_help_news", QT_TR_NOOP("What is new"), [&help] { help.showPlace(newsChapter); });
    m_menu->addSeparator();
    entry("mnu_help_welcome", QT_TR_NOOP("Welcome..."), commands.welcome);
    entry("mnu_try_module", QT_TR_NOOP("Try with a virtual module"), commands.tryModule);
    entry("mnu_try_fleet", QT_TR_NOOP("Try the operational mode on a virtual fleet"), commands.tryFleet);
    m_menu->addSeparator();
    entry("mnu_help_report", QT_TR_NOOP("Report a problem..."), commands.report);
    window.installEventFilter(this);
    applyTexts();
}

QAction *HelpMenu::add(const char *name, const std::function<void()> &act)
{
    QAction *action = m_menu->addAction(QString());
    action->setObjectName(QLatin1String(name));
    action->setEnabled(act != nullptr);
    if (act != nullptr) {
        connect(action, &QAction::triggered, this, act);
    }
    return action;
}

void HelpMenu::applyTexts()
{
    for (const auto &[action, caption] : m_captions) {
        action->setText(tr(caption));
    }
    giveMnemonics(m_menu->actions());
}

bool HelpMenu::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == &m_window && event->type() == QEvent::LanguageChange) {
        applyTexts();
    }
    return QObject::eventFilter(watched, event);
}

} // namespace ktr
