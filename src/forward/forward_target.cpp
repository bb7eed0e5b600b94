#include "forward/forward_target.h"

#include "platform/files.h"

#include <QFileInfo>
#include <QUrl>

namespace ktr {

namespace {

constexpr int plainPort = 1883;
constexpr int encryptedPort = 8883;
constexpr qint64 longestPasswordFile = 4'096;

QString withoutSlashes(QString path)
{
    while (path.startsWith(u'/')) {
        path.remove(0, 1);
    }
    while (path.endsWith(u'/')) {
        path.chop(1);
    }
    return path;
}

} // namespace

QString ForwardTarget::name() const
{
    const QString place = host.contains(u':') ? QString(u'[' + host + u']') : host;
    return (isEncrypted ? QStringLiteral("mqtts://") : QStringLiteral("mqtt://")) + place + u':' +
           QString::number(port) + u'/' + prefix;
}

Status readForwardTarget(const QString &text, ForwardTarget &target)
{
    const auto wrong = [&text](const QString &why) {
        return Status::failed(QStringLiteral("\"%1\": %2").arg(text, why));
    };
    const QUrl url(text, QUrl::StrictMode);
    if (url.isValid() && !url.password().isEmpty()) { // and is not shown once more
        return Status::failed(
            QStringLiteral(
                "a password does not belong on the command line: it goes into a file or into the variable %1")
                .arg(forwardPasswordVariable()));
    }
    const QString scheme = url.scheme();
    if (!url.isValid() || (scheme != QLatin1String("mqtt") && scheme != QLatin1String("mqtts"))) {
        return wrong(QStringLiteral("is no mqtt://HOST or mqtts://HOST"));
    }
    if (url.host().isEmpty() || url.hasQuery() || url.hasFragment() || url.port(plainPort) == 0) {
        return wrong(QStringLiteral("is no mqtt[s]://[USER@]HOST[:PORT][/PREFIX]"));
    }
    ForwardTarget read;
    read.isEncrypted = scheme == QLatin1String("mqtts");
    read.host = url.host();
    read.port = url.port(read.isEncrypted ? encryptedPort : plainPort);
    read.user = url.userName(QUrl::FullyDecoded);
    if (const QString prefix = withoutSlashes(url.path(QUrl::FullyDecoded)); !prefix.isEmpty()) {
        read.prefix = prefix;
    }
    for (const QChar letter : std::as_const(read.prefix)) {
        if (letter == u'+' || letter == u'#' || letter.category() == QChar::Other_Control) {
            return wrong(QStringLiteral("topics cannot begin with \"%1\"").arg(read.prefix));
        }
    }
    if (read.prefix.startsWith(u'$')) { // the broker's own
        return wrong(QStringLiteral("topics cannot begin with \"%1\"").arg(read.prefix));
    }
    target = read;
    return Status::done();
}

QString forwardPasswordVariable()
{
    return QStringLiteral("KTR_FORWARD_PASSWORD");
}

Status readForwardPassword(const QString &path, QByteArray &password)
{
    password = path.isEmpty() ? qgetenv(forwardPasswordVariable().toLatin1().constData()) : QByteArray();
    if (path.isEmpty()) {
        return Status::done();
    }
    constexpr QFile::Permissions others =
        QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
    if (QFileInfo(path).permissions() & others) {
        return fileFailure(path, QStringLiteral("others can read or change the password: chmod 600 it"));
    }
    Status read = readFile(path, password, longestPasswordFile);
    if (const qsizetype end = password.indexOf('\n'); end >= 0) {
        password.truncate(end);
    }
    if (password.endsWith('\r')) {
        password.chop(1);
    }
    return read;
}

} // namespace ktr
