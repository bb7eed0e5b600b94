#include "editor/switch_point_model.h"

#include "config/channels.h"
#include "config/entry_texts.h"
#include "config/fields.h"

namespace ktr {

namespace {

// Not from the table of texts: they are German whatever stands there.
constexpr std::array<const char16_t *, SwitchPoint::typeCount> germanTypes = {
    u"0 sonntags",      u"1 montags",        u"2 dienstags",  u"3 mittwochs",  u"4 donnerstags",
    u"5 freitags",      u"6 samstags",       u"7 wochentags", u"8 Wochenende", u"9 w.end & feiert.",
    u"10 werktags",     u"11 feiertags",     u"12 täglich",   u"13 einmalig",  u"14 periodisch",
    u"15 GW-Überschr.", u"16 GW-Unterschr.",
};

QStringList switchTypeItems(const EditorContext &context)
{
    QStringList items;
    for (int type = 0; const char16_t *german : germanTypes) {
        items += context.isGerman() ? QString::fromUtf16(german)
                                    : QString::number(type) + u' ' + context.texts.text(switchTypeText(type));
        ++type;
    }
    return items;
}

QStringList limitValueItems(const EditorContext &context)
{
    QStringList items;
    const Configuration &configuration = context.document.configuration();
    for (int entry = 0; const LimitValue &value : configuration.limitValues) {
        items += QString::number(++entry) + QLatin1String("  IP:") +
                 namedChannel(value.channel, configuration.names);
    }
    return items;
}

} // namespace

SwitchPointModel::SwitchPointModel(QObject *parent) : EntryModel(parent)
{
    setTitles(QStringList(4));
    setRows(std::vector<EntryRow>(SwitchPoint::count));
}

void SwitchPointModel::setTexts(const EditorContext &context)
{
    m_types = switchTypeItems(context);
    m_meanings.clear();
    for (int type = 0; type < SwitchPoint::typeCount; ++type) {
        // The German items stand apart whatever the table has.
        m_meanings += context.isGerman() ? QString() : switchTypeMeaning(type, context.texts);
    }
    const auto label = [&context](auto member) { return labelText(fieldOf(member).label, context.texts); };
    setTitles({QStringLiteral("#"), label(&SwitchPoint::target), label(&SwitchPoint::type),
               label(&SwitchPoint::value)});
}

/// An administrator's name takes the place of the list's own item as soon as one is given, and stays there.
QStringList SwitchPointModel::targetItems(const EditorContext &context)
{
    const ChannelNames &names = context.document.configuration().names;
    QStringList items;
    for (int position = 0; position < targetCount; ++position) {
        items += withChannelName(targetText(position), targetCode(position), names);
    }
    if (!context.isGerman()) {
        items[0] = context.texts.text(Text::Invalid);
    }
    const auto &administrators = context.document.configuration().administrators;
    for (std::size_t index = 0; index < administrators.size(); ++index) {
        const QString &name = administrators[index].name;
        m_named[index] = m_named[index] || name != QStringLiteral("Admin %1").arg(index + 1);
        if (m_named[index]) {
            items[firstAdministratorTarget + static_cast<int>(index)] = name;
        }
    }
    return items;
}

void SwitchPointModel::show(const EditorContext &context)
{
    m_targets = targetItems(context);
    m_wholeTargets.clear();
    for (int position = 0; position < targetCount; ++position) {
        const QString whole = targetName(context.document.configuration(), position, context.texts);
        const int administrator = position - firstAdministratorTarget;
        const bool isNamed = administrator >= 0 && m_named[static_cast<std::size_t>(administrator)];
        m_wholeTargets += isNamed && whole != m_targets[position] ? whole : QString();
    }
    m_limitValues = limitValueItems(context);
    std::vector<EntryRow> rows;
    rows.reserve(SwitchPoint::count);
    auto start = m_starts.begin();
    for (const SwitchPoint &point : context.document.configuration().switchPoints) {
        if (start->stored != point.start) {
            *start = {point.start, startText(point.start, context.document.environment().locale)};
        }
        const bool inUse = point.target != 0;
        const bool untouched = !inUse && point.start.isEmpty();
        rows.push_back({untouched ? QStringList()
                                  : QStringList{target(point, context.document.configuration().names),
                                                condition(point, start->shown, context.texts), point.value},
                        inUse});
        ++start;
    }
    setRows(std::move(rows));
}

QString SwitchPointModel::target(const SwitchPoint &point, const ChannelNames &names) const
{
    const bool isOutput = point.target > 0 && point.target < firstAdministratorTarget;
    return isOutput            ? shortNamedChannel(targetCode(point.target), names)
           : point.target == 0 ? QString()
           : !wholeTarget(point.target).isEmpty()
               ? wholeTarget(point.target)
               : m_targets.value(point.target, QString::number(point.target));
}

QString SwitchPointModel::condition(const SwitchPoint &point, const QString &start,
                                    const TextTable &texts) const
{
    // Room is short here: what a type does takes the place of a text that others have, too.
    const QString told = meaning(point.type);
    QStringList parts{told.isEmpty() ? m_types.value(point.type, QString::number(point.type))
                                     : QString::number(point.type) + u' ' + told};
    if (!point.reactsToLimitValue()) {
        parts += start;
    } else if (LimitValue::isReference(point.limitValue)) {
        parts += QString::number(point.limitValue + 1); // combinations have no channel
    } else {
        parts += m_limitValues.value(point.limitValue, QString::number(point.limitValue + 1));
    }
    if (point.type == SwitchPoint::periodic) {
        parts += point.period + u' ' + texts.text(Text::Minutes);
    }
    parts.removeAll(QString());
    return parts.join(QLatin1String(", "));
}

} // namespace ktr
