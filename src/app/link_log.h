#pragma once

#include "config/document.h"
#include "link/conversation_log.h"

#include <QObject>

namespace ktr {

/// The log of the conversation in the file that the configuration names at the moment. A log that cannot be
/// written disturbs nothing else; the user is told once for each file.
class LinkLog : public QObject
{
    Q_OBJECT

public:
    explicit LinkLog(const Document &document) : m_document(document) {}

    void write(const QString &line);

Q_SIGNALS:
    /// A line for the status bar.
    void statusMessage(const QString &line);

private:
    const Document &m_document;
    ConversationLog m_log;
    QString m_path;
    bool m_isFailureReported = false;
};

} // namespace ktr
