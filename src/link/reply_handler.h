#pragma once

#include "link/history_export.h"
#include "link/reply_interpreter.h"

#include <QObject>

#include <functional>

namespace ktr {

/// Acts on a module's texts: reports its version, exports the lines of its archive. Nothing that goes wrong
/// here disturbs the conversation.
class ReplyHandler : public QObject
{
    Q_OBJECT

public:
    /// `exportPath` gives the file that the archive is exported to.
    ReplyHandler(Timers &timers, std::function<QString()> exportPath, QObject *parent = nullptr);

    void handle(const ModemDialogue::Reply &reply);

    /// A single command was handed to the module: the fast export begins with its own.
    void commandLeft(const QString &command) { m_fastExport.commandLeft(command); }

    /// The connection is gone: remarks made once per connection may be made again.
    void disconnected();

Q_SIGNALS:
    void versionReported(const ktr::VersionReply &version);
    /// A line for the status bar: what could not be used.
    void statusMessage(const QString &line);

private:
    void exportLine(const HistoryReply &reply);

    std::function<QString()> m_exportPath;
    HistoryExport m_export;
    FastExport m_fastExport;
    bool m_isIgnoringReported = false;
};

} // namespace ktr
