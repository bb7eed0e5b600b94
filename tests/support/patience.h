#pragma once

// What a test waits for comes at once or not at all; the toolkit's five seconds are too few on a busy
// machine.

#include <QtTest/QTest>

#undef QTRY_VERIFY
#undef QTRY_VERIFY2
#undef QTRY_COMPARE
#define QTRY_VERIFY(expr) QTRY_VERIFY_WITH_TIMEOUT((expr), 60'000)
#define QTRY_VERIFY2(expr, message) QTRY_VERIFY2_WITH_TIMEOUT((expr), (message), 60'000)
#define QTRY_COMPARE(expr, expected) QTRY_COMPARE_WITH_TIMEOUT((expr), (expected), 60'000)
