#include "config/entry_texts.h"

#include "config/channel_use.h"
#include "config/channels.h"
#include "platform/text_rules.h"

#include <QDate>

namespace ktr {

LimitUnits limitUnits(const Configuration &configuration, int channel, const TextTable &texts)
{
    const auto both = [](const QString &unit) { return LimitUnits{unit, unit}; };
    switch (channelMeasure(configuration, channel)) {
    case Measure::None:
        return {};
    case Measure::Binary:
        return {QStringLiteral("0/1"), QStringLiteral("0")}; // two states leave no room for a hysteresis
    case Measure::Pulses:
        return both(texts.text(Text::Pulses));
    case Measure::Hours:
        return both(texts.text(Text::Hours));
    case Measure::Scaled: {
        const QString &unit = scalingOf(configuration, channel)->unit;
        return both(unit.isEmpty() ? configuration.names.of(channel).unit : unit);
    }
    case Measure::Temperature:
        return {QStringLiteral("°C"), texts.text(Text::Kelvin)};
    }
    return {};
}

QString comparisonSign(int comparison)
{
    static const QStringList signs{QStringLiteral("<"), QStringLiteral("="), QStringLiteral(">")};
    return signs.value(comparison - 1, QString::number(comparison));
}

QStringList combinedLimitValues(double reference)
{
    QStringList numbers;
    if (reference > 0 && reference <= LimitValue::allReferences) {
        const auto mask = static_cast<unsigned>(reference);
        for (unsigned bit = 0; bit < LimitValue::firstReference; ++bit) {
            if ((mask >> bit & 1U) != 0) {
                numbers += QString::number(bit + 1);
            }
        }
    }
    return numbers;
}

QString combinationText(double reference, const QLocale &locale)
{
    const bool isMask = reference >= 0 && reference <= LimitValue::allReferences;
    return isMask ? combinedLimitValues(reference).join(QLatin1String(", ")) : numberText(reference, locale);
}

QString channelName(int channel, const TextTable &texts)
{
    const QString name = channelText(channel);
    return channel == 0     ? texts.text(Text::Invalid).trimmed()
           : name.isEmpty() ? QString::number(channel)
                            : name;
}

QString channelName(const Configuration &configuration, int channel, const TextTable &texts)
{
    return withChannelName(channelName(channel, texts), channel, configuration.names);
}

LimitUnits shownUnits(const Configuration &configuration, int channel, const TextTable &texts)
{
    const bool hasStates = channelMeasure(configuration, channel) == Measure::Binary;
    return hasStates ? LimitUnits() : limitUnits(configuration, channel, texts);
}

QString administratorName(const Configuration &configuration, std::size_t index, const TextTable &texts)
{
    const QString &name = configuration.administrators[index].name;
    return name.trimmed().isEmpty() ? texts.text(Text::Admin) + u' ' + QString::number(index + 1) : name;
}

QStringList recipientNames(const Configuration &configuration, int recipients, const TextTable &texts)
{
    const auto count = configuration.administrators.size();
    QStringList names;
    for (std::size_t administrator = 0; administrator < count; ++administrator) {
        if ((recipients >> administrator & 1) != 0) {
            names += administratorName(configuration, administrator, texts);
        }
    }
    // Six names in each row would bury the rows that name a few.
    return names.size() == qsizetype(count)
               ? QStringList(texts.text(Text::Admin).trimmed() + QStringLiteral(" 1–%1").arg(count))
               : names;
}

QString targetName(const Configuration &configuration, int position, const TextTable &texts)
{
    if (position >= firstAdministratorTarget && position < targetCount) {
        return administratorName(configuration, static_cast<std::size_t>(position - firstAdministratorTarget),
                                 texts);
    }
    const QString name = withChannelName(targetText(position), targetCode(position), configuration.names);
    return position == 0    ? texts.text(Text::Invalid).trimmed()
           : name.isEmpty() ? QString::number(position)
                            : name;
}

QString switchTypeName(int type, const TextTable &texts)
{
    const bool known = type >= 0 && type < SwitchPoint::typeCount;
    const QString name = known ? texts.text(switchTypeText(type)).trimmed() : QString();
    return name.isEmpty() ? QString::number(type) : QString::number(type) + u' ' + name;
}

QString watchedLimitValue(const Configuration &configuration, int index, const TextTable &texts)
{
    QString number = QString::number(index + 1);
    if (index < 0 || index >= LimitValue::firstReference) {
        return number;
    }
    const LimitValue &watched = configuration.limitValues[static_cast<std::size_t>(index)];
    return number + QStringLiteral(" (%1)").arg(channelName(configuration, watched.channel, texts));
}

QString holidayText(const QString &line, const QLocale &locale)
{
    const QDate date = QDate::fromString(u"20" + line.section(u'\t', 0, 0), QStringLiteral("yyyyMMdd"));
    return date.isValid() ? locale.toString(date, QLocale::ShortFormat) : line;
}

QString startText(const QString &start, const QLocale &locale)
{
    const std::optional<QDateTime> moment = toMinute(start);
    return moment ? locale.toString(moment->date(), QLocale::ShortFormat) + u' ' +
                        moment->toString(QStringLiteral("hh:mm"))
                  : start;
}

} // namespace ktr
