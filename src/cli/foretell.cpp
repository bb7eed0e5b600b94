#include "cli/commands.h"
#include "cli/console.h"
#include "cli/loading.h"
#include "config/channels.h"
#include "config/entry_texts.h"
#include "foretell/event_texts.h"
#include "foretell/foretelling.h"
#include "link/conversation_log.h"
#include "platform/files.h"
#include "platform/text_rules.h"
#include "record/json_text.h"

#include <algorithm>

namespace ktr::cli {

namespace {

const QString daysOption = QStringLiteral("days");
const QString beginOption = QStringLiteral("from");
const QString seriesOption = QStringLiteral("values");
const QString notificationsOption = QStringLiteral("notifications");
const QString statesOption = QStringLiteral("states");

const QString assumeOption = QStringLiteral("assume");

constexpr int mostDays = 92;
const QString usualDays = QStringLiteral("14");

/// What --assume NAME=yes|no reads otherwise; nothing where one is not understood.
std::optional<Assumptions> otherwiseOf(const Arguments &arguments, QString &wrong)
{
    Assumptions otherwise;
    for (const QString &each : arguments.values(assumeOption)) {
        const auto assumption = assumptionNamed(each.section(u'=', 0, 0));
        const QString answer = each.section(u'=', 1);
        const bool isAnswer = answer == QLatin1String("yes") || answer == QLatin1String("no");
        if (!assumption || !isAnswer || !hasOtherReading(*assumption)) {
            wrong = each;
            return std::nullopt;
        }
        otherwise.set(*assumption, answer == QLatin1String("no"));
    }
    return otherwise;
}

QString switchableNames()
{
    QStringList names;
    for (std::size_t at = 0; at < assumptionCount; ++at) {
        if (const auto each = static_cast<Assumption>(at); hasOtherReading(each)) {
            names += assumptionName(each);
        }
    }
    return names.join(QLatin1String(", "));
}

/// "2026-11-23" or "2026-11-23T14:00"
std::optional<ModuleMs> beginOf(const QString &text)
{
    const QDate date = QDate::fromString(text, QStringLiteral("yyyy-MM-dd"));
    const QDateTime time = QDateTime::fromString(text, QStringLiteral("yyyy-MM-ddTHH:mm"));
    return date.isValid()   ? std::optional(moduleMs(date))
           : time.isValid() ? std::optional(moduleMs(time))
                            : std::nullopt;
}

/// From the first of the values on unless another time was named.
ModuleSpan spanOf(const Arguments &arguments, const ValueSeries &series)
{
    const ModuleMs now = series.isEmpty() ? moduleMs(QDateTime::currentDateTime()) : series.values.front().at;
    ModuleSpan span;
    span.from = beginOf(arguments.value(beginOption)).value_or(now - now % msPerMinute);
    span.to = span.from + arguments.value(daysOption).toInt() * msPerDay;
    return span;
}

Status readSeries(const QString &path, const QString &station, ValueSeries &series)
{
    QByteArray content;
    if (Status opened = readFile(path, content); !opened) {
        return opened;
    }
    const Status read = readValueSeries(textOfFile(content), station, series);
    return read ? read : fileFailure(path, read.message());
}

bool isNotification(const PlayEvent &event)
{
    return event.kind == PlayEvent::Kind::Notified || event.kind == PlayEvent::Kind::Repeated;
}

bool isState(const PlayEvent &event)
{
    using Kind = PlayEvent::Kind;
    return event.kind == Kind::Waiting || event.kind == Kind::Withdrawn || event.kind == Kind::Standing ||
           event.kind == Kind::Over;
}

/// "2026-11-23T14:00:00": the module's clock, which has no offset.
QString plainTime(ModuleMs at)
{
    return clockOf(at).toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss"));
}

/// What was foretold, in one form or the other.
class ForetoldOutput
{
public:
    ForetoldOutput(const Configuration &configuration, const Foretold &foretold, const Assumptions &otherwise)
        : m_configuration(configuration), m_foretold(foretold), m_otherwise(otherwise)
    {}

    void choose(bool notificationsOnly, bool withStates)
    {
        m_notificationsOnly = notificationsOnly;
        m_withStates = withStates;
        for (const PlayEvent &event : m_foretold.events) {
            if (isShown(event)) {
                m_restsOn |= event.restsOn;
            }
        }
        if (!notificationsOnly) {
            m_restsOn = m_foretold.restsOn;
        }
    }

    void printLines(const ModuleSpan &span) const
    {
        print(QStringLiteral("%1 to %2").arg(clockText(span.from), clockText(span.to)));
        const auto shown = std::ranges::count_if(m_foretold.events,
                                                 [this](const PlayEvent &event) { return isShown(event); });
        for (const PlayEvent &event : m_foretold.events) {
            if (isShown(event)) {
                print(lineOf(event));
            }
        }
        if (shown == 0) {
            print(QStringLiteral("nothing happens"));
        }
        section(QStringLiteral("Not played:"), remarks());
        section(QStringLiteral("Holidays:"), holidayWords());
        section(QStringLiteral("The clocks change here:"), clockWords());
        QStringList numbered;
        for (const Assumption each : m_restsOn.list()) {
            numbered += QStringLiteral("[%1] %2").arg(QString::number(assumptionNumber(each)), textOf(each));
        }
        section(QStringLiteral("Assumed, since the module's own behaviour is not known:"), numbered);
    }

    void printJson() const
    {
        for (const PlayEvent &event : m_foretold.events) {
            if (isShown(event)) {
                print(jsonText(jsonOfEvent(event)));
            }
        }
        for (const QString &remark : remarks()) {
            print(jsonText(QJsonObject{{QStringLiteral("kind"), QStringLiteral("not played")},
                                       {QStringLiteral("text"), remark}}));
        }
        for (const QDate &day : m_foretold.holidays) {
            print(jsonText(QJsonObject{{QStringLiteral("kind"), QStringLiteral("holiday")},
                                       {QStringLiteral("date"), day.toString(Qt::ISODate)}}));
        }
        for (const ClockChange &change : m_foretold.clockChanges) {
            print(jsonText(QJsonObject{{QStringLiteral("kind"), QStringLiteral("clock change")},
                                       {QStringLiteral("time"), plainTime(change.at)},
                                       {QStringLiteral("aheadBySeconds"), change.aheadBySeconds}}));
        }
        for (const Assumption each : m_restsOn.list()) {
            QJsonObject object{{QStringLiteral("kind"), QStringLiteral("assumption")},
                               {QStringLiteral("name"), assumptionName(each)},
                               {QStringLiteral("text"), assumptionText(each, m_otherwise)}};
            if (hasOtherReading(each)) {
                object.insert(QStringLiteral("holds"), !m_otherwise.contains(each));
            }
            print(jsonText(object));
        }
    }

private:
    bool isShown(const PlayEvent &event) const
    {
        return event.kind == PlayEvent::Kind::Endless ||
               (m_notificationsOnly ? isNotification(event) : m_withStates || !isState(event));
    }

    /// With the option that reads it in the other way.
    QString textOf(Assumption assumption) const
    {
        const QString text = assumptionText(assumption, m_otherwise);
        return hasOtherReading(assumption)
                   ? text + QStringLiteral(" (--assume %1=%2 reads it otherwise)")
                                .arg(assumptionName(assumption), m_otherwise.contains(assumption)
                                                                     ? QStringLiteral("yes")
                                                                     : QStringLiteral("no"))
                   : text;
    }

    QString lineOf(const PlayEvent &event) const
    {
        QStringList parts{QStringLiteral("%1 %2").arg(QLocale::c().toString(clockOf(event.at), u"ddd"),
                                                      clockText(event.at))};
        if (!m_foretold.clockChanges.isEmpty() && event.at >= m_foretold.clockChanges.front().at) {
            parts += QStringLiteral("(%1 here)")
                         .arg(clockText(shownHere(event.at, m_foretold.clockChanges)).section(u' ', 1));
        }
        parts += eventTitle(event, m_configuration, m_texts);
        if (const QString to = eventRecipients(event, m_configuration, m_texts); !to.isEmpty()) {
            parts += QStringLiteral("to %1: \"%2\"").arg(to, event.text);
        }
        if (const QString cause = eventCause(event, m_configuration, m_texts); !cause.isEmpty()) {
            parts += cause;
        }
        parts += assumptionNumbers(event.restsOn);
        return logText(parts.join(QLatin1String("  ")).trimmed());
    }

    QJsonObject jsonOfEvent(const PlayEvent &event) const
    {
        QJsonObject object{{QStringLiteral("kind"), eventKindName(event.kind)},
                           {QStringLiteral("time"), plainTime(event.at)}};
        if (!m_foretold.clockChanges.isEmpty()) {
            object.insert(QStringLiteral("here"), plainTime(shownHere(event.at, m_foretold.clockChanges)));
        }
        if (event.limitValue >= 0) {
            object.insert(QStringLiteral("limitValue"), event.limitValue + 1);
        }
        if (event.point >= 0) {
            object.insert(QStringLiteral("switchPoint"), event.point + 1);
            object.insert(QStringLiteral("target"), targetName(m_configuration, event.target, m_texts));
            object.insert(QStringLiteral("value"), event.value);
        }
        if (event.kind == PlayEvent::Kind::Repeated) {
            object.insert(QStringLiteral("repetition"), event.repetition);
        }
        if (event.kind == PlayEvent::Kind::Waiting) {
            object.insert(QStringLiteral("until"), plainTime(event.until));
        }
        if (isNotification(event)) {
            object.insert(QStringLiteral("text"), event.text);
            object.insert(QStringLiteral("recipients"), jsonOfRecipients(event.recipients));
        }
        QJsonArray restsOn;
        for (const Assumption each : event.restsOn.list()) {
            restsOn.append(assumptionName(each));
        }
        object.insert(QStringLiteral("restsOn"), restsOn);
        return object;
    }

    QJsonArray jsonOfRecipients(quint8 recipients) const
    {
        QJsonArray all;
        for (int index = 0; const Administrator &administrator : m_configuration.administrators) {
            if ((recipients >> index & 1) != 0) {
                all.append(QJsonObject{{QStringLiteral("administrator"), index + 1},
                                       {QStringLiteral("name"), administrator.name},
                                       {QStringLiteral("number"), administrator.number}});
            }
            ++index;
        }
        return all;
    }

    QStringList remarks() const
    {
        QStringList lines;
        QStringList channels;
        for (const int channel : m_foretold.withoutValues) {
            channels += channelName(m_configuration, channel, m_texts);
        }
        if (!channels.isEmpty()) {
            lines += QStringLiteral("limit values on %1: there are no values (--values)")
                         .arg(channels.join(QLatin1String(", ")));
        }
        for (const auto &[index, why] : m_foretold.unplayed) {
            lines += unplayedText(index, why);
        }
        for (const QuietPoint &quiet : m_foretold.quietPoints) {
            if (!m_notificationsOnly) {
                lines += quietText(quiet, m_configuration, m_texts);
            }
        }
        return lines;
    }

    QStringList holidayWords() const
    {
        QStringList lines;
        for (const QDate &day : m_foretold.holidays) {
            lines += QLocale::c().toString(day, u"ddd dd.MM.yyyy");
        }
        return lines;
    }

    QStringList clockWords() const
    {
        QStringList lines;
        for (const ClockChange &change : m_foretold.clockChanges) {
            lines += QStringLiteral("%1 by the module's clock: from then on it is %2 here")
                         .arg(clockText(change.at),
                              clockText(shownHere(change.at, m_foretold.clockChanges)).section(u' ', 1));
        }
        return lines;
    }

    static void section(const QString &title, const QStringList &lines)
    {
        if (!lines.isEmpty()) {
            print(QString());
            print(title);
        }
        for (const QString &line : lines) {
            print(QLatin1String("  ") + logText(line));
        }
    }

    const Configuration &m_configuration;
    const Foretold &m_foretold;
    const Assumptions &m_otherwise;
    TextTable m_texts;
    Assumptions m_restsOn;
    bool m_notificationsOnly = false;
    bool m_withStates = false;
};

} // namespace

void describeForetell(Arguments &arguments)
{
    arguments.setSummary(QStringLiteral(
        "Plays the configuration FILE: which switch point switches what, and, with values of the inputs, "
        "which "
        "notification goes to whom, with delay, hysteresis, repetitions and combinations. Times are those "
        "of the module's clock. Where the module's own behaviour is not known, what was assumed is told."));
    const auto add = [&](const QString &name, const QString &description, const QString &value,
                         const QString &usual = {}) {
        arguments.addOption(QCommandLineOption(name, description, value, usual));
    };
    add(daysOption, QStringLiteral("For so many days, 1 to %1.").arg(mostDays), QStringLiteral("N"),
        usualDays);
    add(beginOption,
        QStringLiteral(
            "From this time on, 2026-11-23 or 2026-11-23T14:00, instead of the first of the values, or now."),
        QStringLiteral("TIME"));
    add(seriesOption,
        QStringLiteral(
            "The values of the inputs: lines of time;channel;value, what \"ktrcli history\" writes, "
            "or what \"ktrcli record export\" writes of values or history."),
        QStringLiteral("FILE.csv"));
    add(stationOption, QStringLiteral("The values of this station, where FILE.csv has several."),
        QStringLiteral("NAME"));
    add(assumeOption,
        QStringLiteral(
            "Whether an assumption holds, such as delay-in-seconds=no; may be given several times. "
            "There are: %1.")
            .arg(switchableNames()),
        QStringLiteral("NAME=yes|no"));
    arguments.addOption({notificationsOption, QStringLiteral("Notifications alone.")});
    arguments.addOption({statesOption, QStringLiteral("Also when limit values come, wait and are over.")});
    arguments.addOption({jsonOption, QStringLiteral("As JSON, a line for each.")});
}

std::optional<int> checkForetell(const Arguments &arguments)
{
    if (!arguments.number(daysOption, 1, mostDays)) {
        return wrongUsage;
    }
    const QString begin = arguments.value(beginOption);
    if (arguments.isSet(beginOption) && !beginOf(begin)) {
        return arguments.wrong(QStringLiteral("--from: \"%1\" is no time").arg(begin));
    }
    if (arguments.isSet(stationOption) && !arguments.isSet(seriesOption)) {
        return arguments.wrong(QStringLiteral("--station goes with --values only"));
    }
    if (QString wrong; !otherwiseOf(arguments, wrong)) {
        return arguments.wrong(QStringLiteral("--assume: \"%1\" is none of NAME=yes|no; there are: %2")
                                   .arg(wrong, switchableNames()));
    }
    return std::nullopt;
}

int foretellFile(const Arguments &arguments)
{
    Document document(systemEnvironment());
    if (!load(document, arguments.positional(0))) {
        return failed;
    }
    ValueSeries series;
    if (arguments.isSet(seriesOption)) {
        const Status read = readSeries(arguments.value(seriesOption), arguments.value(stationOption), series);
        for (const QString &remark : series.remarks) {
            complain(arguments.value(seriesOption) + QLatin1String(": ") + remark);
        }
        if (!read) {
            return fail(read.message());
        }
    }
    const Configuration &configuration = document.configuration();
    const ModuleSpan span = spanOf(arguments, series);
    QString wrong;
    const Assumptions otherwise = otherwiseOf(arguments, wrong).value_or(Assumptions());
    const Foretold foretold = foretell(configuration, span, series, QTimeZone::systemTimeZone(), otherwise);
    ForetoldOutput output(configuration, foretold, otherwise);
    output.choose(arguments.isSet(notificationsOption), arguments.isSet(statesOption));
    if (arguments.isSet(jsonOption)) {
        output.printJson();
    } else {
        output.printLines(span);
    }
    return done;
}

} // namespace ktr::cli
