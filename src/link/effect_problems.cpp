#include "link/effect_problems.h"

#include "config/address.h"
#include "config/channel_use.h"
#include "config/channels.h"
#include "config/fields.h"
#include "config/phone_number.h"
#include "platform/text_rules.h"

#include <algorithm>
#include <bit>

namespace ktr {

namespace {

constexpr int onHolidays = 11;
constexpr int less = 1;
constexpr int greater = 3;

/// Indexes as the user counts them, from 1.
QString numbers(const QList<int> &indexes)
{
    QStringList texts;
    for (const int index : indexes) {
        texts += QString::number(index + 1);
    }
    return texts.join(QLatin1String(", "));
}

quint32 combinedBy(const LimitValue &value)
{
    return value.reference > 0 && value.reference <= 0xFFFF ? static_cast<quint32>(value.reference) : 0;
}

bool isInUse(const LimitValue &value, int index)
{
    return LimitValue::isReference(index) ? combinedBy(value) != 0 : value.channel != 0;
}

bool notifies(const LimitValue &value, int administrator)
{
    return (value.recipients >> administrator & 1) != 0;
}

/// Bits beyond the number of administrators stand for nobody.
bool notifiesAnybody(const LimitValue &value)
{
    constexpr int administrators = 0x3F;
    return (value.recipients & administrators) != 0;
}

/// Empty, or no longer than a country code. Something that is no number is a problem of the field itself.
bool isIncomplete(const QString &phoneNumber)
{
    return phoneNumber.size() <= 1 + longestCountryCode;
}

/// Nothing for a text that is a problem by itself.
std::optional<quint32> addressOf(const QString &text)
{
    return addressDefect(text) == AddressDefect::None ? addressNumber(text) : std::nullopt;
}

bool isMask(quint32 mask)
{
    const int ones = std::countl_one(mask);
    return ones > 0 && std::popcount(mask) == ones;
}

/// A network of one or two addresses has none of its own among them.
bool isOfNetwork(quint32 host, quint32 mask)
{
    constexpr int most = 30;
    return std::countl_one(mask) <= most && (host == 0 || host == ~mask);
}

bool isAddressOfOne(quint32 address)
{
    const quint32 first = address >> 24U;
    return first != 0 && first != 127 && first < 224;
}

class Finder
{
public:
    Finder(const Configuration &configuration, const QDateTime &now, QList<Problem> &problems)
        : m_configuration(configuration), m_now(now), m_problems(problems)
    {}

    void find()
    {
        visitRecords(m_configuration,
                     [this]<class Record>(const Group &group, const Record &record, int index) {
                         m_group = group;
                         m_index = index;
                         if constexpr (requires { check(record); }) {
                             check(record);
                         }
                     });
    }

private:
    template <class Record> void add(Member<Record> member, const QString &message)
    {
        const Field<Record> &field = fieldOf<Record>(member);
        m_problems.append(
            {m_group.place(field.xmlName, m_index), field.control.forIndex(m_index), m_index, message});
    }

    /// A message that continues the field's text.
    template <class Record> void add(const Record &record, QString Record::*member, const QString &message)
    {
        add<Record>(member, quotedInRemark(record.*member) + message);
    }

    /// The limit values, or other records, of which something holds.
    template <class Records> static QList<int> indexesOf(const Records &records, auto holds)
    {
        QList<int> indexes;
        for (int index = 0; const auto &record : records) {
            if (holds(record, index)) {
                indexes += index;
            }
            ++index;
        }
        return indexes;
    }

    // The station. A SIM may have no PIN, but no module is without a name.

    void check(const GsmSettings &gsm)
    {
        if (isBegun() && gsm.stationId.isEmpty()) {
            add<GsmSettings>(&GsmSettings::stationId,
                             problemText(QT_TRANSLATE_NOOP(
                                 "Problems", "is empty: what the module reports does not tell its station")));
        }
        if (isBegun() && gsm.aliveCycle.isEmpty()) {
            add<GsmSettings>(
                &GsmSettings::aliveCycle,
                problemText(QT_TRANSLATE_NOOP("Problems", "is empty: the module is sent no cycle")));
        }
    }

    // Administrators

    void check(const Administrator &administrator)
    {
        const QList<int> notifying =
            indexesOf(m_configuration.limitValues, [this](const LimitValue &value, int index) {
                return isInUse(value, index) && notifies(value, m_index);
            });
        const QList<int> calling =
            indexesOf(m_configuration.switchPoints, [this](const SwitchPoint &point, int) {
                return point.target == firstAdministratorTarget + m_index;
            });
        constexpr auto number = &Administrator::number;
        if (isIncomplete(administrator.number)) {
            if (!notifying.isEmpty()) {
                add<Administrator>(
                    number, problemText(QT_TRANSLATE_NOOP(
                                            "Problems",
                                            "no complete phone number, but a recipient of limit value %1"))
                                .arg(numbers(notifying)));
            }
            if (!calling.isEmpty()) {
                add<Administrator>(
                    number,
                    problemText(QT_TRANSLATE_NOOP("Problems",
                                                  "no complete phone number, but called by switch point %1"))
                        .arg(numbers(calling)));
            }
            return;
        }
        for (int other = 0; other < m_index; ++other) {
            if (m_configuration.administrators[static_cast<std::size_t>(other)].number !=
                administrator.number) {
                continue;
            }
            QList<int> twice = notifying;
            twice.removeIf([this, other](int index) {
                return !notifies(m_configuration.limitValues[static_cast<std::size_t>(index)], other);
            });
            if (!twice.isEmpty()) {
                add(administrator, number,
                    problemText(QT_TRANSLATE_NOOP("Problems",
                                                  "is the number of administrator %1, too: limit value "
                                                  "%2 notifies both"))
                        .arg(other + 1)
                        .arg(numbers(twice)));
            }
        }
    }

    // Limit values

    void check(const LimitValue &value)
    {
        const bool isReference = LimitValue::isReference(m_index);
        if (!isInUse(value, m_index)) {
            if (value.alarm.isEmpty()) {
                return;
            }
            if (isReference) {
                add<LimitValue>(&LimitValue::reference,
                                problemText(QT_TRANSLATE_NOOP(
                                    "Problems", "there is a text but no combined limit value")));
            } else {
                add<LimitValue>(&LimitValue::channel,
                                problemText(QT_TRANSLATE_NOOP("Problems", "there is a text but no channel")));
            }
            return;
        }
        if (isReference) {
            checkCombination(value);
        } else {
            checkLimit(value);
        }
        checkNotification(value);
    }

    void checkCombination(const LimitValue &value)
    {
        const QList<int> idle =
            indexesOf(m_configuration.limitValues, [&value](const LimitValue &combined, int index) {
                return (combinedBy(value) >> index & 1U) != 0 && !isInUse(combined, index);
            });
        if (!idle.isEmpty()) {
            add<LimitValue>(
                &LimitValue::reference,
                problemText(QT_TRANSLATE_NOOP("Problems", "it combines limit value %1, which is not in use"))
                    .arg(numbers(idle)));
        }
    }

    void checkLimit(const LimitValue &value)
    {
        const Measure measure = channelMeasure(m_configuration, value.channel);
        const bool binary = measure == Measure::Binary;
        const bool counted = measure == Measure::Pulses || measure == Measure::Hours;
        const std::optional<double> limit = toNumber(value.limit);
        if (!limit || (!binary && !counted)) {
            return;
        }
        if (binary && *limit != 0 && *limit != 1) {
            add(value, &LimitValue::limit,
                problemText(
                    QT_TRANSLATE_NOOP("Problems", "is neither 0 nor 1: the channel has no other values")));
        } else if (counted && *limit < 0) {
            add(value, &LimitValue::limit,
                problemText(QT_TRANSLATE_NOOP("Problems", "is below 0, where no counter goes")));
        } else if ((value.comparison == less && *limit == 0) ||
                   (binary && value.comparison == greater && *limit == 1)) {
            const QString sign = value.comparison == less ? QStringLiteral("<") : QStringLiteral(">");
            add<LimitValue>(&LimitValue::comparison,
                            problemText(QT_TRANSLATE_NOOP("Problems", "the channel is never %1 %2"))
                                .arg(sign, value.limit));
        }
        if (binary && toNumber(value.hysteresis).value_or(0) != 0) {
            add(value, &LimitValue::hysteresis,
                problemText(
                    QT_TRANSLATE_NOOP("Problems", "is no hysteresis: a channel of two states takes 0")));
        }
    }

    void checkNotification(const LimitValue &value)
    {
        if (value.alarm.isEmpty() && notifiesAnybody(value)) {
            add<LimitValue>(&LimitValue::alarm,
                            problemText(QT_TRANSLATE_NOOP("Problems", "there are recipients but no text")));
        } else if (!value.alarm.isEmpty() && !notifiesAnybody(value)) {
            add<LimitValue>(&LimitValue::recipients,
                            problemText(QT_TRANSLATE_NOOP("Problems", "there is a text but no recipient")));
        } else if (value.alarm.isEmpty() && !isReferredTo()) {
            add<LimitValue>(&LimitValue::alarm,
                            problemText(QT_TRANSLATE_NOOP(
                                "Problems", "there are neither text nor recipients, nor does a "
                                            "combination or switch point use the limit value")));
        }
        if (value.repetitions > 0 && value.repetitionInterval.isEmpty()) {
            add<LimitValue>(
                &LimitValue::repetitionInterval,
                problemText(QT_TRANSLATE_NOOP("Problems", "there are repetitions but no interval")));
        }
    }

    bool isReferredTo() const
    {
        const auto combines = [this](const LimitValue &value, int index) {
            return LimitValue::isReference(index) && (combinedBy(value) >> m_index & 1U) != 0;
        };
        const auto reacts = [this](const SwitchPoint &point, int) {
            return point.target != 0 && point.reactsToLimitValue() && point.limitValue == m_index;
        };
        return !indexesOf(m_configuration.limitValues, combines).isEmpty() ||
               !indexesOf(m_configuration.switchPoints, reacts).isEmpty();
    }

    // Switch points

    void check(const SwitchPoint &point)
    {
        if (point.target == 0) {
            return;
        }
        const bool isDigital = point.target == 1 || point.target == 2;
        const std::optional<double> value = toNumber(point.value);
        if (isDigital && value && *value != 0 && *value != 1) {
            add(point, &SwitchPoint::value,
                problemText(QT_TRANSLATE_NOOP("Problems",
                                              "is neither 0 nor 1: a digital output has no other values")));
        }
        const double period = leadingNumber(point.period);
        if (period >= SwitchPoint::periodBound && value != 1.0) {
            add(point, &SwitchPoint::period,
                problemText(QT_TRANSLATE_NOOP("Problems", "is a year or more: the value becomes 1")));
        } else if (point.type == SwitchPoint::periodic &&
                   period < fieldOf(&SwitchPoint::period).range->lowest) {
            add(point, &SwitchPoint::period,
                problemText(QT_TRANSLATE_NOOP("Problems", "is less than a minute")));
        }
        checkTime(point);
        checkTwin(point);
    }

    void checkTime(const SwitchPoint &point)
    {
        const auto start = toMinute(point.start);
        const QDateTime now(m_now.date(), m_now.time(), Qt::UTC); // as the module's clock shows it
        if (point.type == SwitchPoint::once && (point.start.isEmpty() || (start && *start < now))) {
            add<SwitchPoint>(&SwitchPoint::start, problemText(QT_TRANSLATE_NOOP(
                                                      "Problems", "the start is past: it never switches")));
        }
        const QString today = m_now.toString(QStringLiteral("yyMMdd"));
        if (point.type == onHolidays &&
            std::ranges::none_of(m_configuration.holidays.lines(),
                                 [&today](const QString &line) { return line.left(6) >= today; })) {
            add<SwitchPoint>(&SwitchPoint::type,
                             problemText(QT_TRANSLATE_NOOP("Problems", "there are no holidays to come")));
        }
        const auto limitValue = static_cast<std::size_t>(point.limitValue);
        if (point.reactsToLimitValue() && limitValue < m_configuration.limitValues.size() &&
            !isInUse(m_configuration.limitValues[limitValue], point.limitValue)) {
            add<SwitchPoint>(&SwitchPoint::limitValue,
                             problemText(QT_TRANSLATE_NOOP("Problems", "limit value %1 is not in use"))
                                 .arg(point.limitValue + 1));
        }
    }

    /// An earlier switch point that acts on the same at the same time.
    void checkTwin(const SwitchPoint &point)
    {
        const auto isTwin = [&point](const SwitchPoint &other) {
            const bool repeats = point.type < SwitchPoint::once;
            return other.target == point.target && other.type == point.type &&
                   (point.reactsToLimitValue() ? other.limitValue == point.limitValue
                                               : (repeats ? other.start.right(4) == point.start.right(4)
                                                          : other.start == point.start)) &&
                   (point.type != SwitchPoint::periodic || other.period == point.period);
        };
        const auto &points = m_configuration.switchPoints;
        const auto end = points.begin() + m_index;
        const auto twin = std::find_if(points.begin(), end, isTwin);
        if (twin != end) {
            const QString number = QString::number(twin - points.begin() + 1);
            if (toNumber(twin->value) == toNumber(point.value)) {
                add<SwitchPoint>(
                    &SwitchPoint::target,
                    problemText(QT_TRANSLATE_NOOP("Problems", "switch point %1 does the same")).arg(number));
            } else {
                add(point, &SwitchPoint::value,
                    problemText(
                        QT_TRANSLATE_NOOP("Problems", "is not what switch point %1 sets at the same time"))
                        .arg(number));
            }
        }
    }

    // Ethernet

    void check(const EthernetSettings &ethernet)
    {
        const auto address = addressOf(ethernet.ip);
        const auto mask = addressOf(ethernet.subnet);
        const quint32 host = address.value_or(0) & ~mask.value_or(0);
        const bool usable = mask && isMask(*mask);
        if (address && (!isAddressOfOne(*address) || (usable && isOfNetwork(host, *mask)))) {
            add(ethernet, &EthernetSettings::ip,
                problemText(QT_TRANSLATE_NOOP("Problems", "is no address that a module can have")));
        }
        if (mask && !usable) {
            add(ethernet, &EthernetSettings::subnet,
                problemText(QT_TRANSLATE_NOOP("Problems", "is no mask: ones, then zeros")));
        }
        const auto isZero = [](const QString &byte) { return byte == u"00"; };
        if (isBegun() && isZero(ethernet.mac3) && isZero(ethernet.mac4) && isZero(ethernet.mac5)) {
            add<EthernetSettings>(
                &EthernetSettings::mac3,
                problemText(QT_TRANSLATE_NOOP("Problems", "the last three MAC bytes are 0, as in every new "
                                                          "configuration (edited in expert mode)")));
        }
    }

    /// Whether anything was entered yet: a new configuration has no problems.
    bool isBegun() const
    {
        const Configuration &entered = m_configuration;
        return !entered.gsm.stationId.isEmpty() || toWholeNumber(entered.gsm.pin, 1, 9999) ||
               std::ranges::any_of(entered.administrators,
                                   [](const Administrator &each) { // a new one has a country's code
                                       return each.number.size() > QStringLiteral("+49").size();
                                   }) ||
               std::ranges::any_of(entered.limitValues,
                                   [](const LimitValue &value) { return !value.alarm.isEmpty(); }) ||
               !indexesOf(entered.limitValues, isInUse).isEmpty() ||
               !indexesOf(entered.switchPoints, [](const SwitchPoint &point, int) {
                    return point.target != 0;
                }).isEmpty();
    }

    const Configuration &m_configuration;
    const QDateTime &m_now;
    QList<Problem> &m_problems;
    Group m_group{};
    int m_index = 0; ///< of the present record
};

} // namespace

void findEffectProblems(const Configuration &configuration, const QDateTime &now, QList<Problem> &problems)
{
    Finder(configuration, now, problems).find();
}

} // namespace ktr
