#include "editor/combo_items.h"

#include <QComboBox>
#include <QSignalBlocker>

namespace ktr {

void setItems(QComboBox *box, const QStringList &items)
{
    const QSignalBlocker blocker(box);
    for (int index = 0; index < items.size(); ++index) {
        if (index >= box->count()) {
            box->addItem(items[index]);
        } else if (box->itemText(index) != items[index]) {
            box->setItemText(index, items[index]);
        }
    }
}

} // namespace ktr
