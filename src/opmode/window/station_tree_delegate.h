#pragma once

#include <QStyledItemDelegate>

namespace ktr {

class StationTreeView;

/// Draws a node of the tree: a station with its mark in front of the name and badges behind it, an alarm in
/// red; tells a station's state as a tool tip, and lets the user type another name.
class StationTreeDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit StationTreeDelegate(StationTreeView &view);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                   const QModelIndex &index) override;
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;

Q_SIGNALS:
    /// A name that the user gave was not taken.
    void nameRefused(const QString &name) const;

private:
    void paintSection(QPainter &painter, const QStyleOptionViewItem &item, const QString &section) const;
    void paintStation(QPainter &painter, QStyleOptionViewItem item, const QModelIndex &index) const;

    const StationTreeView &m_view;
};

} // namespace ktr
