#include "opmode/curves/curve_series.h"

#include "config/channel_use.h"
#include "opmode/operational_mode.h"
#include "opmode/overview/input_reading.h"
#include "opmode/tree/node_texts.h"
#include "platform/text_rules.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>

namespace ktr {

namespace {

const QString stationMember = QStringLiteral("station");
const QString channelMember = QStringLiteral("channel");
constexpr int mostOfAStation = 4;

bool isChannel(int channel)
{
    return channel >= 1 && channel <= channelCount;
}

} // namespace

CurveSeries describedSeries(const OperationalMode &mode, const SeriesId &id, int slot, const QLocale &locale)
{
    const ChannelNames names = mode.channelNames(id.kennung);
    const QString &name = names.of(id.channel).name;
    CurveSeries series{id, slot, mode.tree().find(id.kennung).data(Qt::EditRole).toString(),
                       name.isEmpty() ? channelCaption(id.channel).trimmed() : name,
                       readingOf(mode, id.kennung, id.channel, mode.configuration(id.kennung)).unit};
    for (const InputLimit &limit : mode.configuration(id.kennung).limitsOf(id.channel)) {
        constexpr std::array<const char16_t *, 4> signs{u"", u"< ", u"= ", u"> "}; // by its comparison
        const auto sign = static_cast<std::size_t>(std::clamp(limit.comparison, 0, 3));
        series.limits += {limit.limit, QString::fromUtf16(signs.at(sign)) + numberText(limit.limit, locale) +
                                           (limit.text.isEmpty() ? QString() : u' ' + limit.text)};
    }
    return series;
}

QList<SeriesId> usualSeries(const OperationalMode &mode, const QString &kennung)
{
    return mode.tree().find(kennung).isValid() ? QList<SeriesId>{{kennung, usualChannels}}
                                               : QList<SeriesId>();
}

QList<SeriesId> seriesOfStation(const OperationalMode &mode, const QString &kennung,
                                const QList<int> &measured, int most)
{
    const StationConfiguration configuration = mode.configuration(kennung);
    const ChannelNames names = mode.channelNames(kennung);
    struct Input
    {
        int channel;
        bool hasValues;
        bool isState;
        bool isNamed;
    };
    std::vector<Input> inputs;
    for (int channel = 1; channel <= channelCount; ++channel) {
        const InputReading reading = readingOf(mode, kennung, channel, configuration);
        const Measure known = configuration.measure(channel);
        const Measure measure = known == Measure::None ? fixedMeasure(channel) : known;
        const bool countsPerhaps = measure == Measure::None; // the first four, of an unknown configuration
        const std::optional<double> value = toNumber(reading.value);
        const bool isCount = countsPerhaps && value && *value != 0 && *value != 1;
        inputs.push_back({channel, measured.contains(channel) || !reading.value.isEmpty(),
                          measure == Measure::Binary || (countsPerhaps && !isCount),
                          !names.of(channel).name.isEmpty()});
    }
    QList<SeriesId> series;
    const qsizetype enough = std::min(most, mostOfAStation);
    const auto take = [&](bool hasValues, bool isState, bool isNamed) {
        for (const Input &each : inputs) {
            if (each.hasValues == hasValues && each.isState == isState && each.isNamed == isNamed &&
                series.size() < enough) {
                series += {kennung, each.channel};
            }
        }
    };
    take(true, false, true);
    if (series.isEmpty()) {
        take(true, false, false);
    }
    take(true, true, true);
    if (series.isEmpty()) {
        take(true, true, false);
    }
    if (series.isEmpty()) { // they may have values later
        take(false, false, true);
        take(false, true, true);
    }
    return series;
}

QByteArray seriesToDrag(const QList<SeriesId> &series)
{
    QJsonArray array;
    for (const SeriesId &id : series) {
        array += QJsonObject{{stationMember, id.kennung}, {channelMember, id.channel}};
    }
    return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

QList<SeriesId> draggedSeries(const OperationalMode &mode, const QByteArray &data)
{
    QList<SeriesId> series;
    for (const auto each : QJsonDocument::fromJson(data).array()) {
        const SeriesId id{each[stationMember].toString(), each[channelMember].toInt()};
        if ((isChannel(id.channel) || id.channel == usualChannels) &&
            mode.tree().find(id.kennung).isValid()) {
            series += id;
        }
    }
    return series;
}

QList<SeriesId> KeptSeries::restore(const OperationalMode &mode, const QString &kept)
{
    QHash<QString, QString> keys;
    for (int row = 0; row < mode.tree().rowCount(); ++row) {
        const QModelIndex station = mode.tree().index(row, 0);
        keys.insert(station.data(Qt::EditRole).toString(), station.data(StationTree::KeyRole).toString());
    }
    QList<SeriesId> series;
    m_others.clear();
    for (const QString &line : kept.split(u'\n', Qt::SkipEmptyParts)) {
        const qsizetype blank = line.indexOf(u' ');
        const int channel = line.first(std::max<qsizetype>(0, blank)).toInt();
        const auto key = keys.constFind(line.sliced(blank + 1));
        if (isChannel(channel) && key != keys.cend()) {
            series += {*key, channel};
        } else if (isChannel(channel)) {
            m_others += line;
        }
    }
    return series;
}

QString KeptSeries::save(const OperationalMode &mode, const QList<SeriesId> &series) const
{
    QStringList lines;
    for (const SeriesId &id : series) {
        lines +=
            QString::number(id.channel) + u' ' + mode.tree().find(id.kennung).data(Qt::EditRole).toString();
    }
    constexpr qsizetype mostOthers = 100;
    return (lines + m_others.first(std::min(mostOthers, m_others.size()))).join(u'\n');
}

} // namespace ktr
