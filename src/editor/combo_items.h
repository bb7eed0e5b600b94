#pragma once

#include <QStringList>

class QComboBox;

namespace ktr {

/// Gives a list these items. The index stays, nothing is emitted, and items that read so already are left
/// alone.
void setItems(QComboBox *box, const QStringList &items);

} // namespace ktr
