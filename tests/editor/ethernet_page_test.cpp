#include "editor/ethernet_page.h"
#include "support/page_fixture.h"

#include <QLineEdit>
#include <QMenu>

using namespace ktr;
using namespace ktr::test;

class EthernetPageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFaultyAddressIsToldWhenTheFieldIsLeftAndStays()
    {
        auto *ip = control<QLineEdit>(m_page, "Txt_Ethernet_IP");
        typeOver(ip, "192.168.1");
        QVERIFY(m_all.messages.isEmpty());
        QTest::keyClick(ip, Qt::Key_Tab);
        QCOMPARE(m_all.messages, QStringList("Faulty Input: IP has to consist of 4 numbers."));
        QVERIFY(control<QLineEdit>(m_page, "Txt_Ethernet_Subnet")->hasFocus());
        QCOMPARE(m_all.document.configuration().ethernet.ip, "192.168.1");
        typeOver(ip, "10.0.0.1");
        QTest::mouseClick(control<QLineEdit>(m_page, "Txt_Ethernet_Subnet"), Qt::LeftButton);
        QCOMPARE(m_all.messages.size(), 1);
    }

    void aMenuOrAnotherWindowAsksForNoCheck()
    {
        auto *ip = control<QLineEdit>(m_page, "Txt_Ethernet_IP");
        typeOver(ip, "x");
        QMenu menu;
        menu.addAction("copy");
        menu.popup(m_page.mapToGlobal(QPoint(5, 5)));
        QVERIFY(QTest::qWaitForWindowExposed(&menu));
        menu.close();
        QWidget other;
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        QVERIFY(!ip->hasFocus());
        QCOMPARE(m_all.messages, QStringList());
    }

    void onlyExpertsEditTheModulesPartOfTheMacAddress()
    {
        const auto enabled = [this] {
            QList<bool> states;
            for (int index = 0; index < 6; ++index) {
                states += mac(index)->isEnabled();
            }
            return states;
        };
        QCOMPARE(enabled(), QList<bool>({false, false, false, true, true, true}));
        QCOMPARE(mac(2)->text(), "A9");
        m_all.context.expert = false;
        m_page.showRecords();
        QCOMPARE(enabled(), QList<bool>(6, false));
    }

    void twoDigitsMoveOnToTheNextByte()
    {
        typeOver(mac(3), "4c");
        QVERIFY(mac(4)->hasFocus());
        QCOMPARE(mac(4)->selectedText(), "00");
        type(m_page.focusWidget(), "1");
        QVERIFY(mac(4)->hasFocus());
        type(m_page.focusWidget(), "a");
        QVERIFY(mac(5)->hasFocus());
        const EthernetSettings &stored = m_all.document.configuration().ethernet;
        QCOMPARE(stored.mac3, "4c");
        QCOMPARE(stored.mac4, "1a");
        m_all.history.undo();
        QCOMPARE(mac(4)->text(), "00");
        QCOMPARE(mac(3)->text(), "4c");
    }

    void aClickSelectsTheWholeByte()
    {
        QTest::mouseClick(mac(5), Qt::LeftButton);
        QTRY_COMPARE(mac(5)->selectedText(), "00");
    }

    void whatIsLoadedMovesNoFocus()
    {
        mac(3)->setFocus();
        m_all.document.adjust([](Configuration &changed) { changed.ethernet.mac3 = "7F"; });
        QCOMPARE(mac(3)->text(), "7F");
        QVERIFY(mac(3)->hasFocus());
    }

    void init()
    {
        m_all.context.expert = true;
        m_all.document.restore(m_fresh, false);
        m_all.history.clear();
        m_all.open(m_page);
        control<QLineEdit>(m_page, "Txt_Ethernet_MAC_3")->setFocus();
        m_all.messages.clear();
    }

private:
    QLineEdit *mac(int index) const
    {
        return control<QLineEdit>(m_page, QStringLiteral("Txt_Ethernet_MAC_%1").arg(index));
    }

    PageFixture m_all;
    Configuration m_fresh = m_all.document.configuration();
    EthernetPage m_page{m_all.context};
};

QTEST_MAIN(EthernetPageTest)
#include "ethernet_page_test.moc"
