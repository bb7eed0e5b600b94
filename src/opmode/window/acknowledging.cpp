#include "opmode/window/acknowledging.h"

#include "look/message_dialog.h"

#include <QPointer>
#include <QWidget>

#include <vector>

namespace ktr {

namespace {

bool isRed(const QModelIndex &entry)
{
    return entry.data(StationTree::ColourRole).toInt() == StationTree::alarmColour;
}

/// A notification as the user saw it. Not a persistent index: thousands of them would slow the tree down.
struct Seen
{
    QString key;
    int count;
};

} // namespace

Acknowledging::Acknowledging(OperationalMode &mode, const TextTable &texts, QObject *parent)
    : QObject(parent), m_mode(mode), m_texts(texts)
{}

void Acknowledging::acknowledge(QWidget *asker, const QModelIndexList &entries)
{
    QModelIndexList red;
    std::ranges::copy_if(entries, std::back_inserter(red), isRed);
    if (!red.isEmpty()) {
        tell(asker, m_mode.acknowledge(red));
    }
}

void Acknowledging::acknowledgeAll(QWidget *asker, const QModelIndexList &entries)
{
    std::vector<Seen> seen;
    for (const QModelIndex &entry : entries) {
        if (isRed(entry)) {
            seen.push_back(
                {entry.data(StationTree::KeyRole).toString(), entry.data(StationTree::CountRole).toInt()});
        }
    }
    if (!isAgreed(asker, seen.size())) {
        return;
    }
    // While the question stood there, alarms arrived.
    QModelIndexList unchanged;
    for (const Seen &entry : seen) {
        const QModelIndex found = m_mode.tree().find(entry.key);
        if (found.isValid() && found.data(StationTree::CountRole).toInt() == entry.count) {
            unchanged.append(found);
        }
    }
    acknowledge(asker, unchanged);
}

void Acknowledging::acknowledgeChosen(QWidget *asker, const QList<qint64> &alarms)
{
    if (!alarms.isEmpty()) {
        tell(asker, m_mode.acknowledgeAlarms(alarms));
    }
}

void Acknowledging::acknowledgeAlarms(QWidget *asker, const QList<qint64> &alarms)
{
    QList<AlarmRow> seen;
    for (const qint64 id : alarms) {
        if (const AlarmRow *alarm = m_mode.alarms().alarm(id); alarm != nullptr && alarm->acknowledged == 0) {
            seen += *alarm;
        }
    }
    if (!isAgreed(asker, static_cast<std::size_t>(seen.size()))) {
        return;
    }
    QList<qint64> unchanged;
    for (const AlarmRow &before : std::as_const(seen)) {
        const AlarmRow *alarm = m_mode.alarms().alarm(before.id);
        if (alarm != nullptr && alarm->count == before.count && alarm->recipients == before.recipients) {
            unchanged += before.id;
        }
    }
    if (!unchanged.isEmpty()) {
        tell(asker, m_mode.acknowledgeAlarms(unchanged));
    }
}

/// All of several is never one click.
bool Acknowledging::isAgreed(QWidget *asker, std::size_t count) const
{
    const QPointer<QWidget> stillThere(asker);
    const bool isAgreed = count < 2 || Dialog::questionOfLoss(asker->window(), m_texts,
                                                              tr("Acknowledge %L1 alarms?").arg(count));
    return isAgreed && stillThere;
}

void Acknowledging::tell(QWidget *asker, const Status &done)
{
    if (done) {
        if (m_mode.operatorName().isEmpty()) {
            Q_EMIT statusMessage(tr("Acknowledged without a name. The menu Alarms, Operator, takes one."));
        }
        Q_EMIT acknowledged();
        return;
    }
    const QString line = tr("Not acknowledged: %1").arg(done.message());
    Q_EMIT statusMessage(line);
    Dialog::message(asker->window(), m_texts, line);
}

} // namespace ktr
