#include "opmode/window/view_activity.h"

#include <QApplication>
#include <QMouseEvent>

namespace ktr {

namespace {

constexpr int mouseRestMs = 10'000; ///< so long who has moved the mouse over rows may be about to choose one
constexpr Milliseconds handRest{1000}; ///< so long after the user's last move nothing changes its place

bool isWithin(const QElapsedTimer &last, Milliseconds time)
{
    return last.isValid() && !last.hasExpired(time.count());
}

} // namespace

ViewActivity::ViewActivity(QAbstractItemView &view, std::function<bool()> isEditing)
    : QObject(&view), m_view(view), m_isEditing(std::move(isEditing)), m_restTimer(this)
{
    m_restTimer.setObjectName(QStringLiteral("Timer_rest"));
    m_restTimer.setSingleShot(true);
    m_restTimer.setInterval(mouseRestMs);
    connect(&m_restTimer, &QTimer::timeout, this, &ViewActivity::mouseRested);
}

void ViewActivity::noteViewportEvent(const QEvent &event)
{
    if (event.isSinglePointEvent()) { // entering, moving, pressing
        m_pointer = static_cast<const QSinglePointEvent &>(event).globalPosition().toPoint();
    }
    switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        m_lastUse.start(); // passing by with the mouse is none
        [[fallthrough]];
    case QEvent::Wheel:
        m_lastWork.start();
        [[fallthrough]];
    case QEvent::MouseMove:
        m_lastInput.start();
        m_restTimer.start();
        break;
    default:
        break;
    }
}

void ViewActivity::noteKeys()
{
    m_lastInput.start();
    m_lastUse.start();
    m_lastWork.start();
}

bool ViewActivity::wasUsedWithin(Milliseconds time) const
{
    return isWithin(m_lastWork, time);
}

/// Whether the user is just moving the mouse here, pressing a button, choosing from a menu or typing.
bool ViewActivity::isHandled() const
{
    return m_isEditing() || QApplication::activePopupWidget() != nullptr ||
           (m_view.underMouse() && QApplication::mouseButtons() != Qt::NoButton) ||
           isWithin(m_lastInput, handRest);
}

bool ViewActivity::isInUse(Milliseconds rest) const
{
    return isHandled() || m_view.underMouse() || (m_view.hasFocus() && isWithin(m_lastUse, rest));
}

bool ViewActivity::isAboutToChoose() const
{
    return isHandled() || (m_view.underMouse() && m_restTimer.isActive());
}

} // namespace ktr
