#pragma once

#include <QObject>
#include <QWidget>

#include <functional>

class QShortcut;

namespace ktr {

/// The control in a part of a window that Tab reaches first; null for none that can be used now.
QWidget *firstControlIn(const QWidget &pane);

/// F6 goes from one part of a window to the next one that can be used, and Shift+F6 back: to the control that
/// had the focus there last, or else to that where one begins.
class PaneKeys : public QObject
{
    Q_OBJECT

public:
    struct Pane
    {
        QWidget *widget;
        std::function<QWidget *()> begin = {}; ///< without one, the first control
    };

    /// The panes in their order; all must live as long as the window.
    PaneKeys(QWidget &window, QList<Pane> panes);

    void applyTexts();

private:
    void go(int by);
    static QWidget *controlOf(const Pane &pane);

    QWidget &m_window;
    QList<Pane> m_panes;
    QShortcut *m_next;
    QShortcut *m_previous;
};

} // namespace ktr
