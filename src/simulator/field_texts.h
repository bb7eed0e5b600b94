#pragma once

#include "simulator/field_values.h"

#include <QStringList>

#include <random>

namespace ktr {

/// Chance that differs from the first number on between seeds that follow each other.
inline std::minstd_rand chanceFrom(quint32 seed)
{
    std::seed_seq mixed{seed};
    return std::minstd_rand(mixed);
}

/// In which language notifications, and the names of a fleet's stations, are written.
enum class FieldLanguage { German, English };

/// The SMS texts that a module in the field has to send: reports of its values and its archive, alarms and
/// the good messages after them.
class FieldTexts
{
public:
    explicit FieldTexts(quint32 seed, FieldLanguage language = FieldLanguage::German)
        : m_values(seed), m_random(chanceFrom(seed)), m_language(language)
    {}

    /// All eighteen values: "R,v1,...,v18".
    QString allValues(const QDateTime &now) const { return QLatin1String("R,") + m_values.allValues(now); }

    /// The archive of the hours before `now`, as many texts as it takes, each no longer than an SMS.
    QStringList history(const QDateTime &now, int hours) const;

    /// What happens next at the station: mostly a value or a notification, now and then a report of all
    /// values or of the last hours. An alarm comes back later as its good message.
    QStringList next(const QDateTime &now);

    /// A text that a module says once: mostly a value, which is the number, each twentieth an alarm.
    static QString counted(int number);

private:
    int chance(int below) { return static_cast<int>((m_random() >> 8U) % static_cast<unsigned>(below)); }
    QString notification(const QDateTime &now);

    FieldValues m_values;
    std::minstd_rand m_random;
    FieldLanguage m_language;
    int m_alarm = -1; ///< which one stands
};

} // namespace ktr
