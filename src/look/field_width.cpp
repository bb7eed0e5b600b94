#include "look/field_width.h"

#include "platform/time_texts.h"

#include <QDateTimeEdit>
#include <QLineEdit>

namespace ktr {

int fieldWidth(const QLineEdit *edit, const QString &text)
{
    // What stands around a text is known to the toolkit alone, which likes to have room for 17 of them.
    const QFontMetrics metrics = edit->fontMetrics();
    const int around = edit->sizeHint().width() - 17 * metrics.horizontalAdvance(u'x');
    constexpr int caret = 1;
    return around + metrics.horizontalAdvance(text) + caret;
}

void setUpMinuteField(QDateTimeEdit &field)
{
    constexpr int frameAndButton = 60;
    field.setDisplayFormat(shownMinuteForm);
    field.setCalendarPopup(true);
    field.setMinimumWidth(field.fontMetrics().horizontalAdvance(QStringLiteral("00.00.0000 00:00")) +
                          frameAndButton);
}

} // namespace ktr
