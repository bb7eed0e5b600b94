#pragma once

#include "config/configuration.h"
#include "platform/environment.h"
#include "platform/status.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace ktr {

/// The program's own version as the file's element `Version` carries it: major, minor and revision.
QString programVersion();

/// The configuration as an XML document: root `KTR`, no declaration, no indentation, UTF-8. Characters
/// that XML cannot carry are left out.
QByteArray writeConfiguration(const Configuration &configuration, const Environment &environment);

/// Replaces a file whole or not at all. A new file with a PIN is readable for its owner only. A configuration
/// that would be too long to be read again is refused. Tells what was written on request.
Status writeConfigurationFile(const QString &path, const Configuration &configuration,
                              const Environment &environment, QByteArray *written = nullptr);

struct ReadReport
{
    bool opened = true;               ///< false: there was no such file, nothing was touched
    Status document = Status::done(); ///< whether the document could be loaded at all
    bool isConfiguration = true;      ///< false: no element of one is in the document
    QStringList remarks;              ///< fields whose text was of no use and that kept a fall-back
    QStringList unknown;              ///< names of elements, and "Element Attribute", that are not read
};

/// Reads a document into a configuration. Every field that the document does not give takes its fall-back,
/// all of them when it cannot be loaded: malformed, with a document type declaration, or in an encoding
/// other than UTF-8, UTF-16, windows-1252 and ISO-8859-1.
ReadReport readConfiguration(const QByteArray &document, Configuration &configuration,
                             const Environment &environment);

/// The same for a file; the messages name it.
ReadReport readConfigurationFile(const QString &path, Configuration &configuration,
                                 const Environment &environment);

} // namespace ktr
