#include "link/reply_interpreter.h"

#include <QRegularExpression>

#include <algorithm>

namespace ktr {

namespace {

ReplyEvent versionOf(const QString &text)
{
    const QString fields = text.sliced(2);
    const qsizetype first = fields.indexOf(u',');
    const qsizetype last = fields.lastIndexOf(u',');
    if (first < 0 || first == last) {
        return UnusableReply{text};
    }
    return VersionReply{shownVersion(fields.first(first).trimmed()),
                        fields.sliced(first + 1, last - first - 1), fields.sliced(last + 1).trimmed()};
}

/// Where a line of the archive begins when stray characters are in front of it; -1 when there is none.
qsizetype historyBehindGarbage(QStringView text)
{
    static const QRegularExpression start(QStringLiteral("H,[^,]*,[0-9]{10},"));
    return text.indexOf(start);
}

ReplyEvent eventOf(QStringView text, Direction direction)
{
    if (text.startsWith(u"V,")) {
        return versionOf(text.toString());
    }
    if (text.startsWith(u"H,")) {
        return HistoryReply{direction, decodeArchiveLine(text.sliced(2))};
    }
    return OtherReply{direction, text.toString()};
}

} // namespace

std::vector<ReplyEvent> interpretReply(const ModemDialogue::Reply &reply)
{
    QString text = reply.text;
    const bool isArchive = reply.kind == ModemDialogue::ReplyKind::History;
    const bool isMessage = reply.kind == ModemDialogue::ReplyKind::Message;
    // From the first marker on, the dialogue gives the line as a message, too.
    const qsizetype message = isArchive ? insideMarker(text) : -1;
    if (message >= 0) {
        text.truncate(message);
    }
    std::vector<ReplyEvent> events;
    static const QRegularExpression lineEnds(QStringLiteral("[\r\n\x1A]+"));
    const QStringView whole = text;
    const auto pieces = whole.split(lineEnds, Qt::SkipEmptyParts);
    for (QStringView piece : pieces) {
        const bool isLast = piece.data() + piece.size() == whole.data() + whole.size();
        if (isMessage) {
            piece = piece.sliced(std::max<qsizetype>(insideMarker(piece), 0));
        }
        const std::optional<Direction> marker = markerOf(piece);
        piece = plainText(piece);
        if (!marker && (isArchive || isMessage)) {
            const qsizetype history = historyBehindGarbage(piece);
            if (history < 0 && message >= 0 && isLast) {
                continue; // stray characters in front of a message
            }
            piece = piece.sliced(std::max<qsizetype>(history, 0));
        }
        events.push_back(eventOf(piece, marker.value_or(Direction::Answer)));
    }
    return events;
}

QString shownVersion(const QString &version)
{
    static const QRegularExpression form(QStringLiteral("^0*([0-9]+)\\.0*([0-9]+)\\.0*([0-9]+)$"));
    const QRegularExpressionMatch match = form.match(version);
    if (!match.hasMatch()) {
        return version;
    }
    return match.captured(1) + u'.' + match.captured(2) + u'.' + match.captured(3).rightJustified(2, u'0');
}

} // namespace ktr
