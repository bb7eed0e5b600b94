#include "lang/languages.h"
#include "lang/text_table.h"
#include "lang/translations.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

using namespace ktr;
using namespace Qt::StringLiterals;

namespace {

struct Message
{
    QString source;
    QStringList translations; ///< one for each number form
    bool finished = true;
};

Message readMessage(QXmlStreamReader &xml)
{
    Message message;
    const auto atEnd = [&xml](QLatin1String element) { return xml.isEndElement() && xml.name() == element; };
    while (!xml.atEnd() && !atEnd("message"_L1)) {
        xml.readNext();
        if (!xml.isStartElement()) {
            continue;
        }
        if (xml.name() == "source"_L1) {
            message.source = xml.readElementText();
        } else if (xml.name() == "translation"_L1) {
            message.finished = !xml.attributes().hasAttribute(u"type"_s);
            message.translations += xml.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
        }
    }
    return message;
}

QStringList placeholders(const QString &text)
{
    static const QRegularExpression pattern(u"%L?(\\d+|n)|<[^>]+>|\\.\\.\\."_s);
    QStringList found;
    for (const QRegularExpressionMatch &match : pattern.globalMatch(text)) {
        found += match.captured();
    }
    found.sort();
    return found;
}

QString problem(const char *text)
{
    return QCoreApplication::translate("Problems", text);
}

} // namespace

class TranslationsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyTextInTheSourcesHasItsGerman()
    {
        const QString lupdate = QStringLiteral(KTR_LUPDATE);
        QVERIFY2(QFileInfo(lupdate).isExecutable(), "lupdate is missing: scripts/setup installs it");
        QTemporaryDir folder;
        const QString copy = folder.filePath(u"ktrconfig_de.ts"_s);
        QVERIFY(QFile::copy(QStringLiteral(KTR_SOURCE_DIR "/translations/ktrconfig_de.ts"), copy));
        QProcess process;
        process.start(lupdate, {u"-silent"_s, QStringLiteral(KTR_SOURCE_DIR "/src"), u"-I"_s,
                                QStringLiteral(KTR_SOURCE_DIR "/src"), u"-extensions"_s, u"cpp,h"_s,
                                u"-locations"_s, u"none"_s, u"-no-obsolete"_s, u"-ts"_s, copy});
        QVERIFY(process.waitForFinished());
        QVERIFY2(process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0,
                 process.readAllStandardError());

        QFile file(copy);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QXmlStreamReader xml(&file);
        QStringList open;
        int count = 0;
        while (!xml.atEnd()) {
            xml.readNext();
            if (!xml.isStartElement() || xml.name() != "message"_L1) {
                continue;
            }
            const Message message = readMessage(xml);
            ++count;
            const bool sound = message.finished && !message.translations.join(QString()).isEmpty();
            if (!sound) {
                open += u"no German for: "_s + message.source;
            } else if (placeholders(message.translations.constFirst()) != placeholders(message.source) &&
                       !message.source.contains("%n"_L1)) {
                open += u"other placeholders than in: "_s + message.source;
            }
        }
        QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
        QVERIFY2(open.isEmpty(), qPrintable(open.join(u'\n') + u"\n(scripts/translations adds them)"_s));
        QVERIFY(count > 0);
    }

    void anotherLanguageIsOneFileInAFolder()
    {
        const QTemporaryDir folder;
        QVERIFY(QDir(folder.path()).mkdir(u"languages"_s));
        const auto inFolder = [&folder](const char *name) {
            return folder.filePath("languages/"_L1 + QLatin1String(name));
        };
        QFile source(folder.filePath(u"ktrconfig_fr.ts"_s));
        QVERIFY(source.open(QIODevice::WriteOnly));
        source.write("<TS version='2.1' language='fr' sourcelanguage='en'><context><name>language.ini</name>"
                     "<message><source>LV exceeded</source><comment>Text64</comment>"
                     "<translation>trop haut</translation></message>"
                     "<message><source>LV exceeded</source><comment>Text65</comment>"
                     "<translation>trop bas</translation></message></context>"
                     "<context><name>Problems</name><message><source>is no number</source>"
                     "<translation>n'est pas un nombre</translation></message></context></TS>");
        source.close();
        QCOMPARE(QProcess::execute(QStringLiteral(KTR_LRELEASE),
                                   {u"-silent"_s, source.fileName(), u"-qm"_s, inFolder("ktrconfig_fr.qm")}),
                 0);
        QFile damaged(inFolder("ktrconfig_xx.qm"));
        QVERIFY(damaged.open(QIODevice::WriteOnly));
        damaged.write("no texts");
        damaged.close();

        const QList<AddedLanguage> added = addedLanguages(folder.path());
        QCOMPARE(added.size(), 2);
        QCOMPARE(added[0].name(), u"Français"_s);
        QVERIFY(!addedLanguage(u"deutsch"_s, folder.path()));
        QTranslator texts;
        QVERIFY(texts.load(added[0].file));
        TextTable table;
        takeTexts(table, texts);
        QCOMPARE(table.text(Text::LimitExceeded), u"trop haut"_s);
        QCOMPARE(table.text(Text::LimitUndershot), u"trop bas"_s);
        QCOMPARE(table.text(Text::File), u"File"_s); // English where it has none

        Translations translations;
        QVERIFY(translations.use(u"deutsch"_s));
        QVERIFY(translations.use(added[0].code, added[0].file));
        QCOMPARE(problem("is no number"), u"n'est pas un nombre"_s);
        QCOMPARE(problem("is not chosen"), u"is not chosen"_s);
        QVERIFY(!translations.use(added[1].code, added[1].file));
        QCOMPARE(problem("is no number"), u"is no number"_s);
        QVERIFY(translations.use(u"deutsch"_s));
        QCOMPARE(problem("is no number"), u"ist keine Zahl"_s);
    }

    void theLanguageOfOurTextsAndTheToolkitsChangesWhileRunning()
    {
        const auto toolkit = [] { return QCoreApplication::translate("QPlatformTheme", "Cancel"); };
        Translations translations;
        QCOMPARE(problem("is no number"), u"is no number"_s);
        for (int round = 0; round < 2; ++round) {
            translations.use(u"deutsch"_s);
            translations.use(u"deutsch"_s);
            QCOMPARE(problem("is no number"), u"ist keine Zahl"_s);
            QCOMPARE(toolkit(), u"Abbrechen"_s);
            translations.use(u"english"_s);
            QCOMPARE(problem("is no number"), u"is no number"_s);
            QCOMPARE(toolkit(), u"Cancel"_s);
        }
    }
};

QTEST_MAIN(TranslationsTest)
#include "translations_test.moc"
