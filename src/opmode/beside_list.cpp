#include "opmode/beside_list.h"

#include "platform/files.h"
#include "record/record_address.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>

namespace ktr {

QString fileBesideList(const QString &list, QLatin1StringView suffix)
{
    if (!isServerAddress(list)) {
        const QFileInfo file(list);
        return file.path() + u'/' + file.completeBaseName() + suffix;
    }
    constexpr int digits = 12;
    const QByteArray hash = QCryptographicHash::hash(list.toUtf8(), QCryptographicHash::Sha256).toHex();
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QLatin1String("/KTRconfig/shared-") + QString::fromLatin1(hash.first(digits)) + suffix;
}

Status readBesideList(const QString &path, QByteArray &text)
{
    text.clear();
    if (!QFileInfo::exists(path)) {
        return Status::done();
    }
    Status read = readFile(path, text);
    if (read && !text.isValidUtf8()) {
        text.clear();
        return fileFailure(path, QCoreApplication::translate("StationGroups", "it is not in UTF-8"));
    }
    return read;
}

QString troubleBesideList(const QString &path, const Status &read, const QStringList &remarks)
{
    if (!read) {
        return read.message();
    }
    constexpr qsizetype most = 3;
    QString lines = remarks.first(std::min(most, remarks.size())).join(QLatin1String("; "));
    if (remarks.size() > most) {
        lines += QCoreApplication::translate("BesideList", "; and %L1 more").arg(remarks.size() - most);
    }
    return lines.isEmpty() ? QString() : path + QLatin1String(": ") + lines;
}

Status writeBesideList(const QString &path, const QByteArray &text)
{
    QDir().mkpath(QFileInfo(path).path());
    return replaceFile(path, text, Readers::AsUsual);
}

} // namespace ktr
