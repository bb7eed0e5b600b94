#include "platform/tab_table.h"

#include "platform/text_rules.h"

#include <utility>

namespace ktr {

namespace {

constexpr QStringView formulaMarks = u"=+-@";

bool looksLikeFormula(const QString &cell)
{
    return cell.size() > 1 && formulaMarks.contains(cell.front()) && !toNumber(cell);
}

QString quotedCell(const QString &cell)
{
    constexpr QStringView special = u"\t\r\n\"";
    QString guarded = looksLikeFormula(cell) ? u'\'' + cell : cell;
    for (const QChar c : std::as_const(guarded)) {
        if (special.contains(c)) {
            return u'"' + QString(guarded).replace(u'"', QLatin1String("\"\"")) + u'"';
        }
    }
    return guarded;
}

bool endsCell(QStringView text, qsizetype at)
{
    return at >= text.size() || text[at] == u'\t' || text[at] == u'\n' || text[at] == u'\r';
}

class Reader
{
public:
    explicit Reader(QStringView text) : m_text(text) {}

    bool atEnd() const { return m_at >= m_text.size(); }

    QStringList takeRow()
    {
        QStringList row{takeCell()};
        while (!atEnd() && m_text[m_at] == u'\t') {
            ++m_at;
            row += takeCell();
        }
        m_at += m_text.mid(m_at).startsWith(u"\r\n") ? 2 : 1;
        return row;
    }

private:
    QString takeCell()
    {
        QString cell;
        if (m_anyClosed && !atEnd() && m_text[m_at] == u'"' && takeQuoted(cell)) {
            return cell;
        }
        const qsizetype begin = m_at;
        while (!endsCell(m_text, m_at)) {
            ++m_at;
        }
        return m_text.mid(begin, m_at - begin).toString();
    }

    /// False, and it stays where it is, when what begins here is no quoted cell.
    bool takeQuoted(QString &cell)
    {
        qsizetype at = m_at + 1;
        while (at < m_text.size()) {
            if (m_text[at] != u'"') {
                cell += m_text[at++];
            } else if (at + 1 < m_text.size() && m_text[at + 1] == u'"') {
                cell += u'"';
                at += 2;
            } else {
                if (endsCell(m_text, at + 1)) {
                    m_at = at + 1;
                    return true;
                }
                return false;
            }
        }
        m_anyClosed = false; // or each mark to come would look through all that follows
        return false;
    }

    QStringView m_text;
    qsizetype m_at = 0;
    bool m_anyClosed = true;
};

} // namespace

QString tabTable(const QList<QStringList> &rows)
{
    QString text;
    for (const QStringList &row : rows) {
        QStringList cells;
        for (const QString &cell : row) {
            cells += quotedCell(cell);
        }
        text += cells.join(u'\t') + u'\n';
    }
    return text;
}

QList<QStringList> readTabTable(QStringView text)
{
    QList<QStringList> rows;
    for (Reader reader(text); !reader.atEnd();) {
        rows += reader.takeRow();
    }
    return rows;
}

QString cellWithoutGuard(const QString &cell)
{
    return cell.startsWith(u'\'') && looksLikeFormula(cell.mid(1)) ? cell.mid(1) : cell;
}

} // namespace ktr
