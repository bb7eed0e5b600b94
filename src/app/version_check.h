#pragma once

#include "link/reply_interpreter.h"

#include <QObject>

namespace ktr {

class Document;
class ModuleLink;
class TextTable;
class Transmitter;

/// What the module says that it is: keeps its versions, takes its station type over into the configuration,
/// and reports when it holds another configuration than the one that is open or being transmitted.
class VersionCheck : public QObject
{
    Q_OBJECT

public:
    /// All of them must outlive this.
    VersionCheck(const ModuleLink &link, Document &document, const TextTable &texts);

    /// As last reported.
    const VersionReply &module() const { return m_module; }

    /// The module reports its versions.
    void handleVersion(const VersionReply &version);
    /// The module was given a configuration of this version.
    void takeConfigured(const QString &version);
    /// There is another module, which has reported nothing yet.
    void forget();

Q_SIGNALS:
    /// See module().
    void changed();
    /// A line for the status bar.
    void statusMessage(const QString &line);
    /// The module holds another configuration than the open one; once for each connection.
    void differenceFound(const QString &text);
    /// It holds another configuration than the one that is being transmitted; once for each transmission.
    void overwritingFound(const QString &text);

private:
    void takeStationType(const QString &type);
    void reportDifference(const QString &moduleVersion);

    const Transmitter &m_transmitter;
    Document &m_document;
    const TextTable &m_texts;
    VersionReply m_module;
    bool m_isDifferenceReported = false;  ///< on this connection
    bool m_isOverwritingReported = false; ///< in this transmission
};

} // namespace ktr
