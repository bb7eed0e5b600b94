#pragma once

#include <QByteArray>
#include <QString>

/// The two ends of a pseudo-terminal as descriptors of the system.
namespace ktr::terminal {

enum class Moved { Bytes, NothingNow, Failed };

struct Outcome
{
    Moved moved = Moved::Failed;
    qsizetype count = 0;
};

/// Opens both ends. The terminal is raw before its path can be opened by anybody else: where the master
/// carries the settings, before the slave is unlocked. What is open after a failure is left to be closed.
bool openEnds(int &master, int &slave, QString &slavePath);

/// A descriptor below 0 is none.
void closeDescriptor(int descriptor);

/// A client that claims the terminal for itself and leaves would keep all others out, since the last
/// descriptor, ours, never closes.
void releaseClaim(int slave);

/// Bytes that no client has read.
qsizetype countUnread(int slave);
void discardUnread(int slave);

/// Neither blocks.
Outcome readSome(int descriptor, char *buffer, std::size_t size);
Outcome writeSome(int descriptor, const QByteArray &bytes);

} // namespace ktr::terminal
