#include "editor/date_picker.h"

#include "config/holiday_list.h"
#include "editor/editor_context.h"
#include "look/icons.h"

#include <QCalendarWidget>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTextCharFormat>
#include <QTimeEdit>
#include <QVBoxLayout>

#include <algorithm>

namespace ktr {

namespace {

/// Below the button, or as near to that as the screen has room.
QPoint placeBelow(const QWidget &button, const QSize &size)
{
    const QRect screen = button.screen()->availableGeometry();
    const QPoint wanted = button.mapToGlobal(QPoint(0, button.height()));
    return {std::clamp(wanted.x(), screen.left(), std::max(screen.left(), screen.right() - size.width())),
            std::clamp(wanted.y(), screen.top(), std::max(screen.top(), screen.bottom() - size.height()))};
}

/// The program's colours and arrows in place of the toolkit's.
void useLook(QCalendarWidget &calendar)
{
    QTextCharFormat weekend;
    weekend.setForeground(calendar.palette().placeholderText());
    calendar.setWeekdayTextFormat(Qt::Saturday, weekend);
    calendar.setWeekdayTextFormat(Qt::Sunday, weekend);
    for (const auto &[name, arrow] : {std::pair{"qt_calendar_prevmonth", Qt::LeftArrow},
                                      std::pair{"qt_calendar_nextmonth", Qt::RightArrow}}) {
        if (auto *button = calendar.findChild<QToolButton *>(QLatin1String(name))) {
            button->setArrowType(arrow);
        }
    }
}

void markHolidays(QCalendarWidget &calendar, const HolidayList &holidays)
{
    QTextCharFormat format;
    format.setFontWeight(QFont::Bold);
    format.setFontUnderline(true); // told not by colour alone
    format.setForeground(calendar.palette().link());
    format.setToolTip(DatePicker::tr("A holiday of this configuration"));
    for (const QString &line : holidays.lines()) {
        const QDate date = QDate::fromString(QLatin1String("20") + line.left(6), QStringLiteral("yyyyMMdd"));
        if (date.isValid()) { // of a file it may be anything
            calendar.setDateTextFormat(date, format);
        }
    }
}

} // namespace

DatePicker::DatePicker(const QString &name, Picks picks, EditorContext &context,
                       std::function<QDateTime()> present, QWidget *parent)
    : QToolButton(parent), m_picks(picks), m_context(context), m_present(std::move(present))
{
    setObjectName(name);
    setIcon(ktr::icon(IconName::Calendar));
    setAutoRaise(true);
    setFocusPolicy(Qt::TabFocus);
    connect(this, &QToolButton::clicked, this, &DatePicker::open);
}

void DatePicker::applyTexts()
{
    const QString text = m_picks == Picks::Date ? tr("Choose a date") : tr("Choose date and time");
    setToolTip(text);
    setAccessibleName(text);
}

void DatePicker::open()
{
    const QDateTime told = m_present();
    const QDateTime present = told.isValid() ? told : m_context.document.environment().now();
    auto *popup = new QFrame(this, Qt::Popup);
    popup->setObjectName(objectName() + QLatin1String("_popup"));
    popup->setAttribute(Qt::WA_DeleteOnClose);
    popup->setFrameShape(QFrame::StyledPanel);
    auto *calendar = new QCalendarWidget(popup);
    calendar->setObjectName(QStringLiteral("Cal_date"));
    calendar->setLocale(m_context.textLocale());
    calendar->setFirstDayOfWeek(Qt::Monday);
    calendar->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
    calendar->setSelectedDate(present.date());
    useLook(*calendar);
    markHolidays(*calendar, m_context.document.configuration().holidays);
    auto *rows = new QVBoxLayout(popup);
    rows->addWidget(calendar);

    auto *time = new QTimeEdit(present.time(), popup);
    time->setObjectName(QStringLiteral("Time_date"));
    time->setDisplayFormat(QStringLiteral("HH:mm"));
    time->setAccessibleName(tr("Time"));
    const auto take = [this, popup, calendar, time] {
        Q_EMIT picked(QDateTime(calendar->selectedDate(), time->time()));
        popup->close();
    };
    connect(calendar, &QCalendarWidget::activated, popup, take); // Enter, or a double click
    if (m_picks == Picks::Date) {
        time->hide();
        connect(calendar, &QCalendarWidget::clicked, popup, take);
    } else {
        auto *row = new QHBoxLayout;
        auto *label = new QLabel(tr("Time"), popup);
        auto *button = new QPushButton(tr("Take over"), popup);
        button->setObjectName(QStringLiteral("Cmd_date_take"));
        connect(button, &QPushButton::clicked, popup, take);
        row->addWidget(label);
        row->addWidget(time);
        row->addStretch();
        row->addWidget(button);
        rows->addLayout(row);
    }
    popup->move(placeBelow(*this, popup->sizeHint()));
    popup->show();
    calendar->setFocus();
}

} // namespace ktr
