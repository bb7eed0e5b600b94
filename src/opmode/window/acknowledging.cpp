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

Acknowledging::Acknowledging(const StationTree &tree, const TextTable &texts, CarryOut carryOut,
                             QObject *parent)
    : QObject(parent), m_tree(tree), m_texts(texts), m_carryOut(std::move(carryOut))
{}

void Acknowledging::acknowledge(QWidget *asker, const QModelIndexList &entries)
{
    QModelIndexList red;
    std::ranges::copy_if(entries, std::back_inserter(red), isRed);
    if (red.isEmpty()) {
        return;
    }
    if (const Status kept = m_carryOut(red); !kept) {
        const QString line = tr("Not acknowledged: %1").arg(kept.message());
        Q_EMIT statusMessage(line);
        Dialog::message(asker->window(), m_texts, line);
        return;
    }
    Q_EMIT acknowledged();
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
    const QPointer<QWidget> stillThere(asker);
    if (seen.size() > 1 &&
        !Dialog::questionOfLoss(asker->window(), m_texts, tr("Acknowledge %L1 alarms?").arg(seen.size()))) {
        return;
    }
    if (!stillThere) {
        return;
    }
    // While the question stood there, alarms arrived.
    QModelIndexList unchanged;
    for (const Seen &entry : seen) {
        const QModelIndex found = m_tree.find(entry.key);
        if (found.isValid() && found.data(StationTree::CountRole).toInt() == entry.count) {
            unchanged.append(found);
        }
    }
    acknowledge(asker, unchanged);
}

} // namespace ktr
