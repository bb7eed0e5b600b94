#include "platform/file_lock.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFileInfo>
#include <QSysInfo>

namespace ktr {

// Four lines: user, machine, program with its process, time in UTC.

QByteArray lockHolderRecord(const QString &user)
{
    const QString program = QFileInfo(QCoreApplication::applicationFilePath()).completeBaseName() +
                            QLatin1String(" (") + QString::number(QCoreApplication::applicationPid()) + u')';
    return QStringList{user, QSysInfo::machineHostName(), program,
                       QDateTime::currentDateTimeUtc().toString(Qt::ISODate)}
               .join(u'\n')
               .toUtf8() +
           '\n';
}

std::optional<LockHolder> lockHolder(const QByteArray &record)
{
    constexpr qsizetype lines = 4;
    constexpr qsizetype longestLine = 100;
    QStringList parts = QString::fromUtf8(record).split(u'\n');
    if (parts.size() <= lines) {
        return std::nullopt;
    }
    for (QString &part : parts) { // anybody may have written it
        part.removeIf([](QChar c) { return !c.isPrint(); });
        part.truncate(longestLine);
    }
    return LockHolder{parts[0], parts[1], parts[2], QDateTime::fromString(parts[3], Qt::ISODate)};
}

QString lockHolderText(const QByteArray &record)
{
    const std::optional<LockHolder> holder = lockHolder(record);
    if (!holder) {
        return QCoreApplication::translate("Files", "another program");
    }
    return QCoreApplication::translate("Files", "%1 on %2, %3, since %4")
        .arg(holder->user, holder->machine, holder->program,
             holder->since.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")));
}

} // namespace ktr
