#include "look/wheel_guard.h"

#include <QEvent>
#include <QWidget>

namespace ktr {

namespace {

class WheelGuard : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Wheel && !static_cast<QWidget *>(watched)->hasFocus()) {
            event->ignore();
            return true;
        }
        return false;
    }
};

} // namespace

void ignoreWheelUnlessFocused(QWidget *control)
{
    control->setFocusPolicy(Qt::StrongFocus);
    control->installEventFilter(new WheelGuard(control));
}

} // namespace ktr
