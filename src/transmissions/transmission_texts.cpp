#include "transmissions/transmission_texts.h"

#include "link/conversation_log.h"
#include "platform/text_rules.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QJsonArray>

#include <algorithm>

namespace ktr {

namespace {

/// "2026-11-20T10:00:00+01:00"
QJsonValue isoTime(qint64 at)
{
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(at);
    return at == 0 ? QJsonValue()
                   : QJsonValue(time.toOffsetFromUtc(time.offsetFromUtc()).toString(Qt::ISODate));
}

QJsonValue numberOrNull(std::optional<int> number)
{
    return number ? QJsonValue(*number) : QJsonValue();
}

/// "78 confirmed, 1 sent"
QString countsText(const QList<TransmissionStepRow> &steps)
{
    QStringList parts;
    for (const StepOutcome outcome : {StepOutcome::Confirmed, StepOutcome::Sent, StepOutcome::Refused,
                                      StepOutcome::Failed, StepOutcome::Unconfirmed}) {
        const auto count = std::ranges::count(steps, outcome, &TransmissionStepRow::outcome);
        if (count > 0) {
            parts += QStringLiteral("%1 %2").arg(count).arg(outcomeText(outcome));
        }
    }
    return parts.join(QLatin1String(", "));
}

} // namespace

QString verdictText(const TransmissionRow &row)
{
    switch (row.verdict) {
    case TransmissionVerdict::NotEnded:
        return row.resumeStep ? QCoreApplication::translate("Transmissions",
                                                            "broken off before step %1, or still running")
                                    .arg(*row.resumeStep)
                              : QCoreApplication::translate("Transmissions", "broken off, or still running");
    case TransmissionVerdict::BrokenOff:
        return row.resumeStep ? QCoreApplication::translate("Transmissions", "broken off before step %1")
                                    .arg(*row.resumeStep)
                              : QCoreApplication::translate("Transmissions", "broken off");
    case TransmissionVerdict::Unknown:
        return QCoreApplication::translate("Transmissions", "sent, not confirmed");
    case TransmissionVerdict::InPart:
        return QCoreApplication::translate("Transmissions", "in part");
    case TransmissionVerdict::Alone:
        return QCoreApplication::translate("Transmissions", "single command");
    case TransmissionVerdict::Whole:
        break;
    }
    return QCoreApplication::translate("Transmissions", "whole");
}

QString outcomeText(StepOutcome outcome)
{
    switch (outcome) {
    case StepOutcome::Sent:
        break;
    case StepOutcome::Confirmed:
        return QCoreApplication::translate("Transmissions", "confirmed");
    case StepOutcome::Refused:
        return QCoreApplication::translate("Transmissions", "refused");
    case StepOutcome::Failed:
        return QCoreApplication::translate("Transmissions", "failed");
    case StepOutcome::Unconfirmed:
        return QCoreApplication::translate("Transmissions", "unconfirmed");
    }
    return QCoreApplication::translate("Transmissions", "sent");
}

QString shortText(const QString &text, qsizetype longest)
{
    return text.size() <= longest ? text : firstCharacters(text, longest - 1) + u'…';
}

QString transmissionTime(qint64 at)
{
    return at == 0 ? QString()
                   : QDateTime::fromMSecsSinceEpoch(at).toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
}

QList<std::pair<QString, QString>> transmissionFacts(const RememberedTransmission &transmission)
{
    const TransmissionRow &row = transmission.row;
    const QString notKnown = QCoreApplication::translate("Transmissions", "not known");
    const auto known = [&notKnown](const QString &text) { return text.isEmpty() ? notKnown : text; };
    QList<std::pair<QString, QString>> facts{
        {QCoreApplication::translate("Transmissions", "Station"), logText(row.station)},
        {QCoreApplication::translate("Transmissions", "Outcome"), verdictText(row)},
        {QCoreApplication::translate("Transmissions", "Commands"), countsText(transmission.steps)},
        {QCoreApplication::translate("Transmissions", "Version sent"), logText(row.versionSent)},
        {QCoreApplication::translate("Transmissions", "Version before"),
         row.versionBefore ? logText(*row.versionBefore) : notKnown},
        {QCoreApplication::translate("Transmissions", "Line"), logText(row.line)},
        {QCoreApplication::translate("Transmissions", "Begun"), transmissionTime(row.begun)},
        {QCoreApplication::translate("Transmissions", "Ended"), known(transmissionTime(row.ended))},
        {QCoreApplication::translate("Transmissions", "User"), logText(row.user)},
        {QCoreApplication::translate("Transmissions", "Operator"), logText(row.operatorName)},
        {QCoreApplication::translate("Transmissions", "File"), logText(row.file)},
        {QCoreApplication::translate("Transmissions", "Program"), row.program},
        {QCoreApplication::translate("Transmissions", "Number"),
         row.id == 0 ? QString() : QString::number(row.id)},
    };
    facts.removeIf([](const auto &fact) { return fact.second.isEmpty(); });
    return facts;
}

QJsonObject transmissionJson(const TransmissionRow &row)
{
    return {
        {QStringLiteral("n"), row.id},
        {QStringLiteral("begun"), isoTime(row.begun)},
        {QStringLiteral("ended"), isoTime(row.ended)},
        {QStringLiteral("user"), row.user},
        {QStringLiteral("operator"), row.operatorName},
        {QStringLiteral("file"), row.file},
        {QStringLiteral("line"), row.line},
        {QStringLiteral("station"), row.station},
        {QStringLiteral("version_before"), row.versionBefore ? QJsonValue(*row.versionBefore) : QJsonValue()},
        {QStringLiteral("version_sent"), row.versionSent},
        {QStringLiteral("program"), row.program},
        {QStringLiteral("first_step"), row.firstStep},
        {QStringLiteral("answers"), row.answers},
        {QStringLiteral("verdict"), wordOf(row.verdict)},
        {QStringLiteral("last_step"), numberOrNull(row.lastStep)},
        {QStringLiteral("resume_step"), numberOrNull(row.resumeStep)}};
}

QJsonObject transmissionJson(const RememberedTransmission &transmission)
{
    QJsonObject object = transmissionJson(transmission.row);
    QJsonArray commands;
    for (const TransmissionStepRow &step : transmission.steps) {
        commands += QJsonObject{{QStringLiteral("step"), step.step},
                                {QStringLiteral("command"), step.command},
                                {QStringLiteral("outcome"), wordOf(step.outcome)},
                                {QStringLiteral("attempts"), step.attempts},
                                {QStringLiteral("at"), isoTime(step.at)}};
    }
    object.insert(QStringLiteral("commands"), commands);
    return object;
}

} // namespace ktr
