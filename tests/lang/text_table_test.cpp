#include "lang/load_texts.h"
#include "lang/text_table.h"
#include "platform/files.h"
#include "platform/profile_file.h"

#include <QFile>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

using namespace ktr;
using namespace Qt::StringLiterals;

namespace {

constexpr int delivered = 175;
const QString deliveredFile = QStringLiteral(KTR_SOURCE_DIR "/data/language.ini");

} // namespace

class TextTableTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    QString m_path = m_folder.filePath(u"language.ini"_s);

private Q_SLOTS:
    void theDeliveredEnglishIsTheBuiltInOneLetterForLetter()
    {
        const TextTable builtIn;
        TextTable table;
        QVERIFY(LoadTexts(table, u"deutsch"_s, deliveredFile).message.isEmpty());
        QVERIFY(LoadTexts(table, u"english"_s, deliveredFile).source == LoadedTexts::Source::File);
        for (int number = 1; number <= TextTable::count; ++number) {
            QCOMPARE(table.text(number), builtIn.text(number));
        }
    }

    void theDeliveredGermanDiffersFromTheEnglishExceptInWordsCommonToBoth()
    {
        const QSet<int> common{13, 15, 16, 18, 20,  21,  24,  28,  30,  35,  38,  67, 74,
                               76, 89, 95, 99, 108, 110, 115, 125, 131, 136, 151, 160};
        const TextTable english;
        TextTable german;
        LoadTexts(german, u"deutsch"_s, deliveredFile);
        for (int number = 1; number <= delivered; ++number) {
            const QByteArray place = QByteArray::number(number);
            QVERIFY2(!german.text(number).isEmpty(), place);
            QVERIFY2((german.text(number) == english.text(number)) == common.contains(number), place);
        }
        QCOMPARE(german.text(3) + german.text(34) + german.text(43), u"ÖffnenSkalierung ungültig"_s);
        QCOMPARE(german.text(64), u"GW-Überschr."_s);
        QVERIFY(german.text(delivered + 1).isEmpty());
    }

    void valuesAreReadAsTheSystemReadsThem_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("value"); // of "Key" in "Section", at most 5 characters
        QByteArray garbage;
        for (int i = 0; i < 1000; ++i) {
            garbage += static_cast<char>(i * i / 7);
        }
        QTest::newRow("Windows-1252") << QByteArray("[Section]\r\nKey=\x80\xE4") << u"€ä"_s;
        QTest::newRow("UTF-8") << QByteArray("\xEF\xBB\xBF[Section]\nKey=\xC3\xA4") << u"ä"_s;
        const QByteArray wide("[\0S\0e\0c\0t\0i\0o\0n\0]\0\n\0K\0e\0y\0=\0\xE4\0\n", 31);
        QTest::newRow("UTF-16, cut in a character") << "\xFF\xFE" + wide << u"ä"_s;
        QTest::newRow("UTF-16, big end first") << QByteArray("\xFE\xFF\0", 3) + wide << u"ä"_s;
        QTest::newRow("case") << QByteArray("[SECTION]\nkEY=v") << u"v"_s;
        QTest::newRow("blanks") << QByteArray(" [ Section ] x\n\t Key = a b \t\n") << u"a b"_s;
        QTest::newRow("no-break space") << QByteArray("[Section]\nKey=a\xA0") << u"a\u00A0"_s;
        QTest::newRow("double quotes") << QByteArray("[Section]\nKey= \" a \" ") << u" a "_s;
        QTest::newRow("single quotes") << QByteArray("[Section]\nKey='\"a\"'") << u"\"a\""_s;
        QTest::newRow("quotes that differ") << QByteArray("[Section]\nKey=\"a'") << u"\"a'"_s;
        QTest::newRow("lone quote") << QByteArray("[Section]\nKey=\"") << u"\""_s;
        QTest::newRow("cut behind the quotes") << QByteArray("[Section]\nKey=\"abcdef\"") << u"abcde"_s;
        QTest::newRow("comments") << QByteArray("[Section]\n;Key=a\n ; [x]\nKey=b;c=d") << u"b;c=d"_s;
        QTest::newRow("first key") << QByteArray("[Section]\nKey=\nKey=b") << u""_s;
        QTest::newRow("first section") << QByteArray("[Section]\nk=a\n[x]\n[section]\nKey=b") << u""_s;
        QTest::newRow("before any section") << QByteArray("Key=a\n[Section]\nKey") << u""_s;
        QTest::newRow("header cut off") << QByteArray("[Section]\n[Other\nKey=a\n[") << u"a"_s;
        QTest::newRow("garbage") << garbage + "\n[Section]\n" + garbage + "\nKey=a" << u"a"_s;
    }
    void valuesAreReadAsTheSystemReadsThem()
    {
        QFETCH(QByteArray, content);
        QVERIFY(replaceFile(m_path, content));
        ProfileFile file;
        QVERIFY(file.load(m_path));
        QTEST(file.value(u"Section"_s, u"Key"_s, 5), "value");
        QCOMPARE(file.value(u"Section"_s, u"Key"_s, -1) + file.value(u"Section"_s, u";Key"_s, 5), QString());
    }

    void aTextEndsAt127CharactersAndWhatTheFileLacksIsEmpty()
    {
        QVERIFY(replaceFile(m_path, "[english]\nText200=" + QByteArray(200, 'x')));
        TextTable table;
        LoadTexts(table, u"english"_s, m_path);
        QCOMPARE(table.text(200), QString(127, u'x'));
        QCOMPARE(table.text(1), QString());
        LoadTexts(table, u"deutsch"_s, m_path);
        QCOMPARE(table.text(200), QString());
    }

    void withoutAFileTheEnglishTextsComeBackAndTheRestStays()
    {
        TextTable table;
        table.setText(delivered, u"old"_s);
        table.setText(delivered + 1, u"kept"_s);
        const LoadedTexts loaded = LoadTexts(table, u"deutsch"_s, m_folder.filePath(u"missing"_s));
        QVERIFY(loaded.source == LoadedTexts::Source::BuiltIn);
        QCOMPARE(loaded.message,
                 u"The File language.ini doesn't exists.\r\nUsing Standard Language (english)."_s);
        QCOMPARE(table.text(delivered), u"Open History"_s);
        QCOMPARE(table.text(delivered + 1), u"kept"_s);
    }

    void aFileOfMoreThan16MiBIsToldAndEmptiesTheTable()
    {
        QVERIFY(replaceFile(m_path, "[english]\nText1=File\n"));
        QVERIFY(QFile::resize(m_path, (16 << 20) + 1));
        TextTable table;
        const LoadedTexts loaded = LoadTexts(table, u"english"_s, m_path);
        QVERIFY(loaded.source == LoadedTexts::Source::UnreadableFile);
        QVERIFY(loaded.message.startsWith(m_path));
        QCOMPARE(table.text(1), QString());
    }
};

QTEST_GUILESS_MAIN(TextTableTest)
#include "text_table_test.moc"
