#include "platform/hosts_file.h"

#include "platform/files.h"

#include <QFileInfo>

namespace ktr {

namespace {

constexpr std::chrono::seconds lookInterval{1};
constexpr qint64 longestFile = qint64{16} << 20;

} // namespace

QString systemHostsFile()
{
#ifdef Q_OS_WIN
    return qEnvironmentVariable("SystemRoot") + QLatin1String("\\System32\\drivers\\etc\\hosts");
#else
    return QStringLiteral("/etc/hosts");
#endif
}

HostsFile::HostsFile(QString path) : m_path(std::move(path)) {}

std::vector<std::string> HostsFile::addressesOf(const std::string &host)
{
    const auto now = std::chrono::steady_clock::now();
    if (now >= m_nextLook) {
        m_nextLook = now + lookInterval;
        readAgain();
    }
    QByteArray name = QByteArray::fromStdString(host).toLower();
    if (name.endsWith('.')) {
        name.chop(1);
    }
    std::vector<std::string> found;
    for (const bool isV6 : {false, true}) {
        for (const QByteArray &address : m_addresses.value(name)) {
            if (address.contains(':') == isV6) {
                found.push_back(address.toStdString());
            }
        }
    }
    if (found.empty() && name == "localhost") {
        found.emplace_back("127.0.0.1");
    }
    return found;
}

void HostsFile::readAgain()
{
    const QFileInfo info(m_path);
    if (m_stamp.stillHolds(info)) {
        return;
    }
    m_stamp = FileStamp(info);
    m_addresses.clear();
    QByteArray content;
    if (!readFile(m_path, content, longestFile)) {
        return; // no names then
    }
    for (const QByteArray &line : content.split('\n')) {
        QByteArrayList words = line.split('#').constFirst().simplified().split(' ');
        const QByteArray address = words.takeFirst();
        for (const QByteArray &word : words) {
            m_addresses[word.toLower()] += address;
        }
    }
}

} // namespace ktr
