#include "opmode/window/overview/tile_contents.h"

#include "look/outside_texts.h"
#include "opmode/operational_mode.h"
#include "opmode/overview/input_reading.h"
#include "opmode/watch_alarms.h"
#include "opmode/window/alarm_look.h"
#include "opmode/window/input_caption.h"
#include "opmode/window/overview/numbers_text.h"
#include "opmode/window/quality_bars.h"
#include "opmode/window/station_mark.h"
#include "opmode/window/value_age.h"
#include "opmode/window/value_text.h"

namespace ktr {

QString TileContents::stateOf(const StationGlance &glance) const
{
    const AlarmRow *alarm = m_mode.alarms().alarm(glance.worst);
    if (m_mode.isLent(glance.kennung)) {
        return tr("being configured in the main window");
    }
    if (alarm != nullptr) {
        const QString text = shortenedLine(WatchAlarms::shownText(*alarm));
        return alarm->acknowledged == 0 && alarm->shelvedUntil == 0 ? text
               : alarm->shelvedUntil != 0                           ? tr("put aside: %1").arg(text)
                                                                    : tr("acknowledged: %1").arg(text);
    }
    QString state = statusText(glance.status);
    if (glance.status.pukNeeded) {
        state += QLatin1String(", PUK");
    }
    return state;
}

TileTexts TileContents::textsOf(const StationGlance &glance, const TileLevel &level,
                                const QLocale &locale) const
{
    TileTexts texts;
    texts.state = stateOf(glance);
    if (!level.hasFoot()) {
        return texts;
    }
    if (const cStation *station = m_mode.station(glance.kennung)) {
        texts.bars = QualityBars::filled(station->csq());
        if (const qint64 heard = station->lastHeard(); heard > 0) {
            const QDateTime moment = QDateTime::fromMSecsSinceEpoch(heard);
            const bool isToday = moment.date() == m_mode.now().toLocalTime().date();
            texts.heard = locale.toString(moment, isToday ? QStringLiteral("HH:mm:ss")
                                                          : QStringLiteral("dd.MM. HH:mm"));
            if (glance.status.line == StationStatus::Line::Silent) { // its state may tell of an alarm
                texts.heard = tr("silent, %1").arg(texts.heard);
            }
        }
    }
    if (level.values() == 0) {
        return texts;
    }
    const StationConfiguration configuration = m_mode.configuration(glance.kennung);
    const ChannelNames &names = configuration.names();
    texts.isStale = glance.status.line != StationStatus::Line::Alive;
    for (const int channel :
         shownChannels(m_mode, glance.kennung, names, channelsFor(glance.kennung), level.values())) {
        const InputReading reading = readingOf(m_mode, glance.kennung, channel, configuration);
        TileTexts::Value value{shortInputCaption(channel, names),
                               shortenedLine(localValue(reading.value, locale)),
                               reading.unit,
                               reading.state,
                               {},
                               {},
                               {}};
        if (!reading.value.isEmpty()) {
            value.age = ageText(m_model.times().of(glance.kennung, channel), m_mode.now());
            value.mark = reading.beyond ? QString(beyondMark(*reading.beyond)) : QString();
        }
        for (const ValueTrends::Point &point : reading.trend) {
            value.trend.append({double(point.time), double(point.value)});
        }
        texts.values += value;
    }
    return texts;
}

/// What its group shows, else what all do.
QList<int> TileContents::channelsFor(const QString &kennung) const
{
    const QList<int> ofGroup = m_model.channelsOf(kennung);
    return ofGroup.isEmpty() ? m_channels : ofGroup;
}

/// Those that are shown, each with the exact time and with the limit that it is beyond.
QStringList TileContents::valueDescriptions(const QString &kennung, const TileLevel &level,
                                            const QLocale &locale) const
{
    QStringList lines;
    const StationConfiguration configuration = m_mode.configuration(kennung);
    const ChannelNames &names = configuration.names();
    for (const int channel : shownChannels(m_mode, kennung, names, channelsFor(kennung), level.values())) {
        const InputReading reading = readingOf(m_mode, kennung, channel, configuration);
        if (reading.value.isEmpty()) {
            continue;
        }
        const qint64 at = m_model.times().of(kennung, channel);
        QString line = QStringLiteral("%1: %2 %3")
                           .arg(shortInputCaption(channel, names),
                                shortenedLine(localValue(reading.value, locale)), reading.unit);
        line = line.trimmed() + (at == 0 ? QString() : QStringLiteral(" (%1)").arg(shownMoment(at)));
        lines += line;
        if (reading.beyond) {
            lines += QStringLiteral("    ") + limitDescription(*reading.beyond, reading.unit, locale);
        }
    }
    return lines;
}

QString TileContents::description(const StationGlance &glance, const TileLevel &level,
                                  const QLocale &locale) const
{
    QStringList lines{glance.name + QLatin1String(": ") + stateOf(glance)};
    if (glance.waiting > 0) {
        lines += tr("Alarms not acknowledged: %1").arg(glance.waiting);
    }
    if (glance.worst != 0) {
        lines += statusText(glance.status);
    }
    const cStation *station = m_mode.station(glance.kennung);
    if (station != nullptr && station->lastHeard() > 0) {
        lines += tr("Last heard %1").arg(shownMoment(station->lastHeard()));
    }
    if (level.values() > 0) {
        lines += valueDescriptions(glance.kennung, level, locale);
    }
    return lines.join(u'\n');
}

QString TileContents::headingDescription(int group) const
{
    const OverviewModel::Numbers count = m_model.countOf(group);
    const QString name = group == StationGroups::none ? tr("In no group") : m_model.groupName(group);
    QString numbers = tr("%1: %L2 stations").arg(name).arg(count.stations);
    for (const QString &part : {inAlarmText(count), silentText(count)}) {
        numbers += part.isEmpty() ? QString() : QLatin1String(", ") + part;
    }
    return m_model.isFolded(group) ? tr("%1, folded").arg(numbers) : numbers;
}

TilePainter::Heading TileContents::headingOf(int group, const QLocale &locale) const
{
    const OverviewModel::Numbers count = m_model.countOf(group);
    return {group == StationGroups::none ? tr("In no group") : m_model.groupName(group),
            locale.toString(count.stations), inAlarmText(count), silentText(count), m_model.isFolded(group)};
}

} // namespace ktr
