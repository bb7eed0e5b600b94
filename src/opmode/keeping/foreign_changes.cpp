#include "opmode/keeping/foreign_changes.h"

#include <algorithm>

namespace ktr {

namespace {

using What = NodeChange::What;

/// Of an input values node's text: "IP (14:05 15.11.2026)".
qint64 momentOfValues(const QString &text)
{
    const QString time = text.sliced(text.lastIndexOf(u'(') + 1);
    const QDateTime moment = QDateTime::fromString(time, QStringLiteral("HH:mm dd.MM.yyyy)"));
    return moment.isValid() ? moment.toMSecsSinceEpoch() : 0;
}

} // namespace

void ForeignChanges::learnName(const NodeChange &change)
{
    const NodeStore &nodes = m_tree.nodes();
    if (change.what == What::Text && !nodes.child(NodeStore::root, change.key) &&
        nodes.child(NodeStore::root, change.text)) {
        m_names.insert_or_assign(change.key, change.text);
    }
}

QList<NodeChange> ForeignChanges::fit(NodeChange change)
{
    const NodeStore &nodes = m_tree.nodes();
    change.key = withStationKey(change.key, m_names);
    const std::optional<NodeStore::Place> place = nodes.place(change.key);
    if (!place || change.what == What::Removed) {
        return {};
    }
    const std::optional<Id> id = nodes.child(*place);
    const NodeKind above = nodes.kind(place->parent);
    if (above == NodeKind::Notifications) {
        return fitNotification(change, *place);
    }
    if (above == NodeKind::History && change.what == What::Added) {
        if (id) {
            change.text = nodes.text(*id);
            change.colour = nodes.colour(*id);
        }
        return {change};
    }
    const NodeKind kind = id ? nodes.kind(*id) : NodeKind::Other;
    const bool isValue = kind == NodeKind::InputValues || kind == NodeKind::InputValue;
    if (isValue && change.what == What::Text) {
        const Id branch = kind == NodeKind::InputValues ? *id : place->parent;
        return areValuesNewer(branch, change.moment) ? QList<NodeChange>() : QList{change};
    }
    if (kind == NodeKind::Station || kind == NodeKind::Notifications) {
        const auto branch = kind == NodeKind::Station ? nodes.child(*id, branches::notifications) : id;
        const bool isAlarm = branch && m_tree.alarms().under(*branch) > 0;
        const bool fits = isAlarm == (change.colour == StationTree::alarmColour);
        return change.what == What::Colour && fits ? QList{change} : QList<NodeChange>();
    }
    return {};
}

QList<NodeChange> ForeignChanges::fitNotification(const NodeChange &change, const NodeStore::Place &place)
{
    const std::optional<Id> id = m_tree.nodes().child(place);
    const bool becomesRed = change.colour == StationTree::alarmColour;
    const bool isAcknowledgement = change.what == What::Colour && !becomesRed;
    const auto follow = [&] {
        m_followed.insert(change.key);
        m_branches.insert(place.parent);
    };
    if (change.what != What::Added && change.what != What::Repeated && change.what != What::Colour) {
        return {};
    }
    if (!id && isAcknowledgement) {
        return {};
    }
    if (!id) {
        follow();
        NodeChange added = change;
        added.what = What::Added;
        added.text = change.what == What::Added ? change.text : std::string(place.name);
        return change.what == What::Repeated ? QList{added, change} : QList{added};
    }
    const Arrival known = m_tree.arrivals().value(*id);
    const bool wasRed = isRed(*id);
    const bool isListNewer = !m_followed.contains(change.key) &&
                             (becomesRed ? known.acknowledged > change.moment
                                         : known.received == 0 || known.received > change.moment);
    const bool turns = becomesRed != wasRed && (becomesRed || isAcknowledgement);
    if (turns && !isListNewer) {
        follow();
    } else if (turns && change.what == What::Colour) {
        return {};
    }
    NodeChange merged = change;
    merged.colour = turns && !isListNewer ? change.colour : m_tree.nodes().colour(*id);
    if (change.what != What::Colour) {
        merged.what = What::Repeated;
        merged.text.clear();
        merged.moment = std::max(known.received, change.moment);
        merged.count = std::max(known.count, change.count);
        const qint64 raised = change.raised != 0 ? change.raised : change.moment;
        merged.raised = turns && !isListNewer ? raised : known.raised;
    }
    return {merged};
}

bool ForeignChanges::areValuesNewer(Id branch, qint64 moment)
{
    if (!m_valuesOf.contains(branch)) {
        m_valuesOf.insert(branch, momentOfValues(textOf(m_tree.nodes().text(branch))));
    }
    return m_valuesOf.value(branch) > moment;
}

QList<NodeChange> ForeignChanges::colours() const
{
    QList<NodeChange> changes;
    for (const Id branch : m_branches) {
        const bool isAlarm = m_tree.alarms().under(branch) > 0;
        for (const Id id : {branch, m_tree.nodes().parent(branch)}) {
            if (isRed(id) != isAlarm) {
                NodeChange change;
                change.what = What::Colour;
                change.key = m_tree.nodes().key(id);
                change.colour = isAlarm ? StationTree::alarmColour : StationTree::normalColour;
                changes.append(change);
            }
        }
    }
    return changes;
}

} // namespace ktr
