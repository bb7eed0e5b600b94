#include "link/datagram_loss.h"

#include <QCoreApplication>
#include <QLocale>

namespace ktr {

QString textOf(const DatagramLoss &loss)
{
    const auto text = [&loss](const char *source) {
        return QCoreApplication::translate("DatagramLoss", source).arg(QLocale().toString(loss.dropped));
    };
    if (loss.isFlood && loss.dropped == 0) {
        return loss.isOver ? text(QT_TRANSLATE_NOOP("DatagramLoss", "the flood is over"))
                           : text(QT_TRANSLATE_NOOP("DatagramLoss", "floods: datagrams are dropped"));
    }
    if (loss.isFlood) {
        return loss.isOver
                   ? text(QT_TRANSLATE_NOOP("DatagramLoss", "the flood is over: %1 datagrams dropped"))
                   : text(QT_TRANSLATE_NOOP("DatagramLoss", "floods: %1 datagrams dropped"));
    }
    return loss.isOver ? text(QT_TRANSLATE_NOOP("DatagramLoss", "the loss is over: %1 datagrams dropped"))
                       : text(QT_TRANSLATE_NOOP("DatagramLoss", "%1 datagrams dropped"));
}

} // namespace ktr
