#pragma once

#include "link/history_decoder.h"
#include "platform/status.h"
#include "platform/timers.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace ktr {

/// What could not be used of a line, in lines for the user.
QStringList historyRemarks(const ArchiveLine &line);

/// The records of a line as UTF-8: "key;stamp;value;value" CR LF each, which is how spreadsheets expect it.
QByteArray historyCsv(const ArchiveLine &line);

/// The file that the archive is exported to. It is opened for each line of the archive, so that it can be
/// moved or looked at meanwhile; a new one begins with a byte-order mark and has no header line.
class HistoryExport
{
public:
    /// Appends all lines or none. Returns what to tell the user: why the file cannot be written (once, until
    /// that changes) or that it can be written again; empty otherwise.
    QString append(const QString &path, const QByteArray &lines);

    /// Whether a file can be written; one that is not there yet is not left behind.
    static Status check(const QString &path);

private:
    QString m_trouble; ///< what was told last; empty while all is well
};

/// Whether a fast export of the archive runs: from its command on until no line of the archive came for
/// some time.
class FastExport
{
public:
    static constexpr Milliseconds longestSilence{5000};

    explicit FastExport(Timers &timers) : m_timer(timers.create()) {}

    /// A single command was handed to the module.
    void commandLeft(const QString &sent);
    /// A line of the archive arrived.
    void lineArrived();
    /// The connection is gone.
    void end();

    bool isRunning() const { return m_running; }

private:
    void restart();

    std::unique_ptr<OneShotTimer> m_timer; ///< Timer_fastHistoryReset
    bool m_running = false;
};

} // namespace ktr
