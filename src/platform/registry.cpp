#include "platform/registry.h"

#include "platform/text_rules.h"

#include <algorithm>
#include <array>

namespace ktr {

using MRegistry::Error;

namespace {

struct Root
{
    quint32 handle;
    QLatin1String name;
};

constexpr qsizetype rootPrefix = 5; // "HKEY_"

// 0x80000004 has no name: it holds measurements, not settings.
constexpr std::array roots = {
    Root{0x80000000, QLatin1String("HKEY_CLASSES_ROOT")},
    Root{0x80000001, QLatin1String("HKEY_CURRENT_USER")},
    Root{0x80000002, QLatin1String("HKEY_LOCAL_MACHINE")},
    Root{0x80000003, QLatin1String("HKEY_USERS")},
    Root{0x80000005, QLatin1String("HKEY_CURRENT_CONFIG")},
    Root{0x80000006, QLatin1String("HKEY_DYN_DATA")},
};

/// The buffer into which a text is queried holds this many characters, the closing zero included.
constexpr qsizetype queryBuffer = 50000;

thread_local Error latestError = Error::None;

QString throughCodePage(const QString &text)
{
    return fromWindows1252(toWindows1252(text));
}

} // namespace

namespace MRegistry {

quint32 GetRootKey(const QString &name)
{
    const QString lower = name.toLower();
    const auto *const root = std::find_if(roots.begin(), roots.end(), [&lower](const Root &candidate) {
        const QString full = QString(candidate.name).toLower();
        return lower == full || lower == full.mid(rootPrefix);
    });
    return root != roots.end() ? root->handle : 0;
}

void CreateRegistryKey(const QString &rootName, const QString &subkey)
{
    latestError = RegistryBackEnd::createKey(GetRootKey(rootName), throughCodePage(subkey));
}

void SetRegistryString(const QString &rootName, const QString &subkey, const QString &valueName,
                       const QString &value)
{
    latestError = RegistryBackEnd::setText(GetRootKey(rootName), throughCodePage(subkey),
                                           throughCodePage(valueName), throughCodePage(value));
}

QString GetRegistryString(const QString &rootName, const QString &subkey, const QString &valueName)
{
    QString text;
    latestError = RegistryBackEnd::getText(GetRootKey(rootName), throughCodePage(subkey),
                                           throughCodePage(valueName), text);
    text = throughCodePage(text);
    // A text that fills the buffer cannot be told from a query that failed and left the size alone.
    if (text.size() >= queryBuffer - 1) {
        latestError = Error::TooLong;
        text.clear();
    }
    return text;
}

Error lastError()
{
    return latestError;
}

} // namespace MRegistry

QLatin1String RegistryBackEnd::rootName(quint32 root)
{
    const auto *const known = std::find_if(
        roots.begin(), roots.end(), [root](const Root &candidate) { return candidate.handle == root; });
    return known != roots.end() ? known->name : QLatin1String();
}

} // namespace ktr
