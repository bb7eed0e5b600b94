#include "app/kept_edits.h"

#include "platform/files.h"

#include <QCoreApplication>
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

/// A file as the edits began from it: lengths and digests of it and of the names beside it.
QByteArray textOf(const Document::Source &source)
{
    QByteArrayList words;
    for (const FileMark &mark : {source.configuration, source.names}) {
        words << QByteArray::number(mark.size) << mark.content.toHex();
    }
    return words.join(',');
}

Document::Source sourceIn(const QByteArray &text, const QString &path)
{
    const QByteArrayList words = text.split(',');
    constexpr int wordsOfBoth = 4;
    if (words.size() != wordsOfBoth || path.isEmpty()) {
        return {};
    }
    return {Document::fileCalled(path),
            {words[0].toLongLong(), QByteArray::fromHex(words[1])},
            {words[2].toLongLong(), QByteArray::fromHex(words[3])}};
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
                Copy copy;
                copy.path = file.filePath();
                copy.when = file.lastModified();
                copy.fileName = QString::fromUtf8(takeComment(document));
                QStringList remarks;
                copy.names = readChannelNames(takeComment(document), remarks);
                copy.source = sourceIn(takeComment(document), copy.fileName);
                copies += copy;
            }
        }
    }
    std::ranges::sort(copies, std::greater(), &Copy::when);
    return copies;
}

/// The names that no configuration's file has, and that of the file, stand behind it.
QByteArray KeptEdits::copyOf(const Document &document, const QString &fileName) const
{
    const Configuration &configuration = document.configuration();
    const bool hasSource =
        !document.source().isEmpty() && document.source() == Document::fileCalled(fileName);
    return writeConfiguration(configuration, m_environment) +
           asComment(hasSource ? textOf(document.wholeSource()) : QByteArray()) +
           asComment(writeChannelNames(configuration.names)) + asComment(fileName.toUtf8());
}

Status KeptEdits::keep(const Document &document, const QString &fileName)
{
    m_thread.wait();
    Status written = write(copyOf(document, fileName));
    Q_EMIT tried(written);
    return written;
}

bool KeptEdits::beginToKeep(const Document &document)
{
    if (m_isBusy) {
        return false;
    }
    m_thread.wait();
    m_isBusy = true;
    const QByteArray copy = copyOf(document, document.fileName());
    m_thread.start([this, copy] {
        const Status written = write(copy); // the next edit tries again
        m_isBusy = false;
        QMetaObject::invokeMethod(
            this, [this, written] { Q_EMIT tried(written); }, Qt::QueuedConnection);
    });
    return true;
}

Status KeptEdits::write(const QByteArray &document)
{
    if (!m_present.isEmpty() && replaceFile(m_present, document)) {
        return Status::done();
    }
    Status written = Status::failed(QCoreApplication::translate("Files", "there is no folder for it"));
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
