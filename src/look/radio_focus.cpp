#include "look/radio_focus.h"

#include <QButtonGroup>
#include <QRadioButton>

#include <algorithm>

namespace ktr {

namespace {

QList<QAbstractButton *> buttonsWith(QRadioButton *button)
{
    if (const QButtonGroup *group = button->group()) {
        return group->buttons();
    }
    QList<QAbstractButton *> siblings;
    if (const QWidget *parent = button->parentWidget()) {
        for (auto *sibling : parent->findChildren<QRadioButton *>(Qt::FindDirectChildrenOnly)) {
            if (sibling->group() == nullptr) {
                siblings += sibling;
            }
        }
    }
    return siblings;
}

void refresh(QRadioButton *button)
{
    const QList<QAbstractButton *> buttons = buttonsWith(button);
    const auto chosen = std::ranges::find_if(buttons, &QAbstractButton::isChecked);
    const auto reached = chosen != buttons.end() ? chosen : buttons.begin();
    for (auto each = buttons.begin(); each != buttons.end(); ++each) {
        const int policy = (*each)->focusPolicy();
        (*each)->setFocusPolicy(
            static_cast<Qt::FocusPolicy>(each == reached ? policy | Qt::TabFocus : policy & ~Qt::TabFocus));
    }
}

} // namespace

void letTabFindTheChosen(QRadioButton *button)
{
    constexpr const char *known = "tabFindsTheChosen";
    if (!button->property(known).toBool()) {
        button->setProperty(known, true);
        QObject::connect(button, &QRadioButton::toggled, button, [button] { refresh(button); });
    }
    refresh(button);
}

} // namespace ktr
