#include "config/document.h"

#include "config/fields.h"
#include "platform/files.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace ktr {

namespace {

Status whyUnreadable(const QString &name, const QFileInfo &file)
{
    if (!file.exists()) {
        return fileFailure(name, QCoreApplication::translate("Files", "is not there"));
    }
    return file.isFile()
               ? fileFailure(name, QCoreApplication::translate("Files", "may not be read by this user"))
               : notRegular(name);
}

} // namespace

QString Document::fileCalled(const QString &name)
{
    if (!name.endsWith(u' ') || QFileInfo::exists(name)) {
        return name;
    }
    const auto last = std::find_if(name.crbegin(), name.crend(), [](QChar c) { return c != u' '; });
    return name.left(name.crend() - last);
}

Document::Document(Environment environment, QObject *parent)
    : QObject(parent), m_environment(std::move(environment))
{
    ktr::makeNew(m_configuration, m_environment);
}

QString Document::stamp(const QDateTime &now)
{
    return now.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
}

void Document::edit(const std::function<void(Configuration &)> &change)
{
    change(m_configuration);
    m_configuration.versionText = stamp(m_environment.now());
    m_configuration.info.version = m_configuration.versionText;
    setModified(true);
    Q_EMIT changed();
}

void Document::adjust(const std::function<void(Configuration &)> &change)
{
    change(m_configuration);
    Q_EMIT changed();
}

void Document::restore(const Configuration &snapshot, bool modified, const Source &source)
{
    m_configuration = snapshot;
    m_source = source;
    setModified(modified);
    Q_EMIT changed();
}

void Document::makeNew()
{
    m_source = {};
    adjust([this](Configuration &configuration) { ktr::makeNew(configuration, m_environment); });
}

void Document::makeAnother()
{
    m_source = {};
    setFileName(QString());
    edit([this](Configuration &configuration) { ktr::makeAnother(configuration, m_environment); });
}

void Document::setFileName(const QString &fileName)
{
    if (fileName != m_fileName) {
        m_fileName = fileName;
        Q_EMIT fileNameChanged(m_fileName);
    }
}

void Document::setModified(bool modified)
{
    if (modified != m_modified) {
        m_modified = modified;
        Q_EMIT modifiedChanged(m_modified);
    }
}

ReadReport Document::load(const QString &fileName)
{
    // Asked before anything is touched: a file that is not there must not cost the present edits.
    if (const QFileInfo info(fileCalled(fileName)); !info.isFile() || !info.isReadable()) {
        ReadReport report;
        report.opened = false;
        report.document = whyUnreadable(fileName, info);
        return report;
    }
    setFileName(fileName);
    return readPresentFile();
}

ReadReport Document::readPresentFile()
{
    const QString file = fileCalled(m_fileName);
    // Before they are read: what is changed meanwhile counts as changed afterwards.
    m_source = {file, markOf(file), markOf(namesFileOf(file))};
    ReadReport report = readConfigurationFile(file, m_configuration, m_environment);
    if (!report.document) {
        m_source = {};
        setFileName(QString());
    }
    m_configuration.names = m_source.path.isEmpty() ? ChannelNames() : readNamesBeside(file, report.remarks);
    setModified(false);
    Q_EMIT changed();
    return report;
}

bool Document::isChangedOnDisk(const Source &source)
{
    const auto isChanged = [](const QString &path, const FileMark &known) {
        const FileMark mark = markOf(path);
        return mark != FileMark() && mark != known;
    };
    return !source.path.isEmpty() && (isChanged(source.path, source.configuration) ||
                                      isChanged(namesFileOf(source.path), source.names));
}

/// Of what this run has kept a copy already, nothing that it wrote itself since takes one more.
Status Document::keep(const QString &path, bool isOwn, QString &copy)
{
    const auto before = m_kept.constFind(path);
    if (isOwn || !QFileInfo(path).isFile() ||
        (before != m_kept.cend() && before->written == markOf(path) && QFileInfo(before->copy).isFile())) {
        return Status::done();
    }
    QString name;
    if (const Status copied = keepBeside(path, name); !copied) {
        return Status::failed(
            QCoreApplication::translate("Files", "what stands in %1 cannot be kept as a backup: %2")
                .arg(path, copied.message()));
    }
    m_kept[path] = {name, {}};
    copy = name;
    return Status::done();
}

void Document::noteWritten(const QString &path, const FileMark &mark)
{
    if (const auto kept = m_kept.find(path); kept != m_kept.end()) {
        kept->written = mark;
    }
}

Status Document::backUp(QString &backup)
{
    const QString file = fileCalled(m_fileName);
    return keep(file, file == m_source.path && m_source.configuration == markOf(file), backup);
}

Status Document::saveNames(const QString &file)
{
    const QString path = namesFileOf(file);
    const bool exists = QFileInfo::exists(path);
    const ChannelNames &names = m_configuration.names;
    QStringList remarks;
    if (!exists ? names.isEmpty() : readNamesBeside(file, remarks) == names && remarks.isEmpty()) {
        m_source.names = markOf(path);
        return Status::done();
    }
    const bool isOwn = file == m_source.path && m_source.names == markOf(path) && remarks.isEmpty();
    QString copy;
    if (Status kept = keep(path, isOwn, copy); !kept) {
        return kept;
    }
    const QByteArray content = writeChannelNames(names);
    Status written = replaceFile(path, content, Readers::AsUsual);
    if (written) {
        m_source.names = markOfContent(content);
        noteWritten(path, m_source.names);
    }
    return written;
}

Status Document::save()
{
    if (m_fileName.isEmpty()) {
        return Status::failed(QCoreApplication::translate("Files", "there is no file name to save under"));
    }
    const QString file = fileCalled(m_fileName);
    QByteArray content;
    Status written = writeConfigurationFile(file, m_configuration, m_environment, &content);
    if (written) {
        // What it is, not what is found there: another one may have written meanwhile.
        const FileMark mark = markOfContent(content);
        noteWritten(file, mark);
        m_source = {file, mark, file == m_source.path ? m_source.names : FileMark()};
        written = saveNames(file);
    }
    if (written) {
        setModified(false);
        Q_EMIT saved();
    }
    return written;
}

} // namespace ktr
