#pragma once

#include "opmode/list_parts.h"
#include "platform/status.h"

#include <QModelIndex>

namespace ktr {

/// Acknowledges alarms: on the disk first, then in the tree and among the alarms that stand.
class Acknowledger
{
public:
    explicit Acknowledger(const ListParts &parts) : m_parts(parts) {}

    /// By what shows them in the tree. An alarm that went to several numbers is acknowledged with the last of
    /// its entries. After a failure nothing is acknowledged.
    Status acknowledge(const QModelIndexList &entries) { return acknowledge(entries, {}); }
    /// By their numbers; not done for those that stand no longer, or are acknowledged already.
    Status acknowledgeAlarms(const QList<qint64> &alarms);

    /// The entries in the tree that an alarm has made, one for each number it was sent to.
    QModelIndexList entriesOf(const AlarmRow &alarm) const;

private:
    struct Deed;

    Status acknowledge(const QModelIndexList &entries, const QList<qint64> &alarms);
    void addEntry(Deed &deed, NodeStore::Id entry) const;
    void addAlarmsWithoutEntries(Deed &deed) const;
    void addAlarm(Deed &deed, qint64 id) const;
    void addEvent(Deed &deed, qint64 station, const QString &text, qint64 alarm) const;

    ListParts m_parts;
};

} // namespace ktr
