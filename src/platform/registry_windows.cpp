#include "platform/registry.h"

#include <limits>
#include <windows.h>

namespace ktr {

using MRegistry::Error;

namespace {

/// What the system's 8-bit functions take. The program's manifest makes that UTF-8.
QByteArray systemText(const QString &text)
{
    return text.left(text.indexOf(QChar::Null)).toLocal8Bit(); // all of it when there is no zero
}

HKEY systemRoot(quint32 root)
{
    return reinterpret_cast<HKEY>(static_cast<qintptr>(static_cast<qint32>(root)));
}

/// The key that holds what another registry than the user's would.
QString standInFor(const QString &path)
{
    return QLatin1String("Software\\KTRconfig\\Registries\\") + QString(path).replace(u'\\', u'/');
}

/// A key as long as it is needed.
class OpenKey
{
public:
    OpenKey() = default;
    ~OpenKey()
    {
        if (m_key != nullptr) {
            ::RegCloseKey(m_key);
        }
    }
    Q_DISABLE_COPY_MOVE(OpenKey)

    Error create(quint32 root, const QString &subkey)
    {
        return root == 0 ? Error::NoRoot
                         : Error(::RegCreateKeyA(systemRoot(root), systemText(subkey).constData(), &m_key));
    }
    Error open(quint32 root, const QString &subkey)
    {
        return root == 0 ? Error::NoRoot
                         : Error(::RegOpenKeyA(systemRoot(root), systemText(subkey).constData(), &m_key));
    }
    Error set(const QString &valueName, const QString &text)
    {
        const QByteArray bytes = systemText(text);
        if (bytes.size() >= std::numeric_limits<int>::max()) {
            return Error::TooLong;
        }
        const auto size = static_cast<DWORD>(bytes.size() + 1); // with the zero at its end
        return Error(::RegSetValueExA(m_key, systemText(valueName).constData(), 0, REG_SZ,
                                      reinterpret_cast<const BYTE *>(bytes.constData()), size));
    }
    HKEY handle() const { return m_key; }

private:
    HKEY m_key = nullptr;
};

} // namespace

void MRegistry::setRegistryFile(const QString &path, Milliseconds)
{
    const HKEY user = systemRoot(GetRootKey(QStringLiteral("hkey_current_user")));
    ::RegOverridePredefKey(user, nullptr);
    if (!path.isEmpty()) {
        OpenKey standIn;
        standIn.create(GetRootKey(QStringLiteral("hkey_current_user")), standInFor(path));
        ::RegOverridePredefKey(user, standIn.handle());
    }
}

void MRegistry::forgetRegistryFile(const QString &path)
{
    if (path.isEmpty()) {
        return;
    }
    const HKEY user = systemRoot(GetRootKey(QStringLiteral("hkey_current_user")));
    ::RegDeleteTreeA(user, systemText(standInFor(path)).constData());
    ::RegDeleteKeyA(user, "Software\\KTRconfig\\Registries"); // unless there are others
    ::RegDeleteKeyA(user, "Software\\KTRconfig");
}

Status MRegistry::checkPlace()
{
    return Status::done(); // it is no file
}

namespace RegistryBackEnd {

Error createKey(quint32 root, const QString &subkey)
{
    return OpenKey().create(root, subkey);
}

Error setText(quint32 root, const QString &subkey, const QString &valueName, const QString &text)
{
    OpenKey key;
    if (const Error opened = key.open(root, subkey); opened != Error::None) {
        return opened;
    }
    return key.set(valueName, text);
}

Error setTexts(quint32 root, const QString &subkey, const NamedTexts &texts)
{
    OpenKey key;
    Error error = key.create(root, subkey);
    for (const auto &[valueName, text] : texts) {
        if (error != Error::None) {
            break;
        }
        error = key.set(valueName, text);
    }
    return error;
}

Error getText(quint32 root, const QString &subkey, const QString &valueName, QString &text)
{
    text.clear();
    OpenKey key;
    if (const Error opened = key.open(root, subkey); opened != Error::None) {
        return opened;
    }
    const QByteArray name = systemText(valueName);
    QByteArray buffer(1024, '\0');
    DWORD type = REG_NONE;
    DWORD size = 0;
    LONG queried = ERROR_MORE_DATA;
    while (queried == ERROR_MORE_DATA) { // another program may make it longer meanwhile
        size = static_cast<DWORD>(buffer.size());
        queried = ::RegQueryValueExA(key.handle(), name.constData(), nullptr, &type,
                                     reinterpret_cast<BYTE *>(buffer.data()), &size);
        if (queried == ERROR_MORE_DATA) {
            buffer.resize(qsizetype(size) * 2);
        }
    }
    if (queried != ERROR_SUCCESS) {
        return Error(queried);
    }
    if (type != REG_SZ && type != REG_EXPAND_SZ) {
        return Error::NotFound;
    }
    buffer.truncate(qsizetype(size));
    text = QString::fromLocal8Bit(buffer.left(buffer.indexOf('\0')));
    return Error::None;
}

QList<KeyTexts> allTexts(quint32 root, const QString &subkey)
{
    constexpr DWORD longestName = 16384; // of a value; a key's is shorter
    OpenKey key;
    if (key.open(root, subkey) != Error::None) {
        return {};
    }
    QStringList below{QString()};
    QByteArray name(longestName, '\0');
    DWORD size = longestName;
    for (DWORD index = 0; ::RegEnumKeyExA(key.handle(), index, name.data(), &size, nullptr, nullptr, nullptr,
                                          nullptr) == ERROR_SUCCESS;
         ++index) {
        below += QString::fromLocal8Bit(name.constData(), static_cast<qsizetype>(size));
        size = longestName;
    }
    QList<KeyTexts> all;
    for (const QString &each : below) {
        const QString path = each.isEmpty() ? subkey : QString(subkey + u'\\' + each);
        OpenKey part;
        if (part.open(root, path) != Error::None) {
            continue;
        }
        NamedTexts texts;
        size = longestName;
        for (DWORD index = 0; ::RegEnumValueA(part.handle(), index, name.data(), &size, nullptr, nullptr,
                                              nullptr, nullptr) == ERROR_SUCCESS;
             ++index) {
            const QString valueName = QString::fromLocal8Bit(name.constData(), static_cast<qsizetype>(size));
            QString text;
            if (getText(root, path, valueName, text) == Error::None) {
                texts.emplaceBack(valueName, text);
            }
            size = longestName;
        }
        all.emplaceBack(each, texts);
    }
    return all;
}

} // namespace RegistryBackEnd

} // namespace ktr
