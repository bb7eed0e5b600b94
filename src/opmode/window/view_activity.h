#pragma once

#include "platform/timers.h"

#include <QAbstractItemView>
#include <QElapsedTimer>
#include <QTimer>

namespace ktr {

/// Whether the user is at work in a view, with the mouse or with keys: then nothing may move away from under
/// the hand. The view tells it of the user's events. Example: somebody moves the mouse over a row to open its
/// menu while alarms come; the row stays where it is until the mouse has rested for ten seconds or has left.
class ViewActivity : public QObject
{
    Q_OBJECT

public:
    /// So long after the last key or click nothing changes its place while the view has the focus.
    static constexpr Milliseconds keysRest{60'000};
    /// The same for what merely closes, since that keeps the user's row in place.
    static constexpr Milliseconds keysRestForClosing{10'000};

    /// `isEditing` tells whether the user is just typing into the view.
    ViewActivity(QAbstractItemView &view, std::function<bool()> isEditing);

    void noteViewportEvent(const QEvent &event);
    /// A key was pressed, or the user put the focus here.
    void noteKeys();
    /// What is shown here was chosen elsewhere.
    void noteChoice() { m_lastWork.start(); }

    /// Whether the user points at the view, or has worked there with keys and may go on.
    bool isInUse(Milliseconds rest = keysRest) const;
    /// Whether the user points at a row, and has done so for no longer than it takes to read it: then the
    /// rows around it stay as well. A mouse that just lies there does not keep new ones out of sight.
    bool isAboutToChoose() const;
    /// Whether the user has worked here at all: clicked, turned the wheel, pressed a key, or chosen.
    bool wasUsed() const { return m_lastWork.isValid(); }
    /// The same within the last while.
    bool wasUsedWithin(Milliseconds time) const;
    /// Where the mouse was last, on the screen.
    const QPoint &pointer() const { return m_pointer; }

Q_SIGNALS:
    /// The mouse has not been moved for a while.
    void mouseRested();

private:
    bool isHandled() const;

    QAbstractItemView &m_view;
    std::function<bool()> m_isEditing;
    QTimer m_restTimer;        ///< runs while the mouse was moved a moment ago
    QElapsedTimer m_lastInput; ///< of any kind
    QElapsedTimer m_lastUse;   ///< the same, but for mere moves of the mouse
    QElapsedTimer m_lastWork;  ///< the same, but also what chose elsewhere
    QPoint m_pointer;
};

} // namespace ktr
