#include "look/kept_focus.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFocusEvent>
#include <QGroupBox>
#include <QHash>
#include <QKeyEvent>
#include <QPointer>

namespace ktr {

namespace {

class KeptFocus : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::KeyPress: {
            const int key = static_cast<QKeyEvent *>(event)->key();
            m_isTab = key == Qt::Key_Tab || key == Qt::Key_Backtab;
            break;
        }
        case QEvent::KeyRelease:
        case QEvent::MouseButtonPress:
            m_isTab = false;
            break;
        case QEvent::FocusOut:
            if (auto *widget = qobject_cast<QWidget *>(watched)) {
                noteLeft(*widget, static_cast<QFocusEvent *>(event)->reason());
            }
            break;
        case QEvent::EnabledChange:
            if (auto *button = qobject_cast<QAbstractButton *>(watched)) {
                button->isEnabled() ? giveBack(*button) : keep(*button);
            }
            break;
        default:
            break;
        }
        return false;
    }

private:
    void noteLeft(QWidget &widget, Qt::FocusReason reason)
    {
        auto *button = qobject_cast<QAbstractButton *>(&widget);
        // If it was not the user's Tab, the button is about to be disabled.
        m_left = reason == Qt::TabFocusReason && !m_isTab ? button : nullptr;
        if (m_left != nullptr) { // at once, or it was hidden
            QMetaObject::invokeMethod(
                this, [this] { m_left = nullptr; }, Qt::QueuedConnection);
        }
        if (reason == Qt::ActiveWindowFocusReason) {
            m_sleeping.removeIf([](const auto &window) { return window.value().isNull(); });
            m_sleeping[widget.window()] = button;
        }
    }

    /// Whether the button had its window's focus until now.
    bool hadFocus(const QAbstractButton &button) const
    {
        QWidget *window = button.window();
        const bool isAsleep = !window->isActiveWindow() && m_sleeping.value(window) == &button;
        return window->focusWidget() != &button && (m_left == &button || isAsleep);
    }

    void keep(QAbstractButton &button)
    {
        if (!hadFocus(button)) {
            return;
        }
        QWidget *around = button.parentWidget();
        // A group box hands the focus on to what is in it.
        while (around != nullptr && (!around->isEnabled() || qobject_cast<QGroupBox *>(around) != nullptr)) {
            around = around->parentWidget();
        }
        if (around != nullptr) {
            around->setFocus(Qt::OtherFocusReason);
            m_button = &button;
            m_place = around;
        }
    }

    void giveBack(QAbstractButton &button)
    {
        if (m_button == &button && m_place != nullptr && m_place->window()->focusWidget() == m_place) {
            button.setFocus(Qt::OtherFocusReason);
        }
    }

    bool m_isTab = false; ///< the key pressed last
    QPointer<QAbstractButton> m_left;
    QHash<const QWidget *, QPointer<QAbstractButton>>
        m_sleeping;                     ///< by window that is not active, in its focus
    QPointer<QAbstractButton> m_button; ///< whose focus waits
    QPointer<QWidget> m_place;          ///< where it waits
};

} // namespace

void keepFocusOfDisabledButtons(QApplication &application)
{
    static const QString name = QStringLiteral("KeptFocus");
    if (application.findChild<QObject *>(name, Qt::FindDirectChildrenOnly) == nullptr) {
        auto *focus = new KeptFocus(&application);
        focus->setObjectName(name);
        application.installEventFilter(focus);
    }
}

} // namespace ktr
