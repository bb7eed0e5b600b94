#pragma once

#include "platform/status.h"
#include "platform/timers.h"

#include <QList>
#include <QString>

#include <utility>

namespace ktr {

/// The registry as the program uses it: texts below named keys. Every call opens the registry, does one
/// thing and closes it again. Nothing is reported but the code of the last error.
namespace MRegistry {

/// Numbered as the system's registry numbers its errors, so that the native registry can return its own.
enum class Error : int {
    None = 0,
    NotFound = 2,     ///< no such key or value
    AccessDenied = 5, ///< the registry cannot be opened or written
    NoRoot = 6,       ///< the root's name is not known
    Busy = 170,       ///< another program kept the registry locked
    TooLong = 234,    ///< the text does not fit into the buffer of GetRegistryString
    Corrupt = 1009,   ///< the registry's file does not hold a registry
};

/// The handle of a root by its name, with or without "hkey_" and whatever the case; 0 for any other name.
quint32 GetRootKey(const QString &name);

/// Creates a key and its parents; one that exists stays as it is.
void CreateRegistryKey(const QString &rootName, const QString &subkey);

/// Sets a text of a key, which must exist. What the 8-bit code page lacks becomes "?"; a zero ends the text.
void SetRegistryString(const QString &rootName, const QString &subkey, const QString &valueName,
                       const QString &value);

/// A text of at most 49998 characters. Empty when it is longer, or when there is no such root, key or value.
QString GetRegistryString(const QString &rootName, const QString &subkey, const QString &valueName);

/// How this thread's last call of one of the three above ended.
Error lastError();

/// Keeps the registry in another file than the user's own; an empty path goes back to that. A call that
/// writes waits up to `lockWait` for another program to finish its own. A system with a registry of its own
/// keeps no file: there the current user's root becomes a key that is named after it.
void setRegistryFile(const QString &path, Milliseconds lockWait = std::chrono::seconds(5));

/// Removes what was kept in place of such a file by a system with a registry of its own. Elsewhere the file
/// is its owner's to remove.
void forgetRegistryFile(const QString &path);

/// Whether something that is no file stands where the registry or its lock has to be; the failure names it.
Status checkPlace();

} // namespace MRegistry

/// What keeps the keys and their texts, in full Unicode: this is what a system with a registry of its own
/// replaces. Keys and value names are compared without regard to case. A zero ends a name or a text.
namespace RegistryBackEnd {

using NamedTexts = QList<std::pair<QString, QString>>;

/// "HKEY_CURRENT_USER" and the like; empty for a handle that is no root's.
QLatin1String rootName(quint32 root);

MRegistry::Error createKey(quint32 root, const QString &subkey);
MRegistry::Error setText(quint32 root, const QString &subkey, const QString &valueName, const QString &text);
/// Sets texts of a key, which is created where it is missing: in a registry that is a file by one save.
MRegistry::Error setTexts(quint32 root, const QString &subkey, const NamedTexts &texts);
MRegistry::Error getText(quint32 root, const QString &subkey, const QString &valueName, QString &text);
/// A key and the texts in it.
using KeyTexts = std::pair<QString, NamedTexts>;
/// All that stands in a key and in those directly below it, named from it on; none where it cannot be read.
QList<KeyTexts> allTexts(quint32 root, const QString &subkey);

} // namespace RegistryBackEnd

} // namespace ktr
