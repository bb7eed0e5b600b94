#include "platform/pseudo_terminal_ends.h"

namespace ktr::terminal {

// The system has no pseudo-terminals, so none is ever open.

bool openEnds(int &, int &, QString &)
{
    return false;
}

void closeDescriptor(int) {}

void releaseClaim(int) {}

qsizetype countUnread(int)
{
    return 0;
}

void discardUnread(int) {}

Outcome readSome(int, char *, std::size_t)
{
    return {};
}

Outcome writeSome(int, const QByteArray &)
{
    return {};
}

} // namespace ktr::terminal
