#include "cli/commands.h"
#include "cli/console.h"
#include "cli/event_names.h"
#include "cli/patient_job.h"
#include "cli/shared_record.h"
#include "cli/watching.h"
#include "record/json_text.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTimer>

namespace ktr::cli {

namespace {

const QString forOption = QStringLiteral("for");
const QString evenIfWatchedOption = QStringLiteral("even-if-watched");
constexpr int longestWatch = 1'000'000;

/// The members in the order in which they are read, which a JSON object of the toolkit does not keep.
QString lineOf(const QString &station, const QString &kind, const QString &text, const QDateTime &now)
{
    return QStringLiteral("{\"time\":") + jsonString(now.toUTC().toString(Qt::ISODateWithMs)) +
           QStringLiteral(",\"station\":") + jsonString(station) + QStringLiteral(",\"kind\":") +
           jsonString(kind) + QStringLiteral(",\"text\":") + jsonString(text) + u'}';
}

int watch(const Arguments &arguments, const Environment &environment, const QString &path)
{
    const std::optional<int> seconds =
        arguments.isSet(forOption) ? arguments.number(forOption, 0, longestWatch) : std::nullopt;
    Watching watching(environment);
    OperationalMode &mode = watching.mode();
    QObject::connect(&mode, &OperationalMode::happened, &mode, [&](const StationEvent &event) {
        const QModelIndex station = mode.tree().find(event.kennung); // which may have another name by now
        print(lineOf(station.isValid() ? station.data(Qt::EditRole).toString() : event.kennung,
                     nameOf(event.kind), event.text, QDateTime::fromMSecsSinceEpoch(event.at)));
    });
    const auto tellKeeper = [&mode] {
        complain(
            mode.unwatchedSince() ? QStringLiteral("nobody watches the stations any more")
            : mode.unheardSince()
                ? QStringLiteral("nothing has come for %1 s from %2: perhaps nobody watches the stations")
                      .arg(KeeperBeat::patience.count())
                      .arg(mode.keeper())
                : QStringLiteral("joined: %1 watches the stations").arg(mode.keeper()));
    };
    QObject::connect(&mode, &OperationalMode::keeperChanged, &mode, tellKeeper);
    using Use = OperationalMode::Use;
    Status opened = mode.open(path, arguments.isSet(evenIfWatchedOption) ? Use::WatchAnyway : Use::Watch);
    if (mode.hindrance() == OperationalMode::Hindrance::InUse) {
        opened = mode.open(path, Use::Look);
        if (opened) {
            tellKeeper();
        }
    }
    if (mode.hindrance() == OperationalMode::Hindrance::InUse) {
        return fail(opened.message() + QStringLiteral("; --even-if-watched watches it all the same"));
    }
    if (!opened) {
        return failed; // told already
    }
    if (seconds) {
        QTimer::singleShot(std::chrono::seconds(*seconds), Qt::PreciseTimer, QCoreApplication::instance(),
                           &QCoreApplication::quit);
    }
    const int code = watching.run();
    mode.closeWithoutFile(); // ends, with their numbers, the losses that go on
    watching.tellForeignDatagrams();
    return code;
}

} // namespace

void describeMonitor(Arguments &arguments)
{
    arguments.setSummary(QStringLiteral(
        "Watches the stations of a list as the operational mode does, and prints "
        "what they say, one JSON object a line. The list is not changed. Stations that "
        "another program watches are joined: what it records is printed; so are those of a record "
        "on a database server (--record), which keepers share."));
    addRecordOption(arguments);
    arguments.addOption(
        {forOption, QStringLiteral("Ends after so many seconds; otherwise when it is asked to terminate."),
         QStringLiteral("SECONDS")});
    arguments.addOption(
        {evenIfWatchedOption,
         QStringLiteral("Watches stations that another program watches, too. Modules answer who "
                        "announced last, so each of the two misses what the other is told.")});
}

std::optional<int> checkMonitor(const Arguments &arguments)
{
    if (arguments.isSet(forOption) && !arguments.number(forOption, 0, longestWatch)) {
        return wrongUsage;
    }
    return checkSharedRecord(arguments);
}

int monitor(const Arguments &arguments)
{
    const QString record = sharedRecord(arguments);
    const QString path = record.isEmpty() ? arguments.positional(0) : record;
    if (record.isEmpty() && !QFileInfo::exists(path)) {
        return fail(path + QStringLiteral(": there is no such file"));
    }
    const Environment environment = systemEnvironment();
    PatientJob job;
    job.gap = [now = environment.now](qint64 lines) {
        const QString text = QStringLiteral("the reader stood still; lines left out: %1").arg(lines);
        return (lineOf({}, QStringLiteral("dropped"), text, now()) + u'\n').toUtf8();
    };
    job.endsUnread = true; // nobody is watching any more
    job.waitsForReader = false;
    return patiently([&] { return watch(arguments, environment, path); }, job);
}

} // namespace ktr::cli
