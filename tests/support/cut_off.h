#pragma once

#include "look/field_width.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QStyleOptionComboBox>
#include <QTabBar>

namespace ktr::test {

/// How many pixels a control is too narrow for what it shows; not positive where it is not.
inline int lackingWidth(const QWidget &control)
{
    if (const auto *label = qobject_cast<const QLabel *>(&control)) {
        const bool isShortened = label->text().contains(QChar(0x2026)); // the rest is in its tool tip
        return label->wordWrap() || isShortened ? 0 : label->sizeHint().width() - label->width();
    }
    if (const auto *button = qobject_cast<const QPushButton *>(&control);
        button != nullptr && !button->isFlat()) {
        const int icon = button->icon().isNull() ? 0 : button->iconSize().width();
        return button->fontMetrics().horizontalAdvance(button->text()) + icon -
               button->contentsRect().width();
    }
    if (qobject_cast<const QAbstractButton *>(&control) != nullptr ||
        qobject_cast<const QTabBar *>(&control) != nullptr) {
        return control.sizeHint().width() - control.width();
    }
    if (const auto *edit = qobject_cast<const QLineEdit *>(&control)) {
        if (qobject_cast<const QAbstractSpinBox *>(edit->parentWidget()) !=
            nullptr) { // no caret behind its text
            return edit->fontMetrics().horizontalAdvance(edit->text()) - edit->contentsRect().width();
        }
        const QString &shown = edit->text().isEmpty() ? edit->placeholderText() : edit->text();
        return fieldWidth(edit, shown) - edit->width();
    }
    if (const auto *box = qobject_cast<const QComboBox *>(&control)) {
        QStyleOptionComboBox option;
        option.initFrom(box);
        const QRect field =
            box->style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, box);
        return box->fontMetrics().horizontalAdvance(box->currentText()) - field.width();
    }
    if (const auto *list = qobject_cast<const QListWidget *>(&control)) {
        return list->wordWrap() ? 0 : list->sizeHintForColumn(0) - list->viewport()->width();
    }
    if (const auto *header = qobject_cast<const QHeaderView *>(&control)) {
        int lacking = 0;
        for (int section = 0; header->orientation() == Qt::Horizontal && section < header->count();
             ++section) {
            if (!header->isSectionHidden(section)) {
                const QString caption = header->model()->headerData(section, Qt::Horizontal).toString();
                const int margin = header->style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, header);
                lacking = std::max(lacking, header->fontMetrics().horizontalAdvance(caption) + 2 * margin -
                                                header->sectionSize(section));
            }
        }
        return lacking;
    }
    return 0;
}

/// The same of its height.
inline int lackingHeight(const QWidget &control)
{
    if (const auto *label = qobject_cast<const QLabel *>(&control)) {
        return (label->wordWrap() ? label->heightForWidth(label->width()) : label->sizeHint().height()) -
               label->height();
    }
    if (qobject_cast<const QAbstractButton *>(&control) != nullptr ||
        qobject_cast<const QLineEdit *>(&control) != nullptr ||
        qobject_cast<const QComboBox *>(&control) != nullptr) {
        return control.fontMetrics().height() - control.contentsRect().height();
    }
    return 0;
}

/// How far it stands out of what it is in, where that does not scroll.
inline int standingOut(const QWidget &control)
{
    const QWidget *around = control.parentWidget();
    if (control.isWindow() || around == nullptr ||
        qobject_cast<const QAbstractScrollArea *>(around->parentWidget()) != nullptr ||
        qobject_cast<const QAbstractScrollArea *>(around) != nullptr) {
        return 0;
    }
    const QRect place = control.geometry();
    const QRect room = around->rect();
    return std::max({room.left() - place.left(), place.right() - room.right(), room.top() - place.top(),
                     place.bottom() - room.bottom()});
}

/// Which visible controls of a window do not show all of what they have to show.
inline QStringList cutOff(const QWidget &window)
{
    QStringList cut;
    for (const QWidget *control : window.findChildren<QWidget *>()) {
        const QWidget *around = control->parentWidget();
        if (!control->isVisible() || control->window() != &window ||
            // an editor in a row
            (around != nullptr &&
             qobject_cast<const QAbstractItemView *>(around->parentWidget()) != nullptr) ||
            qobject_cast<const QLineEdit *>(control->parentWidget()) != nullptr) { // a field's own icon
            continue;
        }
        for (const auto &[what, pixels] :
             {std::pair("too narrow", lackingWidth(*control)), std::pair("too low", lackingHeight(*control)),
              std::pair("standing out", standingOut(*control))}) {
            if (pixels > 0) {
                const QString name = control->objectName().isEmpty()
                                         ? QString::fromLatin1(control->metaObject()->className()) + " in " +
                                               control->parentWidget()->objectName()
                                         : control->objectName();
                const QVariant text = control->property("text");
                cut += QStringLiteral("%1 %2 by %3: %4 (%5)")
                           .arg(window.objectName(), name)
                           .arg(pixels)
                           .arg(QLatin1String(what), text.toString());
            }
        }
    }
    return cut;
}

} // namespace ktr::test
