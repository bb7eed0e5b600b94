#pragma once

#include "platform/status.h"

#include <QByteArray>
#include <QString>

namespace ktr {

/// Where events are forwarded to: an MQTT broker and the beginning of the topics there.
struct ForwardTarget
{
    QString host{};
    int port = 0; ///< 1883, or 8883 with TLS, where none is named
    bool isEncrypted = false;
    QString user{};                               ///< empty: none
    QString prefix = QStringLiteral("ktrconfig"); ///< of all topics, without "/" at its ends

    /// What the record calls it: "mqtts://host:8883/prefix". Whoever logs in there is the same target.
    QString name() const;
    bool operator==(const ForwardTarget &) const = default;
};

/// Takes `mqtt[s]://[user@]host[:port][/prefix]` apart. A password in it is refused: others see the command
/// line.
Status readForwardTarget(const QString &text, ForwardTarget &target);

/// The variable of the environment that a password may stand in.
QString forwardPasswordVariable();
/// The password: the first line of a file that its owner alone can read, or without a path what the variable
/// holds, which may be nothing.
Status readForwardPassword(const QString &path, QByteArray &password);

} // namespace ktr
