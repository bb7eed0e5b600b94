#pragma once

#include "platform/status.h"

#include <QFile>
#include <QString>

namespace ktr {

/// A line without a PIN: neither that of the module's "at+cpin=" nor that of the numbers command.
QString withoutPin(const QString &line);

/// A line of the conversation as it may be shown and kept: the line end removed, other control characters
/// made visible, and no PIN.
QString logText(const QString &line);

/// The line that logText() turned into this text, without its line end. A backslash of the line itself cannot
/// be distinguished from one that logText() added.
QString fromLogText(const QString &text);

/// The conversation log in a file: each line with the time, appended at once. A file that cannot be written
/// never disturbs the conversation; status() has what went wrong.
class ConversationLog
{
public:
    Status open(const QString &path);
    void close() { m_file.close(); }
    void write(const QDateTime &now, const QString &line);
    Status status() const;

private:
    QFile m_file;
};

} // namespace ktr
