#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr int widest = 130; ///< characters of a line that can be wrapped

QString contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// The text with everything in backquotes blotted out, at the same length.
QString withoutCode(QString text)
{
    static const QRegularExpression code(u"`[^`]*`"_s);
    for (auto match = code.match(text); match.hasMatch(); match = code.match(text)) {
        text.replace(match.capturedStart(), match.capturedLength(), QString(match.capturedLength(), u'x'));
    }
    return text;
}

/// The anchors of a document's headings, as the pages that show it make them, and those that it names itself.
QStringList anchorsOf(const QString &text)
{
    static const QRegularExpression heading(u"^#{1,6} (.*)$"_s, QRegularExpression::MultilineOption);
    static const QRegularExpression dropped(u"[^\\w\\- ]"_s, QRegularExpression::UseUnicodePropertiesOption);
    QStringList anchors;
    for (const QRegularExpressionMatch &match : heading.globalMatch(text)) {
        anchors += match.captured(1).toLower().remove(dropped).replace(u' ', u'-');
    }
    static const QRegularExpression named(u"\\{#([\\w-]+)\\}"_s);
    for (const QRegularExpressionMatch &match : named.globalMatch(text)) {
        anchors += match.captured(1);
    }
    return anchors;
}

/// Reads a document of headings, paragraphs, lists, tables and fenced code, and tells what is none of them.
class DocumentReader
{
public:
    explicit DocumentReader(QString path) : m_path(std::move(path)) {}

    QStringList read(const QString &text)
    {
        bool fenced = false;
        QStringList block;
        const QStringList lines = text.split(u'\n');
        for (const QString &line : lines) {
            ++m_line;
            if (line.size() > widest && !line.startsWith(u'|')) {
                fault(u"%1 characters of %2"_s.arg(line.size()).arg(widest));
            }
            if (line.startsWith(u"```") || fenced || line.trimmed().isEmpty() || line.startsWith(u"<!--")) {
                fenced = fenced != line.startsWith(u"```");
                readBlock(block);
                block.clear();
            } else {
                block += line;
            }
        }
        readBlock(block);
        if (fenced) {
            fault(u"code without an end"_s);
        }
        readLinks(text);
        return m_faults;
    }

private:
    void fault(const QString &what) { m_faults += u"%1, line %2: %3"_s.arg(m_path).arg(m_line).arg(what); }

    void readBlock(const QStringList &block)
    {
        if (block.isEmpty()) {
            return;
        }
        const QString first = block.front();
        if (first.startsWith(u'|')) {
            readTable(block);
        } else if (first.startsWith(u'#')) {
            if (block.size() > 1) {
                fault(u"no empty line behind a heading"_s);
            }
        } else {
            readText(block);
        }
    }

    void readTable(const QStringList &rows)
    {
        static const QRegularExpression separator(u"^(\\|:?-{3,}:?)+\\|$"_s);
        if (!separator.match(rows.value(1)).hasMatch()) {
            fault(u"a table without a header and its separator"_s);
        }
        for (const QString &row : rows) {
            if (!row.endsWith(u'|') || withoutCode(row).count(u'|') != rows.front().count(u'|')) {
                fault(u"a row of other cells than its header: "_s + row);
            }
        }
    }

    /// A paragraph, or a list of them.
    void readText(const QStringList &lines)
    {
        static const QRegularExpression begin(u"^ *- "_s);
        const bool isList = begin.match(lines.front()).hasMatch();
        QStringList texts;
        for (const QString &line : lines) {
            if (texts.isEmpty() || (isList && begin.match(line).hasMatch())) {
                texts += line;
            } else {
                texts.back() += u' ' + line;
            }
        }
        for (const QString &text : texts) {
            readParagraph(withoutCode(text));
        }
    }

    void readParagraph(const QString &text)
    {
        static const QRegularExpression heading(u"(^|\\s)#{1,6}\\s"_s);
        static const QRegularExpression row(u"(^|\\s)\\|(\\s|-{3})"_s);
        static const QRegularExpression item(u"[.:;,] - "_s);
        if (heading.match(text).hasMatch()) {
            fault(u"a heading inside a paragraph"_s);
        }
        if (row.match(text).hasMatch()) {
            fault(u"a table inside a paragraph"_s);
        }
        if (item.match(text).hasMatch()) {
            fault(u"a list inside a paragraph"_s);
        }
    }

    /// Links to other hosts are not followed.
    void readLinks(const QString &text)
    {
        static const QRegularExpression link(u"\\]\\(([^)#\\s]*)#?([^)\\s]*)\\)|src=\"([^\"]+)\""_s);
        const QFileInfo self(m_path);
        for (const QRegularExpressionMatch &match : link.globalMatch(text)) {
            const QString target = match.captured(1) + match.captured(3);
            const QString anchor = match.captured(2);
            if (target.contains(u"://")) {
                continue;
            }
            const QString file = target.isEmpty() ? m_path : self.dir().filePath(target);
            const QString linked = target.isEmpty() ? text : contentOf(file);
            if (!target.isEmpty() && !QFileInfo::exists(file)) {
                fault(u"a link to nothing: "_s + target);
            } else if (!anchor.isEmpty() && !anchorsOf(linked).contains(anchor)) {
                fault(u"a link to no heading: "_s + match.captured());
            }
        }
    }

    QString m_path;
    QStringList m_faults;
    int m_line = 0;
};

/// The number of the version, as CMakeLists.txt has it.
QString version()
{
    static const QRegularExpression project(u"project\\(KTRconfig VERSION ([0-9.]+)"_s);
    return project.match(contentOf(QStringLiteral(KTR_SOURCE_DIR "/CMakeLists.txt"))).captured(1);
}

/// Whether a text has that number, also as one of four parts, and not as a part of another one.
bool repeats(const QString &text, const QString &number)
{
    const QRegularExpression alone(
        u"(?<![\\d.])%1(\\.0)?(?!\\.?\\d)"_s.arg(QRegularExpression::escape(number)));
    return text.contains(number) && alone.match(text).hasMatch();
}

/// What is written by hand. Configurations tell which version wrote them.
QStringList sources()
{
    const QDir root(QStringLiteral(KTR_SOURCE_DIR));
    QStringList files;
    for (const QFileInfo &entry : root.entryInfoList(QDir::Files)) {
        files += entry.fileName();
    }
    for (const QString &folder : root.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QDirIterator below(root.filePath(folder), QDir::Files, QDirIterator::Subdirectories);
        while (!folder.startsWith(u"build") && below.hasNext()) {
            const QString file = root.relativeFilePath(below.next());
            const bool isWritten = file.startsWith(u"samples/") || file.startsWith(u"fuzz/corpus/");
            files += isWritten ? QStringList() : QStringList{file};
        }
    }
    return files;
}

} // namespace

class DocumentsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatHasLostItsFormIsTold_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("told");

        QTest::newRow("sound")
            << u"# A\n\nText, `## x | |---|`:\n\n| a | b |\n|---|---|\n| 1 | `|` |\n\n"
               "- one.\n- [two](#a)\n- [three](#c)\n\n## B {#c}\n\n```\n# no heading | |\n```\n"_s
            << QString();
        QTest::newRow("heading") << u"Text. ## Next Text"_s << u"a heading inside"_s;
        QTest::newRow("wrapped heading") << u"Text.\n## Next"_s << u"a heading inside"_s;
        QTest::newRow("heading alone") << u"# A\nText"_s << u"no empty line"_s;
        QTest::newRow("table") << u"Text: | a | b | |---|---| | 1 |"_s << u"a table inside"_s;
        QTest::newRow("rows") << u"Text:\n| a | b |\n|---|---|"_s << u"a table inside"_s;
        QTest::newRow("no header") << u"| 1 | 2 |\n| 3 | 4 |"_s << u"without a header"_s;
        QTest::newRow("cells") << u"| a | b |\n|---|---|\n| 1 |"_s << u"other cells"_s;
        QTest::newRow("list") << u"These: - one. - two."_s << u"a list inside"_s;
        QTest::newRow("wrapped list") << u"- one.\n\nThese:\n- two"_s << u"a list inside"_s;
        QTest::newRow("code") << u"```\ncode"_s << u"without an end"_s;
        QTest::newRow("file") << u"[there](missing.md)"_s << u"to nothing"_s;
        QTest::newRow("picture") << u"| a |\n|---|\n| ![](missing.png) |"_s << u"to nothing"_s;
        QTest::newRow("anchor") << u"# A\n\n[there](#b)"_s << u"no heading"_s;
        QTest::newRow("width") << QString(widest + 1, u'x') << u"characters of"_s;
    }
    void whatHasLostItsFormIsTold()
    {
        QFETCH(const QString, text);
        QFETCH(const QString, told);
        const QStringList faults = DocumentReader(u"sample.md"_s).read(text);
        QVERIFY2(faults.isEmpty() == told.isEmpty(), qPrintable(faults.join(u'\n')));
        QVERIFY2(faults.join(u'\n').contains(told), qPrintable(faults.join(u'\n')));
    }

    void documentsHaveTheirForm()
    {
        const QDir root(QStringLiteral(KTR_SOURCE_DIR));
        QStringList documents;
        for (const QString &name : root.entryList({u"*.md"_s}, QDir::Files)) {
            documents += root.filePath(name);
        }
        QDirIterator below(root.filePath(u"docs"_s), {u"*.md"_s}, QDir::Files, QDirIterator::Subdirectories);
        while (below.hasNext()) {
            documents += below.next();
        }
        QVERIFY(documents.size() >= 5);
        QStringList faults;
        for (const QString &document : documents) {
            const QString text = contentOf(document);
            QVERIFY2(!text.isEmpty(), qPrintable(document));
            faults += DocumentReader(document).read(text);
        }
        QVERIFY2(faults.isEmpty(), qPrintable(u'\n' + faults.join(u'\n')));
    }

    /// scripts/screenshots makes those that are named.
    void everyPictureIsShownSomewhere()
    {
        static const QRegularExpression named(u"images/([\\w-]+\\.png)"_s);
        QSet<QString> shown;
        for (const QString &file : sources()) {
            if (file.endsWith(u".md"_s)) {
                const QString text = contentOf(QStringLiteral(KTR_SOURCE_DIR "/") + file);
                for (const QRegularExpressionMatch &match : named.globalMatch(text)) {
                    shown += match.captured(1);
                }
            }
        }
        const QDir images(QStringLiteral(KTR_SOURCE_DIR "/docs/images"));
        const QStringList pictures = images.entryList(QDir::Files);
        QVERIFY(pictures.size() > 10);
        for (const QString &picture : pictures) {
            QVERIFY2(shown.contains(picture), qPrintable(picture));
        }
    }

    void theVersionStandsOnce()
    {
        QVERIFY(repeats(u"Nummer=\"2.1.0\""_s, u"2.1.0"_s) && repeats(u"since 2.1.0."_s, u"2.1.0"_s));
        QVERIFY(repeats(u"2.1.0.0"_s, u"2.1.0"_s));
        for (const QString &other : {u"12.1.0"_s, u"2.1.0.17"_s, u"1.2.1.0"_s, u"2.1.01"_s, u"2x1x0"_s}) {
            QVERIFY2(!repeats(other, u"2.1.0"_s), qPrintable(other));
        }
        const QString number = version();
        QVERIFY(!number.isEmpty());
        QStringList repeating;
        for (const QString &file : sources()) {
            if (repeats(contentOf(QStringLiteral(KTR_SOURCE_DIR "/") + file), number)) {
                repeating += file;
            }
        }
        // The history of the versions, and those of works of others, which may have the same number.
        for (const QString &may : {u"CHANGELOG.md"_s, u"docs/manual/de/news.md"_s,
                                   u"docs/manual/en/news.md"_s, u"docs/third-party.md"_s}) {
            repeating.removeAll(may);
        }
        QCOMPARE(repeating, QStringList{u"CMakeLists.txt"_s});
    }
};

QTEST_APPLESS_MAIN(DocumentsTest)
#include "documents_test.moc"
