#pragma once

#include "platform/file_mark.h"

#include <QHash>
#include <QString>

#include <chrono>
#include <string>
#include <vector>

namespace ktr {

QString systemHostsFile();

/// The names that the system's administrator has given addresses; "localhost" is always one of them. The file
/// is read anew, within a second of the next question, when it has changed.
class HostsFile
{
public:
    explicit HostsFile(QString path);

    /// IPv4 first, each in the order of the file; none when the name is not there.
    std::vector<std::string> addressesOf(const std::string &host);

private:
    void readAgain();

    QString m_path;
    QHash<QByteArray, QByteArrayList> m_addresses; ///< by the names in lower case
    FileStamp m_stamp;
    std::chrono::steady_clock::time_point m_nextLook;
};

} // namespace ktr
