#include "lang/translations.h"

#include <QCoreApplication>
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
