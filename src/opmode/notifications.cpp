#include "opmode/notifications.h"

#include <algorithm>

namespace ktr {

QString onOneLine(QString text)
{
    const auto breaks = [](QChar c) {
        return (c >= u'\t' && c <= u'\r') || c == u'\x85' || c == QChar::LineSeparator ||
               c == QChar::ParagraphSeparator;
    };
    if (std::ranges::none_of(std::as_const(text), breaks)) {
        return text;
    }
    QString line;
    bool wasBreak = false;
    for (const QChar c : std::as_const(text)) {
        const bool isBreak = breaks(c);
        if (!isBreak || !wasBreak) {
            line += isBreak ? QChar(u' ') : c;
        }
        wasBreak = isBreak;
    }
    return line;
}

NotificationText splitNotification(const QString &text)
{
    static const QString arrow = QStringLiteral(" --> M,");
    const qsizetype at = text.indexOf(arrow);
    return at < 0 ? NotificationText{{}, onOneLine(text.trimmed())}
                  : NotificationText{text.first(at).trimmed(),
                                     onOneLine(text.sliced(at + arrow.size()).trimmed())};
}

QModelIndex nodeIndex(const StationTree &tree, NodeStore::Id id)
{
    const NodeStore &nodes = tree.nodes();
    return id == NodeStore::root
               ? QModelIndex()
               : tree.index(static_cast<int>(nodes.row(id)), 0, nodeIndex(tree, nodes.parent(id)));
}

} // namespace ktr
