#include "record/damage_told.h"

#include <QCoreApplication>

namespace ktr {

QStringList damageTold(const QString &path, const OpenedRecord &opened)
{
    if (opened.isPutBack) {
        const QString gone = QCoreApplication::translate(
                                 "Files", "%1: the record was removed or replaced; it was written again")
                                 .arg(path);
        return opened.keptAside.isEmpty()
                   ? QStringList{gone}
                   : QStringList{gone,
                                 QCoreApplication::translate("Files", "what stood in its place is kept as %1")
                                     .arg(opened.keptAside)};
    }
    if (opened.keptAside.isEmpty()) {
        return {};
    }
    return QStringList{QCoreApplication::translate(
                           "Files", "%1: the record is damaged; it is kept as %2, rows saved of it: %3")
                           .arg(path, opened.keptAside)
                           .arg(opened.saved)} +
           opened.lost;
}

} // namespace ktr
