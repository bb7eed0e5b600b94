#pragma once

// This program is compiled without the toolkit's keywords (QT_NO_KEYWORDS), and QCustomPlot's header uses
// three of them. They are there for the length of that header alone.
#define signals Q_SIGNALS
#define slots Q_SLOTS
#define foreach(variable, container)                                                                         \
    for (variable : container) // NOLINT(bugprone-macro-parentheses): a loop's head
#include <qcustomplot.h>
#undef signals
#undef slots
#undef foreach
