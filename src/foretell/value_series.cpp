#include "foretell/value_series.h"

#include "config/channels.h"
#include "platform/csv.h"
#include "platform/table_file.h"
#include "platform/text_rules.h"

#include <QCoreApplication>
#include <QSet>

#include <algorithm>

namespace ktr {

namespace {

QString told(const char *text)
{
    return QCoreApplication::translate("Foretelling", text);
}

/// "15.11.2026 14:00", "2026-11-15 14:00:30", "2026-11-15T14:00:30.250+01:00".
std::optional<ModuleMs> timeOf(const QString &text)
{
    const qsizetype end = text.indexOf(u' ') > 0 ? text.indexOf(u' ') : text.indexOf(u'T');
    if (end <= 0) {
        return std::nullopt;
    }
    const QString day = text.first(end);
    const QString clock = text.sliced(end + 1);
    const bool isIso = day.contains(u'-');
    const bool hasOffset = clock.contains(u'Z') || clock.contains(u'+') || clock.contains(u'-');
    if (hasOffset) {
        const QDateTime time = QDateTime::fromString(text, Qt::ISODateWithMs);
        return time.isValid() ? std::optional(moduleMs(time.toLocalTime())) : std::nullopt;
    }
    const QDate date = isIso ? QDate::fromString(day, Qt::ISODate) : QDate::fromString(day, u"dd.MM.yyyy");
    const QTime time = QTime::fromString(clock, Qt::ISODateWithMs);
    return date.isValid() && time.isValid() ? std::optional(moduleMs(date, time)) : std::nullopt;
}

/// "9", or as lists have it, "9 AnalogIn 1".
std::optional<int> channelOf(const QString &text)
{
    const auto number = toWholeNumber(text.section(u' ', 0, 0), 1, channelCount);
    const bool isNumber = std::ranges::all_of(text.section(u' ', 0, 0), isDecimalDigit);
    return isNumber ? number : std::nullopt;
}

/// Which cell of a line has what.
struct Columns
{
    qsizetype time = 0;
    qsizetype channel = 1;
    qsizetype value = 2;
    qsizetype station = -1;
    bool isOfArchive = false;
};

std::optional<Columns> columnsNamed(const QStringList &cells)
{
    const auto find = [&cells](const QStringList &names) -> qsizetype {
        for (qsizetype at = 0; at < cells.size(); ++at) {
            if (names.contains(cells[at].trimmed(), Qt::CaseInsensitive)) {
                return at;
            }
        }
        return -1;
    };
    Columns columns;
    columns.time = find({QStringLiteral("time"), QStringLiteral("zeit")});
    columns.channel = find({QStringLiteral("channel"), QStringLiteral("kanal"), QStringLiteral("input"),
                            QStringLiteral("eingang")});
    columns.value = find({QStringLiteral("second value")});
    columns.isOfArchive = columns.value >= 0;
    if (columns.value < 0) {
        columns.value = find({QStringLiteral("value"), QStringLiteral("wert")});
    }
    columns.station = find({QStringLiteral("station")});
    const bool hasAll = columns.time >= 0 && columns.channel >= 0 && columns.value >= 0;
    return hasAll ? std::optional(columns) : std::nullopt;
}

/// Of a line without names above it.
Columns columnsOf(const QStringList &cells)
{
    constexpr int ofArchive = 4;
    const bool isTimeFirst =
        timeOf(cells.value(0)) || (!timeOf(cells.value(1)) && !channelOf(cells.value(0)));
    Columns columns{isTimeFirst ? 0 : 1, isTimeFirst ? 1 : 0, 2, -1, false};
    if (cells.size() == ofArchive && !isTimeFirst) {
        columns.value = 3;
        columns.isOfArchive = true;
    }
    return columns;
}

class SeriesReader
{
public:
    SeriesReader(const QString &station, ValueSeries &series) : m_station(station), m_series(series) {}

    Status read(const QString &text)
    {
        m_series = {};
        const std::optional<int> unbalanced =
            readCsv(text, csvSeparator(text), [this](const QStringList &cells, int line) {
                take(cells, line);
                return true;
            });
        if (unbalanced) { // lines may have become one
            return Status::failed(unbalancedQuote(*unbalanced));
        }
        if (m_bad > mostRemarks) {
            m_series.remarks += told(QT_TRANSLATE_NOOP("Foretelling", "%1 more lines cannot be used"))
                                    .arg(m_bad - mostRemarks);
        }
        std::ranges::stable_sort(m_series.values, {}, &SeriesValue::at);
        if (m_station.isEmpty() && m_stations.size() > 1) {
            return Status::failed(
                told(QT_TRANSLATE_NOOP("Foretelling", "the values are of %1 stations; which one is meant?"))
                    .arg(m_stations.size()));
        }
        if (m_series.values.isEmpty()) {
            return Status::failed(told(QT_TRANSLATE_NOOP("Foretelling", "there are no values: time, channel "
                                                                        "and value are expected in a line")));
        }
        return Status::done();
    }

private:
    static constexpr int mostRemarks = 5;

    void take(const QStringList &cells, int line)
    {
        if (m_isFirst) {
            m_isFirst = false;
            m_named = columnsNamed(cells);
            const bool isHeading = m_named || std::ranges::none_of(cells, [](const QString &cell) {
                                       return channelOf(cell) || timeOf(cell);
                                   });
            if (isHeading) {
                return;
            }
        }
        const Columns columns = m_named ? *m_named : columnsOf(cells);
        if (columns.station >= 0) {
            m_stations += cells.value(columns.station);
            if (!m_station.isEmpty() && cells.value(columns.station) != m_station) {
                return;
            }
        }
        const auto time = timeOf(cells.value(columns.time));
        const auto channel = channelOf(cells.value(columns.channel));
        const auto value = toNumber(cells.value(columns.value));
        if (!time) {
            refuse(line, QT_TRANSLATE_NOOP("Foretelling", "line %1: %2is no time"),
                   cells.value(columns.time));
        } else if (!channel) {
            refuse(line, QT_TRANSLATE_NOOP("Foretelling", "line %1: %2is no channel from 1 to 18"),
                   cells.value(columns.channel));
        } else if (!value) {
            refuse(line, QT_TRANSLATE_NOOP("Foretelling", "line %1: %2is no number"),
                   cells.value(columns.value));
        } else {
            m_series.values += SeriesValue{*time, *channel, *value};
            m_series.isOfArchive = m_series.isOfArchive || columns.isOfArchive;
        }
    }

    void refuse(int line, const char *text, const QString &cell)
    {
        if (++m_bad <= mostRemarks) {
            m_series.remarks += told(text).arg(QString::number(line), quotedInRemark(cell));
        }
    }

    QString m_station;
    ValueSeries &m_series;
    std::optional<Columns> m_named;
    QSet<QString> m_stations;
    int m_bad = 0;
    bool m_isFirst = true;
};

} // namespace

Status readValueSeries(const QString &text, const QString &station, ValueSeries &series)
{
    const qsizetype mark = text.startsWith(QChar::ByteOrderMark) ? 1 : 0; // a clipboard may have it
    return SeriesReader(station, series).read(text.sliced(mark));
}

} // namespace ktr
