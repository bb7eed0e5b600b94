#pragma once

#include "foretell/switch_plan.h"

#include <QList>
#include <QWidget>

#include <functional>

namespace ktr {

/// "Mon" to "Sun" in the language of the program, which need not be that of the system.
QString shortDayName(QDate day);

/// What is switched over some days: a lane for each output and administrator, days side by side, weekends and
/// holidays shaded. A switching is chosen by mouse or arrow keys; what it is, is told in words.
class SwitchTimeline : public QWidget
{
    Q_OBJECT

public:
    struct Mark
    {
        ModuleMs at = 0;
        QString value;
        int point = -1;      ///< the switch point
        int limitValue = -1; ///< that it reacted to in the play; by the calendar there is none
        Assumptions restsOn;
    };
    struct Lane
    {
        QString name;
        bool isCall = false; ///< an administrator: nothing stays switched
        QList<Mark> marks;   ///< by time
    };
    struct Contents
    {
        ModuleSpan span;
        QList<Lane> lanes;
        QSet<QDate> holidays;
        QList<ModuleMs> clockChanges;
        std::function<QString(const Mark &)> cause; ///< what switches, in words
    };

    explicit SwitchTimeline(QWidget *parent);

    void showContents(const Contents &contents);
    /// Where the play is.
    void showTime(ModuleMs at);
    /// Shown in the middle where there is no lane.
    void setNotice(const QString &notice);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    /// Of the chosen switching; empty where there is none.
    QString chosenWords() const;

Q_SIGNALS:
    void chosen(const QString &words);

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    bool event(QEvent *event) override;

private:
    struct Place
    {
        qsizetype lane = -1;
        qsizetype mark = -1;
        bool operator==(const Place &) const = default;
    };

    int headHeight() const;
    int laneHeight() const;
    int namesWidth() const;
    double xOf(ModuleMs at) const;
    QRect laneRect(qsizetype lane) const;
    Place placeAt(QPoint point) const;
    const Mark *markOf(const Place &place) const;
    QString wordsOf(const Place &place) const;
    void choose(Place place);
    Place stepped(int by) const;
    Place onLane(qsizetype lane) const;
    void drawDays(QPainter &painter) const;
    void drawLane(QPainter &painter, qsizetype lane) const;
    void drawLevels(QPainter &painter, const Lane &lane, const QRect &area) const;

    Contents m_contents;
    QString m_notice;
    ModuleMs m_time = 0;
    Place m_chosen;
};

} // namespace ktr
