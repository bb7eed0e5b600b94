#include "cli/console.h"
#include "cli/keeper.h"
#include "forward/forwarder.h"
#include "opmode/keeping/nodes_file.h"
#include "platform/file_lock.h"
#include "platform/text_rules.h"

#include <QDateTime>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

namespace ktr::cli {

namespace {

struct KeeperState
{
    bool isHeld = false;
    std::optional<LockHolder> holder;
    bool isRecorded = false; ///< who holds the list writes this record
    QDateTime lastBeat;      ///< of who holds it, or did last
    WatchSummary summary;
    QList<ForwardTrouble> forwardTroubles; ///< of this run

    bool isHeard(const QDateTime &now) const
    {
        return !isRecorded || (lastBeat.isValid() && lastBeat.addDuration(KeeperBeat::patience) >= now);
    }
    bool isWatched(const QDateTime &now) const { return isHeld && isHeard(now); }
};

QString shown(const QDateTime &time)
{
    return time.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

Status read(const QString &list, KeeperState &state)
{
    const std::optional<QByteArray> lock = FileLock::heldBy(listLockPath(list));
    state.isHeld = lock.has_value();
    if (lock) {
        state.holder = lockHolder(*lock);
    }
    const QString path = ListRecord::pathFor(list);
    if (!QFileInfo::exists(path)) { // nobody has kept the list yet
        return Status::done();
    }
    RecordReader reader(path);
    std::optional<QString> keeper;
    std::optional<QString> beat;
    Status told = reader.setting(keeperSetting(), keeper);
    if (told) {
        told = reader.setting(beatSetting(), beat);
    }
    if (told) {
        told = readSummary(reader, state.summary);
    }
    state.isRecorded = lock && keeper && keeper->toUtf8() == *lock;
    if (const qint64 at = beat.value_or(QString()).section(u' ', 0, 0).toLongLong(); at != 0) {
        state.lastBeat = QDateTime::fromMSecsSinceEpoch(at);
    }
    QHash<QString, QString> settings;
    if (told && state.isRecorded) {
        told = reader.settings(settings);
        state.forwardTroubles = forwardTroubles(settings);
        state.forwardTroubles.removeIf([&state](const ForwardTrouble &trouble) {
            return state.holder && trouble.since < state.holder->since.toMSecsSinceEpoch();
        });
    }
    return told;
}

QString inWords(const QString &list, const KeeperState &state, const QDateTime &now)
{
    if (!state.isHeld) {
        return list + QStringLiteral(": nobody watches the stations") +
               (state.lastBeat.isValid() ? QStringLiteral("; last sign of who did: ") + shown(state.lastBeat)
                                         : QString());
    }
    QString text = list + QStringLiteral(": watched by ") +
                   (state.holder ? QStringLiteral("%1 on %2, %3, since %4")
                                       .arg(state.holder->user, state.holder->machine, state.holder->program,
                                            shown(state.holder->since))
                                 : QStringLiteral("another program"));
    if (!state.isRecorded) {
        return text + QStringLiteral(", who writes no record yet, or never does");
    }
    if (!state.isHeard(now)) {
        text += QStringLiteral("; nothing has come for a while: perhaps nobody watches");
    }
    return state.lastBeat.isValid() ? text + QStringLiteral("\nlast sign: ") + shown(state.lastBeat) : text;
}

QJsonObject asObject(const QString &list, const KeeperState &state, const QDateTime &now)
{
    QJsonObject object{{QStringLiteral("list"), list},
                       {QStringLiteral("watched"), state.isWatched(now)},
                       {QStringLiteral("recorded"), state.isRecorded}};
    if (state.holder) {
        static const QRegularExpression process(QStringLiteral("^(.*) \\(([0-9]+)\\)$"));
        const QRegularExpressionMatch program = process.match(state.holder->program);
        object.insert(QStringLiteral("keeper"),
                      QJsonObject{{QStringLiteral("user"), state.holder->user},
                                  {QStringLiteral("machine"), state.holder->machine},
                                  {QStringLiteral("program"), program.captured(1)},
                                  {QStringLiteral("process"), program.captured(2).toLongLong()},
                                  {QStringLiteral("since"), state.holder->since.toString(Qt::ISODate)}});
    }
    if (state.lastBeat.isValid()) {
        object.insert(QStringLiteral("lastSign"), state.lastBeat.toUTC().toString(Qt::ISODateWithMs));
    }
    const WatchSummary &summary = state.summary;
    QJsonObject stations{{QStringLiteral("all"), summary.stations()}};
    if (state.isRecorded) { // those of a run before are over
        stations.insert(QStringLiteral("alive"), summary.alive);
        stations.insert(QStringLiteral("silent"), summary.silent);
        stations.insert(QStringLiteral("unheard"), summary.unheard);
        stations.insert(QStringLiteral("offline"), summary.offline);
    }
    object.insert(QStringLiteral("stations"), stations);
    QJsonArray troubles;
    for (const ForwardTrouble &trouble : state.forwardTroubles) {
        troubles +=
            QJsonObject{{QStringLiteral("trouble"), trouble.text},
                        {QStringLiteral("since"),
                         QDateTime::fromMSecsSinceEpoch(trouble.since).toUTC().toString(Qt::ISODateWithMs)}};
    }
    if (!troubles.isEmpty()) {
        object.insert(QStringLiteral("notForwarded"), troubles);
    }
    object.insert(QStringLiteral("alarms"),
                  QJsonObject{{QStringLiteral("standing"), summary.standing},
                              {QStringLiteral("unacknowledged"), summary.unacknowledged},
                              {QStringLiteral("shelved"), summary.shelved}});
    return object;
}

} // namespace

int tellKeeper(const QString &list, bool asJson)
{
    KeeperState state;
    if (const Status told = read(list, state); !told) {
        return fail(told.message());
    }
    const QDateTime now = QDateTime::currentDateTime();
    if (asJson) {
        print(QString::fromUtf8(QJsonDocument(asObject(list, state, now)).toJson(QJsonDocument::Compact)));
    } else {
        print(inWords(list, state, now));
        if (state.isRecorded) {
            print(textOf(state.summary));
            for (const ForwardTrouble &trouble : state.forwardTroubles) {
                print(QStringLiteral("not forwarded since %1: %2")
                          .arg(shown(QDateTime::fromMSecsSinceEpoch(trouble.since)), trouble.text));
            }
        } else {
            print(QStringLiteral("stations: %1; alarms: %2 standing, %3 not acknowledged")
                      .arg(state.summary.stations())
                      .arg(state.summary.standing)
                      .arg(state.summary.unacknowledged));
        }
    }
    return state.isWatched(now) ? done : failed;
}

int tellKeepers(const QString &address, bool asJson)
{
    QList<KeeperRow> keepers;
    qint64 stations = 0;
    RecordReader reader(address);
    QList<DutyRow> duties;
    Status told = reader.keepers(keepers, stations);
    told = told ? reader.duties(duties) : told;
    if (!told) {
        return fail(told.message());
    }
    qint64 watched = 0;
    QJsonArray rows;
    QStringList lines;
    for (const KeeperRow &keeper : std::as_const(keepers)) {
        watched += keeper.stations;
        const QDateTime since = QDateTime::fromMSecsSinceEpoch(keeper.since);
        rows += QJsonObject{{QStringLiteral("name"), keeper.name},
                            {QStringLiteral("since"), since.toUTC().toString(Qt::ISODateWithMs)},
                            {QStringLiteral("stations"), keeper.stations},
                            {QStringLiteral("leaseMs"), keeper.leftMs}};
        lines += QStringLiteral("  %1, since %2, stations: %3")
                     .arg(onOneLine(keeper.name), shown(since))
                     .arg(keeper.stations);
    }
    QJsonArray alone;
    for (const DutyRow &duty : std::as_const(duties)) {
        QJsonObject one{{QStringLiteral("name"), duty.name}, {QStringLiteral("keeper"), duty.keeper}};
        lines += QStringLiteral("  %1: %2")
                     .arg(duty.name,
                          duty.keeper.isEmpty() ? QStringLiteral("nobody does it") : onOneLine(duty.keeper));
        if (const std::optional<ForwardTrouble> trouble = forwardTrouble(duty)) {
            const QDateTime since = QDateTime::fromMSecsSinceEpoch(trouble->since);
            one.insert(QStringLiteral("trouble"), trouble->text);
            one.insert(QStringLiteral("since"), since.toUTC().toString(Qt::ISODateWithMs));
            lines += QStringLiteral("  not forwarded since %1: %2").arg(shown(since), trouble->text);
        }
        alone += one;
    }
    if (asJson) {
        const QJsonObject object{
            {QStringLiteral("record"), address},
            {QStringLiteral("duties"), alone},
            {QStringLiteral("watched"), !keepers.isEmpty()},
            {QStringLiteral("keepers"), rows},
            {QStringLiteral("stations"),
             QJsonObject{{QStringLiteral("all"), stations}, {QStringLiteral("kept"), watched}}}};
        print(QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)));
    } else {
        print(QStringLiteral("%1: stations: %2, with a keeper: %3").arg(address).arg(stations).arg(watched));
        print(keepers.isEmpty() ? QStringLiteral("nobody watches the stations") : lines.join(u'\n'));
    }
    return keepers.isEmpty() ? failed : done;
}

} // namespace ktr::cli
