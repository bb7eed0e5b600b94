#pragma once

#include "opmode/overview/station_glance.h"
#include "platform/timers.h"

#include <QWidget>

namespace ktr {

/// What stands above the tiles on a wall: how many alarms and stations there are of each kind, and the time.
/// Its letters are those of its font.
class WallHeader : public QWidget
{
    Q_OBJECT

public:
    WallHeader(const OperationalMode &mode, Timers &timers, QWidget *parent = nullptr);
    ~WallHeader() override;

    /// Something that must not be forgotten, such as that alarms make no sound.
    void setNote(const QString &note);
    /// Which stations are seen, where it is not all of them.
    void setScope(const QString &scope);
    void refresh();

    QSize sizeHint() const override;

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    struct Count
    {
        Urgency kind = Urgency::Quiet;
        int number = 0;
        QString caption;
    };

    void awaitNextSecond();
    QFont captionFont() const;
    double paintCount(QPainter &painter, double left, const Count &count) const;
    void paintClock(QPainter &painter, const QRectF &where) const;

    const OperationalMode &m_mode;
    std::unique_ptr<OneShotTimer> m_second;
    QList<Count> m_counts;
    QString m_note;
    QString m_scope;
};

} // namespace ktr
