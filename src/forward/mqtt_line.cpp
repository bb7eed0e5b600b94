#include "forward/mqtt_line.h"

#include <QHash>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <deque>
#include <mosquitto.h>
#include <mutex>
#include <poll.h>
#include <sys/eventfd.h>
#include <thread>
#include <unistd.h>
#include <variant>

namespace ktr {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds shortestPause{500};
constexpr milliseconds longestPause{30'000};
constexpr milliseconds longestConnecting{15'000};
constexpr milliseconds sound{10'000}; ///< a line that stood for so long is tried again at once
constexpr milliseconds look{1'000};   ///< the library wants to be asked for its keep-alives
constexpr int keepAlive = 30;         // seconds
constexpr int qualityOfService = 1;

struct Outgoing
{
    quint64 connection;
    quint64 tag;
    MqttMessage message;
};

// What the thread reports.
struct Connected
{
    quint64 connection;
};
struct Confirmed
{
    quint64 connection;
    quint64 tag;
};
struct Lost
{
    QString why;
};
struct Refused
{
    quint64 connection;
    quint64 tag;
    QString why;
};
using Report = std::variant<Connected, Confirmed, Lost, Refused>;

QString textOf(int code)
{
    return QString::fromLocal8Bit(code == MOSQ_ERR_ERRNO ? std::strerror(errno) : mosquitto_strerror(code));
}

const char *orNull(const QByteArray &text)
{
    return text.isEmpty() ? nullptr : text.constData();
}

} // namespace

struct MqttLine::Shared : std::enable_shared_from_this<MqttLine::Shared>
{
    explicit Shared(Options own) : options(std::move(own)), wake(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}
    ~Shared() { ::close(wake); }
    Q_DISABLE_COPY_MOVE(Shared)

    void run();
    void stand();
    bool converse(mosquitto *line);
    void publishAll(mosquitto *line);
    void pause(milliseconds time);
    void report(Report what);
    void wakeUp() const { (void)eventfd_write(wake, 1); }
    Clock::time_point endsBy()
    {
        const std::lock_guard lock(mutex);
        return deadline;
    }
    bool isEnding() { return endsBy() != Clock::time_point::max(); }

    const Options options;
    const int wake;

    std::mutex mutex; ///< of what follows
    std::condition_variable changed;
    MqttLine *owner = nullptr;
    std::deque<Outgoing> outgoing;
    std::deque<Report> reports;
    bool isTold = false; ///< the owner is about to collect them
    Clock::time_point deadline = Clock::time_point::max();
    bool hasEnded = false;
    std::atomic<bool> isDropped = false;

    // The thread's own.
    quint64 connection = 0;
    bool isConnected = false;
    Clock::time_point begun{};
    QString why;
    QHash<int, quint64> tags; ///< of what is not confirmed, by the library's numbers
};

void MqttLine::Shared::report(Report what)
{
    const std::lock_guard lock(mutex);
    reports.push_back(std::move(what));
    if (owner != nullptr && !std::exchange(isTold, true)) {
        QMetaObject::invokeMethod(
            owner, [own = owner] { own->collect(); }, Qt::QueuedConnection);
    }
}

void MqttLine::Shared::pause(milliseconds time)
{
    const auto until = Clock::now() + time;
    while (!isEnding()) {
        const auto left = std::chrono::duration_cast<milliseconds>(until - Clock::now());
        if (left.count() <= 0) {
            return;
        }
        pollfd woken{wake, POLLIN, 0};
        ::poll(&woken, 1, static_cast<int>(left.count()));
        eventfd_t times = 0;
        (void)eventfd_read(wake, &times);
    }
}

void MqttLine::Shared::run()
{
    milliseconds wait = shortestPause;
    while (!isEnding()) {
        stand();
        if (isEnding()) {
            break;
        }
        report(Lost{why});
        wait = isConnected && Clock::now() - begun > sound ? shortestPause : wait;
        pause(wait);
        wait = std::min(2 * wait, longestPause);
    }
    const std::lock_guard lock(mutex);
    hasEnded = true;
    changed.notify_all();
}

/// One connection, from its beginning to its end.
void MqttLine::Shared::stand()
{
    const QByteArray id = options.clientId.toUtf8();
    const std::unique_ptr<mosquitto, decltype(&mosquitto_destroy)> line(mosquitto_new(orNull(id), true, this),
                                                                        &mosquitto_destroy);
    if (!line) {
        why = textOf(MOSQ_ERR_ERRNO);
        return;
    }
    ++connection;
    isConnected = false;
    begun = Clock::now();
    tags.clear();
    why.clear();
    mosquitto_max_inflight_messages_set(line.get(), 0); // who publishes bounds it
    mosquitto_log_callback_set(line.get(), [](mosquitto *, void *self, int level, const char *text) {
        if (level == MOSQ_LOG_ERR) { // what TLS does not like is told nowhere else
            static_cast<Shared *>(self)->why = QString::fromUtf8(text);
        }
    });
    mosquitto_connect_callback_set(line.get(), [](mosquitto *, void *self, int code) {
        auto *const shared = static_cast<Shared *>(self);
        shared->isConnected = code == 0;
        if (code == 0) {
            shared->report(Connected{shared->connection});
        } else {
            shared->why = QString::fromUtf8(mosquitto_connack_string(code));
        }
    });
    mosquitto_publish_callback_set(line.get(), [](mosquitto *, void *self, int number) {
        auto *const shared = static_cast<Shared *>(self);
        if (const auto tag = shared->tags.constFind(number); tag != shared->tags.cend()) {
            shared->report(Confirmed{shared->connection, *tag});
            shared->tags.erase(tag);
        }
    });
    const QByteArray user = options.user.toUtf8();
    int code = user.isEmpty()
                   ? MOSQ_ERR_SUCCESS
                   : mosquitto_username_pw_set(line.get(), user.constData(), orNull(options.password));
    if (code == MOSQ_ERR_SUCCESS && !options.will.topic.isEmpty()) {
        code =
            mosquitto_will_set(line.get(), options.will.topic.toUtf8().constData(),
                               static_cast<int>(options.will.payload.size()),
                               options.will.payload.constData(), qualityOfService, options.will.isRetained);
    }
    if (code == MOSQ_ERR_SUCCESS && options.isEncrypted) {
        const QByteArray ca = options.caFile.toLocal8Bit();
        code = ca.isEmpty()
                   ? mosquitto_int_option(line.get(), MOSQ_OPT_TLS_USE_OS_CERTS, 1)
                   : mosquitto_tls_set(line.get(), ca.constData(), nullptr, nullptr, nullptr, nullptr);
    }
    if (code == MOSQ_ERR_SUCCESS) {
        code =
            mosquitto_connect_async(line.get(), options.host.toUtf8().constData(), options.port, keepAlive);
    }
    if (code != MOSQ_ERR_SUCCESS) {
        why = why.isEmpty() ? textOf(code) : why;
        return;
    }
    while (converse(line.get())) {
    }
}

/// Moves what can be moved; false at the end of the line. Not the library's own loop, whose select() knows no
/// descriptor from 1024 on: thousands of stations have more.
bool MqttLine::Shared::converse(mosquitto *line)
{
    const int socket = mosquitto_socket(line);
    if (socket < 0) {
        why = why.isEmpty() ? textOf(MOSQ_ERR_CONN_LOST) : why;
        return false;
    }
    const short wanted = mosquitto_want_write(line) ? POLLIN | POLLOUT : POLLIN;
    std::array<pollfd, 2> looked{pollfd{socket, wanted, 0}, pollfd{wake, POLLIN, 0}};
    ::poll(looked.data(), looked.size(), static_cast<int>(look.count()));
    eventfd_t times = 0;
    (void)eventfd_read(wake, &times);
    int code = MOSQ_ERR_SUCCESS;
    if ((looked[0].revents & (POLLIN | POLLHUP | POLLERR)) != 0) {
        code = mosquitto_loop_read(line, 1);
    }
    if (code == MOSQ_ERR_SUCCESS && (looked[0].revents & POLLOUT) != 0) {
        code = mosquitto_loop_write(line, 1);
    }
    if (code == MOSQ_ERR_SUCCESS) {
        code = mosquitto_loop_misc(line);
    }
    if (code == MOSQ_ERR_SUCCESS && isConnected) {
        publishAll(line);
    }
    if (code != MOSQ_ERR_SUCCESS) {
        why = why.isEmpty() ? textOf(code) : why;
        return false;
    }
    if (!isConnected && Clock::now() - begun > longestConnecting) {
        why = QStringLiteral("it does not answer");
        return false;
    }
    const auto end = endsBy();
    if (end != Clock::time_point::max() && (tags.isEmpty() || !isConnected || Clock::now() >= end)) {
        if (isConnected && tags.isEmpty() && !isDropped) { // else the broker publishes the will
            mosquitto_disconnect(line);
        }
        return false;
    }
    return true;
}

void MqttLine::Shared::publishAll(mosquitto *line)
{
    std::deque<Outgoing> taken;
    {
        const std::lock_guard lock(mutex);
        taken.swap(outgoing);
    }
    for (const Outgoing &each : taken) {
        if (each.connection != connection) { // its owner has not heard yet that it went with an earlier line
            continue;
        }
        int number = 0;
        const int code =
            mosquitto_publish(line, &number, each.message.topic.toUtf8().constData(),
                              static_cast<int>(each.message.payload.size()), each.message.payload.constData(),
                              qualityOfService, each.message.isRetained);
        if (code == MOSQ_ERR_SUCCESS) {
            tags.insert(number, each.tag);
        } else if (code == MOSQ_ERR_INVAL || code == MOSQ_ERR_PAYLOAD_SIZE ||
                   code == MOSQ_ERR_MALFORMED_UTF8 || code == MOSQ_ERR_OVERSIZE_PACKET) {
            report(Refused{connection, each.tag, textOf(code)});
        } else {
            why = textOf(code);
            return; // the line is lost, which the next turn finds
        }
    }
}

MqttLine::MqttLine(Options options, QObject *parent)
    : QObject(parent), d(std::make_shared<Shared>(std::move(options)))
{
    static const int library = mosquitto_lib_init(); // for as long as the program runs
    (void)library;
    d->owner = this;
    std::thread([shared = d] { shared->run(); }).detach();
}

MqttLine::~MqttLine()
{
    finish(0);
}

void MqttLine::publish(quint64 tag, MqttMessage message)
{
    {
        const std::lock_guard lock(d->mutex);
        d->outgoing.push_back({m_connection, tag, std::move(message)});
    }
    d->wakeUp();
}

void MqttLine::finish(int milliseconds)
{
    constexpr std::chrono::milliseconds toLetGo{500};
    {
        std::unique_lock lock(d->mutex);
        d->deadline = Clock::now() + std::chrono::milliseconds(milliseconds);
        d->wakeUp();
        d->changed.wait_until(lock, d->deadline + toLetGo, [this] { return d->hasEnded; });
        d->isTold = true; // nothing is posted any more
    }
    collect();
    const std::lock_guard lock(d->mutex);
    d->owner = nullptr;
}

void MqttLine::drop()
{
    d->isDropped = true;
    finish(0);
}

void MqttLine::collect()
{
    std::deque<Report> reports;
    {
        const std::lock_guard lock(d->mutex);
        reports.swap(d->reports);
        d->isTold = false;
    }
    QList<quint64> tags;
    const auto tellConfirmed = [&] {
        if (!tags.isEmpty()) {
            Q_EMIT confirmed(std::exchange(tags, {}));
        }
    };
    for (const Report &report : reports) {
        if (const auto *const one = std::get_if<Confirmed>(&report)) {
            tags += one->tag;
            continue;
        }
        tellConfirmed();
        if (const auto *const begun = std::get_if<Connected>(&report)) {
            m_connection = begun->connection;
            Q_EMIT connected();
        } else if (const auto *const lostOne = std::get_if<Lost>(&report)) {
            m_connection = 0;
            Q_EMIT lost(lostOne->why);
        } else if (const auto *const never = std::get_if<Refused>(&report)) {
            Q_EMIT refused(never->tag, never->why);
        }
    }
    tellConfirmed();
}

} // namespace ktr
