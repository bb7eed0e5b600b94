#include "forward/metrics_server.h"

#include "link/io_thread.h"

#include <asio/ip/tcp.hpp>
#include <asio/read_until.hpp>
#include <asio/steady_timer.hpp>
#include <asio/write.hpp>

#include <set>

namespace ktr {

namespace {

using asio::ip::tcp;

QByteArray reply(const char *status, const QByteArray &type, const QByteArray &body)
{
    return QByteArray("HTTP/1.1 ") + status + "\r\nContent-Type: " + type +
           "\r\nContent-Length: " + QByteArray::number(body.size()) +
           "\r\nCache-Control: no-store\r\nConnection: close\r\n\r\n" + body;
}

} // namespace

/// All of it but `asker` and `text` is used on the I/O thread alone.
struct MetricsServer::Shared
{
    Shared(asio::io_context &context, std::function<QByteArray()> makeText, Limits own)
        : acceptor(context), text(std::move(makeText)), limits(own), asker(std::make_unique<QObject>())
    {}

    tcp::acceptor acceptor;
    std::function<QByteArray()> text;
    Limits limits;
    std::set<std::shared_ptr<Connection>> connections;
    std::unique_ptr<QObject> asker; ///< on the owner's thread
    bool hasEnded = false;

    static void accept(const std::shared_ptr<Shared> &self);
};

struct MetricsServer::Connection : std::enable_shared_from_this<MetricsServer::Connection>
{
    Connection(tcp::socket own, std::shared_ptr<Shared> server)
        : socket(std::move(own)), limit(socket.get_executor()), shared(std::move(server))
    {}

    tcp::socket socket;
    asio::steady_timer limit;
    std::shared_ptr<Shared> shared;
    std::string request;
    QByteArray answer;

    void begin()
    {
        limit.expires_after(shared->limits.time);
        limit.async_wait([self = shared_from_this()](const asio::error_code &error) {
            if (!error) {
                self->end();
            }
        });
        asio::async_read_until(socket, asio::dynamic_buffer(request, longestRequest), "\r\n\r\n",
                               [self = shared_from_this()](const asio::error_code &error, std::size_t) {
                                   if (error || self->shared->hasEnded) {
                                       self->end();
                                   } else {
                                       self->respond();
                                   }
                               });
    }

    void respond()
    {
        const QByteArray line(request.data(), static_cast<qsizetype>(request.find("\r\n")));
        const QByteArrayList words = line.split(' ');
        if (words.size() != 3 || !words[2].startsWith("HTTP/1.")) {
            send(reply("400 Bad Request", "text/plain", "not understood\n"));
        } else if (words[0] != "GET") {
            send(reply("405 Method Not Allowed", "text/plain", "GET alone\n"));
        } else if (words[1] != "/metrics") {
            send(reply("404 Not Found", "text/plain", "/metrics is here\n"));
        } else {
            QMetaObject::invokeMethod(
                shared->asker.get(),
                [self = shared_from_this()] {
                    const QByteArray text = self->shared->text();
                    asio::post(self->socket.get_executor(), [self, text] {
                        self->send(reply("200 OK", "text/plain; version=0.0.4; charset=utf-8", text));
                    });
                },
                Qt::QueuedConnection);
        }
    }

    void send(const QByteArray &bytes)
    {
        if (!socket.is_open()) { // it took too long
            return;
        }
        answer = bytes;
        asio::async_write(socket, asio::buffer(answer.constData(), static_cast<std::size_t>(answer.size())),
                          [self = shared_from_this()](const asio::error_code &, std::size_t) {
                              asio::error_code ignored;
                              self->socket.shutdown(tcp::socket::shutdown_both, ignored);
                              self->end();
                          });
    }

    void end()
    {
        asio::error_code ignored;
        limit.cancel();
        socket.close(ignored);
        shared->connections.erase(shared_from_this());
    }
};

void MetricsServer::Shared::accept(const std::shared_ptr<Shared> &self)
{
    self->acceptor.async_accept([self](const asio::error_code &error, tcp::socket socket) {
        if (self->hasEnded) {
            return;
        }
        if (!error && self->connections.size() < self->limits.connections) {
            const auto connection = std::make_shared<Connection>(std::move(socket), self);
            self->connections.insert(connection);
            connection->begin();
        }
        if (!error) {
            accept(self);
            return;
        }
        // No descriptor is free, or the like: not asked again at once.
        const auto pause = std::make_shared<asio::steady_timer>(self->acceptor.get_executor());
        pause->expires_after(std::chrono::seconds(1));
        pause->async_wait([self, pause](const asio::error_code &) {
            if (!self->hasEnded) {
                accept(self);
            }
        });
    });
}

Status readListenAddress(const QString &text, ListenAddress &address)
{
    const qsizetype colon = text.lastIndexOf(u':');
    ListenAddress read;
    bool isNumber = false;
    read.port = text.mid(colon + 1).toUShort(&isNumber);
    if (colon >= 0) {
        read.address = text.first(colon);
        if (read.address.startsWith(u'[') && read.address.endsWith(u']')) {
            read.address = read.address.sliced(1).chopped(1);
        }
    }
    asio::error_code error;
    asio::ip::make_address(read.address.toStdString(), error);
    if (!isNumber || error) {
        return Status::failed(QStringLiteral("\"%1\" is no PORT or ADDRESS:PORT").arg(text));
    }
    address = read;
    return Status::done();
}

MetricsServer::MetricsServer(IoThread &io, std::function<QByteArray()> text, Limits limits)
    : m_io(io), d(std::make_shared<Shared>(io.context(), std::move(text), limits))
{}

MetricsServer::~MetricsServer()
{
    m_io.run([this] {
        d->hasEnded = true;
        asio::error_code ignored;
        d->acceptor.close(ignored);
        for (const auto &connection : std::set(d->connections)) {
            connection->end();
        }
    });
    d->asker.reset(); // what is still asked is not answered
}

Status MetricsServer::listen(const ListenAddress &address)
{
    asio::error_code error;
    m_io.run([&] {
        const tcp::endpoint endpoint(asio::ip::make_address(address.address.toStdString(), error),
                                     address.port);
        if (!error) {
            d->acceptor.open(endpoint.protocol(), error);
        }
        if (!error) {
            d->acceptor.set_option(tcp::acceptor::reuse_address(true), error);
        }
        if (!error) {
            d->acceptor.bind(endpoint, error);
        }
        if (!error) {
            d->acceptor.listen(static_cast<int>(d->limits.connections), error);
        }
        if (!error) {
            m_port = d->acceptor.local_endpoint(error).port();
            Shared::accept(d);
        }
    });
    return error ? Status::failed(QStringLiteral("%1:%2: %3")
                                      .arg(address.address)
                                      .arg(address.port)
                                      .arg(QString::fromLocal8Bit(error.message().c_str())))
                 : Status::done();
}

} // namespace ktr
