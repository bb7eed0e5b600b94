#include "config/entry_texts.h"

#include "config/channel_use.h"
#include "platform/text_rules.h"

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
    case Measure::Scaled:
        return both(scalingOf(configuration, channel)->unit);
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

QString administratorName(const Configuration &configuration, std::size_t index, const TextTable &texts)
{
    const QString &name = configuration.administrators[index].name;
    return name.trimmed().isEmpty() ? texts.text(Text::Admin) + u' ' + QString::number(index + 1) : name;
}

QString startText(const QString &start, const QLocale &locale)
{
    const std::optional<QDateTime> moment = toMinute(start);
    return moment ? locale.toString(moment->date(), QLocale::ShortFormat) + u' ' +
                        moment->toString(QStringLiteral("hh:mm"))
                  : start;
}

} // namespace ktr
