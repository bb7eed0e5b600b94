#include "opmode/window/pane_keys.h"

#include <QShortcut>

namespace ktr {

namespace {

bool canTakeFocus(const QWidget *control)
{
    return control != nullptr && control->isVisible() && control->isEnabled() &&
           (control->focusPolicy() & Qt::TabFocus) != 0;
}

} // namespace

QWidget *firstControlIn(const QWidget &pane)
{
    for (QWidget *control = pane.nextInFocusChain(); control != &pane;
         control = control->nextInFocusChain()) {
        if (pane.isAncestorOf(control) && canTakeFocus(control)) {
            return control;
        }
    }
    return nullptr;
}

PaneKeys::PaneKeys(QWidget &window, QList<Pane> panes)
    : QObject(&window),
      m_window(window),
      m_panes(std::move(panes)),
      m_next(new QShortcut(Qt::Key_F6, &window)),
      m_previous(new QShortcut(Qt::SHIFT | Qt::Key_F6, &window))
{
    connect(m_next, &QShortcut::activated, this, [this] { go(1); });
    connect(m_previous, &QShortcut::activated, this, [this] { go(-1); });
    applyTexts();
}

void PaneKeys::applyTexts()
{
    m_next->setWhatsThis(tr("Next part of the window"));
    m_previous->setWhatsThis(tr("Previous part of the window"));
}

QWidget *PaneKeys::controlOf(const Pane &pane)
{
    if (!pane.widget->isVisible() || !pane.widget->isEnabled()) {
        return nullptr;
    }
    QWidget *const last = pane.widget->focusWidget();
    if (canTakeFocus(last) && (last == pane.widget || pane.widget->isAncestorOf(last))) {
        return last;
    }
    QWidget *const begin = pane.begin ? pane.begin() : nullptr;
    return canTakeFocus(begin) ? begin : firstControlIn(*pane.widget);
}

void PaneKeys::go(int by)
{
    const QWidget *focus = m_window.focusWidget();
    const auto count = static_cast<int>(m_panes.size());
    int here = by > 0 ? count - 1 : 0; // from nowhere to the first or the last one
    for (int at = 0; at < count; ++at) {
        const QWidget *pane = m_panes[at].widget;
        if (focus != nullptr && (pane == focus || pane->isAncestorOf(focus))) {
            here = at;
        }
    }
    for (int step = 1; step < count; ++step) {
        const int at = (here + step * by + step * count) % count;
        if (QWidget *control = controlOf(m_panes[at])) {
            control->setFocus(Qt::TabFocusReason);
            return;
        }
    }
}

} // namespace ktr
