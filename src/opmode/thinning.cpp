#include "opmode/thinning.h"

#include "opmode/tree/history_entry_text.h"
#include "opmode/tree/node_texts.h"
#include "platform/module_minutes.h"
#include "record/json_text.h"

#include <algorithm>
#include <array>

namespace ktr {

namespace {

struct Member
{
    QLatin1String name;
    int RetentionRules::*days;
};
constexpr std::array members = {Member{QLatin1String("tree"), &RetentionRules::tree},
                                Member{QLatin1String("events"), &RetentionRules::events},
                                Member{QLatin1String("alarms"), &RetentionRules::alarms},
                                Member{QLatin1String("history"), &RetentionRules::history},
                                Member{QLatin1String("values"), &RetentionRules::values}};

qint64 timeOf(const QDateTime &now, int days)
{
    return days == 0 ? 0 : now.addDays(-days).toMSecsSinceEpoch();
}

} // namespace

QString toJson(const RetentionRules &rules)
{
    QJsonObject object;
    for (const Member &member : members) {
        object[member.name] = rules.*member.days;
    }
    return jsonText(object);
}

RetentionRules retentionRules(const QString &json)
{
    const QJsonObject object = jsonOf(json).object();
    RetentionRules rules;
    for (const Member &member : members) {
        rules.*member.days = std::max(0, object[member.name].toInt());
    }
    return rules;
}

Thinning::Thinning(StationTree &tree, Timers &timers, EntryRemoval &removal)
    : m_tree(tree), m_removal(removal), m_timer(timers.create())
{}

void Thinning::setRules(const RetentionRules &rules)
{
    stop();
    m_rules = rules;
}

void Thinning::stop()
{
    m_timer->stop();
    m_checks = 0;
}

void Thinning::check(const QDateTime &now, ListRecord &record, Of what)
{
    if (!record.isOpen()) {
        return; // what nothing else holds stays
    }
    if (what == Of::All && m_checks-- <= 0) {
        m_checks = checksBetweenRecords;
        if (m_rules != RetentionRules{.tree = m_rules.tree}) {
            Retention retention{timeOf(now, m_rules.values), timeOf(now, m_rules.history),
                                timeOf(now, m_rules.alarms)};
            if (m_rules.events > 0) {
                for (const EventKind kind : allEventKinds) {
                    retention.events.append({kind, timeOf(now, m_rules.events)});
                }
            }
            record.writer().thinOut(retention);
        }
    }
    if (m_rules.tree > 0 && !m_timer->isRunning() && !record.writer().isFailing()) {
        m_limit = limitOf(now, m_rules.tree);
        m_branch = m_entry = 0;
        m_timer->start(pause, [this] { slice(); });
    }
}

Thinning::Limit Thinning::limitOf(const QDateTime &now, int days)
{
    const QDateTime before = now.addDays(-days);
    return {before.toMSecsSinceEpoch(),
            moduleMinutes(before.date(), before.time().hour(), before.time().minute())};
}

qint64 Thinning::countOlder(const QDateTime &now, int days) const
{
    const Limit limit = limitOf(now, days);
    qint64 count = 0;
    for (std::size_t which = 0; which < 2 * m_tree.nodes().children(NodeStore::root).size(); ++which) {
        if (const std::vector<NodeStore::Id> *entries = branch(which)) {
            count += std::ranges::count_if(*entries, [&](NodeStore::Id id) { return isOld(id, limit); });
        }
    }
    return count;
}

/// The entries of a station's notifications or history; null when it has none.
const std::vector<NodeStore::Id> *Thinning::branch(std::size_t which) const
{
    const NodeStore &nodes = m_tree.nodes();
    const NodeStore::Id station = nodes.children(NodeStore::root)[which / 2];
    const auto found = nodes.child(station, which % 2 == 0 ? branches::notifications : branches::history);
    return found ? &nodes.children(*found) : nullptr;
}

void Thinning::slice()
{
    std::vector<NodeStore::Id> old;
    const std::size_t end = 2 * m_tree.nodes().children(NodeStore::root).size();
    for (std::size_t lookedAt = 0; m_branch < end && lookedAt < mostLookedAt; ++lookedAt) {
        const std::vector<NodeStore::Id> *entries = branch(m_branch);
        if (entries == nullptr || m_entry >= entries->size()) {
            ++m_branch;
            m_entry = 0;
        } else if (std::ssize(old) == mostRemoved) {
            break;
        } else {
            const NodeStore::Id entry = (*entries)[m_entry++];
            if (isOld(entry, m_limit)) {
                old.push_back(entry);
            }
        }
    }
    // Those of the branch that the slice ended in no longer stand before the next one to be looked at.
    const std::vector<NodeStore::Id> *last = m_branch < end ? branch(m_branch) : nullptr;
    if (last != nullptr && m_entry > 0) {
        const NodeStore::Id above = m_tree.nodes().parent(last->front());
        m_entry -= static_cast<std::size_t>(
            std::ranges::count_if(old, [&](NodeStore::Id id) { return m_tree.nodes().parent(id) == above; }));
    }
    for (const NodeStore::Id entry : old) {
        m_removal.remove(entry, ListRecord::By::Program);
    }
    if (m_branch < end) {
        m_timer->start(pause, [this] { slice(); });
    }
}

bool Thinning::isOld(NodeStore::Id entry, const Limit &limit) const
{
    const NodeStore &nodes = m_tree.nodes();
    if (nodes.kind(entry) == NodeKind::Notification) {
        const qint64 received = m_tree.arrivals().value(entry).received;
        return received != 0 && received < limit.moment && m_removal.mayGo(entry);
    }
    const QString text = textOf(nodes.text(entry));
    const std::optional<HistoryEntryText> read = splitHistoryEntry(text);
    return read && read->minute && *read->minute < limit.minute;
}

} // namespace ktr
