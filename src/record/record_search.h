#pragma once

// What the searches of events and of alarms have in common.

#include "record/record_sql.h"
#include "record/sql_dialect.h"

#include <QElapsedTimer>
#include <QSqlQuery>
#include <QVariant>

#include <limits>
#include <optional>

namespace ktr {

/// Of the times of a filter, of which 0 is none.
inline qint64 beginOf(qint64 from)
{
    return from == 0 ? std::numeric_limits<qint64>::min() : from;
}
inline qint64 endOf(qint64 to)
{
    return to == 0 ? std::numeric_limits<qint64>::max() : to;
}

/// The conditions of a statement and what is bound in them.
struct Conditions
{
    QStringList texts{};
    QVariantList values{};

    void add(const QString &condition, const QVariantList &bound)
    {
        texts += condition;
        values += bound;
    }
    QString all() const { return texts.isEmpty() ? QStringLiteral("1 = 1") : texts.join(u" AND "); }
    /// A column is one of several numbers.
    void addNumbers(const SqlDialect &sql, const QString &column, const QList<qint64> &numbers)
    {
        add(column + sql.oneOfNumbers, {sql.arrayOf(numbers)});
    }
};

/// The condition of a text that is contained, letters of any script in either case.
class Containing
{
public:
    Containing(const SqlDialect &sql, const QString &text) : m_sql(sql)
    {
        bool isPlain = true;
        for (const uint letter : text.toUcs4()) {
            const uint lower = QChar::toLower(letter);
            const uint upper = QChar::toUpper(letter);
            const QString one = textOf(letter);
            const QString either = lower == upper ? one : one + textOf(lower) + textOf(upper);
            const bool isAscii = letter < 128;
            isPlain = isPlain && (isAscii || either == one);
            const bool isSpecial = QStringView(u"\\%_").contains(one);
            m_like += isSpecial ? QString(u'\\' + one) : isAscii || either == one ? one : QStringLiteral("_");
            m_pattern += sql.isServer ? expression(one, either) : glob(one, either);
        }
        m_like = u'%' + m_like + u'%';
        m_pattern = isPlain        ? QString()
                    : sql.isServer ? m_pattern // which may stand anywhere
                                   : u'*' + m_pattern + u'*';
    }

    QString of(const QString &column) const
    {
        const QString like = column + m_sql.like + QLatin1String("? ESCAPE '\\'");
        return m_pattern.isEmpty()
                   ? like
                   : u'(' + like + QLatin1String(" AND ") + column + m_sql.matches + QLatin1String("?)");
    }
    QVariantList bound() const
    {
        return m_pattern.isEmpty() ? QVariantList{m_like} : QVariantList{m_like, m_pattern};
    }

private:
    static QString textOf(char32_t letter) { return QString::fromUcs4(&letter, 1); }
    static QString glob(const QString &one, const QString &either)
    {
        const bool isItself = either == one && !QStringView(u"*?[").contains(one);
        return isItself ? one : QString(u'[' + either + u']');
    }
    static QString expression(const QString &one, const QString &either)
    {
        const bool isSpecial = QStringView(u".*+?()[]{}|^$\\").contains(one);
        return isSpecial ? QString(u'\\' + one) : either == one ? one : QString(u'[' + either + u']');
    }

    const SqlDialect &m_sql;
    QString m_like;    ///< which ignores the case of A to Z alone: any letter stands for the others
    QString m_pattern; ///< which says what those may be; empty when there are none
};

/// Looks through what no index leads to, from the end `to` down to `from`, part by part: the first one is so
/// long, and the next ones are longer as long as that goes quickly. `look(from, to)` gives whether more is
/// wanted. Where it was stopped because it took long, nothing when it was not.
template <class Look>
std::optional<qint64> lookThrough(qint64 from, qint64 to, qint64 length, const Look &look)
{
    constexpr qint64 longest = 50; // milliseconds, for all and for one
    constexpr qint64 quick = 5;
    constexpr qint64 timesLonger = 2;
    QElapsedTimer time;
    time.start();
    while (to > from) {
        const quint64 room = static_cast<quint64>(to) - static_cast<quint64>(from); // of damaged rows, too
        const qint64 part = room > static_cast<quint64>(length) ? to - length : from;
        const qint64 begun = time.elapsed();
        if (!look(part, to)) {
            return std::nullopt;
        }
        to = part;
        if (to > from && time.elapsed() > longest) {
            return to;
        }
        if (time.elapsed() - begun < quick && length < std::numeric_limits<qint64>::max() / timesLonger) {
            length *= timesLonger;
        }
    }
    return std::nullopt;
}

} // namespace ktr
