#include "platform/thread_set_up.h"

#include <QByteArray>

namespace ktr {

namespace {

// A regular expression that is compiled to machine code leaves something for the thread to free at its end.
// With this compiler's libraries that is freed after the memory that knows of it is gone, and the program
// crashes. Set before main(), since the toolkit looks at it with the first expression.
[[maybe_unused]] const bool isInterpreted = qputenv("QT_ENABLE_REGEXP_JIT", "0");

} // namespace

void setUpThreads() {}

} // namespace ktr
