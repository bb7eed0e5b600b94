#include "look/outside_texts.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCoreApplication>
#include <QCursor>
#include <QHeaderView>
#include <QHelpEvent>
#include <QLabel>
#include <QMessageBox>
#include <QToolTip>

namespace ktr {

namespace {

constexpr qsizetype widestTip = 80;
constexpr qsizetype highestTip = 15;

// What the toolkit's message boxes, which do not scroll, show on any screen.
constexpr qsizetype mostLinesOfBox = 10;
constexpr qsizetype mostOfBox = 1200; // characters

/// How much of a text goes into one line: to a line break, or to the last blank where it would be too wide.
qsizetype lineLength(QStringView text)
{
    const QStringView most = text.first(std::min(text.size(), widestTip + 1));
    if (const qsizetype end = most.indexOf(u'\n'); end >= 0) {
        return end;
    }
    if (text.size() <= widestTip) {
        return text.size();
    }
    if (const qsizetype blank = most.lastIndexOf(u' '); blank > 0) {
        return blank;
    }
    return text[widestTip - 1].isHighSurrogate() ? widestTip - 1 : widestTip;
}

/// Watches all widgets, those that the toolkit makes by itself as well (message boxes, tool tips).
class PlainTexts : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::Polish: // comes before a label is measured or drawn
            if (auto *label = qobject_cast<QLabel *>(watched);
                label != nullptr && label->textFormat() == Qt::AutoText) {
                label->setTextFormat(Qt::PlainText);
            }
            if (auto *box = qobject_cast<QMessageBox *>(watched)) {
                const QString bounded = shortenedLine(boundedText(box->text(), mostLinesOfBox), mostOfBox);
                if (bounded != box->text()) { // else what was set up for it would be done again
                    box->setText(bounded);
                }
            }
            break;
        case QEvent::ToolTipChange:
            if (auto *widget = qobject_cast<QWidget *>(watched)) {
                if (const QString folded = foldedTip(widget->toolTip()); folded != widget->toolTip()) {
                    widget->setToolTip(folded);
                } else if (QToolTip::isVisible() && QApplication::widgetAt(QCursor::pos()) == widget) {
                    QToolTip::showText(QCursor::pos(), folded, widget); // what is shown of it is out of date
                }
            }
            break;
        case QEvent::ToolTip:
            if (auto *view = qobject_cast<QAbstractItemView *>(watched->parent());
                view != nullptr && view->viewport() == watched) {
                return showOwnTip(*view, *static_cast<QHelpEvent *>(event));
            }
            break;
        default:
            break;
        }
        return false;
    }

private:
    /// Takes over from a view whose item has a tool tip that must be folded.
    static bool showOwnTip(QAbstractItemView &view, const QHelpEvent &event)
    {
        QString tip;
        QRect place;
        if (auto *header = qobject_cast<QHeaderView *>(&view)) {
            const int section = header->logicalIndexAt(event.pos());
            tip = header->model()->headerData(section, header->orientation(), Qt::ToolTipRole).toString();
        } else {
            const QModelIndex index = view.indexAt(event.pos());
            tip = index.data(Qt::ToolTipRole).toString();
            place = view.visualRect(index);
        }
        const QString folded = foldedTip(tip);
        if (folded == tip) {
            return false;
        }
        QToolTip::showText(event.globalPos(), folded, view.viewport(), place);
        return true;
    }
};

} // namespace

void showOutsideTextsPlain(QApplication &application)
{
    static const QString name = QStringLiteral("PlainTexts");
    if (application.findChild<QObject *>(name, Qt::FindDirectChildrenOnly) != nullptr) {
        return;
    }
    auto *texts = new PlainTexts(&application);
    texts->setObjectName(name);
    application.installEventFilter(texts);
}

QString foldedTip(const QString &text)
{
    QString folded;
    QStringView rest = text;
    for (qsizetype line = 1; !rest.isEmpty(); ++line) {
        const qsizetype length = lineLength(rest);
        QStringView shown = rest.first(length);
        const bool isBreak = length < rest.size() && (rest[length] == u'\n' || rest[length] == u' ');
        rest = rest.sliced(length + (isBreak ? 1 : 0));
        if (line == highestTip && !rest.isEmpty()) {
            if (shown.size() == widestTip) { // room for the mark
                shown.chop(shown[widestTip - 2].isHighSurrogate() ? 2 : 1);
            }
            folded += shown;
            folded += u'…';
            return folded;
        }
        folded += shown;
        if (isBreak || !rest.isEmpty()) {
            folded += u'\n';
        }
    }
    return folded;
}

QString shortenedLine(const QString &line, qsizetype most)
{
    if (line.size() <= most) {
        return line;
    }
    constexpr qsizetype roomForMark = 60; // what was shortened is not cut again
    constexpr qsizetype leastWithMark = 100;
    const qsizetype shown = std::max(qsizetype{2}, most >= leastWithMark ? most - roomForMark : most - 1);
    const qsizetype behind = std::min(most / 4, shown - 1);
    qsizetype first = shown - behind;
    qsizetype last = line.size() - behind;
    first -= line[first - 1].isHighSurrogate() ? 1 : 0;
    last += last < line.size() && line[last].isLowSurrogate() ? 1 : 0;
    if (most < leastWithMark) {
        return line.first(first) + u'…' + line.sliced(last);
    }
    return QCoreApplication::translate("OutsideTexts", "%1… [%2 characters left out] …%3")
        .arg(line.first(first), QString::number(last - first), line.sliced(last));
}

QString asSentences(const QString &lines)
{
    QString all;
    for (const QString &line : lines.split(u'\n', Qt::SkipEmptyParts)) {
        const QString sentence = line.simplified();
        if (!all.isEmpty() && !sentence.isEmpty()) {
            constexpr QStringView ends = u".!?:;,…";
            all += ends.contains(all.back()) ? QLatin1String(" ") : QLatin1String(". ");
        }
        all += sentence;
    }
    return all;
}

QString boundedText(const QString &text, qsizetype mostLines)
{
    QString bounded;
    qsizetype at = 0;
    for (qsizetype line = 0; at <= text.size(); ++line) {
        if (line == mostLines) {
            const qsizetype more = text.count(u'\n') + 1 - line;
            return bounded + u'\n' +
                   QCoreApplication::translate("OutsideTexts", "… and %1 lines more").arg(more);
        }
        const qsizetype lineBreak = text.indexOf(u'\n', at);
        const qsizetype end = lineBreak < 0 ? text.size() : lineBreak;
        bounded += (line == 0 ? QString() : QStringLiteral("\n")) + shortenedLine(text.sliced(at, end - at));
        at = end + 1;
    }
    return bounded;
}

} // namespace ktr
