#include "help/report.h"

#include "help/report_masks.h"
#include "platform/files.h"
#include "platform/settings_store.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLocale>
#include <QScreen>
#include <QStyleHints>
#include <QSysInfo>
#include <QTimeZone>

#include <algorithm>

namespace ktr {

namespace {

constexpr qint64 longestEnd = 100'000; ///< bytes of a log

QString heading(const QString &title)
{
    return QStringLiteral("\n== %1 ==\n").arg(title);
}

QString line(const char *name, const QString &value)
{
    return QLatin1String(name) + QLatin1String(": ") + value + u'\n';
}

QString systemFacts()
{
    QString text = line("Qt", QString::fromLatin1(qVersion()));
    text += line("System", QSysInfo::prettyProductName() + QLatin1String(", ") + QSysInfo::kernelType() +
                               u' ' + QSysInfo::kernelVersion());
    text += line("Processor",
                 QSysInfo::currentCpuArchitecture() + QLatin1String(", built for ") + QSysInfo::buildAbi());
    text += line("Windows from", QGuiApplication::platformName());
    text += line("Locale", QLocale::system().name() + QLatin1String(", decimal point ") +
                               QLocale::system().decimalPoint());
    text += line("Time zone", QString::fromLatin1(QTimeZone::systemTimeZoneId()));
    for (const QScreen *screen : QGuiApplication::screens()) {
        const QRect room = screen->availableGeometry();
        text += line("Screen", QStringLiteral("%1 x %2, scale %3, %4 dpi")
                                   .arg(room.width())
                                   .arg(room.height())
                                   .arg(screen->devicePixelRatio())
                                   .arg(qRound(screen->logicalDotsPerInch())));
    }
    return text;
}

QString settings()
{
    QString text;
    for (const SettingsStore::Section &section : SettingsStore().AllSettings(settingsOwner)) {
        for (const auto &[key, value] : section.second) {
            text += section.first + QLatin1String(" / ") + key + QLatin1String(" = ") + value + u'\n';
        }
    }
    return text.isEmpty() ? QStringLiteral("none\n") : text;
}

/// The end of a log, from a whole line on.
QString endOf(const QString &path)
{
    QFile file;
    if (const Status opened = openToRead(file, path); !opened) {
        return opened.message() + u'\n';
    }
    const bool isCut = file.size() > longestEnd;
    if (isCut) {
        file.seek(file.size() - longestEnd);
        file.readLine();
    }
    return (isCut ? QStringLiteral("(the last lines)\n") : QString()) +
           QString::fromUtf8(file.read(longestEnd)) + u'\n';
}

} // namespace

QString problemReport(const ReportSources &sources, const QString &happened)
{
    QString text = heading(QStringLiteral("What happened")) +
                   (happened.trimmed().isEmpty() ? QStringLiteral("-") : happened.trimmed()) + u'\n';
    text += heading(QStringLiteral("Program"));
    text += line("Version", sources.version);
    text += line("Language", sources.language);
    text += line("Time of this report", QDateTime::currentDateTime().toString(Qt::ISODate));
    for (const QString &fact : sources.facts) {
        text += fact + u'\n';
    }
    text += heading(QStringLiteral("System")) + systemFacts();
    text += heading(QStringLiteral("Settings")) + settings();
    for (const ReportExcerpt &excerpt : sources.excerpts) {
        text +=
            heading(excerpt.title) + (excerpt.text.isEmpty() ? QStringLiteral("-") : excerpt.text) + u'\n';
    }
    QStringList done;
    for (const QString &log : sources.logFiles) {
        if (!log.isEmpty() && !done.contains(log)) {
            done += log;
            text += heading(QLatin1String("Log ") + log) + endOf(log);
        }
    }
    return withoutSecrets(text).trimmed() + u'\n';
}

} // namespace ktr
