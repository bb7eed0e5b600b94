#include "opmode/tree/node_texts.h"

#include "config/channels.h"
#include "platform/text_rules.h"

#include <array>

namespace ktr {

namespace {

/// Any text, character by character.
std::string cleaned(const QString &text)
{
    QString clean;
    clean.reserve(text.size());
    for (qsizetype at = 0; at < text.size(); ++at) {
        const QChar c = text[at];
        if (c.isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate()) {
            clean += c;
            clean += text[++at];
        } else if (isXmlCharacter(c.unicode())) {
            clean += c;
        }
    }
    return clean.toStdString();
}

} // namespace

std::string storedText(const QString &text)
{
    // Messages of modules are printable ASCII, all but a few.
    std::string plain(static_cast<std::size_t>(text.size()), '\0');
    auto to = plain.begin();
    for (const QChar c : text) {
        if (c < u' ' || c > u'~') {
            return cleaned(text);
        }
        *to++ = static_cast<char>(c.unicode());
    }
    return plain;
}

QString textOf(std::string_view stored)
{
    const QString text = QString::fromUtf8(stored.data(), static_cast<qsizetype>(stored.size()));
    return stored.starts_with("\xEF\xBB\xBF") ? QChar(QChar::ByteOrderMark) + text : text;
}

StationCaptions stationCaptions(const TextTable &texts)
{
    return {texts.text(Text::Notifications), texts.text(Text::History), texts.text(Text::Ip)};
}

QString channelCaption(int channel)
{
    static const std::array<QString, channelCount> captions = {
        QStringLiteral("Digital In 1      "), QStringLiteral("Digital In 2      "),
        QStringLiteral("Digital In 3      "), QStringLiteral("Digital In 4      "),
        QStringLiteral("Digital In 5      "), QStringLiteral("Digital In 6      "),
        QStringLiteral("Digital In 7      "), QStringLiteral("Digital In 8      "),
        QStringLiteral("Analog In 1     "),   QStringLiteral("Analog In 2     "),
        QStringLiteral("Digital Out 1   "),   QStringLiteral("Digital Out 2   "),
        QStringLiteral("Analog Out 1  "),     QStringLiteral("Analog Out 2  "),
        QStringLiteral("BStZ DOut 1   "),     QStringLiteral("BStZ DOut 2   "),
        QStringLiteral("PT 1000 In 1   "),    QStringLiteral("PT 1000 In 2   ")};
    return channel >= 1 && channel <= channelCount ? captions[static_cast<std::size_t>(channel - 1)]
                                                   : QString();
}

QString branchKey(const QString &kennung, std::string_view branch)
{
    return kennung + u'/' + textOf(branch);
}

QString entryKey(const QString &kennung, std::string_view branch, const QString &entry)
{
    return branchKey(kennung, branch) + u'/' + entry;
}

} // namespace ktr
