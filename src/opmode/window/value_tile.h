#pragma once

#include <QList>
#include <QWidget>

namespace ktr {

/// An input's value, large, with its name, its unit and a small curve of what came before.
class ValueTile : public QWidget
{
    Q_OBJECT

public:
    struct Content
    {
        QString caption;
        QString name; ///< what the user calls it, for where the caption has no room; empty for none
        QString number; ///< of the input: "IP5"
        QString value;  ///< empty when there is none
        QString unit;
        /// A disc for on, a ring for off, nothing for values that have no two states.
        enum class Mark { None, Off, On } mark = Mark::None;
        QList<QPointF> trend; ///< time and value
        QString age;          ///< in a few words; empty when it is not known
        QString stale;        ///< why it is of before; empty when it is not
        QString limits;       ///< in words
        QString beyond;       ///< of the limit that the value is beyond; empty for none
        QList<double> lines;  ///< the limits, beside the curve
        bool operator==(const Content &) const = default;
    };

    explicit ValueTile(QWidget *parent = nullptr);

    void show(const Content &content);
    const Content &content() const { return m_content; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void drawValue(QPainter &painter, const QRectF &place, double factor) const;
    void drawTrend(QPainter &painter, const QRectF &place) const;
    void drawFoot(QPainter &painter, const QRectF &place) const;

    Content m_content;
};

} // namespace ktr
