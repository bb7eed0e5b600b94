#include "editor/striped_card.h"

#include <QGridLayout>
#include <QPainter>

namespace ktr {

StripedCard::StripedCard(int firstStriped, QWidget *parent)
    : QGroupBox(parent), m_grid(new QGridLayout(this)), m_firstStriped(firstStriped)
{}

void StripedCard::paintEvent(QPaintEvent *event)
{
    QGroupBox::paintEvent(event);
    QPainter painter(this);
    QColor tint = palette().color(QPalette::WindowText); // a trace of it suits light and dark windows
    tint.setAlpha(13);
    const QRect inner = m_grid->contentsRect();
    const int above = m_grid->verticalSpacing() / 2;
    const int below = m_grid->verticalSpacing() - above;
    for (int row = m_firstStriped; row < m_grid->rowCount(); row += 2) {
        const QRect cell = m_grid->cellRect(row, 0);
        painter.fillRect(
            QRect(inner.left() - 4, cell.top() - above, inner.width() + 8, cell.height() + above + below),
            tint);
    }
}

} // namespace ktr
