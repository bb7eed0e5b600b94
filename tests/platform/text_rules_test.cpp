#include "platform/text_rules.h"
#include "support/environment.h"

#include <QTest>

using namespace ktr;
using namespace Qt::StringLiterals;

class TextRulesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void leadingNumbersAreRead_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("number");
        QTest::newRow("plain") << "12" << 12.0;
        QTest::newRow("followed by letters") << "12abc" << 12.0;
        QTest::newRow("blanks inside") << " 1 2.5" << 12.5;
        QTest::newRow("comma ends it") << "2,5" << 2.0;
        QTest::newRow("exponent") << "1e3x" << 1000.0;
        QTest::newRow("exponent without digits") << "7e" << 7.0;
        QTest::newRow("sign") << "-3" << -3.0;
        QTest::newRow("none") << "abc" << 0.0;
        QTest::newRow("lone point") << "." << 0.0;
    }
    void leadingNumbersAreRead()
    {
        QFETCH(QString, text);
        QFETCH(double, number);
        QCOMPARE(leadingNumber(text), number);
    }

    void wholeNumbersAreRoundedHalfToEvenWithinTheirRange_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("number"); // -1: none
        QTest::newRow("leading zeros") << "007" << 7;
        QTest::newRow("half down to even") << "2.5" << 2;
        QTest::newRow("half up to even") << "3,5" << 4;
        QTest::newRow("blanks around") << " 5 " << 5;
        QTest::newRow("highest") << "255.4" << 255;
        QTest::newRow("too high") << "256" << -1;
        QTest::newRow("grouped") << "1.234,5" << -1;
        QTest::newRow("letters behind") << "5x" << -1;
        QTest::newRow("empty") << "" << -1;
        QTest::newRow("beyond any double") << "1e999" << -1;
    }
    void wholeNumbersAreRoundedHalfToEvenWithinTheirRange()
    {
        QFETCH(QString, text);
        QFETCH(int, number);
        QCOMPARE(toWholeNumber(text, 0, 255).value_or(-1), number);
    }

    void aTextOnOneLineTurnsNothingRound()
    {
        QCOMPARE(onOneLine(u"Pump 1 · 20 °C"_s), u"Pump 1 · 20 °C"_s);
        QCOMPARE(onOneLine(u"A\r\n\tB \u202Eliaf\u2066 C\u0085\u2028D\u001B[2J\u007F"_s),
                 u"A B liaf C D[2J"_s);
    }

    void whatIsPastedIntoAFieldHasNoLineBreaks()
    {
        QCOMPARE(pastedLine(u" Pump 1 "_s), u" Pump 1 "_s);
        QCOMPARE(pastedLine(u"Pump 1\r\n"_s), u"Pump 1"_s);
        QCOMPARE(pastedLine(u"Pump\r\n\t1\t\t\n"_s), u"Pump 1"_s);
        QCOMPARE(pastedLine(u"\nA\u2028B\u0085"_s), u" A B"_s);
        QCOMPARE(pastedLine(u"\t\n"_s), QString());
        QCOMPARE(quotedInRemark(u"A\nB"_s), u"\"A B\" "_s);
    }

    void numbersTakeTheLocalesDecimalSeparatorAndNoGrouping()
    {
        QCOMPARE(numberText(2.5, test::german()), "2,5");
        QCOMPARE(numberText(2.5, test::english()), "2.5");
        QCOMPARE(numberText(65535, test::german()), "65535");
        QCOMPARE(numberText(0.1 + 0.2, test::english()), "0.3");
    }

    void datesAreReadAsTheUserWritesThem()
    {
        const QDate christmas(2026, 12, 24);
        QCOMPARE(toDate(u"24.12.26"_s, test::german()), christmas);
        QCOMPARE(toDate(u"24.12.2026"_s, test::german()), christmas);
        QCOMPARE(toDate(u"12/24/26"_s, test::english()), christmas);
        QCOMPARE(toDate(u"2026-12-24"_s, test::english()), christmas);
        for (const QString &text : {u"12/24/2026"_s, u"24/12/2026"_s, u"24.12.2026"_s, u"December 24, 2026"_s,
                                    u"24 Dec 2026"_s, u"2026/12/24"_s, u"12-24-26"_s}) {
            QCOMPARE(toDate(text, test::english()), christmas);
        }
        QCOMPARE(toDate(u"5/6/2026"_s, QLocale(QLocale::English, QLocale::UnitedKingdom)), QDate(2026, 6, 5));
        QCOMPARE(toDate(u"24. Dezember 2026"_s, test::german()), christmas);
        QVERIFY(!toDate(u"24.12/2026"_s, test::english()));
        QVERIFY(!toDate(u"31.02.2026"_s, test::german()));
        QVERIFY(!toDate(u"soon"_s, test::english()));
    }

    void everyByteSurvivesTheCodePageAndUnknownCharactersCostOneByte()
    {
        QByteArray all;
        for (int byte = 0; byte < 256; ++byte) {
            all += static_cast<char>(byte);
        }
        QCOMPARE(toWindows1252(fromWindows1252(all)), all);
        QCOMPARE(fromWindows1252("\x80\xA7\xB0"), u"€§°");
        QCOMPARE(toWindows1252(u"a\u0416\U0001F600z"), QByteArrayLiteral("a??z"));
    }
};

QTEST_GUILESS_MAIN(TextRulesTest)
#include "text_rules_test.moc"
