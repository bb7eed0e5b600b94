#include "platform/output_check.h"

#include "platform/files.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryFile>

namespace ktr {

Status checkOutputFile(const QString &path)
{
    return FileReplacement().open(path);
}

Status makeOutputFolder(const QString &folder)
{
    const QFileInfo present(folder);
    if (present.exists() && !present.isDir()) {
        return fileFailure(folder, QCoreApplication::translate("Files", "is no folder"));
    }
    if (!QDir().mkpath(folder)) {
        return fileFailure(folder, QCoreApplication::translate("Files", "the folder cannot be made"));
    }
    QTemporaryFile probe(QDir(folder).filePath(QStringLiteral(".ktr-XXXXXX")));
    return probe.open() ? Status::done() : fileFailure(folder, probe.errorString());
}

} // namespace ktr
