#include "opmode/overview/station_groups.h"

#include "config/channels.h"
#include "opmode/beside_list.h"
#include "platform/text_rules.h"

#include <QCoreApplication>

#include <algorithm>
#include <optional>

namespace ktr {

namespace {

QString remark(const char *text, int line)
{
    return QCoreApplication::translate("StationGroups", text).arg(line);
}

bool isSame(QChar one, QChar other)
{
    return one.toCaseFolded() == other.toCaseFolded();
}

/// Goes back to the last "*" only, so that no pattern takes long.
bool matches(const QString &pattern, const QString &name)
{
    qsizetype at = 0;
    qsizetype in = 0;
    qsizetype star = -1;
    qsizetype starIn = 0;
    while (in < name.size()) {
        const QChar wanted = at < pattern.size() ? pattern[at] : QChar();
        if (at < pattern.size() && wanted == u'*') {
            star = at++;
            starIn = in;
            continue;
        }
        const bool isEscaped = wanted == u'\\' && at + 1 < pattern.size();
        const bool fits = at < pattern.size() && ((wanted == u'?' && !isEscaped) ||
                                                  isSame(isEscaped ? pattern[at + 1] : wanted, name[in]));
        if (fits) {
            at += isEscaped ? 2 : 1;
            ++in;
        } else if (star >= 0) {
            at = star + 1;
            in = ++starIn;
        } else {
            return false;
        }
    }
    return std::all_of(pattern.begin() + at, pattern.end(), [](QChar rest) { return rest == u'*'; });
}

/// Of "= 9, 10"; none of any other line, which may be a station's name.
QList<int> channelsIn(const QString &line)
{
    QList<int> channels;
    if (!line.startsWith(u'=')) {
        return channels;
    }
    for (const QString &number : line.sliced(1).split(u',')) {
        const std::optional<int> channel = toWholeNumber(number, 1, channelCount);
        if (!channel || channels.size() == StationGroups::mostChannels) {
            return {};
        }
        channels += *channel;
    }
    return channels;
}

/// Though it may be a station's name nevertheless.
bool isMeantAsChannels(const QString &line)
{
    constexpr QStringView letters = u"0123456789,; \t";
    return line.startsWith(u'=') &&
           std::all_of(line.begin() + 1, line.end(), [&](QChar c) { return letters.contains(c); });
}

/// Of "[NAME]"; nothing of any other line.
std::optional<QString> nameIn(const QString &line)
{
    const bool isName = line.startsWith(u'[') && line.endsWith(u']');
    return isName ? std::optional(line.sliced(1).chopped(1).trimmed()) : std::nullopt;
}

} // namespace

QByteArray StationGroups::withChannels(const QByteArray &text, const QString &group,
                                       const QList<int> &channels)
{
    QStringList numbers;
    for (const int channel : channels) {
        numbers += QString::number(channel);
    }
    QStringList lines;
    bool isWritten = channels.isEmpty();
    bool isInGroup = false;
    for (const QString &line : QString::fromUtf8(text).split(u'\n')) {
        const std::optional<QString> name = nameIn(line.trimmed());
        isInGroup = name ? *name == group : isInGroup;
        if (isInGroup && !name && !channelsIn(line.trimmed()).isEmpty()) {
            continue;
        }
        lines += line;
        if (isInGroup && name && !isWritten) {
            lines += QLatin1String("= ") + numbers.join(QLatin1String(", "));
            isWritten = true;
        }
    }
    return lines.join(u'\n').toUtf8();
}

StationGroups StationGroups::parse(const QByteArray &text, QStringList &remarks)
{
    const QString content = QString::fromUtf8(text);
    StationGroups groups;
    StationGroup *group = nullptr;
    int number = 0;
    for (const QString &each : content.split(u'\n')) {
        ++number;
        const QString line = each.trimmed();
        if (line.isEmpty() || line.startsWith(u'#')) {
            continue;
        }
        if (const std::optional<QString> named = nameIn(line)) {
            const QString &name = *named;
            const auto known = std::ranges::find(groups.m_list, name, &StationGroup::name);
            if (name.isEmpty()) {
                remarks +=
                    remark(QT_TRANSLATE_NOOP("StationGroups", "Line %1: a group needs a name"), number);
            } else if (known == groups.m_list.end()) {
                groups.m_list.append({name, {}, {}});
                group = &groups.m_list.last();
            } else {
                group = &*known;
            }
        } else if (group == nullptr) {
            remarks += remark(
                QT_TRANSLATE_NOOP("StationGroups", "Line %1: it stands in front of the first group"), number);
        } else if (const QList<int> channels = channelsIn(line); !channels.isEmpty()) {
            group->channels = channels;
        } else {
            if (isMeantAsChannels(line)) {
                remarks +=
                    remark(QT_TRANSLATE_NOOP("StationGroups",
                                             "Line %1: behind \"=\" stand one to four inputs, from 1 to "
                                             "18, with commas between them"),
                           number);
            }
            group->members += line;
        }
    }
    return groups;
}

int StationGroups::groupOf(const QString &station) const
{
    const auto found = std::ranges::find_if(m_list, [&station](const StationGroup &group) {
        return std::ranges::any_of(group.members,
                                   [&](const QString &member) { return matches(member, station); });
    });
    return found == m_list.end() ? none : static_cast<int>(found - m_list.begin());
}

QString groupsFileOf(const QString &list)
{
    return fileBesideList(list, QLatin1StringView(".groups"));
}

} // namespace ktr
