#include "opmode/curves/curve_series.h"

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
    QList<SeriesId> series;
    const ChannelNames names = mode.channelNames(kennung);
    for (const int channel : shownChannels(mode, kennung, names, {}, mostOfAStation)) {
        series += {kennung, channel};
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
        if (isChannel(id.channel) && mode.tree().find(id.kennung).isValid()) {
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
