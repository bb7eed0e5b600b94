#pragma once

#include <QModelIndex>
#include <QPoint>
#include <QSet>
#include <QStringList>

#include <functional>

class QAbstractItemView;

namespace ktr {

/// Where the user is in a list or a tree of two levels that is about to be filled anew: the present line,
/// what is chosen, how far it is scrolled. Made before; giveBack() comes after.
class KeptPlace
{
public:
    /// Tells lines apart, whatever row they stand in.
    using Key = std::function<QString(const QModelIndex &line)>;

    KeptPlace(QAbstractItemView &view, Key key);

    /// A present line that is gone is replaced by the next one that is left, else by the one before; a
    /// heading is none of them. Where there was no present line, there is none afterwards.
    void giveBack() const;

private:
    QList<QModelIndex> lines() const;
    QModelIndex replacement(const QList<QModelIndex> &lines) const;
    void scroll(const QModelIndex &same) const;

    QAbstractItemView &m_view;
    Key m_key;
    QStringList m_keys; ///< of all lines, from the top
    qsizetype m_present = -1;
    QSet<QString> m_chosen;
    QPoint m_scrolled;
    int m_top = 0; ///< of the present line in the window
    bool m_wasVisible = false;
};

} // namespace ktr
