#include "cli/transmit_fleet.h"

#include "cli/console.h"
#include "cli/interruption.h"
#include "cli/link_job.h"
#include "cli/memory_troubles.h"
#include "cli/receipts.h"
#include "cli/shared_record.h"
#include "link/conversation_log.h"
#include "platform/files.h"
#include "platform/output_check.h"
#include "platform/timers.h"
#include "transmissions/fleet_list.h"
#include "transmissions/fleet_results.h"
#include "transmissions/fleet_transmission.h"
#include "transmissions/memory_place.h"
#include "transmissions/transmission_texts.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QHash>
#include <QTimer>

#include <algorithm>

namespace ktr::cli {

namespace {

const QString fleetListOption = QStringLiteral("fleet");
const QString jobsOption = QStringLiteral("jobs");
const QString resultOption = QStringLiteral("result");
const QString receiptsOption = QStringLiteral("receipts");

constexpr int mostJobs = 1'000;
constexpr double msOfASecond = 1'000;
constexpr int msUntilTable = 250; ///< many stations end within a moment

/// One run over a list of stations.
class FleetJob
{
public:
    FleetJob(const Arguments &arguments, FleetList list)
        : m_arguments(arguments),
          m_list(std::move(list)),
          m_table(tableOf(arguments)),
          m_memory(transmissionsPlace(arguments.value(recordOption), m_environment)),
          m_fleet({m_io, m_timers, m_environment, m_memory,
                   std::chrono::seconds(*arguments.number(timeoutOption, 1, longestTimeout)), fullUserName()},
                  *arguments.number(jobsOption, 1, mostJobs)),
          m_interruption(m_io, [this] { interrupt(); }),
          m_progress(static_cast<int>(m_list.entries.size()))
    {
        setUpMemory(m_memory, QStringLiteral("a transmission"));
        QObject::connect(&m_fleet, &FleetTransmission::stationEnded, &m_fleet,
                         [this](int index, const StationOutcome &outcome) { noteEnd(index, outcome); });
        QObject::connect(&m_fleet, &FleetTransmission::ended, &m_fleet, [] { QCoreApplication::exit(); });
        m_tableTimer.setSingleShot(true);
        QObject::connect(&m_tableTimer, &QTimer::timeout, &m_fleet, [this] { (void)writeTable(); });
    }

    int run()
    {
        m_clock.start();
        if (!prepare()) {
            return failed;
        }
        m_fleet.start();
        QCoreApplication::exec();
        m_progress.end();
        const bool isWritten = writeTable();
        (void)m_memory.flush(); // what goes wrong is told
        const auto whole = std::ranges::count_if(m_results, &FleetResult::isWhole);
        print(QStringLiteral("%1 of %2 stations are whole (%3 of them from before), after %4 s")
                  .arg(whole)
                  .arg(m_results.size())
                  .arg(m_skipped)
                  .arg(static_cast<double>(m_clock.elapsed()) / msOfASecond, 0, 'f', 1));
        return isWritten && m_isSound && whole == m_results.size() ? done : failed;
    }

private:
    static QString tableOf(const Arguments &arguments)
    {
        return arguments.isSet(resultOption)   ? arguments.value(resultOption)
               : arguments.isSet(resumeOption) ? arguments.value(resumeOption)
                                               : QString();
    }

    bool prepare()
    {
        QHash<QString, FleetResult> earlier;
        if (m_arguments.isSet(resumeOption)) {
            QList<FleetResult> results;
            if (const Status read = readResults(m_arguments.value(resumeOption), results); !read) {
                complain(read.message());
                return false;
            }
            for (const FleetResult &result : results) {
                earlier.insert(result.file + u'\n' + result.address, result);
            }
        }
        for (int index = 0; index < m_list.entries.size(); ++index) {
            const FleetEntry &entry = m_list.entries[index];
            const FleetResult before = earlier.value(entry.file + u'\n' + entry.address);
            const bool isSame = !entry.checksum.isEmpty() && before.checksum == entry.checksum;
            if (entry.trouble.isEmpty() && isSame && before.isWhole()) {
                m_results += before;
                noteProgress(before, QStringLiteral("whole already"));
                ++m_skipped;
                continue;
            }
            m_results += resultOf(entry);
            if (!entry.trouble.isEmpty()) {
                complain(entry.trouble);
                noteProgress(m_results.last(), m_results.last().verdict);
                continue;
            }
            StationOrder order{.file = entry.file,
                               .address = entry.address,
                               .configuration = entry.configuration,
                               .changesOnly = m_arguments.isSet(changesOption),
                               .mayBeBegun = m_arguments.isSet(resumeOption)};
            if (isSame && before.step) {
                order.brokenOff = before.transmission;
                order.step = *before.step;
                order.versionBefore = before.versionBefore;
            }
            m_fleet.add(index, std::move(order));
        }
        // Before any module hears of anything.
        const Status usable = m_arguments.isSet(receiptsOption)
                                  ? makeOutputFolder(m_arguments.value(receiptsOption))
                                  : Status::done();
        if (!usable) {
            complain(usable.message() + QLatin1String("; nothing was sent"));
        }
        return usable && writeTable();
    }

    void noteEnd(int index, const StationOutcome &outcome)
    {
        m_results[index] = resultOf(m_list.entries[index], outcome);
        const FleetResult &result = m_results[index];
        if (!outcome.trouble.isEmpty()) {
            complain(
                QStringLiteral("%1: %2: %3").arg(nameOf(result), result.verdict, logText(outcome.trouble)));
        } else if (!outcome.note.isEmpty()) {
            print(QStringLiteral("%1: %2").arg(nameOf(result), outcome.note));
        }
        noteProgress(result, QStringLiteral("%1, %2 commands, %3 s")
                                 .arg(result.verdict)
                                 .arg(result.commands)
                                 .arg(result.seconds, 0, 'f', 1));
        if (m_arguments.isSet(receiptsOption) && !outcome.uid.isEmpty()) {
            writeReceiptOf(result, outcome);
        }
        if (!m_tableTimer.isActive()) {
            m_tableTimer.start(msUntilTable);
        }
    }

    static QString nameOf(const FleetResult &result)
    {
        return result.station.isEmpty()
                   ? result.address
                   : QStringLiteral("%1 (%2)").arg(shortText(logText(result.station)), result.address);
    }

    void noteProgress(const FleetResult &result, const QString &what)
    {
        m_progress.show(++m_ended, nameOf(result) + QLatin1String(": ") + what);
    }

    void writeReceiptOf(const FleetResult &result, const StationOutcome &outcome)
    {
        const QString path = freeReceiptPath(m_arguments.value(receiptsOption), result.file);
        if (const Status written = writeReceiptFile(path, m_arguments, outcome.transmission); !written) {
            complain(written.message());
            m_isSound = false;
        }
    }

    bool writeTable()
    {
        if (m_table.isEmpty()) {
            return true;
        }
        const Status written = writeResults(m_table, m_results);
        if (!written) {
            complain(written.message());
        }
        return bool(written);
    }

    void interrupt()
    {
        complain(QStringLiteral("interrupted"));
        m_isSound = false;
        m_fleet.cancel(QStringLiteral("interrupted"));
        QCoreApplication::exit();
    }

    const Arguments &m_arguments;
    FleetList m_list;
    QString m_table; ///< the file of the table of results; empty for none
    Environment m_environment = systemEnvironment();
    EventLoopTimers m_timers;
    IoThread m_io;
    TransmissionMemory m_memory;
    FleetTransmission m_fleet;
    Interruption m_interruption;
    QList<FleetResult> m_results;
    QElapsedTimer m_clock;
    QTimer m_tableTimer;
    Progress m_progress;
    int m_ended = 0;
    int m_skipped = 0;
    bool m_isSound = true;
};

} // namespace

void addFleetTransmission(Arguments &arguments)
{
    arguments.addOption(
        {fleetListOption,
         QStringLiteral(
             "Transmits to all stations of LIST over Ethernet, many at a time, each command "
             "confirmed. LIST is a table with the columns \"file\" and \"address\" (without it the "
             "configuration's own address counts) and perhaps \"station\", the identifier that the "
             "file must have; or a folder of configurations. One that fails does not stop the "
             "others. The exit code is 0 only when all are whole. With --changes a station of which "
             "nothing is proved gets all."),
         QStringLiteral("LIST")});
    arguments.addOption({jobsOption, QStringLiteral("So many stations of a fleet at a time (50)."),
                         QStringLiteral("N"), QStringLiteral("50")});
    arguments.addOption(
        {resultOption,
         QStringLiteral("Writes a table of what became of each station of a fleet, also after "
                        "Ctrl+C."),
         QStringLiteral("FILE.csv")});
    arguments.addOption({receiptsOption,
                         QStringLiteral("Writes a receipt of each transmission to a fleet as a PDF into "
                                        "FOLDER."),
                         QStringLiteral("FOLDER")});
}

bool wantsFleetTransmission(const Arguments &arguments)
{
    return arguments.isSet(fleetListOption);
}

std::optional<int> checkFleetTransmission(const Arguments &arguments)
{
    if (!arguments.positional(0).isEmpty()) {
        return arguments.wrong(QStringLiteral("the files stand in the list of the fleet; FILE goes without"));
    }
    const QStringList ofOne{QStringLiteral("serial"),      QStringLiteral("ethernet"),
                            QStringLiteral("log"),         QStringLiteral("answer"),
                            QStringLiteral("unconfirmed"), QStringLiteral("changes-from"),
                            QStringLiteral("anyway"),      QStringLiteral("receipt")};
    for (const QString &option : ofOne) {
        if (arguments.isSet(option)) {
            return arguments.wrong(QStringLiteral("--fleet does not go together with --") + option);
        }
    }
    if (!arguments.number(jobsOption, 1, mostJobs) || !arguments.number(timeoutOption, 1, longestTimeout)) {
        return wrongUsage;
    }
    if (const std::optional<int> code = checkRecordAddress(arguments, arguments.value(recordOption))) {
        return code;
    }
    if (const std::optional<int> code = checkLanguage(arguments)) {
        return code;
    }
    return arguments.distinctFiles({fleetListOption, resultOption});
}

QString fleetOptionOfOne(const Arguments &arguments)
{
    const QStringList ofFleet{jobsOption, resultOption, receiptsOption};
    const auto set = std::ranges::find_if(
        ofFleet, [&arguments](const QString &option) { return arguments.isSet(option); });
    return set == ofFleet.end() ? QString() : *set;
}

int transmitToFleet(const Arguments &arguments)
{
    FleetList list = readFleetList(arguments.value(fleetListOption), systemEnvironment());
    for (const QString &fault : list.faults) {
        complain(fault);
    }
    if (!list.faults.isEmpty()) {
        return fail(QStringLiteral("nothing was sent"));
    }
    for (const QString &doubt : doubtsAboutEntries(list.entries)) {
        complain(doubt);
    }
    return FleetJob(arguments, std::move(list)).run();
}

} // namespace ktr::cli
