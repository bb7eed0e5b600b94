#pragma once

#include <QString>

class QLineEdit;

namespace ktr {

/// How wide a field is, in pixels, that shows this text in whole.
int fieldWidth(const QLineEdit *edit, const QString &text);

} // namespace ktr
