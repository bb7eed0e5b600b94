#include "editor/combo_items.h"

#include "look/outside_texts.h"

#include <QComboBox>
#include <QSignalBlocker>

namespace ktr {

void setItems(QComboBox *box, const QStringList &items)
{
    const QSignalBlocker blocker(box);
    for (int index = 0; index < items.size(); ++index) {
        const QString item = shortenedLine(items[index]);
        if (index >= box->count()) {
            box->addItem(item);
        } else if (box->itemText(index) != item) {
            box->setItemText(index, item);
        }
    }
}

} // namespace ktr
