#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace ktr {

/// How urgent an alarm is, the most urgent first.
enum class AlarmPriority { High = 1, Medium, Low };

/// What a notification with a certain text means.
struct AlarmRule
{
    QString pattern = {}; ///< somewhere in the text; empty for every text
    bool caseSensitive = true;
    bool isAlarm = true; ///< false: never mind rules that come later
    AlarmPriority priority = AlarmPriority::Medium;
    bool sounds = true;
    /// What stands in place of the pattern in the text that ends the alarm, in upper or lower case; empty
    /// when no text does. Example: with the pattern "fail" and the ending "ok", "Pump 1 fail" is over when
    /// the same station sends "Pump 1 ok".
    QString ending = {};
    bool operator==(const AlarmRule &) const = default;
};

/// What keeps a rule from doing what it seems to say.
enum class RuleFault {
    None,
    NoText,
    EndsItself, ///< the text that ends the alarm is the one that begins it
    NeverFits   ///< an earlier rule fits all of its texts; nothing is wrong with that
};

/// The user's rules in their order: the first one whose pattern a text has is the one that counts.
class AlarmRules
{
public:
    AlarmRules() : AlarmRules(standard()) {}
    explicit AlarmRules(QList<AlarmRule> rules) : m_rules(std::move(rules)) {}

    /// A text that holds "fail" is an alarm, as the tree's red entries have it.
    static QList<AlarmRule> standard();
    const QList<AlarmRule> &list() const { return m_rules; }

    /// The place of the rule that counts for a text, also of one that makes it no alarm; -1 for none.
    qsizetype placeFor(const QString &text) const;
    RuleFault faultOf(qsizetype place) const;
    /// The rule of a text; null when it is no alarm.
    const AlarmRule *of(const QString &text) const;
    /// The text that ends an alarm, in lower case; empty when none does.
    QString endOf(const QString &alarm) const;

    /// As it is kept in the record: a JSON array.
    QString toJson() const;
    /// Nothing when the text is no such array.
    static std::optional<AlarmRules> fromJson(const QString &json);

    bool operator==(const AlarmRules &) const = default;

private:
    QList<AlarmRule> m_rules;
};

} // namespace ktr
