#include "transmissions/fleet_results.h"

#include "platform/csv.h"
#include "platform/files.h"
#include "platform/table_file.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace ktr {

namespace {

const QStringList titles{
    QStringLiteral("station"),      QStringLiteral("file"),     QStringLiteral("address"),
    QStringLiteral("verdict"),      QStringLiteral("commands"), QStringLiteral("seconds"),
    QStringLiteral("trouble"),      QStringLiteral("step"),     QStringLiteral("version_before"),
    QStringLiteral("transmission"), QStringLiteral("checksum")};

QString notBegun()
{
    return QStringLiteral("not begun");
}

} // namespace

bool FleetResult::isWhole() const
{
    return verdict == wordOf(TransmissionVerdict::Whole);
}

FleetResult resultOf(const FleetEntry &entry)
{
    return {.station = entry.station,
            .file = entry.file,
            .address = entry.address,
            .verdict = notBegun(),
            .trouble = entry.trouble,
            .checksum = entry.checksum};
}

FleetResult resultOf(const FleetEntry &entry, const StationOutcome &outcome)
{
    FleetResult result = resultOf(entry);
    result.verdict = wordOf(outcome.verdict);
    result.commands = outcome.commands;
    result.seconds = outcome.seconds;
    result.trouble = outcome.trouble.isEmpty() ? outcome.note : outcome.trouble;
    result.step = outcome.step;
    result.versionBefore = outcome.versionBefore;
    result.transmission = outcome.uid;
    return result;
}

QString freeReceiptPath(const QString &folder, const QString &file)
{
    const QString base = QFileInfo(file).completeBaseName();
    const auto pathOf = [&folder](const QString &name) {
        return QDir(folder).filePath(name + QLatin1String(".pdf"));
    };
    QString path = pathOf(base);
    for (int n = 2; QFileInfo::exists(path); ++n) {
        path = pathOf(QStringLiteral("%1-%2").arg(base).arg(n));
    }
    return path;
}

Status writeResults(const QString &path, const QList<FleetResult> &results)
{
    QByteArray table = csvMark;
    table += csvLine(titles);
    for (const FleetResult &result : results) {
        table += csvLine({result.station, result.file, result.address, result.verdict,
                          QString::number(result.commands), QString::number(result.seconds, 'f', 1),
                          result.trouble, result.step ? QString::number(*result.step) : QString(),
                          result.versionBefore, result.transmission, result.checksum});
    }
    return replaceFile(path, table, Readers::AsUsual);
}

Status readResults(const QString &path, QList<FleetResult> &results)
{
    Table table;
    if (Status read = readTable(path, table); !read) {
        return read;
    }
    if (table.titles != titles) {
        return fileFailure(path, QCoreApplication::translate("FleetList", "is no table of results"));
    }
    for (const Table::Row &row : table.rows) {
        int at = 0;
        const auto next = [&row, &at] { return row.cells.value(at++); };
        FleetResult result;
        result.station = next();
        result.file = next();
        result.address = next();
        result.verdict = next();
        result.commands = next().toInt();
        result.seconds = next().toDouble();
        result.trouble = next();
        bool hasStep = false;
        const int step = next().toInt(&hasStep);
        if (hasStep && step > steps::first && step <= steps::last) {
            result.step = step;
        }
        result.versionBefore = next();
        result.transmission = next();
        result.checksum = next();
        results += result;
    }
    return Status::done();
}

} // namespace ktr
