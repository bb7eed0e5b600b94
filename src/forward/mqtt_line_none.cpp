#include "forward/mqtt_line.h"

// In a program that was built without the MQTT library.

namespace ktr {

struct MqttLine::Shared
{};

MqttLine::MqttLine(Options, QObject *parent) : QObject(parent)
{
    QMetaObject::invokeMethod(
        this,
        [this] { Q_EMIT lost(QStringLiteral("this program was built without a line to MQTT brokers")); },
        Qt::QueuedConnection);
}

MqttLine::~MqttLine() = default;

void MqttLine::publish(quint64, MqttMessage) {}
void MqttLine::drop() {}

void MqttLine::finish(int) {}
void MqttLine::collect() {}

} // namespace ktr
