#include "config/field_guide.h"
#include "config/fields.h"
#include "lang/load_texts.h"
#include "lang/translations.h"

#include <QDir>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QTest>
#include <QXmlStreamReader>

#include <type_traits>

using namespace Qt::StringLiterals;
using namespace ktr;

namespace {

constexpr int widest = 130; ///< characters of a line
const QStringList languages = {u"en"_s, u"de"_s};

QString contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// Whether a paragraph's line ends although the first word of the next one would fit on it by far.
bool isTorn(const QString &line, const QString &next, bool isCode)
{
    static const QRegularExpression apart(u"^(#|\\||!|<|>|`|- |\\d+\\. |$)"_s);
    constexpr qsizetype narrow = 90;
    const qsizetype needed = line.size() + 1 + next.trimmed().section(u' ', 0, 0).size();
    const QString trimmed = next.trimmed();
    return !isCode && !line.isEmpty() && !line.startsWith(u'|') && !line.startsWith(u'#') &&
           !line.startsWith(u'!') && !line.startsWith(u'<') && !line.startsWith(u"```") &&
           !apart.match(trimmed).hasMatch() && needed < narrow;
}

/// A chapter or a part of one.
struct Part
{
    QString chapter;
    int level = 0; ///< 1: the chapter itself
    QString title;
    QString anchor;
    QString text; ///< up to the next heading

    QString place() const { return u"%1 %2#%3"_s.arg(QString(level, u'#'), chapter, anchor); }
};

/// The manual in one language, read from the Markdown of its chapters.
class Manual
{
public:
    void add(const QString &chapter, const QString &text)
    {
        m_chapters += chapter;
        static const QRegularExpression heading(u"^(#{1,6}) (.*?) *(?:\\{#([\\w-]+)\\})?$"_s);
        static const QRegularExpression placeholder(u"TODO|TBD|FIXME|XXX|\\?\\?\\?|Lorem ipsum"_s);
        bool isCode = false;
        int number = 0;
        QString before;
        for (const QString &line : text.split(u'\n')) {
            ++number;
            isCode = isCode != line.startsWith(u"```");
            const auto match = heading.match(line);
            if (!isCode && match.hasMatch()) {
                m_parts += Part{chapter,
                                static_cast<int>(match.capturedLength(1)),
                                match.captured(2),
                                match.captured(3),
                                {}};
            } else if (m_parts.isEmpty() || m_parts.back().chapter != chapter) {
                fault(chapter, u"begins with something else than its heading"_s);
                m_parts += Part{chapter, 1, {}, chapter, {}};
            } else {
                m_parts.back().text += line + u'\n';
            }
            if (line.size() > widest && !line.startsWith(u'|')) {
                fault(chapter, u"line %1 has %2 characters"_s.arg(number).arg(line.size()));
            }
            if (isTorn(before, line, isCode)) {
                fault(chapter, u"line %1 is torn"_s.arg(number - 1));
            }
            before = line;
            if (placeholder.match(line).hasMatch()) {
                fault(chapter, u"a placeholder is left in line %1"_s.arg(number));
            }
        }
    }

    /// What is wrong with the manual by itself. Pictures are looked for from `folder` on.
    QStringList faults(const QString &folder)
    {
        QMap<QString, QString> anchors; ///< and the chapters that have them
        for (const Part &part : m_parts) {
            static const QRegularExpression inText(u"\\]\\{#([\\w-]+)\\}"_s);
            if (part.anchor.isEmpty()) {
                fault(part.chapter, u"\"%1\" has no anchor"_s.arg(part.title));
            } else if (part.level == 1 && part.anchor != part.chapter) {
                fault(part.chapter, u"its anchor is \"%1\""_s.arg(part.anchor));
            }
            QStringList own{part.anchor};
            for (const auto &match : inText.globalMatch(part.text)) {
                own += match.captured(1);
            }
            for (const QString &anchor : own) {
                if (anchors.contains(anchor)) {
                    fault(part.chapter, u"the anchor \"%1\" stands twice"_s.arg(anchor));
                }
                anchors.insert(anchor, part.chapter);
            }
        }
        for (const Part &part : m_parts) {
            checkLinks(part, anchors, folder);
        }
        return m_faults;
    }

    /// What it does not say about fields; their labels are those of its language.
    QStringList missing(const QList<GuideField> &fields) const
    {
        QStringList faults;
        for (const GuideField &field : fields) {
            const auto part = std::ranges::find(m_parts, field.anchor, &Part::anchor);
            if (part == m_parts.end()) {
                faults += u"nothing about \"%1\" (%2)"_s.arg(field.label, field.anchor);
            } else if (!part->title.startsWith(field.label)) {
                faults += u"\"%1\" is called \"%2\""_s.arg(field.label, part->title);
            } else if (part->text.simplified().size() < 20) {
                faults += u"no text about \"%1\" (%2)"_s.arg(field.label, field.anchor);
            }
        }
        for (const QString &page : guidePages()) {
            const auto part = std::ranges::find(m_parts, page, &Part::anchor);
            if (part == m_parts.end() || !part->text.contains(u"<!-- fields: %1 -->"_s.arg(page))) {
                faults += u"no table of the page \"%1\""_s.arg(page);
            }
        }
        return faults;
    }

    /// Its parts, tables of fields and pictures without words, which are the same in every language.
    QStringList frame() const
    {
        static const QRegularExpression mark(
            u"\\]\\{#[\\w-]+\\}|<!-- .* -->|!\\[[^\\]]*\\]\\(([^)]*?)(-(en|de)-(light|dark))?\\.png|\\n\\d+\\. |\\n- |\\n\\|"_s);
        QStringList lines;
        for (const Part &part : m_parts) {
            QString line = part.place();
            for (const auto &match : mark.globalMatch(u'\n' + part.text)) {
                line += u' ' + (match.hasCaptured(1) ? match.captured(1) : match.captured().trimmed());
            }
            lines += line;
        }
        return lines;
    }

private:
    void fault(const QString &chapter, const QString &what) { m_faults += chapter + u".md: "_s + what; }

    void checkLinks(const Part &part, const QMap<QString, QString> &anchors, const QString &folder)
    {
        static const QRegularExpression link(u"(!?)\\[[^\\]]*\\]\\(([^)#\\s]*)#?([^)\\s]*)\\)"_s);
        for (const auto &match : link.globalMatch(part.text)) {
            const QString target = match.captured(2);
            const QString anchor = match.captured(3);
            if (!match.captured(1).isEmpty()) {
                if (!QFile::exists(QDir(folder).filePath(target))) {
                    fault(part.chapter, u"there is no picture "_s + target);
                }
                continue;
            }
            const QString chapter = target.isEmpty() ? part.chapter : QString(target).remove(u".md"_s);
            if (!m_chapters.contains(chapter)) {
                fault(part.chapter, u"there is no chapter "_s + target);
            } else if (!anchor.isEmpty() && anchors.value(anchor) != chapter) {
                fault(part.chapter, u"there is no %1#%2"_s.arg(chapter, anchor));
            }
        }
    }

    QStringList m_chapters;
    QList<Part> m_parts;
    QStringList m_faults;
};

TextTable textsIn(const QString &language)
{
    TextTable texts;
    const LoadedTexts loaded = LoadTexts(texts, language == u"de" ? u"deutsch"_s : u"english"_s,
                                         QStringLiteral(KTR_SOURCE_DIR "/data/language.ini"));
    return loaded.source == LoadedTexts::Source::File ? texts : TextTable();
}

/// All that the program can show in a language: the table of texts and the translations.
class ShownTexts
{
public:
    explicit ShownTexts(const QString &language)
    {
        const bool isGerman = language == u"de";
        const TextTable table = textsIn(language);
        for (int number = 1; number <= TextTable::count; ++number) {
            add(table.text(static_cast<Text>(number)));
        }
        add(table.text(Text::Ethernet) + u' ' + table.text(Text::PlusGsm));
        add(table.text(Text::Ethernet) + u' ' + table.text(Text::ExclusiveInBrackets));
        add(table.text(Text::AnalogOut) + u" 1"_s);
        add(table.text(Text::AnalogOut) + u" 2"_s);
        QFile file(QStringLiteral(KTR_SOURCE_DIR "/translations/ktrconfig_de.ts"));
        if (!file.open(QIODevice::ReadOnly)) {
            return;
        }
        for (QXmlStreamReader reader(&file); !reader.atEnd(); reader.readNext()) {
            const bool isWanted = isGerman
                                      ? reader.name() == u"translation" || reader.name() == u"numerusform"
                                      : reader.name() == u"source";
            if (reader.isStartElement() && isWanted) {
                add(reader.readElementText(QXmlStreamReader::IncludeChildElements));
            }
        }
    }

    /// Whether a text is one of them, or a part that nobody takes for another. "…" stands for what differs.
    bool have(const QString &quoted) const
    {
        constexpr qsizetype unmistakable = 12;
        const QString text = plain(quoted);
        return m_texts.contains(text) ||
               (text.size() > unmistakable &&
                std::ranges::any_of(m_texts, [&text](const QString &each) { return each.contains(text); }));
    }
    qsizetype count() const { return m_texts.size(); }

private:
    /// Without what is not seen, or ends a caption.
    static QString plain(const QString &text)
    {
        static const QRegularExpression part(u"%L?[0-9]"_s);
        static const QRegularExpression end(u"[.:,]+$"_s);
        return QString(text).remove(u'&').replace(part, u"…"_s).simplified().remove(end).trimmed();
    }
    void add(const QString &text) { m_texts += plain(text); }

    QSet<QString> m_texts;
};

/// What stands in the quotation marks of a language, outside of code.
QStringList quotedIn(const QString &text, const QString &language)
{
    static const QRegularExpression code(u"```.*?```|`[^`]*`"_s,
                                         QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpression quotes(language == u"de" ? u"„([^“]*)“"_s : u"\"([^\"]*)\""_s);
    QStringList quoted;
    for (const auto &match : quotes.globalMatch(QString(text).remove(code))) {
        quoted += match.captured(1).simplified();
    }
    return quoted;
}

QDir manualFolder()
{
    return QDir(QStringLiteral(KTR_SOURCE_DIR "/docs/manual"));
}

QStringList chapters()
{
    return contentOf(manualFolder().filePath(u"chapters"_s)).split(u'\n', Qt::SkipEmptyParts);
}

Manual manualIn(const QString &language)
{
    Manual manual;
    for (const QString &chapter : chapters()) {
        manual.add(chapter, contentOf(manualFolder().filePath(language + u'/' + chapter + u".md"_s)));
    }
    return manual;
}

} // namespace

/// The sources of the manual; what scripts/manual makes of them is not looked at.
class ManualTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void faultsAreTold_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("told");

        QTest::newRow("sound") << u"# A {#a}\n\n[b](#b) [a](a.md) [c](a.md#c)\n\n## B {#b}\n\n[c]{#c} `#d`"_s
                               << QString();
        QTest::newRow("no heading") << u"Text\n# A {#a}"_s << u"begins with something else"_s;
        QTest::newRow("chapter") << u"# A {#b}"_s << u"its anchor is \"b\""_s;
        QTest::newRow("no anchor") << u"# A {#a}\n\n## B"_s << u"\"B\" has no anchor"_s;
        QTest::newRow("twice") << u"# A {#a}\n\n[a]{#a}"_s << u"\"a\" stands twice"_s;
        QTest::newRow("dead link") << u"# A {#a}\n\n[b](b.md)"_s << u"no chapter b.md"_s;
        QTest::newRow("dead anchor") << u"# A {#a}\n\n[b](a.md#b)"_s << u"no a#b"_s;
        QTest::newRow("dead anchor here") << u"# A {#a}\n\n[b](#b)"_s << u"no a#b"_s;
        QTest::newRow("picture") << u"# A {#a}\n\n![](missing.png)"_s << u"no picture missing.png"_s;
        QTest::newRow("placeholder") << u"# A {#a}\n\nTODO"_s << u"a placeholder is left in line 3"_s;
        QTest::newRow("torn") << u"# A {#a}\n\nShort\nline of a paragraph\n"_s << u"line 3 is torn"_s;
        QTest::newRow("width") << u"# A {#a}\n\n"_s + QString(widest + 1, u'x') << u"line 3 has 131"_s;
    }
    void faultsAreTold()
    {
        QFETCH(const QString, text);
        QFETCH(const QString, told);
        Manual manual;
        manual.add(u"a"_s, text);
        const QStringList faults = manual.faults({});
        QVERIFY2(faults.isEmpty() == told.isEmpty(), qPrintable(faults.join(u'\n')));
        QVERIFY2(faults.join(u'\n').contains(told), qPrintable(faults.join(u'\n')));
    }

    void fieldsWithoutTextAreTold()
    {
        const GuideField field{.page = {},
                               .anchor = u"f"_s,
                               .label = u"Field"_s,
                               .meaning = {},
                               .values = {},
                               .whenNew = {},
                               .places = {}};
        const auto told = [&](const QString &text) {
            Manual manual;
            manual.add(u"a"_s, text);
            return manual.missing({field}).first();
        };
        const QString tables = u"no table of the page \"gsm\""_s;
        QCOMPARE(told(u"# A {#a}\n\n# Field {#f}\n\nMore than a few words.\n"_s), tables);
        QCOMPARE(told(u"# A {#a}\n"_s), u"nothing about \"Field\" (f)"_s);
        QCOMPARE(told(u"# A {#a}\n\n# Field {#f}\n\n# B {#b}\n"_s), u"no text about \"Field\" (f)"_s);
        QCOMPARE(told(u"# A {#a}\n\n# Fold {#f}\n\nMore than a few words.\n"_s),
                 u"\"Field\" is called \"Fold\""_s);
    }

    void languagesThatDifferAreTold()
    {
        const auto frameOf = [](const QString &text) {
            Manual manual;
            manual.add(u"a"_s, text);
            return manual.frame();
        };
        const QStringList frame = frameOf(u"# A {#a}\n\n- x\n- y\n\n![one](a-en-light.png)\n"_s);
        QCOMPARE(frameOf(u"# B {#a}\n\n- u\n- v\n\n![ein](a-de-dark.png)\n"_s), frame);
        QVERIFY(frameOf(u"# B {#a}\n\n- u\n\n![ein](a-de-dark.png)\n"_s) != frame);
        QVERIFY(frameOf(u"# B {#a}\n\n- u\n- v\n\n![ein](b-de-dark.png)\n"_s) != frame);
        QVERIFY(frameOf(u"# B {#a}\n\n- u\n- v\n"_s) != frame);
        QVERIFY(frameOf(u"## B {#a}\n\n- u\n- v\n\n![ein](a-de-dark.png)\n"_s) != frame);
    }

    void theManualIsWhole_data()
    {
        QTest::addColumn<QString>("language");
        for (const QString &language : languages) {
            QTest::addRow("%s", qPrintable(language)) << language;
        }
    }
    void theManualIsWhole()
    {
        QFETCH(const QString, language);
        QStringList files;
        for (const QString &chapter : chapters()) {
            files += chapter + u".md"_s;
        }
        files.sort();
        const QDir folder(manualFolder().filePath(language));
        QCOMPARE(folder.entryList({u"*.md"_s}, QDir::Files, QDir::Name), files);

        Translations translations;
        translations.use(language == u"de" ? u"deutsch"_s : u"english"_s);
        Manual manual = manualIn(language);
        const QStringList faults =
            manual.faults(folder.path()) + manual.missing(guideFields(textsIn(language)));
        QVERIFY2(faults.isEmpty(), qPrintable(u'\n' + faults.join(u'\n')));
    }

    void whatIsQuotedStandsInTheProgram_data() { theManualIsWhole_data(); }
    void whatIsQuotedStandsInTheProgram()
    {
        QFETCH(const QString, language);
        const ShownTexts shown(language);
        QVERIFY(shown.count() > 1000);
        QVERIFY(!shown.have(u"no text of the program"_s));
        QStringList faults;
        qsizetype quotes = 0;
        for (const QString &chapter : chapters()) {
            const QString text = contentOf(manualFolder().filePath(language + u'/' + chapter + u".md"_s));
            for (const QString &quoted : quotedIn(text, language)) {
                ++quotes;
                if (!shown.have(quoted)) {
                    faults += u"%1.md: \"%2\" stands nowhere in the program"_s.arg(chapter, quoted);
                }
            }
        }
        QVERIFY(quotes > 100);
        QVERIFY2(faults.isEmpty(), qPrintable(u'\n' + faults.join(u'\n')));
    }

    void theLanguagesDoNotDiffer()
    {
        const QStringList english = manualIn(u"en"_s).frame();
        const QStringList german = manualIn(u"de"_s).frame();
        for (qsizetype part = 0; part < std::min(english.size(), german.size()); ++part) {
            QCOMPARE(german[part], english[part]);
        }
        QCOMPARE(german.size(), english.size());
    }

    void numbersHaveTheDecimalMarkOfTheLanguage()
    {
        static const QRegularExpression code(u"```.*?```|`[^`]*`|\\]\\([^)]*\\)"_s,
                                             QRegularExpression::DotMatchesEverythingOption);
        static const QRegularExpression comma(u"(?<![\\d.,])\\d+,\\d{1,2}(?![\\d,])"_s);
        static const QRegularExpression point(u"(?<![\\d.,])\\d+\\.\\d{1,2}(?![\\d.,])"_s);
        QVERIFY(u"at 0,5 V"_s.contains(comma) && !u"10,384 stations"_s.contains(comma));
        QVERIFY(u"bei 0.5 V"_s.contains(point) && !u"10.0.0.17"_s.contains(point));
        for (const QString &language : languages) {
            for (const QString &chapter : chapters()) {
                const QString path = manualFolder().filePath(language + u'/' + chapter + u".md"_s);
                const auto found = (language == u"de" ? point : comma).match(contentOf(path).remove(code));
                QVERIFY2(!found.hasMatch(), qPrintable(path + u": "_s + found.captured()));
            }
        }
    }

    void whatIsNewIsToldOfEachVersion()
    {
        static const QRegularExpression version(u"^## (?:Version )?(\\d+\\.\\d+\\.\\d+)"_s,
                                                QRegularExpression::MultilineOption);
        const auto versionsIn = [](const QString &text) {
            QStringList versions;
            for (const auto &match : version.globalMatch(text)) {
                versions += match.captured(1);
            }
            return versions;
        };
        const QStringList released = versionsIn(contentOf(QStringLiteral(KTR_SOURCE_DIR "/CHANGELOG.md")));
        QVERIFY(!released.isEmpty());
        for (const QString &language : languages) {
            const QString news = contentOf(manualFolder().filePath(language + u"/news.md"_s));
            QCOMPARE(versionsIn(news), released);
            for (const QString &forDevelopers : {u"scripts/"_s, u".cpp"_s, u"docs/"_s, u"CONTRIBUTING"_s}) {
                QVERIFY2(!news.contains(forDevelopers), qPrintable(forDevelopers));
            }
        }
    }

    void everyFieldHasATipWithItsRange_data() { theManualIsWhole_data(); }
    void everyFieldHasATipWithItsRange()
    {
        QFETCH(const QString, language);
        Translations translations;
        translations.use(language == u"de" ? u"deutsch"_s : u"english"_s);
        int fields = 0;
        const Configuration any;
        visitRecords(any, [&]<class ConstRecord>(const Group &group, ConstRecord &, int) {
            for (const auto &field : fieldsOf<std::remove_const_t<ConstRecord>>()) {
                ++fields;
                const QString place = group.place(field.xmlName, 0);
                const QString meaning = meaningText(field);
                QVERIFY2(meaning.split(u' ').size() >= 3 && !meaning.contains(u'%'), qPrintable(place));
                const QString tip = tipText(field);
                QVERIFY2(tip.startsWith(meaning + u"; "_s) && tip.endsWith(valuesText(field)) &&
                             !tip.contains(u'%'),
                         qPrintable(place + u": "_s + tip));
                if (field.range && field.isNumber() && field.range->lowest > -Range::noEnd) {
                    QVERIFY2(tip.contains(QString::number(field.range->lowest)), qPrintable(tip));
                }
                if (field.unit == Unit::Minutes) {
                    QVERIFY2(tip.contains(u"inute"_s), qPrintable(tip));
                } else if (field.unit == Unit::OfChannel) {
                    QVERIFY2(tip.contains(language == u"de" ? u"Einheit"_s : u"unit"_s), qPrintable(tip));
                }
            }
        });
        QVERIFY(fields > 100);
    }

    void aTableTellsWhatTheFieldIs()
    {
        const QString table = guideTable(u"limit-values"_s, textsIn(u"en"_s));
        QVERIFY(
            table.contains(u"| [Hysteresis](#Txt_gw_hysterese) | How far the value must fall or rise back | "
                           "number from 0, in the unit of the channel; may be empty | 0 | "
                           "`Grenzwert0…15 Hysterese` |\n"_s));
        QVERIFY(table.contains(u"| one of those offered | \\< | `Grenzwert0…15 Vergleich` |"_s));
        QVERIFY(guideTable(u"ip"_s, textsIn(u"en"_s))
                    .contains(u"`Digitaleingang0…3 Invers`, `BStZDigOut0…1 Invers` |"_s));

        Translations translations;
        translations.use(u"deutsch"_s);
        QVERIFY(
            guideTable(u"gsm"_s, textsIn(u"de"_s))
                .contains(u"| [Rufnummer](#txt_gsm_num) | Die Nummer, die das Modul benachrichtigt, "
                          "in internationaler Form | + und 7 bis 15 Ziffern | +49 | `GSM-Nummer0…5` |\n"_s));
    }
};

QTEST_GUILESS_MAIN(ManualTest)
#include "manual_test.moc"
