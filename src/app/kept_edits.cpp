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
QByteArray asComment(const QByteArray &text)
{
    return beginning + text.toPercentEncoding("/:\\ ", "-") + end;
}

/// Takes the last comment off a document.
QByteArray takeComment(QByteArray &document)
{
    const qsizetype at = document.lastIndexOf(beginning);
    if (at < 0 || !document.endsWith(end)) {
        return {};
    }
    const QByteArray comment = document.mid(at + beginning.size()).chopped(end.size());
    document.truncate(at);
    return QByteArray::fromPercentEncoding(comment);
}

QString lockOf(const QString &copy)
{
    const QFileInfo file(copy);
    return joinPath(file.path(), u'.' + file.fileName() + QLatin1String(".lock"));
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
    m_thread.wait();
    QList<Copy> copies;
    for (const QString &folder : folders()) {
        for (const QFileInfo &file :
             QDir(folder).entryInfoList({QStringLiteral("unsaved-*.xml")}, QDir::Files)) {
            QByteArray document;
            if (file != QFileInfo(m_present) && !FileLock::heldBy(lockOf(file.filePath())) &&
                readFile(file.filePath(), document)) {
                Copy copy{file.filePath(), QString::fromUtf8(takeComment(document)), {}, file.lastModified()};
                QStringList remarks;
                copy.names = readChannelNames(takeComment(document), remarks);
                copies += copy;
            }
        }
    }
    std::ranges::sort(copies, std::greater(), &Copy::when);
    return copies;
}

/// The names that no configuration's file has, and that of the file, stand behind it.
QByteArray KeptEdits::copyOf(const Configuration &configuration, const QString &fileName) const
{
    return writeConfiguration(configuration, m_environment) +
           asComment(writeChannelNames(configuration.names)) + asComment(fileName.toUtf8());
}

Status KeptEdits::keep(const Configuration &configuration, const QString &fileName)
{
    m_thread.wait();
    return write(copyOf(configuration, fileName));
}

bool KeptEdits::beginToKeep(const Configuration &configuration, const QString &fileName)
{
    if (m_isBusy) {
        return false;
    }
    m_thread.wait();
    m_isBusy = true;
    const QByteArray document = copyOf(configuration, fileName);
    m_thread.start([this, document] {
        [[maybe_unused]] const Status written = write(document); // the next edit tries again
        m_isBusy = false;
    });
    return true;
}

Status KeptEdits::write(const QByteArray &document)
{
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
            if (!m_present.isEmpty()) { // a former one that could not be replaced
                QFile::remove(m_present);
            }
            m_lock.release();
            [[maybe_unused]] const FileLock::Outcome outcome = m_lock.take(lockOf(path));
            m_present = path;
            break;
        }
    }
    return written;
}

const QString &KeptEdits::present() const
{
    m_thread.wait();
    return m_present;
}

void KeptEdits::discard(const Copy &copy)
{
    QFile::remove(copy.path);
    QFile::remove(lockOf(copy.path)); // of a run that was killed
}

void KeptEdits::adopt(const QString &path)
{
    leave();
    m_present = path;
    m_isAdopted = true;
    [[maybe_unused]] const FileLock::Outcome outcome = m_lock.take(lockOf(path));
}

void KeptEdits::leave()
{
    m_thread.wait();
    m_present.clear();
    m_isAdopted = false;
    m_lock.release();
}

void KeptEdits::forget()
{
    m_isAdopted ? leave() : drop();
}

void KeptEdits::drop()
{
    m_thread.wait();
    m_isAdopted = false;
    if (!m_present.isEmpty()) {
        QFile::remove(std::exchange(m_present, QString()));
    }
    m_lock.release();
}

} // namespace ktr
