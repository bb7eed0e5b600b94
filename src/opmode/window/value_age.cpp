#include "opmode/window/value_age.h"

#include "config/entry_texts.h"
#include "look/outside_texts.h"
#include "opmode/window/station_mark.h"
#include "platform/text_rules.h"

#include <QCoreApplication>

namespace ktr {

namespace {

constexpr qint64 msPerMinute = 60'000;
constexpr qint64 minutesPerHour = 60;
constexpr qint64 hoursPerDay = 24;

QString ageWords(const char *text)
{
    return QCoreApplication::translate("ValueAge", text);
}

QString conditionText(const InputLimit &limit, const QLocale &locale)
{
    return comparisonSign(limit.comparison) + u' ' + numberText(limit.limit, locale);
}

QString withUnit(const QString &text, const QString &unit)
{
    return unit.isEmpty() ? text : text + u' ' + unit;
}

} // namespace

QString ageText(qint64 at, const QDateTime &now)
{
    if (at == 0) {
        return {};
    }
    const qint64 minutes = (now.toMSecsSinceEpoch() - at) / msPerMinute;
    const qint64 hours = minutes / minutesPerHour;
    if (minutes < 1) {
        return ageWords(QT_TRANSLATE_NOOP("ValueAge", "now"));
    }
    if (hours < 1) {
        return ageWords(QT_TRANSLATE_NOOP("ValueAge", "%1 min")).arg(minutes);
    }
    if (hours < hoursPerDay) {
        return ageWords(QT_TRANSLATE_NOOP("ValueAge", "%1 h")).arg(hours);
    }
    const QDateTime moment = QDateTime::fromMSecsSinceEpoch(at);
    const bool isThisYear = moment.date().year() == now.toLocalTime().date().year();
    return ageWords(QT_TRANSLATE_NOOP("ValueAge", "since %1"))
        .arg(moment.toString(isThisYear ? QStringLiteral("dd.MM. HH:mm") : QStringLiteral("dd.MM.yyyy")));
}

QString staleReason(const StationStatus &status)
{
    StationStatus line;
    line.line = status.line;
    return line.line == StationStatus::Line::Alive ? QString() : statusText(line);
}

QString limitsText(const QList<InputLimit> &limits, const QString &unit, const QLocale &locale)
{
    QStringList conditions;
    for (const InputLimit &limit : limits) {
        const QString condition = conditionText(limit, locale);
        if (!conditions.contains(condition)) {
            conditions += condition;
        }
    }
    return conditions.isEmpty() ? QString() : withUnit(conditions.join(QStringLiteral("  ")), unit);
}

QChar beyondMark(const InputLimit &limit)
{
    constexpr int lessThan = 1;
    constexpr int equalTo = 2;
    return limit.comparison == lessThan  ? QChar(u'▼')
           : limit.comparison == equalTo ? QChar(u'■')
                                         : QChar(u'▲');
}

QString beyondText(const InputLimit &limit, const QString &unit, const QLocale &locale)
{
    return beyondMark(limit) + (u' ' + withUnit(conditionText(limit, locale), unit));
}

QString limitDescription(const InputLimit &limit, const QString &unit, const QLocale &locale)
{
    const QString text =
        ageWords(QT_TRANSLATE_NOOP("ValueAge", "Limit value %1: %2"))
            .arg(QString::number(limit.number), withUnit(conditionText(limit, locale), unit));
    return limit.text.isEmpty() ? text : text + QStringLiteral(", \"%1\"").arg(shortenedLine(limit.text));
}

} // namespace ktr
