#include "opmode/window/overview/wall_header.h"

#include "look/palettes.h"
#include "opmode/operational_mode.h"
#include "opmode/watch_summary.h"
#include "opmode/window/overview/tile_painter.h"

#include <QEvent>
#include <QPainter>

namespace ktr {

namespace {

constexpr double captionPart = 0.45; // of the size of the numbers

/// A station of that kind, for its mark.
StationGlance sampleOf(Urgency kind)
{
    using Line = StationStatus::Line;
    StationGlance sample;
    sample.urgency = kind;
    sample.status.line = kind == Urgency::Silent    ? Line::Silent
                         : kind == Urgency::Offline ? Line::Offline
                         : kind == Urgency::Unheard ? Line::Connecting
                                                    : Line::Alive;
    return sample;
}

} // namespace

WallHeader::WallHeader(const OperationalMode &mode, Timers &timers, QWidget *parent)
    : QWidget(parent), m_mode(mode), m_second(timers.create())
{
    setObjectName(QStringLiteral("WallHeader"));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    hide();
}

WallHeader::~WallHeader() = default;

void WallHeader::setNote(const QString &note)
{
    m_note = note;
    refresh();
}

void WallHeader::setScope(const QString &scope)
{
    m_scope = scope;
    refresh();
}

void WallHeader::refresh()
{
    const WatchSummary summary = summaryOf(m_mode);
    const int waiting = m_mode.alarms().waitingCount();
    m_counts = {{Urgency::MediumAlarm, waiting, tr("not acknowledged")},
                {Urgency::Standing, summary.standing - waiting, tr("acknowledged")},
                {Urgency::Silent, summary.silent, tr("silent")}};
    if (summary.unheard > 0) {
        m_counts += {Urgency::Unheard, summary.unheard, tr("not heard yet")};
    }
    m_counts += {Urgency::Offline, summary.offline, tr("not watched")};
    m_counts += {Urgency::Quiet, summary.alive, tr("alive")};
    QStringList texts;
    for (const Count &count : std::as_const(m_counts)) {
        texts += locale().toString(count.number) + u' ' + count.caption;
    }
    texts += m_scope;
    texts += m_note;
    texts.removeAll(QString());
    setAccessibleName(texts.join(QLatin1String(", ")));
    update();
}

void WallHeader::awaitNextSecond()
{
    constexpr int aSecond = 1000;
    m_second->start(Milliseconds(aSecond - m_mode.now().time().msec()), [this] {
        refresh();
        awaitNextSecond();
    });
}

void WallHeader::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    refresh();
    awaitNextSecond();
}

void WallHeader::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    m_second->stop();
}

void WallHeader::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        updateGeometry();
    }
}

QFont WallHeader::captionFont() const
{
    QFont small = font();
    small.setPixelSize(std::max(1, static_cast<int>(QFontInfo(font()).pixelSize() * captionPart)));
    return small;
}

QSize WallHeader::sizeHint() const
{
    const int small = QFontMetrics(captionFont()).height();
    return {0, fontMetrics().height() + small + small / 2};
}

/// Gives where it ends.
double WallHeader::paintCount(QPainter &painter, double left, const Count &count) const
{
    const double line = QFontMetricsF(font()).height();
    const double small = QFontMetricsF(captionFont()).height();
    const QRectF mark(left, small / 4, line, line);
    const TilePainter tile({1, 1}, font(), palette());
    tile.paintCell(painter, {mark, false, false}, sampleOf(count.kind));
    QFont bold = font();
    bold.setBold(true);
    const QString number = locale().toString(count.number);
    const bool isSerious = count.number > 0 && count.kind == Urgency::MediumAlarm;
    const bool isDoubtful = count.number > 0 && count.kind == Urgency::Silent;
    painter.setFont(bold);
    painter.setPen(isSerious    ? alarmText(palette())
                   : isDoubtful ? doubtText(palette())
                                : palette().color(QPalette::WindowText));
    const double numberWidth = QFontMetricsF(bold).horizontalAdvance(number);
    painter.drawText(QRectF(mark.right() + small / 2, mark.top(), numberWidth + 2, line), Qt::AlignVCenter,
                     number);
    painter.setFont(captionFont());
    painter.setPen(palette().color(QPalette::WindowText));
    const double captionWidth = QFontMetricsF(captionFont()).horizontalAdvance(count.caption);
    painter.drawText(QRectF(left, mark.bottom(), captionWidth + 2, small), Qt::AlignVCenter, count.caption);
    return std::max(mark.right() + small / 2 + numberWidth, left + captionWidth) + small;
}

void WallHeader::paintClock(QPainter &painter, const QRectF &where) const
{
    const QDateTime now = m_mode.now().toLocalTime();
    QFont bold = font();
    bold.setBold(true);
    painter.setFont(bold);
    painter.setPen(palette().color(QPalette::WindowText));
    const double line = QFontMetricsF(bold).height();
    const double small = QFontMetricsF(captionFont()).height();
    QString time = now.toString(QStringLiteral("HH:mm:ss"));
    if (QFontMetricsF(bold).horizontalAdvance(time) > where.width()) {
        time = now.toString(QStringLiteral("HH:mm"));
    }
    painter.drawText(QRectF(where.left(), small / 4, where.width(), line), Qt::AlignRight | Qt::AlignVCenter,
                     time);
    painter.setFont(captionFont());
    const QString date = locale().toString(now.date(), QStringLiteral("ddd dd.MM.yyyy"));
    const QRectF below(where.left(), small / 4 + line, where.width(), small);
    if (!m_note.isEmpty()) {
        painter.setPen(doubtText(palette()));
    }
    const QString text = !m_note.isEmpty()   ? m_note
                         : m_scope.isEmpty() ? date
                                             : m_scope + QStringLiteral(" – ") + date;
    painter.drawText(below, Qt::AlignRight | Qt::AlignVCenter,
                     QFontMetricsF(captionFont()).elidedText(text, Qt::ElideRight, below.width()));
}

void WallHeader::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const double margin = QFontMetricsF(captionFont()).height() / 2;
    double left = margin;
    for (const Count &count : std::as_const(m_counts)) {
        left = paintCount(painter, left, count);
    }
    paintClock(painter, QRectF(left, 0, width() - left - margin, height()));
}

} // namespace ktr
