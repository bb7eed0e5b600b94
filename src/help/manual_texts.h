#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

namespace ktr {

/// A chapter of the manual, a part of one, or a place inside a text that has an anchor of its own.
struct ManualPart
{
    QString chapter; ///< its file without ".md", which is its anchor, too
    QString anchor;
    QString title;
    int level = 0;   ///< 1: the chapter; 0: a place inside a text
    QString text;    ///< plain, up to the next heading; empty for a place inside a text
    QString summary; ///< plain, the first sentence of its text; of a place what follows in its paragraph
};

/// The manual in one language, as it is built into the program.
class ManualTexts
{
public:
    /// "de" for German, anything else is English.
    static const ManualTexts &in(const QString &language);
    /// The language that the program's own texts have now: "de" or "en".
    static QString presentLanguage();

    /// Takes chapters apart, in this order: the name, and its Markdown.
    explicit ManualTexts(const QList<std::pair<QString, QString>> &chapters);

    const QStringList &chapters() const { return m_chapters; }
    /// All parts in the order of the manual.
    const QList<ManualPart> &parts() const { return m_parts; }
    /// The Markdown of a chapter; empty when there is none.
    QString markdown(const QString &chapter) const { return m_markdown.value(chapter); }
    /// Null when no part has that anchor.
    const ManualPart *part(const QString &anchor) const;
    bool has(const QString &anchor) const { return m_places.contains(anchor); }

    /// The parts that have all words of a text, whatever their case: those that have them in the title first.
    QList<const ManualPart *> find(const QString &words) const;

private:
    void take(const QString &chapter, const QString &markdown);
    void takePlaces(const QString &chapter, const QString &markdown);

    QStringList m_chapters;
    QHash<QString, QString> m_markdown;
    QList<ManualPart> m_parts;
    QHash<QString, qsizetype> m_places; ///< by anchor
};

/// A picture of the manual by its file name, as it is built in; empty when there is none.
QByteArray manualPicture(const QString &fileName);

} // namespace ktr
