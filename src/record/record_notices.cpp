#include "record/record_notices.h"

#include "record/record_database.h"

#include <QAbstractEventDispatcher>
#include <QSqlDriver>
#include <QTimer>

namespace ktr {

/// Lives on the thread.
class RecordNotices::Listener : public QObject
{
public:
    Listener(QString address, RecordNotices &owner)
        : m_address(std::move(address)), m_owner(owner), m_database(*owner.m_database)
    {}

    void begin()
    {
        // The driver's socket stays readable when the server is gone, and nobody would read it: each time
        // that something came it is asked whether it still has its connection.
        connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, this, [this] {
            if (m_database.isOpen() && !driver()->isOpen()) {
                lose();
            }
        });
        listen();
    }

    /// The connection ends where it was made.
    void end() { m_database.close(); }

private:
    QSqlDriver *driver() const { return m_database.handle().driver(); }

    void listen()
    {
        if (!m_database.open(m_address, RecordDatabase::Use::Read) ||
            !driver()->subscribeToNotification(RecordDatabase::committed)) {
            lose();
            return;
        }
        connect(driver(), &QSqlDriver::notification, this, [this] { tell(); });
        m_owner.m_isListening = true;
        tell(); // of what was committed before
    }

    void lose()
    {
        constexpr int pause = 1'000;
        m_owner.m_isListening = false;
        m_database.close();
        QTimer::singleShot(pause, this, [this] { listen(); });
    }

    void tell()
    {
        if (!m_owner.m_isTold.exchange(true)) {
            QMetaObject::invokeMethod(
                &m_owner.m_receiver,
                [owner = &m_owner] {
                    owner->m_isTold = false;
                    owner->m_noticed();
                },
                Qt::QueuedConnection);
        }
    }

    QString m_address;
    RecordNotices &m_owner;
    RecordDatabase &m_database;
};

RecordNotices::RecordNotices(const QString &address, std::function<void()> noticed)
    : m_noticed(std::move(noticed)),
      m_database(std::make_unique<RecordDatabase>()),
      m_listener(std::make_unique<Listener>(address, *this))
{
    m_listener->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::started, m_listener.get(), &Listener::begin);
    QObject::connect(
        &m_thread, &QThread::finished, m_listener.get(),
        [this] {
            m_listener->end();
            m_listener.reset();
        },
        Qt::DirectConnection);
    m_thread.start();
}

RecordNotices::~RecordNotices()
{
    constexpr unsigned long patience = 100; // with a server that does not answer
    m_thread.quit();
    if (!m_thread.wait(patience)) {
        m_database->giveUp();
        m_thread.wait();
    }
}

} // namespace ktr
