#pragma once

#include <QString>

#include <cstdio>

namespace ktr::test {

/// Says what happened on a line of its own, at once: whoever runs the program may end it at any time.
inline void say(const char *what, const QString &text)
{
    std::printf("%s %s\n", what, qPrintable(text));
    std::fflush(stdout);
}

} // namespace ktr::test
