#pragma once

#include "platform/environment.h"

namespace ktr::test {

/// Sunday, 15 November 2009, 14:05:35, in a locale, with no chance in it.
inline Environment fixedEnvironment(const QLocale &locale = QLocale::c())
{
    Environment environment;
    environment.locale = locale;
    environment.now = [] { return QDateTime(QDate(2009, 11, 15), QTime(14, 5, 35)); };
    environment.random = [] { return 0.5; };
    environment.programFolder = QStringLiteral("/opt/ktr");
    return environment;
}

inline QLocale german()
{
    return QLocale(QLocale::German, QLocale::Germany);
}

inline QLocale english()
{
    return QLocale(QLocale::English, QLocale::UnitedStates);
}

} // namespace ktr::test
