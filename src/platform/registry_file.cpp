#include "platform/files.h"
#include "platform/registry.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLockFile>
#include <QMutex>
#include <QStandardPaths>
#include <QThread>

#include <algorithm>
#include <functional>
#include <optional>

namespace ktr {

using MRegistry::Error;
using RegistryBackEnd::NamedTexts;

// One JSON file with an object a key, named by the key's whole path, in which the
// values stand. Other programs write into it too, so it is read anew for every call. Writers exclude each
// other by a lock file; readers need none, since the file is only ever replaced whole.

namespace {

struct Place
{
    QString path;
    Milliseconds lockWait = std::chrono::seconds(5);
};

QMutex placeMutex;

Place &chosenPlace()
{
    static Place place;
    return place;
}

Place presentPlace()
{
    const QMutexLocker guard(&placeMutex);
    Place place = chosenPlace();
    if (place.path.isEmpty()) {
        place.path = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                     QLatin1String("/KTRconfig/registry.json");
    }
    return place;
}

QString lockOf(const Place &place)
{
    return place.path + QLatin1String(".lock");
}

QString upToZero(const QString &text)
{
    return text.left(text.indexOf(QChar::Null)); // all of it when there is none
}

/// A key of the registry or a value of a key, as it is spelled there.
std::optional<QString> spelling(const QJsonObject &object, const QString &name)
{
    for (auto member = object.begin(); member != object.end(); ++member) {
        if (member.key().compare(name, Qt::CaseInsensitive) == 0) {
            return member.key();
        }
    }
    return std::nullopt;
}

/// The names from the root to the key; none for an unknown root.
QStringList pathOf(quint32 root, const QString &subkey)
{
    const QLatin1String name = RegistryBackEnd::rootName(root);
    if (name.isEmpty()) {
        return {};
    }
    return QStringList(name) + upToZero(subkey).split(u'\\', Qt::SkipEmptyParts);
}

/// Makes a key and its parents where they are missing, and gives it as it is spelled.
QString makeKey(QJsonObject &keys, const QStringList &path)
{
    QString key;
    for (const QString &name : path) {
        const QString wanted = key.isEmpty() ? name : QString(key + u'\\' + name);
        const auto present = spelling(keys, wanted);
        key = present.value_or(wanted);
        if (!present) {
            keys.insert(key, QJsonObject());
        }
    }
    return key;
}

void put(QJsonObject &keys, const QString &key, const NamedTexts &texts)
{
    QJsonObject values = keys.value(key).toObject();
    for (const auto &[valueName, text] : texts) {
        const QString name = upToZero(valueName);
        values.insert(spelling(values, name).value_or(name), upToZero(text));
    }
    keys.insert(key, values);
}

/// A missing file is an empty registry, and so is an empty one: there is nothing in it to lose.
Error load(const QString &path, QJsonObject &keys)
{
    QByteArray content;
    if (!readFile(path, content)) {
        return QFileInfo::exists(path) ? Error::AccessDenied : Error::None;
    }
    if (content.isEmpty()) {
        return Error::None;
    }
    const QJsonDocument document = QJsonDocument::fromJson(content);
    const QJsonObject found = document.object();
    const bool sound = document.isObject() && std::all_of(found.begin(), found.end(),
                                                          [](const auto &key) { return key.isObject(); });
    if (!sound) {
        return Error::Corrupt;
    }
    keys = found;
    return Error::None;
}

/// Keeps what cannot be read under another name, for someone who may be able to mend it.
bool moveAside(const QString &path)
{
    const QString name = path + QLatin1String(".unreadable");
    QString free = name;
    for (int number = 2; QFileInfo::exists(free); ++number) {
        free = name + QString::number(number);
    }
    return QFile::rename(path, free);
}

Error acquire(QLockFile &lock, Milliseconds wait)
{
    // QLockFile's own wait doubles its pauses up to seconds; a change here takes milliseconds.
    const QDeadlineTimer deadline(wait);
    while (!lock.tryLock(0)) {
        if (lock.error() != QLockFile::LockFailedError) {
            return Error::AccessDenied;
        }
        if (deadline.hasExpired()) {
            return Error::Busy;
        }
        QThread::msleep(2);
    }
    return Error::None;
}

/// Runs `edit` on the registry as it stands and writes it back when that changed anything.
Error change(const std::function<Error(QJsonObject &)> &edit)
{
    const Place place = presentPlace();
    if (!QDir().mkpath(QFileInfo(place.path).absolutePath())) {
        return Error::AccessDenied;
    }
    QLockFile lock(lockOf(place));
    if (!checkLockFile(lock.fileName())) {
        return Error::AccessDenied;
    }
    if (const Error locked = acquire(lock, place.lockWait); locked != Error::None) {
        return locked;
    }
    QJsonObject keys;
    const Error loaded = load(place.path, keys);
    if (loaded == Error::AccessDenied) {
        return loaded;
    }
    const QJsonObject before = keys;
    if (const Error edited = edit(keys); edited != Error::None || keys == before) {
        return edited;
    }
    if (loaded == Error::Corrupt && !moveAside(place.path)) {
        return Error::AccessDenied;
    }
    return replaceFile(place.path, QJsonDocument(keys).toJson()) ? Error::None : Error::AccessDenied;
}

} // namespace

void MRegistry::setRegistryFile(const QString &path, Milliseconds lockWait)
{
    const QMutexLocker guard(&placeMutex);
    chosenPlace() = {path, lockWait};
}

void MRegistry::forgetRegistryFile(const QString &) {}

Status MRegistry::checkPlace()
{
    const Place place = presentPlace();
    const QFileInfo file(place.path);
    return file.exists() && !file.isFile() ? notRegular(place.path) : checkLockFile(lockOf(place));
}

namespace RegistryBackEnd {

Error createKey(quint32 root, const QString &subkey)
{
    const QStringList path = pathOf(root, subkey);
    if (path.isEmpty()) {
        return Error::NoRoot;
    }
    return change([&path](QJsonObject &keys) {
        makeKey(keys, path);
        return Error::None;
    });
}

Error setText(quint32 root, const QString &subkey, const QString &valueName, const QString &text)
{
    const QStringList path = pathOf(root, subkey);
    if (path.isEmpty()) {
        return Error::NoRoot;
    }
    return change([&](QJsonObject &keys) {
        const auto key = spelling(keys, path.join(u'\\'));
        if (!key) {
            return Error::NotFound;
        }
        put(keys, *key, {{valueName, text}});
        return Error::None;
    });
}

Error setTexts(quint32 root, const QString &subkey, const NamedTexts &texts)
{
    const QStringList path = pathOf(root, subkey);
    if (path.isEmpty()) {
        return Error::NoRoot;
    }
    return change([&](QJsonObject &keys) {
        put(keys, makeKey(keys, path), texts);
        return Error::None;
    });
}

Error getText(quint32 root, const QString &subkey, const QString &valueName, QString &text)
{
    text.clear();
    const QStringList path = pathOf(root, subkey);
    if (path.isEmpty()) {
        return Error::NoRoot;
    }
    QJsonObject keys;
    if (const Error loaded = load(presentPlace().path, keys); loaded != Error::None) {
        return loaded;
    }
    const auto key = spelling(keys, path.join(u'\\'));
    const QJsonObject values = key ? keys.value(*key).toObject() : QJsonObject();
    const auto name = spelling(values, upToZero(valueName));
    if (!name || !values.value(*name).isString()) {
        return Error::NotFound;
    }
    text = upToZero(values.value(*name).toString());
    return Error::None;
}

QList<KeyTexts> allTexts(quint32 root, const QString &subkey)
{
    const QString above = pathOf(root, subkey).join(u'\\');
    QJsonObject keys;
    if (above.isEmpty() || load(presentPlace().path, keys) != Error::None) {
        return {};
    }
    QList<KeyTexts> all;
    for (auto key = keys.begin(); key != keys.end(); ++key) {
        const bool isBelow = key.key().startsWith(above + u'\\', Qt::CaseInsensitive) &&
                             !QStringView(key.key()).sliced(above.size() + 1).contains(u'\\');
        if (key.key().compare(above, Qt::CaseInsensitive) != 0 && !isBelow) {
            continue;
        }
        NamedTexts texts;
        const QJsonObject values = key.value().toObject();
        for (auto value = values.begin(); value != values.end(); ++value) {
            texts.emplaceBack(value.key(), value.value().toString());
        }
        all.emplaceBack(key.key().mid(above.size() + 1), texts);
    }
    return all;
}

} // namespace RegistryBackEnd

} // namespace ktr
