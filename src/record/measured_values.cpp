// What was measured at inputs: archives, and the values that were reported.

#include "record/read_rows.h"
#include "record/record_reader.h"

#include <QSet>
#include <QSqlQuery>

#include <algorithm>
#include <charconv>

namespace ktr {

namespace {

using namespace Qt::StringLiterals;

/// The number that a text begins with; 0 where it begins with none, but has a digit. Some modules write a
/// comma.
std::optional<double> numberOf(const QString &text)
{
    const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    if (std::ranges::none_of(text, isDigit)) {
        return std::nullopt;
    }
    QByteArray bytes = text.trimmed().toLatin1().replace(',', '.');
    bytes = bytes.startsWith('+') ? bytes.sliced(1) : bytes;
    double value = 0;
    const qsizetype sign = bytes.startsWith('-') ? 1 : 0;
    if (bytes.size() > sign && (bytes[sign] == '.' || isDigit(QLatin1Char(bytes[sign])))) { // no "inf"
        std::from_chars(bytes.constBegin(), bytes.constEnd(), value);
    }
    return value;
}

constexpr int channelsOfAStation = 18;

qint64 spanOf(HistoryLevel level)
{
    constexpr qint64 aQuarter = 15LL * 60'000;
    switch (level) {
    case HistoryLevel::QuarterHour:
        return aQuarter;
    case HistoryLevel::Hour:
        return anHour;
    case HistoryLevel::Day:
        return aDay;
    case HistoryLevel::Raw:
        break;
    }
    return 1;
}

/// The channels of a station that a table has anything of, the station bound twice: from each the index leads
/// to the next one, where asking for each by itself would take a server longer to plan than to answer.
QString channelsIn(const QString &table)
{
    return u"WITH RECURSIVE found(channel) AS (SELECT (SELECT channel FROM %1 WHERE station = ?"
           " ORDER BY channel LIMIT 1) UNION ALL SELECT (SELECT channel FROM %1 WHERE station = ?"
           " AND %1.channel > found.channel ORDER BY channel LIMIT 1) FROM found WHERE channel IS NOT NULL)"
           " SELECT channel FROM found WHERE channel IS NOT NULL"_s.arg(table);
}

} // namespace

Status RecordReader::history(qint64 station, int channel, qint64 from, qint64 to,
                             const std::function<void(const HistoryRow &)> &take)
{
    return each(
        u"SELECT at, first, second FROM history WHERE station = ? AND channel = ? AND at >= ? AND at < ?"
        " ORDER BY at"_s,
        {station, channel, from, to}, [&](const QSqlQuery &row) {
            take({station, channel, row.value(0).toLongLong(), row.value(1).toString(),
                  row.value(2).toString()});
            return true;
        });
}

Status RecordReader::curve(qint64 station, int channel, qint64 from, qint64 to, HistoryLevel level,
                           const std::function<void(const HistoryPoint &)> &take)
{
    const qint64 span = spanOf(level);
    HistoryPoint point;
    qint64 firstCount = 0;
    qint64 secondCount = 0;
    const auto add = [](std::optional<HistoryPoint::Range> &range, qint64 &count, const QString &text) {
        if (const std::optional<double> value = numberOf(text)) {
            range = range ? HistoryPoint::Range{std::min(range->least, *value), range->mean + *value,
                                                std::max(range->most, *value)}
                          : HistoryPoint::Range{*value, *value, *value};
            ++count;
        }
    };
    const auto tell = [&] { // the means are sums so far
        if (point.first) {
            point.first->mean /= static_cast<double>(firstCount);
        }
        if (point.second) {
            point.second->mean /= static_cast<double>(secondCount);
        }
        if (point.count > 0) {
            take(point);
        }
        firstCount = secondCount = 0;
    };
    Status read = history(station, channel, from, to, [&](const HistoryRow &row) {
        const qint64 beginning = row.at - row.at % span;
        if (point.count == 0 || beginning != point.at) {
            tell();
            point = HistoryPoint();
            point.at = beginning;
        }
        ++point.count;
        add(point.first, firstCount, row.first);
        add(point.second, secondCount, row.second);
    });
    if (read) {
        tell();
    }
    return read;
}

Status RecordReader::newestValue(qint64 station, int channel, qint64 &at)
{
    at = 0;
    return each(u"SELECT max(at) FROM value WHERE station = ? AND channel = ?"_s, {station, channel},
                [&at](const QSqlQuery &row) {
                    at = row.value(0).toLongLong();
                    return true;
                });
}

Status RecordReader::values(qint64 station, int channel, qint64 from, qint64 to,
                            const std::function<void(const ValueRow &)> &take)
{
    return each(u"SELECT at, value FROM value WHERE station = ? AND channel = ? AND at >= ? AND at < ?"
                " ORDER BY at"_s,
                {station, channel, from, to}, [&](const QSqlQuery &row) {
                    take({station, channel, row.value(0).toLongLong(), row.value(1).toString()});
                    return true;
                });
}

/// The texts that stand in front of values in the archives of a station name inputs. Those of the newest
/// records of each archive, since an archive has the same ones all the time.
Status RecordReader::archivedInputs(qint64 station, QList<ArchivedInput> &inputs)
{
    constexpr int newest = 200;
    QList<int> archives;
    Status read = each(channelsIn(u"history"_s), {station, station}, [&archives](const QSqlQuery &row) {
        archives += row.value(0).toInt();
        return true;
    });
    for (qsizetype i = 0; i < archives.size() && read; ++i) {
        read = each(u"SELECT DISTINCT first FROM (SELECT first FROM history WHERE station = ? AND channel = ?"
                    " ORDER BY at DESC LIMIT ?) AS newest ORDER BY 1"_s,
                    {station, archives[i], newest}, [&](const QSqlQuery &row) {
                        const QString text = row.value(0).toString();
                        const int input = text.trimmed().toInt();
                        if (input >= 1 && input <= channelsOfAStation) {
                            inputs += {archives[i], input, text};
                        }
                        return true;
                    });
    }
    return read;
}

/// For what was measured at an input; `columns` are those that are asked for of the column with the values.
/// With it the archives that it asks, in their order.
std::pair<QString, QList<RecordReader::ArchivedInput>>
RecordReader::measuredStatement(int channel, const QList<ArchivedInput> &inputs,
                                const std::function<QString(const QString &column)> &columns)
{
    QString statement = u"SELECT "_s + columns(u"value"_s) +
                        u" FROM value WHERE station = ? AND channel = ? AND at >= ? AND at < ?"_s;
    QList<ArchivedInput> archives;
    for (const ArchivedInput &input : inputs) {
        if (input.input == channel) {
            statement += u" UNION ALL SELECT "_s + columns(u"second"_s) +
                         u" FROM history WHERE station = ? AND channel = ? AND at >= ? AND at < ?"
                         " AND first = ?"_s;
            archives += input;
        }
    }
    return {statement, archives};
}

/// What is bound in it.
QVariantList RecordReader::measuredValues(qint64 station, int channel, std::pair<qint64, qint64> times,
                                          const QList<ArchivedInput> &archives)
{
    const auto [from, to] = times;
    QVariantList values{station, channel, from, to};
    for (const ArchivedInput &archive : archives) {
        values += {station, archive.archive, from, to, archive.text};
    }
    return values;
}

Status RecordReader::measuredQuestion(qint64 station, int channel, std::pair<qint64, qint64> times,
                                      const std::function<QString(const QString &)> &columns,
                                      Question &question)
{
    QList<ArchivedInput> inputs;
    Status read = archivedInputs(station, inputs);
    const auto [statement, archives] = measuredStatement(channel, inputs, columns);
    question = {statement, measuredValues(station, channel, times, archives)};
    return read;
}

Status RecordReader::measured(qint64 station, int channel, qint64 from, qint64 to,
                              const std::function<void(qint64, double)> &take)
{
    Question question;
    const auto asItIs = [](const QString &column) -> QString { return u"at, "_s + column; };
    if (Status read = measuredQuestion(station, channel, {from, to}, asItIs, question); !read) {
        return read;
    }
    // Each part is in order, and their orders are merged.
    return each(question.statement + u" ORDER BY 1"_s, question.values, [&](const QSqlQuery &row) {
        if (const std::optional<double> value = numberOf(row.value(1).toString())) {
            take(row.value(0).toLongLong(), *value);
        }
        return true;
    });
}

Status RecordReader::measuredSpans(qint64 station, int channel, qint64 from, qint64 to,
                                   std::pair<qint64, qint64> lengthAndOffset,
                                   const std::function<void(const MeasuredSpan &)> &take)
{
    if (Status opened = open(); !opened) {
        return opened;
    }
    // The same numbers as numberOf() gives; what is written as numbers are is looked at but once. Part and
    // number stand in the innermost question, where each is made once.
    const auto [length, offset] = lengthAndOffset;
    const QString columns =
        u"(at + %1) / %2 AS part, "_s.arg(offset).arg(length) +
        (m_database.isServer()
             ? u"CASE WHEN %1 ~ '^-?[0-9]+[.]?[0-9]*$' THEN %1::double precision"
               " WHEN %1 ~ '[0-9]' THEN number_of(%1) END AS number"_s
             : u"CASE WHEN %1 NOT GLOB '*[0-9]*' THEN NULL WHEN %1 GLOB '*,*'"
               " THEN CAST(replace(%1, ',', '.') AS REAL) ELSE CAST(%1 AS REAL) END AS number"_s);
    Question question;
    const auto ofColumn = [&columns](const QString &column) -> QString {
        return QString(columns).replace(u"%1"_s, column);
    };
    if (Status read = measuredQuestion(station, channel, {from, to}, ofColumn, question); !read) {
        return read;
    }
    return each(u"SELECT part, count(number), min(number), sum(number), max(number) FROM ("_s +
                    question.statement + u") AS measured GROUP BY part ORDER BY part"_s,
                question.values, [&, length = length, offset = offset](const QSqlQuery &row) {
                    if (const qint64 count = row.value(1).toLongLong(); count > 0) {
                        take({row.value(0).toLongLong() * length - offset, count, row.value(2).toDouble(),
                              row.value(3).toDouble(), row.value(4).toDouble()});
                    }
                    return true;
                });
}

Status RecordReader::measuredWithin(qint64 station, int channel,
                                    const QList<std::pair<qint64, qint64>> &times, QList<bool> &are)
{
    are.clear();
    QList<ArchivedInput> inputs;
    Status read = times.isEmpty() ? Status::done() : archivedInputs(station, inputs);
    const auto [statement, archives] =
        measuredStatement(channel, inputs, [](const QString &) { return u"1"_s; });
    for (qsizetype i = 0; i < times.size() && read; ++i) {
        are += false;
        read = each(statement + u" LIMIT 1"_s, measuredValues(station, channel, times[i], archives),
                    [&are](const QSqlQuery &) { return are.last() = true; });
    }
    return read;
}

Status RecordReader::measuredChannels(qint64 station, QList<int> &channels)
{
    QList<ArchivedInput> inputs;
    Status read = archivedInputs(station, inputs);
    QSet<int> any;
    for (const ArchivedInput &input : std::as_const(inputs)) {
        any += input.input;
    }
    if (read) {
        read = each(channelsIn(u"value"_s), {station, station}, [&any](const QSqlQuery &row) {
            if (const int channel = row.value(0).toInt(); channel >= 1 && channel <= channelsOfAStation) {
                any += channel;
            }
            return true;
        });
    }
    channels = QList<int>(any.cbegin(), any.cend());
    std::ranges::sort(channels);
    return read;
}

} // namespace ktr
