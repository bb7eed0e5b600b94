#pragma once

#include "opmode/tree/station_tree.h"

namespace ktr {

/// Stands between the number and what the module sent.
inline const QString notificationArrow = QStringLiteral(" --> M,");

/// A notification's text taken apart: "+4917012345 --> M,Pump 1 fail".
struct NotificationText
{
    QString number;  ///< that the SMS was sent to; empty when the text has another form
    QString message; ///< what the module sent, or the whole text; on one line
};

NotificationText splitNotification(const QString &text);
/// The text that has these parts.
QString notificationText(const NotificationText &parts);

/// Where a node that is alive stands in the tree.
QModelIndex nodeIndex(const StationTree &tree, NodeStore::Id id);

inline bool isAlarm(const StationTree &tree, NodeStore::Id notification)
{
    return tree.nodes().colour(notification) == StationTree::alarmColour;
}

/// Calls with each notification of a station.
template <class Call>
void eachNotificationOf(const StationTree &tree, NodeStore::Id station, const Call &call)
{
    if (const auto branch = tree.nodes().child(station, branches::notifications)) {
        for (const NodeStore::Id id : tree.nodes().children(*branch)) {
            call(id);
        }
    }
}

/// Calls with each notification of all stations.
template <class Call> void eachNotification(const StationTree &tree, const Call &call)
{
    for (const NodeStore::Id station : tree.nodes().children(NodeStore::root)) {
        eachNotificationOf(tree, station, call);
    }
}

} // namespace ktr
