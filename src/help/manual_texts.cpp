#include "help/manual_texts.h"

#include <QCoreApplication>
#include <QFile>
#include <QRegularExpression>

#include <algorithm>

static void nameManual() // a resource of a library must be named, and not from inside a namespace
{
    Q_INIT_RESOURCE(manual);
}

namespace ktr {

namespace {

const QString german = QStringLiteral("de");
const QString english = QStringLiteral("en");

QByteArray builtInBytes(const QString &name)
{
    nameManual();
    QFile file(QStringLiteral(":/manual/") + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString builtInFile(const QString &name)
{
    return QString::fromUtf8(builtInBytes(name));
}

ManualTexts readManual(const QString &language)
{
    QList<std::pair<QString, QString>> chapters;
    const QString list = builtInFile(QStringLiteral("chapters"));
    for (const QString &chapter : list.split(u'\n', Qt::SkipEmptyParts)) {
        chapters.emplaceBack(chapter, builtInFile(language + u'/' + chapter + QLatin1String(".md")));
    }
    return ManualTexts(chapters);
}

/// Without marks: what is read, and searched.
QString plainManualText(QString text)
{
    static const QRegularExpression anchor(QStringLiteral("\\{#[\\w-]+\\}"));
    static const QRegularExpression link(QStringLiteral("!?\\[([^\\]]*)\\]\\([^)]*\\)"));
    static const QRegularExpression comment(QStringLiteral("<!--.*?-->"));
    static const QRegularExpression marks(QStringLiteral("[*`|\\\\\\[\\]]|^(?:> |- |-{3,})|-{3,}"),
                                          QRegularExpression::MultilineOption);
    text.remove(comment).remove(anchor).replace(link, QStringLiteral("\\1")).remove(marks);
    return text.simplified();
}

/// Up to the end of the first sentence.
QString firstSentence(const QString &plain)
{
    static const QRegularExpression sentence(QStringLiteral("^.{3,}?[^0-9 ][.!?](?=\\s+\\W?\\p{Lu}|$)"),
                                             QRegularExpression::UseUnicodePropertiesOption);
    const QRegularExpressionMatch match = sentence.match(plain);
    return match.hasMatch() ? match.captured() : plain;
}

/// The first sentence of the first paragraph that is one: no picture, table, code or comment.
QString summaryOf(const QString &markdown)
{
    static const QRegularExpression item(QStringLiteral("^(?:> |- |\\d+\\. )"));
    for (const QString &paragraph : markdown.split(QLatin1String("\n\n"), Qt::SkipEmptyParts)) {
        const QString text = paragraph.trimmed().remove(item);
        if (!text.isEmpty() && !text.startsWith(QLatin1String("![")) &&
            !text.startsWith(QLatin1String("<!--")) && !text.startsWith(QLatin1String("```")) &&
            !text.startsWith(u'|')) {
            return firstSentence(plainManualText(text));
        }
    }
    return {};
}

/// What follows a place up to the end of its paragraph or of its item of a list.
QString summaryBehind(const QString &markdown)
{
    static const QRegularExpression end(QStringLiteral("\n(?:\n|- |\\d+\\. |\\|)| \\|"));
    static const QRegularExpression lead(QStringLiteral("^[:;,.\\s]+"));
    QString text = plainManualText(markdown.left(markdown.indexOf(end))).remove(lead);
    if (!text.isEmpty()) {
        text[0] = text[0].toUpper();
    }
    return firstSentence(text);
}

} // namespace

ManualTexts::ManualTexts(const QList<std::pair<QString, QString>> &chapters)
{
    for (const auto &[chapter, markdown] : chapters) {
        m_chapters += chapter;
        m_markdown.insert(chapter, markdown);
        take(chapter, markdown);
    }
    for (qsizetype index = 0; index < m_parts.size(); ++index) {
        m_places.insert(m_parts[index].anchor, index);
    }
}

const ManualTexts &ManualTexts::in(const QString &language)
{
    static const ManualTexts inEnglish = readManual(english);
    if (language != german) {
        return inEnglish;
    }
    static const ManualTexts inGerman = readManual(german);
    return inGerman;
}

QString ManualTexts::presentLanguage()
{
    //: The language of the manual that is shown: "en", or "de" in German.
    const QString language = QCoreApplication::translate("Help", "en", "the manual's language");
    return language == german ? german : english;
}

void ManualTexts::take(const QString &chapter, const QString &markdown)
{
    static const QRegularExpression heading(QStringLiteral("^(#{1,6}) (.*?) *\\{#([\\w-]+)\\}$"));
    bool isCode = false;
    QString text;
    const auto endPart = [this, &chapter, &text] {
        if (!m_parts.isEmpty() && m_parts.back().chapter == chapter) {
            m_parts.back().text = plainManualText(text);
            m_parts.back().summary = summaryOf(text);
            takePlaces(chapter, text);
        }
        text.clear();
    };
    for (const QString &line : markdown.split(u'\n')) {
        isCode = isCode != line.startsWith(QLatin1String("```"));
        const QRegularExpressionMatch match = heading.match(line);
        if (isCode || !match.hasMatch()) {
            text += line + u'\n';
            continue;
        }
        endPart();
        m_parts += ManualPart{
            chapter, match.captured(3), match.captured(2), static_cast<int>(match.capturedLength(1)), {}, {}};
    }
    endPart();
}

void ManualTexts::takePlaces(const QString &chapter, const QString &markdown)
{
    static const QRegularExpression place(QStringLiteral("\\[([^\\[\\]]*)\\]\\{#([\\w-]+)\\}"));
    for (const QRegularExpressionMatch &match : place.globalMatch(markdown)) {
        m_parts += ManualPart{chapter,
                              match.captured(2),
                              plainManualText(match.captured(1)),
                              0,
                              {},
                              summaryBehind(markdown.mid(match.capturedEnd()))};
    }
}

const ManualPart *ManualTexts::part(const QString &anchor) const
{
    const auto found = m_places.constFind(anchor);
    return found == m_places.cend() ? nullptr : &m_parts[*found];
}

QList<const ManualPart *> ManualTexts::find(const QString &words) const
{
    const QStringList wanted = words.simplified().split(u' ', Qt::SkipEmptyParts);
    QList<const ManualPart *> inTitle;
    QList<const ManualPart *> inText;
    if (wanted.isEmpty()) {
        return {};
    }
    for (const ManualPart &part : m_parts) {
        const auto hasAll = [&wanted](const QString &text) {
            return std::ranges::all_of(
                wanted, [&text](const QString &word) { return text.contains(word, Qt::CaseInsensitive); });
        };
        if (hasAll(part.title)) {
            inTitle += &part;
        } else if (hasAll(part.title + u' ' + part.text)) {
            inText += &part;
        }
    }
    return inTitle + inText;
}

QByteArray manualPicture(const QString &fileName)
{
    return builtInBytes(QStringLiteral("images/") + fileName);
}

} // namespace ktr
