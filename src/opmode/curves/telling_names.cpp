#include "opmode/curves/telling_names.h"

#include <QHash>

#include <algorithm>

namespace ktr {

namespace {

const QString leftOut = QStringLiteral("…");

/// Not through the middle of a character.
QString beginOf(const QString &name, qsizetype length)
{
    const bool isCut = length > 0 && length < name.size() && name[length - 1].isHighSurrogate();
    return name.first(isCut ? length - 1 : length).trimmed();
}

QString endOf(const QString &name, qsizetype length)
{
    const bool isCut = length > 0 && length < name.size() && name[name.size() - length].isLowSurrogate();
    return name.last(isCut ? length - 1 : length).trimmed();
}

/// The greatest number up to `most` with which `make` gives what has room, or 0.
template <class Make> qsizetype mostThatFits(qsizetype most, const Make &make, const HasRoom &hasRoom)
{
    qsizetype fits = 0;
    for (qsizetype tooMany = most + 1; tooMany - fits > 1;) {
        const qsizetype middle = fits + (tooMany - fits) / 2;
        (hasRoom(make(middle)) ? fits : tooMany) = middle;
    }
    return fits;
}

/// What names of several have in common, at their beginnings or ends.
template <class At> qsizetype inCommon(const QStringList &names, qsizetype most, const At &at)
{
    qsizetype length = 0;
    const auto isSame = [&](const QString &name) { return at(name, length) == at(names.first(), length); };
    while (length < most && std::ranges::all_of(names, isSame)) {
        ++length;
    }
    return length;
}

/// Different names that became the same: where they begin to differ comes first.
QStringList apart(const QStringList &names, const HasRoom &hasRoom)
{
    qsizetype shortest = names.first().size();
    for (const QString &name : names) {
        shortest = std::min(shortest, name.size());
    }
    const qsizetype before =
        inCommon(names, shortest, [](const QString &name, qsizetype place) { return name[place]; });
    const qsizetype behind = inCommon(names, shortest - before, [](const QString &name, qsizetype place) {
        return name[name.size() - 1 - place];
    });
    QStringList texts;
    for (const QString &name : names) {
        const QString core = name.sliced(before, name.size() - before - behind);
        const auto withBegin = [&](qsizetype length) -> QString {
            return beginOf(name, length) + leftOut + core + (behind > 0 ? leftOut : QString());
        };
        const auto ofCore = [&](qsizetype length) -> QString { return leftOut + beginOf(core, length); };
        texts += hasRoom(withBegin(0)) ? withBegin(mostThatFits(before, withBegin, hasRoom))
                                       : ofCore(mostThatFits(core.size(), ofCore, hasRoom));
    }
    return texts;
}

} // namespace

QString shortenedInTheMiddle(const QString &name, const HasRoom &hasRoom)
{
    if (hasRoom(name) || name.size() < 2) {
        return name;
    }
    const auto keeping = [&name](qsizetype length) -> QString {
        return beginOf(name, (length + 1) / 2) + leftOut + endOf(name, length / 2);
    };
    return keeping(mostThatFits(name.size() - 1, keeping, hasRoom));
}

QStringList tellingNames(const QStringList &names, const HasRoom &hasRoom)
{
    QStringList texts;
    QHash<QString, QStringList> same; // different names by the text that they became
    for (const QString &name : names) {
        texts += shortenedInTheMiddle(name, hasRoom);
        QStringList &others = same[texts.last()];
        if (!others.contains(name)) {
            others += name;
        }
    }
    QHash<QString, QString> better;
    for (const QStringList &group : std::as_const(same)) {
        const QStringList told = group.size() > 1 ? apart(group, hasRoom) : QStringList();
        for (qsizetype i = 0; i < told.size(); ++i) {
            better.insert(group[i], told[i]);
        }
    }
    for (qsizetype i = 0; i < texts.size(); ++i) {
        texts[i] = better.value(names[i], texts[i]);
    }
    return texts;
}

} // namespace ktr
