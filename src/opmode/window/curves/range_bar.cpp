#include "opmode/window/curves/range_bar.h"

#include "platform/time_texts.h"

#include <QComboBox>
#include <QDateTimeEdit>
#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>

namespace ktr {

namespace {

QDateTimeEdit *timeField(const QString &name, QWidget *parent)
{
    auto *field = new QDateTimeEdit(parent);
    field->setObjectName(name);
    field->setDisplayFormat(shownMinuteForm);
    field->setCalendarPopup(true);
    field->setKeyboardTracking(false);
    constexpr int firstYear = 2000;
    constexpr int arrowAndFrame = 52;
    field->setMinimumWidth(field->fontMetrics().horizontalAdvance(QStringLiteral("00.00.0000 00:00")) +
                           arrowAndFrame);
    field->setMinimumDate(QDate(firstYear, 1, 1));
    return field;
}

} // namespace

RangeBar::RangeBar(std::function<qint64()> now, QWidget *parent)
    : QWidget(parent),
      m_now(std::move(now)),
      m_spans(new QComboBox(this)),
      m_back(new QToolButton(this)),
      m_forward(new QToolButton(this)),
      m_nowButton(new QToolButton(this)),
      m_from(timeField(QStringLiteral("Date_curves_from"), this)),
      m_to(timeField(QStringLiteral("Date_curves_to"), this))
{
    m_spans->setObjectName(QStringLiteral("Combo_curves_span"));
    m_spans->addItems(QStringList(chosenSpans + 1));
    m_back->setObjectName(QStringLiteral("Cmd_curves_back"));
    m_back->setArrowType(Qt::LeftArrow);
    m_back->setFocusPolicy(Qt::StrongFocus);
    m_forward->setObjectName(QStringLiteral("Cmd_curves_forward"));
    m_forward->setArrowType(Qt::RightArrow);
    m_forward->setFocusPolicy(Qt::StrongFocus);
    m_nowButton->setObjectName(QStringLiteral("Cmd_curves_now"));
    m_nowButton->setCheckable(true);
    m_nowButton->setFocusPolicy(Qt::StrongFocus);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins({});
    auto *dash = new QLabel(QStringLiteral("–"), this);
    for (QWidget *each :
         std::initializer_list<QWidget *>{m_spans, m_back, m_forward, m_nowButton, m_from, dash, m_to}) {
        row->addWidget(each);
    }
    row->addStretch();
    set(m_span, rangeEndingAt(m_span, m_now()), true);
    connect(m_spans, &QComboBox::activated, this, &RangeBar::chooseSpan);
    connect(m_back, &QToolButton::clicked, this, [this] { step(-1); });
    connect(m_forward, &QToolButton::clicked, this, [this] { step(1); });
    connect(m_nowButton, &QToolButton::clicked, this, &RangeBar::setFollowing);
    connect(m_from, &QDateTimeEdit::dateTimeChanged, this, &RangeBar::takeFrom);
    connect(m_to, &QDateTimeEdit::dateTimeChanged, this, &RangeBar::takeTo);
}

void RangeBar::applyTexts()
{
    const QStringList spans{tr("Hour"), tr("Day"), tr("Week"), tr("Month"), tr("Year"), tr("From – to")};
    for (int item = 0; item < spans.size(); ++item) {
        m_spans->setItemText(item, spans[item]);
    }
    m_spans->setAccessibleName(tr("How long a time is shown"));
    m_spans->setToolTip(m_spans->accessibleName());
    m_back->setAccessibleName(tr("Back by the time that is shown (Page Up)"));
    m_back->setToolTip(m_back->accessibleName());
    m_forward->setAccessibleName(tr("Forward by the time that is shown (Page Down)"));
    m_forward->setToolTip(m_forward->accessibleName());
    m_nowButton->setText(tr("Now"));
    m_nowButton->setToolTip(tr("Shows the time up to now, and follows it (Home)"));
    m_nowButton->setAccessibleName(m_nowButton->toolTip());
    m_from->setAccessibleName(tr("From"));
    m_from->setToolTip(tr("The begin of the time that is shown; its length stays"));
    m_to->setAccessibleName(tr("To"));
    m_to->setToolTip(tr("The end of the time that is shown"));
}

void RangeBar::set(CurveSpan span, const CurveRange &range, bool follows)
{
    m_span = span;
    m_range = range;
    m_follows = follows;
    show();
}

void RangeBar::show()
{
    const QSignalBlocker quietFrom(m_from);
    const QSignalBlocker quietTo(m_to);
    m_spans->setCurrentIndex(static_cast<int>(m_span));
    m_nowButton->setChecked(m_follows);
    if (!m_from->hasFocus() || !m_follows) { // or what is typed would be lost each time that it moves on
        m_from->setDateTime(QDateTime::fromMSecsSinceEpoch(m_range.from));
    }
    if (!m_to->hasFocus() || !m_follows) {
        m_to->setDateTime(QDateTime::fromMSecsSinceEpoch(m_range.to));
    }
}

void RangeBar::restore(CurveSpan span, bool follows)
{
    const CurveSpan kept = span == CurveSpan::Own ? CurveSpan::Day : span;
    set(kept, rangeEndingAt(kept, m_now()), follows || span == CurveSpan::Own);
}

void RangeBar::showRange(const CurveRange &range)
{
    const bool isMoved = range.length() == m_range.length();
    set(isMoved ? m_span : CurveSpan::Own, range, false);
    Q_EMIT rangeChosen();
}

void RangeBar::goOn()
{
    if (m_follows) {
        const qint64 now = m_now();
        set(m_span,
            m_span == CurveSpan::Own ? CurveRange{now - m_range.length(), now} : rangeEndingAt(m_span, now),
            true);
        Q_EMIT rangeChosen();
    }
}

void RangeBar::setFollowing(bool follows)
{
    m_follows = follows;
    m_nowButton->setChecked(follows);
    goOn();
}

void RangeBar::step(int direction)
{
    set(m_span, steppedRange(m_span, m_range, direction), false);
    Q_EMIT rangeChosen();
}

void RangeBar::chooseSpan(int item)
{
    const auto span = static_cast<CurveSpan>(item);
    set(span, span == CurveSpan::Own ? m_range : rangeEndingAt(span, m_range.to),
        m_follows && span != CurveSpan::Own);
    if (span == CurveSpan::Own) {
        m_from->setFocus(Qt::OtherFocusReason);
    }
    Q_EMIT rangeChosen();
}

/// The begin moves the time. Of a day that the calendar gives the whole day, its week and so on are shown.
void RangeBar::takeFrom()
{
    const QDateTime from = m_from->dateTime();
    const QDateTime before = QDateTime::fromMSecsSinceEpoch(m_range.from);
    const qint64 at = from.toMSecsSinceEpoch();
    const bool isDayChosen = from.date() != before.date() && from.time().hour() == before.time().hour() &&
                             from.time().minute() == before.time().minute();
    if (m_span == CurveSpan::Own) {
        set(m_span, {at, at + m_range.length()}, false);
    } else if (isDayChosen && m_span != CurveSpan::Hour) {
        set(m_span, rangeAround(m_span, from.date()), false);
    } else {
        set(m_span, {at, steppedRange(m_span, {at, at}, 1).to}, false);
    }
    Q_EMIT rangeChosen();
}

void RangeBar::takeTo()
{
    const qint64 to = m_to->dateTime().toMSecsSinceEpoch();
    const CurveRange typed{m_range.from, to};
    set(CurveSpan::Own, boundedRange(to > m_range.from ? typed : CurveRange{to - m_range.length(), to}),
        false);
    Q_EMIT rangeChosen();
}

} // namespace ktr
