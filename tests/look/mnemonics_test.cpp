#include "look/mnemonics.h"

#include <QTest>

using namespace ktr;
using namespace Qt::StringLiterals;

class MnemonicsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyCaptionOfAMenuGetsALetterOfItsOwn_data()
    {
        QTest::addColumn<QStringList>("captions");
        QTest::addColumn<QStringList>("expected");

        QTest::newRow("first letter")
            << QStringList{u"New"_s, u"Open"_s} << QStringList{u"&New"_s, u"&Open"_s};
        QTest::newRow("first of a later word")
            << QStringList{u"Save"_s, u"Save as"_s} << QStringList{u"&Save"_s, u"Save &as"_s};
        QTest::newRow("any letter, whatever the case")
            << QStringList{u"Print"_s, u"print"_s} << QStringList{u"&Print"_s, u"p&rint"_s};
        QTest::newRow("a bracket is no letter")
            << QStringList{u"Ethernet"_s, u"(exclusive)"_s} << QStringList{u"&Ethernet"_s, u"(e&xclusive)"_s};
        QTest::newRow("umlaut") << QStringList{u"Öffnen"_s, u"öffnen"_s}
                                << QStringList{u"&Öffnen"_s, u"ö&ffnen"_s};
        QTest::newRow("ampersand shown") << QStringList{u"&Test & Co"_s} << QStringList{u"&&&Test && Co"_s};
        QTest::newRow("nothing free")
            << QStringList{u"a"_s, u"A"_s, QString()} << QStringList{u"&a"_s, u"A"_s, QString()};
    }

    void everyCaptionOfAMenuGetsALetterOfItsOwn()
    {
        QFETCH(QStringList, captions);
        QFETCH(QStringList, expected);
        QCOMPARE(withMnemonics(captions), expected);
    }
};

QTEST_GUILESS_MAIN(MnemonicsTest)
#include "mnemonics_test.moc"
