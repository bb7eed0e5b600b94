#pragma once

#include <QList>
#include <QString>

class QWidget;

namespace ktr {

/// A command that has a key.
struct KeyEntry
{
    QString window; ///< in which it holds
    QString where;  ///< the menu, or empty
    QString what;   ///< the command as the menu says it
    QString keys;   ///< all of its keys, as the system writes them
};

/// The commands of a window's menus, tool bars and shortcuts that have a key, in the order of the menus. A
/// shortcut is told when it says what it does (`setWhatsThis`).
QList<KeyEntry> keysOf(const QWidget &window, const QString &windowName);

} // namespace ktr
