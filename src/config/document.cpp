#include "config/document.h"

#include "config/fields.h"
#include "platform/files.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace ktr {

namespace {

QString fileCalled(const QString &name)
{
    if (!name.endsWith(u' ') || QFileInfo::exists(name)) {
        return name;
    }
    const auto last = std::find_if(name.crbegin(), name.crend(), [](QChar c) { return c != u' '; });
    return name.left(name.crend() - last);
}

} // namespace

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

void Document::restore(const Configuration &snapshot, bool modified, const QString &source)
{
    m_configuration = snapshot;
    m_source = source;
    setModified(modified);
    Q_EMIT changed();
}

void Document::makeNew()
{
    m_source.clear();
    adjust([this](Configuration &configuration) { ktr::makeNew(configuration, m_environment); });
}

void Document::makeAnother()
{
    m_source.clear();
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
        report.document =
            fileFailure(fileName, QCoreApplication::translate("Files", "cannot be opened for reading"));
        return report;
    }
    setFileName(fileName);
    return readPresentFile();
}

ReadReport Document::readPresentFile()
{
    m_source = fileCalled(m_fileName);
    m_known = known(m_source); // before it is read: what is changed meanwhile counts as changed afterwards
    ReadReport report = readConfigurationFile(m_source, m_configuration, m_environment);
    if (!report.document) {
        m_source.clear();
        setFileName(QString());
    }
    readNames(report.remarks);
    setModified(false);
    Q_EMIT changed();
    return report;
}

void Document::readNames(QStringList &remarks)
{
    const QString file = fileCalled(m_fileName);
    m_knownNames = known(namesFileOf(file));
    m_configuration.names = readNamesBeside(file, remarks);
}

Document::KnownFile Document::known(const QString &path)
{
    return {path, markOf(path)};
}

bool Document::isChangedOnDisk() const
{
    return !m_source.isEmpty() && m_source == m_known.path && QFileInfo(m_source).isFile() &&
           m_known != known(m_source);
}

Status Document::backUp(QString &backup)
{
    const QString file = fileCalled(m_fileName);
    const QString name = file + u'~';
    const bool isOwn = file == m_source && (file != m_known.path || m_known == known(file));
    const bool isKept = m_backedUp.value(file) == known(file) && QFileInfo(name).isFile();
    if (isOwn || isKept || !QFileInfo(file).isFile()) {
        return Status::done();
    }
    if (const Status copied = copyFile(file, name); !copied) {
        return Status::failed(
            QCoreApplication::translate("Files", "what stands in %1 cannot be kept as a backup: %2")
                .arg(file, copied.message()));
    }
    m_backedUp[file] = known(file);
    backup = name;
    return Status::done();
}

Status Document::saveNames(const QString &file)
{
    const QString path = namesFileOf(file);
    const bool exists = QFileInfo::exists(path);
    const ChannelNames &names = m_configuration.names;
    QStringList remarks;
    if (!exists ? names.isEmpty() : readNamesBeside(file, remarks) == names && remarks.isEmpty()) {
        m_knownNames = known(path);
        return Status::done();
    }
    if (exists && (m_knownNames != known(path) || !remarks.isEmpty())) {
        if (Status kept = copyFile(path, path + u'~'); !kept) {
            return kept;
        }
    }
    const QByteArray content = writeChannelNames(names);
    Status written = replaceFile(path, content, Readers::AsUsual);
    if (written) { // what it is, not what is found: another one may have written meanwhile
        m_knownNames = {path, markOfContent(content)};
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
        m_source = file;
        m_known = {file, markOfContent(content)};
        if (const auto kept = m_backedUp.find(file); kept != m_backedUp.end()) {
            *kept = m_known;
        }
        written = saveNames(file);
    }
    if (written) {
        setModified(false);
        Q_EMIT saved();
    }
    return written;
}

} // namespace ktr
