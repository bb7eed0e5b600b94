#include "help/key_list.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QSet>
#include <QShortcut>

namespace ktr {

namespace {

/// As it is read: without the mark of the letter that is its key in the menu.
QString readCaption(QString text)
{
    const QChar kept(0xE000);
    text.replace(QLatin1String("&&"), QString(kept)).remove(u'&').replace(kept, u'&');
    return text.endsWith(QLatin1String("...")) ? text.chopped(3) : text;
}

QString written(const QList<QKeySequence> &keys)
{
    QStringList texts;
    for (const QKeySequence &key : keys) {
        if (!key.isEmpty()) {
            texts += key.toString(QKeySequence::NativeText);
        }
    }
    return texts.join(QLatin1String(", "));
}

class KeyGatherer
{
public:
    explicit KeyGatherer(QString window) : m_window(std::move(window)) {}

    void takeMenu(const QList<QAction *> &actions, const QString &where)
    {
        for (const QAction *action : actions) {
            if (action->menu() != nullptr) {
                const QString title = readCaption(action->menu()->title());
                takeMenu(action->menu()->actions(), where.isEmpty() ? title : where + u" › " + title);
            } else {
                take(*action, where);
            }
        }
    }

    void take(const QAction &action, const QString &where)
    {
        const QString keys = written(action.shortcuts());
        const QString what = readCaption(action.text());
        if (!keys.isEmpty() && !what.isEmpty() && !m_taken.contains(&action)) {
            m_taken += &action;
            m_entries += KeyEntry{m_window, where, what, keys};
        }
    }

    void take(const QShortcut &shortcut)
    {
        const QString keys = written(shortcut.keys());
        const QString what = shortcut.whatsThis();
        if (keys.isEmpty() || what.isEmpty()) {
            return;
        }
        for (KeyEntry &entry : m_entries) {
            if (entry.what == what && entry.where.isEmpty()) {
                entry.keys += QLatin1String(", ") + keys;
                return;
            }
        }
        m_entries += KeyEntry{m_window, {}, what, keys};
    }

    QList<KeyEntry> entries() const { return m_entries; }

private:
    QString m_window;
    QSet<const QAction *> m_taken;
    QList<KeyEntry> m_entries;
};

} // namespace

QList<KeyEntry> keysOf(const QWidget &window, const QString &windowName)
{
    KeyGatherer gatherer(windowName);
    if (const auto *main = qobject_cast<const QMainWindow *>(&window)) {
        gatherer.takeMenu(main->menuBar()->actions(), {});
    }
    for (const QAction *action : window.findChildren<QAction *>()) {
        gatherer.take(*action, {});
    }
    for (const QShortcut *shortcut : window.findChildren<QShortcut *>()) {
        gatherer.take(*shortcut);
    }
    return gatherer.entries();
}

} // namespace ktr
