#include "opmode/alarms/alarm_rules.h"

#include "config/alarm_word.h"
#include "record/json_text.h"

#include <algorithm>

namespace ktr {

namespace {

constexpr int highest = static_cast<int>(AlarmPriority::High);
constexpr int lowest = static_cast<int>(AlarmPriority::Low);

Qt::CaseSensitivity caseOf(const AlarmRule &rule)
{
    return rule.caseSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive;
}

} // namespace

QList<AlarmRule> AlarmRules::standard()
{
    AlarmRule fail;
    fail.pattern = alarmWord;
    return {fail};
}

qsizetype AlarmRules::placeFor(const QString &text) const
{
    const auto rule = std::ranges::find_if(m_rules, [&](const AlarmRule &candidate) {
        return text.contains(candidate.pattern, caseOf(candidate));
    });
    return rule == m_rules.end() ? -1 : rule - m_rules.begin();
}

RuleFault AlarmRules::faultOf(qsizetype place) const
{
    const AlarmRule &rule = m_rules[place];
    if (rule.pattern.trimmed().isEmpty()) {
        return RuleFault::NoText;
    }
    if (rule.pattern.compare(rule.ending, Qt::CaseInsensitive) == 0) { // as ends are compared
        return RuleFault::EndsItself;
    }
    const auto fitsAllOf = [&rule](const AlarmRule &earlier) {
        return (rule.caseSensitive || !earlier.caseSensitive) && !earlier.pattern.isEmpty() &&
               rule.pattern.contains(earlier.pattern, caseOf(earlier));
    };
    return std::any_of(m_rules.begin(), m_rules.begin() + place, fitsAllOf) ? RuleFault::NeverFits
                                                                            : RuleFault::None;
}

const AlarmRule *AlarmRules::of(const QString &text) const
{
    const qsizetype place = placeFor(text);
    return place >= 0 && m_rules[place].isAlarm ? &m_rules[place] : nullptr;
}

QString AlarmRules::endOf(const QString &alarm) const
{
    const AlarmRule *rule = of(alarm);
    if (rule == nullptr || rule->ending.isEmpty() || rule->pattern.isEmpty()) {
        return {};
    }
    QString end = alarm;
    end.replace(rule->pattern, rule->ending, caseOf(*rule));
    return end.toLower();
}

QString AlarmRules::toJson() const
{
    QJsonArray rules;
    for (const AlarmRule &rule : m_rules) {
        rules.append(QJsonObject{{QStringLiteral("pattern"), rule.pattern},
                                 {QStringLiteral("caseSensitive"), rule.caseSensitive},
                                 {QStringLiteral("isAlarm"), rule.isAlarm},
                                 {QStringLiteral("priority"), static_cast<int>(rule.priority)},
                                 {QStringLiteral("sounds"), rule.sounds},
                                 {QStringLiteral("ending"), rule.ending}});
    }
    return jsonText(rules);
}

std::optional<AlarmRules> AlarmRules::fromJson(const QString &json)
{
    const QJsonDocument document = jsonOf(json);
    if (!document.isArray()) {
        return std::nullopt;
    }
    QList<AlarmRule> rules;
    for (const auto &value : document.array()) {
        const QJsonObject stored = value.toObject();
        AlarmRule rule;
        rule.pattern = stored[QStringLiteral("pattern")].toString();
        rule.caseSensitive = stored[QStringLiteral("caseSensitive")].toBool(true);
        rule.isAlarm = stored[QStringLiteral("isAlarm")].toBool(true);
        rule.priority = static_cast<AlarmPriority>(
            std::clamp(stored[QStringLiteral("priority")].toInt(static_cast<int>(AlarmPriority::Medium)),
                       highest, lowest));
        rule.sounds = stored[QStringLiteral("sounds")].toBool(true);
        rule.ending = stored[QStringLiteral("ending")].toString();
        rules.append(rule);
    }
    return AlarmRules(rules);
}

} // namespace ktr
