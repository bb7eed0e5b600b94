#include "record/record_address.h"

#include <QCoreApplication>
#include <QUrl>
#include <QUrlQuery>

namespace ktr {

namespace {

using namespace Qt::StringLiterals;

QString quoted(QString value)
{
    return u'\'' + value.replace(u'\\', u"\\\\"_s).replace(u'\'', u"\\'"_s) + u'\'';
}

} // namespace

bool isServerAddress(const QString &record)
{
    return record.startsWith(u"postgresql://"_s) || record.startsWith(u"postgres://"_s);
}

ServerAddress serverAddress(const QString &record)
{
    if (!isServerAddress(record)) {
        return ServerAddress{Status::failed(
            QCoreApplication::translate("Record", "\"%1\" does not begin with postgresql://").arg(record))};
    }
    const auto refused = [&record](const QString &why) {
        return ServerAddress{Status::failed(record + u": "_s + why)};
    };
    const QUrl url(record, QUrl::StrictMode);
    if (!url.isValid()) {
        return refused(url.errorString());
    }
    QList<std::pair<QString, QString>> parts = QUrlQuery(url).queryItems(QUrl::FullyDecoded);
    const bool hasPassword = !url.password().isEmpty() || std::ranges::any_of(parts, [](const auto &part) {
        return part.first == "password"_L1 || part.first == "sslpassword"_L1;
    });
    if (hasPassword) {
        return ServerAddress{Status::failed(
            url.toString(QUrl::RemovePassword | QUrl::RemoveQuery) + u": "_s +
            QCoreApplication::translate("Record", "a password does not belong into an address; the password "
                                                  "file of PostgreSQL (~/.pgpass) is the place for it"))};
    }
    const QString database = url.path(QUrl::FullyDecoded).mid(1);
    const auto prepend = [&parts](const QString &name, const QString &value) {
        if (!value.isEmpty()) {
            parts.prepend({name, value});
        }
    };
    prepend(u"dbname"_s, database);
    prepend(u"user"_s, url.userName(QUrl::FullyDecoded));
    prepend(u"port"_s, url.port() < 0 ? QString() : QString::number(url.port()));
    prepend(u"host"_s, url.host(QUrl::FullyDecoded));
    // An address may say otherwise. A server that is cut off is given up before others take its stations.
    ServerAddress address;
    address.connection =
        u"connect_timeout='3' keepalives_idle='5' keepalives_interval='2' keepalives_count='3'"
        " tcp_user_timeout='10000' application_name='KTRconfig'"_s;
    for (const auto &[name, value] : std::as_const(parts)) {
        // The driver takes a semicolon for the end of a value.
        if (name.contains(u';') || name.contains(u'=') || name.contains(u' ') || value.contains(u';')) {
            return refused(QCoreApplication::translate("Record", "\"%1\" cannot stand there").arg(name));
        }
        address.connection += u' ' + name + u'=' + quoted(value);
    }
    return address;
}

} // namespace ktr
