#include "look/problem_label.h"

#include "look/palettes.h"

#include <QEvent>

namespace ktr {

ProblemLabel::ProblemLabel(QWidget *parent) : QLabel(parent)
{
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setWordWrap(true);
    takeColour();
    hide();
}

void ProblemLabel::tell(const QString &problem)
{
    setText(problem);
    setAccessibleName(problem);
    setVisible(!problem.isEmpty());
}

void ProblemLabel::changeEvent(QEvent *event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        takeColour();
    }
}

void ProblemLabel::takeColour()
{
    const QColor colour = alarmText(palette());
    if (palette().color(QPalette::WindowText) != colour) {
        QPalette own;
        own.setColor(QPalette::WindowText, colour);
        setPalette(own);
    }
}

} // namespace ktr
