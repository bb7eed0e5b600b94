#include "look/shortened_label.h"

#include <QEvent>

namespace ktr {

ShortenedLabel::ShortenedLabel(QWidget *parent) : QLabel(parent)
{
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
}

void ShortenedLabel::tell(const QString &line)
{
    m_line = line;
    setToolTip(line);
    setAccessibleName(line);
    shorten();
}

void ShortenedLabel::changeEvent(QEvent *event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        shorten();
    }
}

void ShortenedLabel::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    shorten();
}

void ShortenedLabel::shorten()
{
    const QString shown = fontMetrics().elidedText(m_line, Qt::ElideRight, contentsRect().width());
    if (shown != text()) { // it would lay out anew, and select nothing
        setText(shown);
    }
}

} // namespace ktr
