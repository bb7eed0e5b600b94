#include "look/select_on_focus.h"

#include <QApplication>
#include <QFocusEvent>
#include <QLineEdit>
#include <QMouseEvent>

namespace ktr {

namespace {

class FocusSelection : public QObject
{
public:
    explicit FocusSelection(QLineEdit *edit) : QObject(edit), m_edit(edit) {}

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::FocusIn:
            takeFocus(static_cast<QFocusEvent *>(event)->reason());
            break;
        case QEvent::MouseButtonPress:
            m_pressedAt = static_cast<QMouseEvent *>(event)->position().toPoint();
            break;
        case QEvent::MouseMove:
            return isStill(static_cast<QMouseEvent *>(event)->position().toPoint());
        case QEvent::MouseButtonRelease:
            m_clicking = false;
            break;
        default:
            break;
        }
        return QObject::eventFilter(watched, event);
    }

private:
    void takeFocus(Qt::FocusReason reason)
    {
        m_clicking = reason == Qt::MouseFocusReason;
        if (m_clicking) {
            // The press that brought the focus goes on to place the caret.
            QMetaObject::invokeMethod(m_edit, &QLineEdit::selectAll, Qt::QueuedConnection);
        } else if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason &&
                   reason != Qt::MenuBarFocusReason) {
            m_edit->selectAll();
        }
    }

    /// A click trembles; only what is a drag takes a part of the text instead of all.
    bool isStill(const QPoint &at)
    {
        if (m_clicking && (at - m_pressedAt).manhattanLength() >= QApplication::startDragDistance()) {
            m_clicking = false;
            m_edit->setCursorPosition(m_edit->cursorPositionAt(m_pressedAt));
        }
        return m_clicking;
    }

    QLineEdit *m_edit;
    bool m_clicking = false; ///< the button is down that brought the focus
    QPoint m_pressedAt;
};

} // namespace

void selectAllOnFocus(QLineEdit *edit)
{
    edit->installEventFilter(new FocusSelection(edit));
}

} // namespace ktr
