#include "foretell/event_texts.h"

#include "config/channels.h"
#include "config/entry_texts.h"
#include "config/phone_number.h"

#include <QCoreApplication>

namespace ktr {

namespace {

QString words(const char *text)
{
    return QCoreApplication::translate("Foretelling", text);
}

template <class Array> const auto &at(const Array &array, int index)
{
    return array[static_cast<std::size_t>(index)];
}

} // namespace

QString eventKindName(PlayEvent::Kind kind)
{
    static const std::array names = {
        QStringLiteral("waiting"),  QStringLiteral("withdrawn"), QStringLiteral("standing"),
        QStringLiteral("over"),     QStringLiteral("notified"),  QStringLiteral("repeated"),
        QStringLiteral("switched"), QStringLiteral("alive"),     QStringLiteral("endless")};
    return names[static_cast<std::size_t>(kind)];
}

QString eventTitle(const PlayEvent &event, const Configuration &configuration, const TextTable &texts)
{
    switch (event.kind) {
    case PlayEvent::Kind::Waiting:
        return words(QT_TRANSLATE_NOOP("Foretelling", "limit passed, delay until %1"))
            .arg(clockText(event.until).section(u' ', 1));
    case PlayEvent::Kind::Withdrawn:
        return words(QT_TRANSLATE_NOOP("Foretelling", "back before the delay was over"));
    case PlayEvent::Kind::Standing:
        return words(QT_TRANSLATE_NOOP("Foretelling", "limit value stands"));
    case PlayEvent::Kind::Over:
        return words(QT_TRANSLATE_NOOP("Foretelling", "limit value is over"));
    case PlayEvent::Kind::Notified:
        return words(QT_TRANSLATE_NOOP("Foretelling", "notification"));
    case PlayEvent::Kind::Repeated:
        return words(QT_TRANSLATE_NOOP("Foretelling", "repetition %1 of %2"))
            .arg(event.repetition)
            .arg(at(configuration.limitValues, event.limitValue).repetitions);
    case PlayEvent::Kind::Switched:
        return event.target >= firstAdministratorTarget
                   ? words(QT_TRANSLATE_NOOP("Foretelling", "calls %1, value %2"))
                         .arg(targetName(configuration, event.target, texts), event.value)
                   : targetName(configuration, event.target, texts) + QLatin1String(" = ") + event.value;
    case PlayEvent::Kind::Alive:
        return words(QT_TRANSLATE_NOOP("Foretelling", "alive report"));
    case PlayEvent::Kind::Endless:
        break;
    }
    return words(QT_TRANSLATE_NOOP("Foretelling", "limit values and switch points chase each other without "
                                                  "end; nothing is played from here on"));
}

QString eventCause(const PlayEvent &event, const Configuration &configuration, const TextTable &texts)
{
    QStringList causes;
    if (event.point >= 0) {
        causes += switchPointWords(configuration, event.point, texts);
    }
    if (event.limitValue >= 0) {
        causes += limitValueWords(configuration, event.limitValue, texts);
    }
    return causes.join(QLatin1String(", "));
}

QString eventRecipients(const PlayEvent &event, const Configuration &configuration, const TextTable &texts)
{
    QStringList names;
    for (int index = 0; const Administrator &administrator : configuration.administrators) {
        if ((event.recipients >> index & 1) != 0) {
            QString name = administratorName(configuration, static_cast<std::size_t>(index), texts);
            if (administrator.number.size() <= 1 + longestCountryCode) {
                name += words(QT_TRANSLATE_NOOP("Foretelling", " (has no number)"));
            }
            names += name;
        }
        ++index;
    }
    return names.join(QLatin1String(", "));
}

QString limitValueWords(const Configuration &configuration, int index, const TextTable &texts)
{
    const LimitValue &value = at(configuration.limitValues, index);
    const QString name =
        words(QT_TRANSLATE_NOOP("Foretelling", "limit value %1")).arg(QString::number(index + 1));
    if (LimitValue::isReference(index)) {
        return name + words(QT_TRANSLATE_NOOP("Foretelling", " (all of %1)"))
                          .arg(combinedLimitValues(value.reference).join(QLatin1String(", ")));
    }
    QStringList condition{channelName(configuration, value.channel, texts), comparisonSign(value.comparison),
                          value.limit.isEmpty() ? QStringLiteral("0") : value.limit,
                          shownUnits(configuration, value.channel, texts).limit};
    condition.removeAll(QString());
    return name + QStringLiteral(" (%1)").arg(condition.join(u' '));
}

QString switchPointWords(const Configuration &configuration, int index, const TextTable &texts)
{
    return words(QT_TRANSLATE_NOOP("Foretelling", "switch point %1: %2"))
        .arg(QString::number(index + 1), switchTypeName(at(configuration.switchPoints, index).type, texts));
}

QString quietText(const QuietPoint &quiet, const Configuration &configuration, const TextTable &texts)
{
    const auto why = [&quiet]() -> QString {
        switch (quiet.why) {
        case QuietPoint::Why::ReactsToLimitValue:
            return words(QT_TRANSLATE_NOOP("Foretelling", "waits for its limit value"));
        case QuietPoint::Why::NotTheTime:
            return words(QT_TRANSLATE_NOOP("Foretelling", "switches on %1"))
                .arg(clockText(quiet.next.value_or(0)));
        case QuietPoint::Why::Never:
            return words(QT_TRANSLATE_NOOP("Foretelling", "switches no more"));
        case QuietPoint::Why::BadStart:
            return words(QT_TRANSLATE_NOOP("Foretelling", "its start is no time"));
        case QuietPoint::Why::BadPeriod:
            return words(QT_TRANSLATE_NOOP("Foretelling", "its period is not from a minute to a year"));
        case QuietPoint::Why::BadType:
            return words(QT_TRANSLATE_NOOP("Foretelling", "its type is not known"));
        case QuietPoint::Why::TooOften:
            break;
        }
        return words(QT_TRANSLATE_NOOP("Foretelling", "switches too often; from %1 on it is left out"))
            .arg(clockText(quiet.next.value_or(0)));
    };
    return switchPointWords(configuration, quiet.point, texts) + QLatin1String(": ") + why();
}

QString unplayedText(int limitValue, UnplayedWhy why)
{
    const auto reason = [why] {
        switch (why) {
        case UnplayedWhy::BadLimit:
            return words(QT_TRANSLATE_NOOP("Foretelling", "its limit is no number"));
        case UnplayedWhy::BadHysteresis:
            return words(QT_TRANSLATE_NOOP("Foretelling", "its hysteresis is no number from 0 on"));
        case UnplayedWhy::BadDelay:
            return words(QT_TRANSLATE_NOOP("Foretelling", "its delay is no number from 0 on"));
        case UnplayedWhy::BadComparison:
            return words(QT_TRANSLATE_NOOP("Foretelling", "its comparison is not known"));
        case UnplayedWhy::NoMember:
            break;
        }
        return words(QT_TRANSLATE_NOOP("Foretelling", "it combines a limit value that is not in use"));
    };
    return words(QT_TRANSLATE_NOOP("Foretelling", "limit value %1")).arg(QString::number(limitValue + 1)) +
           QLatin1String(": ") + reason();
}

} // namespace ktr
