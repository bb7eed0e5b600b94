#include "editor/channel_label.h"

#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace ktr {

namespace {

constexpr int widest = 220;

} // namespace

QString ChannelLabel::shown() const
{
    return m_name.isEmpty() ? text() : text() + QStringLiteral(" – ") + m_name;
}

void ChannelLabel::setName(const QString &name)
{
    if (name != m_name) {
        m_name = name;
        setToolTip(m_name.isEmpty() ? QString() : shown());
        updateGeometry();
        update();
    }
}

QSize ChannelLabel::sizeHint() const
{
    const QSize bare = QLabel::sizeHint();
    if (m_name.isEmpty()) {
        return bare;
    }
    const int wanted = fontMetrics().horizontalAdvance(shown()) + 1;
    return {std::max(bare.width(), std::min(wanted, widest)), bare.height()};
}

QSize ChannelLabel::minimumSizeHint() const
{
    return QLabel::sizeHint();
}

void ChannelLabel::paintEvent(QPaintEvent *event)
{
    if (m_name.isEmpty()) {
        QLabel::paintEvent(event);
        return;
    }
    QPainter painter(this);
    style()->drawItemText(
        &painter, contentsRect(), static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter), palette(), isEnabled(),
        fontMetrics().elidedText(shown(), Qt::ElideRight, contentsRect().width()), foregroundRole());
}

} // namespace ktr
