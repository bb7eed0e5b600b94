#pragma once

#include "opmode/timemap/time_map.h"

#include <QAbstractScrollArea>

namespace ktr {

/// Draws the hours of some days: a column for each day, a row for each hour. One hour, or several that
/// follow each other, is chosen with keys or the mouse.
class TimeMapView : public QAbstractScrollArea
{
    Q_OBJECT

public:
    explicit TimeMapView(QWidget *parent = nullptr);

    struct Map
    {
        TimeMapTopic topic = TimeMapTopic::Alarms;
        HourGrid grid{};
        std::vector<HourFigures> hours{}; ///< one for each of the grid, or none while they are not known
        qsizetype stations = 0;           ///< which it is about
        qint64 now = 0;
    };
    /// What is chosen stays, as far as the times are there.
    void setMap(Map map);
    const Map &map() const { return m_map; }

    /// Chooses the hours of a time.
    void choose(qint64 from, qint64 to);
    /// What is chosen, nothing later than now; both 0 for nothing.
    std::pair<qint64, qint64> chosen() const;
    /// All of what is chosen together; of stations the most of an hour.
    HourFigures chosenFigures() const;

Q_SIGNALS:
    /// Other hours are chosen.
    void chosenChanged();
    /// The user clicked into the hours that are chosen then.
    void clicked();
    /// The user wants to see what happened in what is chosen.
    void wanted();
    /// The user wants the days before, or behind.
    void stepWanted(int by);

protected:
    bool viewportEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    std::pair<qint64, qint64> chosenHours() const;
    void arrange();
    QRectF rectOf(int place) const;
    int placeAt(const QPoint &point) const;
    void moveTo(int place, bool extends);
    void bringIntoView(int place);
    int moved(int key, bool isControl) const;
    int columnEnd(int direction) const;
    int lastKnown() const;
    void paintHours(QPainter &painter) const;
    void paintHour(QPainter &painter, int place) const;
    void paintCaptions(QPainter &painter) const;
    void paintChosen(QPainter &painter) const;
    void announce();
    QString toolTipOf(int place) const;

    Map m_map;
    int m_cursor = -1;
    int m_anchor = -1; ///< where what is chosen begins, or ends
    double m_width = 0;
    double m_height = 0;
    int m_left = 0;
    int m_top = 0;
};

} // namespace ktr
