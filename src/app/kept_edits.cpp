#include "app/kept_edits.h"

#include "platform/files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace ktr {

namespace {

const QByteArray beginning = "<!--";
const QByteArray end = "-->";

/// Without hyphens, because two of them end a comment.
QByteArray asComment(const QString &fileName)
{
    return beginning + fileName.toUtf8().toPercentEncoding("/:\\ ", "-") + end;
}

QString fileNameIn(const QByteArray &document)
{
    const qsizetype at = document.lastIndexOf(beginning);
    return at >= 0 && document.endsWith(end) ? QString::fromUtf8(QByteArray::fromPercentEncoding(
                                                   document.mid(at + beginning.size()).chopped(end.size())))
                                             : QString();
}

} // namespace

KeptEdits::KeptEdits(const Environment &environment) : m_environment(environment) {}

QStringList KeptEdits::folders() const
{
    QStringList folders{m_environment.dataFolder, m_environment.programFolder};
    folders.removeAll(QString());
    folders.removeDuplicates();
    return folders;
}

QList<KeptEdits::Copy> KeptEdits::found() const
{
    QList<Copy> copies;
    for (const QString &folder : folders()) {
        for (const QFileInfo &file :
             QDir(folder).entryInfoList({QStringLiteral("unsaved-*.xml")}, QDir::Files)) {
            QByteArray document;
            if (file != QFileInfo(m_present) && readFile(file.filePath(), document)) {
                copies += {file.filePath(), fileNameIn(document), file.lastModified()};
            }
        }
    }
    std::ranges::sort(copies, std::greater(), &Copy::when);
    return copies;
}

Status KeptEdits::keep(const Configuration &configuration, const QString &fileName)
{
    const QByteArray document = writeConfiguration(configuration, m_environment) + asComment(fileName);
    if (!m_present.isEmpty() && replaceFile(m_present, document)) {
        return Status::done();
    }
    Status written = Status::failed(QString());
    for (const QString &folder : folders()) {
        QDir().mkpath(folder);
        const QString name =
            QStringLiteral("unsaved-") + m_environment.now().toString(QStringLiteral("yyyyMMdd-hhmmss"));
        QString path = joinPath(folder, name + QLatin1String(".xml"));
        for (int number = 1; QFileInfo::exists(path); ++number) {
            path = joinPath(folder, QStringLiteral("%1-%2.xml").arg(name).arg(number));
        }
        written = replaceFile(path, document);
        if (written) {
            drop(); // a former one that could not be replaced
            m_present = path;
            break;
        }
    }
    return written;
}

void KeptEdits::drop()
{
    if (!m_present.isEmpty()) {
        QFile::remove(std::exchange(m_present, QString()));
    }
}

} // namespace ktr
