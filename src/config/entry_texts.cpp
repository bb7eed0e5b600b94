#include "config/entry_texts.h"

#include "config/channel_use.h"
#include "config/channels.h"
#include "platform/text_rules.h"

#include <QCoreApplication>
#include <QDate>

#include <algorithm>

namespace ktr {

namespace {

QString numberedAdministrator(std::size_t index, const TextTable &texts)
{
    return texts.text(Text::Admin).trimmed() + u' ' + QString::number(index + 1);
}

/// An administrator's name, or what stands for it, whoever else has it.
QString plainAdministratorName(const Configuration &configuration, std::size_t index, const TextTable &texts)
{
    const QString &name = configuration.administrators[index].name;
    return name.trimmed().isEmpty() ? numberedAdministrator(index, texts) : name;
}

/// As it is compared with others: "on weekdays" tells nobody what "weekdays" does not.
QString readAs(int type, const TextTable &texts)
{
    QString text = texts.text(switchTypeText(type)).simplified().toLower();
    if (text.startsWith(QLatin1String("on "))) {
        text.remove(0, 3);
    }
    return text;
}

/// Of the types that texts are known to mix up.
const char *meaningOf(int type)
{
    constexpr int weekdays = 7;
    constexpr int workingDays = 10;
    constexpr int exceeded = 15;
    constexpr int undershot = 16;
    switch (type) {
    case weekdays:
        return QT_TRANSLATE_NOOP("SwitchTypes", "any weekday");
    case workingDays:
        return QT_TRANSLATE_NOOP("SwitchTypes", "working days");
    case exceeded:
        return QT_TRANSLATE_NOOP("SwitchTypes", "above the limit");
    case undershot:
        return QT_TRANSLATE_NOOP("SwitchTypes", "below the limit");
    default:
        return nullptr;
    }
}

} // namespace

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

QString countedUnit(const Configuration &configuration, int channel)
{
    const Measure measure = channelMeasure(configuration, channel);
    const bool counts = measure == Measure::Pulses || measure == Measure::Hours;
    return counts ? configuration.names.of(channel).unit : QString();
}

LimitUnits shownUnits(const Configuration &configuration, int channel, const TextTable &texts)
{
    if (const QString own = countedUnit(configuration, channel); !own.isEmpty()) {
        return {own, own};
    }
    const bool hasStates = channelMeasure(configuration, channel) == Measure::Binary;
    return hasStates ? LimitUnits() : limitUnits(configuration, channel, texts);
}

QString administratorName(const Configuration &configuration, std::size_t index, const TextTable &texts)
{
    QString name = plainAdministratorName(configuration, index, texts);
    for (std::size_t other = 0; other < configuration.administrators.size(); ++other) {
        const QString others = plainAdministratorName(configuration, other, texts);
        if (other != index && others.simplified().compare(name.simplified(), Qt::CaseInsensitive) == 0) {
            return name + QStringLiteral(" (%1)").arg(numberedAdministrator(index, texts));
        }
    }
    return name;
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

QString switchTypeMeaning(int type, const TextTable &texts)
{
    const char *meaning = meaningOf(type);
    if (meaning == nullptr) {
        return {};
    }
    const QString text = readAs(type, texts);
    for (int other = 0; other < SwitchPoint::typeCount; ++other) {
        if (other != type && readAs(other, texts) == text) {
            return QCoreApplication::translate("SwitchTypes", meaning);
        }
    }
    return {};
}

QString switchTypeName(int type, const TextTable &texts)
{
    const bool known = type >= 0 && type < SwitchPoint::typeCount;
    const QString name = known ? texts.text(switchTypeText(type)).trimmed() : QString();
    if (name.isEmpty()) {
        return QString::number(type);
    }
    const QString meaning = switchTypeMeaning(type, texts);
    const QString told = QString::number(type) + u' ' + name;
    return meaning.isEmpty() ? told : told + QStringLiteral(" (%1)").arg(meaning);
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
