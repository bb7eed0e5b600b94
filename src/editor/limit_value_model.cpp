#include "editor/limit_value_model.h"

#include "config/channels.h"
#include "config/entry_texts.h"
#include "config/fields.h"

namespace ktr {

namespace {

QString condition(const Configuration &configuration, const LimitValue &value, const TextTable &texts)
{
    const int channel = value.channel;
    if (channel == 0) {
        return {};
    }
    const QString unit = shownUnits(configuration, channel, texts).limit;
    const QString text = comparisonSign(value.comparison) + u' ' + value.limit + u' ' + unit;
    return text.trimmed();
}

} // namespace

LimitValueModel::LimitValueModel(QObject *parent) : EntryModel(parent)
{
    setTitles(QStringList(4));
    setRows(std::vector<EntryRow>(LimitValue::count));
}

void LimitValueModel::setTexts(const TextTable &texts)
{
    const auto label = [&texts](auto member) { return labelText(fieldOf(member).label, texts); };
    setTitles({texts.text(Text::LimitValueShort), label(&LimitValue::channel), label(&LimitValue::comparison),
               label(&LimitValue::alarm)});
}

void LimitValueModel::show(const Configuration &configuration, const TextTable &texts)
{
    std::vector<EntryRow> rows;
    rows.reserve(LimitValue::count);
    for (int entry = 0; const LimitValue &value : configuration.limitValues) {
        if (LimitValue::isReference(entry++)) {
            rows.push_back(
                {{combinedLimitValues(value.reference).join(u'+'), {}, value.alarm}, value.reference != 0});
        } else {
            const bool inUse = value.channel != 0;
            const QString channel = inUse ? shortNamedChannel(value.channel, configuration.names) : QString();
            rows.push_back({{channel, condition(configuration, value, texts), value.alarm}, inUse});
        }
    }
    setRows(std::move(rows));
}

} // namespace ktr
