#include "opmode/tree/notifications.h"

#include "platform/text_rules.h"

namespace ktr {

QString notificationText(const NotificationText &parts)
{
    return parts.number + notificationArrow + parts.message;
}

NotificationText splitNotification(const QString &text)
{
    const qsizetype at = text.indexOf(notificationArrow);
    return at < 0 ? NotificationText{{}, onOneLine(text.trimmed())}
                  : NotificationText{onOneLine(text.first(at).trimmed()),
                                     onOneLine(text.sliced(at + notificationArrow.size()).trimmed())};
}

QModelIndex nodeIndex(const StationTree &tree, NodeStore::Id id)
{
    const NodeStore &nodes = tree.nodes();
    if (id == NodeStore::root) {
        return {};
    }
    const QModelIndex listed =
        tree.index(static_cast<int>(nodes.row(id)), 0, nodeIndex(tree, nodes.parent(id)));
    return StationTree::idOf(listed) == id ? listed // a station may stand elsewhere than in the list
                                           : tree.find(textOf(nodes.key(id)));
}

} // namespace ktr
