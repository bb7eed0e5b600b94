#pragma once

#include "platform/status.h"

#include <QString>
#include <QStringList>

namespace ktr {

#ifdef Q_OS_WIN
using SerialHandle = void *;
#else
using SerialHandle = int;
#endif

/// The machine's serial ports, adapters first, each group by number. Ports without hardware behind them are
/// left out.
QStringList serialPorts();

/// The same where ports are files of a folder, described by files of another one.
QStringList serialPorts(const QString &deviceFolder, const QString &classFolder);

/// The adapter behind a port in words, such as "FTDI FT232R USB UART"; empty where the system does not know.
QString serialAdapter(const QString &port);
QString serialAdapter(const QString &port, const QString &classFolder);

/// Opens a port for this program alone, as bytes go in and out: 9600 baud, 8 data bits, no parity, one stop
/// bit, no flow control. The message tells whether the port is missing, in use or none.
Status openSerialDevice(const QString &path, SerialHandle &handle);

/// Gives up the claim of openSerialDevice before the handle is closed: on a line that another program keeps
/// open the claim would outlive this one.
void releaseSerialDevice(SerialHandle handle);

/// Bytes that were written and have not left the machine; 0 where the system does not tell.
qint64 bytesNotYetSent(SerialHandle handle);

} // namespace ktr
