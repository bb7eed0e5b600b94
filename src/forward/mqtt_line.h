#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>

#include <memory>

namespace ktr {

struct MqttMessage
{
    QString topic{};
    QByteArray payload{};
    bool isRetained = false; ///< the broker hands it to whoever subscribes later; an empty one ends that
};

/// A line to an MQTT broker (3.1.1) that is there again by itself: a lost one is tried anew after half a
/// second, and after twice as long each time, up to 30 s. Everything slow (names, connections, TLS) is done
/// on a thread of its own; here nothing waits but finish().
class MqttLine : public QObject
{
    Q_OBJECT

public:
    struct Options
    {
        QString host{};
        int port = 0;
        bool isEncrypted = false;
        QString caFile{}; ///< with TLS, who vouches for the broker; empty: those whom the system trusts
        QString user{};
        QByteArray password{};
        QString clientId{}; ///< the same for the same sender: the broker then ends a line that hangs
        MqttMessage will{}; ///< what the broker publishes when the line is lost
    };

    /// Begins to connect.
    explicit MqttLine(Options options, QObject *parent = nullptr);
    ~MqttLine() override; ///< as finish() that waits for nothing

    bool isConnected() const { return m_connection != 0; }
    /// Publishes once more than never (QoS 1), in order; only while connected. What was not confirmed when
    /// lost() comes must be published again.
    void publish(quint64 tag, MqttMessage message);
    /// Waits, at most so long, until the broker has all that was published, and hangs up. Confirmations are
    /// told meanwhile.
    void finish(int milliseconds);
    /// Lets the line go as if this program had died: the broker publishes the will.
    void drop();

Q_SIGNALS:
    void connected();
    /// The broker has these.
    void confirmed(const QList<quint64> &tags);
    /// The broker is not reached, or no more, and why; told for each try.
    void lost(const QString &why);
    /// This one can never be published, and counts as confirmed.
    void refused(quint64 tag, const QString &why);

private:
    struct Shared;
    void collect();

    std::shared_ptr<Shared> d; ///< with the thread, which may still look up a name when this is gone
    quint64 m_connection = 0;  ///< its number; 0: there is none
};

} // namespace ktr
