#pragma once

#include <QString>

class QDateTimeEdit;
class QLineEdit;

namespace ktr {

/// How wide a field is, in pixels, that shows this text in whole.
int fieldWidth(const QLineEdit *edit, const QString &text);

/// Lets a field take day, month, year, hour and minute, or a calendar, and makes it wide enough for them.
void setUpMinuteField(QDateTimeEdit &field);

} // namespace ktr
