#pragma once

#include <QStyledItemDelegate>

namespace ktr {

/// Draws a node of the tree: a station with its mark in front of the name and badges behind it, an alarm in
/// red; tells a station's state as a tool tip, and lets the user type another name.
class StationTreeDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
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
    void paintStation(QPainter &painter, QStyleOptionViewItem item, const QModelIndex &index) const;
};

} // namespace ktr
