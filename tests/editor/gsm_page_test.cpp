#include "editor/gsm_page.h"
#include "support/page_fixture.h"

#include <QComboBox>
#include <QLineEdit>

using namespace ktr;
using namespace ktr::test;

class GsmPageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void umlautsAreWrittenOutWhereTheUserTypes()
    {
        auto *id = control<QLineEdit>(m_page, "txt_gsm_id");
        typeOver(id, "Werk Sd");
        id->setCursorPosition(6);
        type(id, QStringLiteral("ü"));
        QCOMPARE(id->text(), "Werk Sued");
        QCOMPARE(id->cursorPosition(), 8);
        QCOMPARE(m_all.document.configuration().gsm.stationId, "Werk Sued");
        typeOver(id, QStringLiteral("Größe Ä"));
        QCOMPARE(id->text(), QStringLiteral("Groesse Ä"));
    }

    void numbersAreKeptInInternationalForm()
    {
        auto *number = control<QLineEdit>(m_page, "txt_gsm_num_2");
        typeOver(number, "4917");
        QCOMPARE(number->text(), "+4917");
        QCOMPARE(number->cursorPosition(), 5);
    }

    void theAliveCycleIsAWholeNumberWhereItIsOne()
    {
        auto *alive = control<QLineEdit>(m_page, "txt_gsm_alive");
        typeOver(alive, "007");
        QCOMPARE(alive->text(), "7");
        typeOver(alive, "40000");
        QCOMPARE(alive->text(), "40000");
        typeOver(alive, "abc");
        QCOMPARE(m_all.document.configuration().gsm.aliveCycle, "abc");
    }

    void typingIsOneStepOfTheHistory()
    {
        m_all.document.setModified(false);
        const Configuration before = m_all.document.configuration();
        auto *pin = control<QLineEdit>(m_page, "txt_gsm_pin");
        typeOver(pin, "1234");
        control<QComboBox>(m_page, "Combo_gsm_type")->setFocus();
        QTest::keyClick(control<QComboBox>(m_page, "Combo_gsm_type"), Qt::Key_Down);
        QCOMPARE(m_all.document.configuration().gsm.stationType, "NVA");
        QVERIFY(m_all.document.isModified());

        m_all.history.undo();
        QCOMPARE(pin->text(), "1234");
        QCOMPARE(control<QComboBox>(m_page, "Combo_gsm_type")->currentText(), "KTR");
        m_all.history.undo();
        QCOMPARE(m_all.document.configuration(), before);
        QVERIFY(!m_all.document.isModified());
        m_all.history.redo();
        QCOMPARE(pin->text(), "1234");
        QVERIFY(m_all.document.isModified());
    }

    void aProblemIsMarkedAtItsField()
    {
        auto *pin = control<QLineEdit>(m_page, "txt_gsm_pin");
        m_page.setProblems({{"PIN", "txt_gsm_pin", 0, "is no PIN"}, {"x", "txt_gsm_num_1", 1, "is short"}});
        QCOMPARE(pin->accessibleDescription(), "is no PIN");
        QCOMPARE(control<QLineEdit>(m_page, "txt_gsm_num_1")->accessibleDescription(), "is short");
        QVERIFY(pin->palette() != control<QLineEdit>(m_page, "txt_gsm_id")->palette());
        m_page.setProblems({});
        QVERIFY(pin->accessibleDescription().isEmpty());
        QCOMPARE(pin->palette(), control<QLineEdit>(m_page, "txt_gsm_id")->palette());
    }

    void init() { m_all.open(m_page); }

private:
    PageFixture m_all;
    GsmPage m_page{m_all.context};
};

QTEST_MAIN(GsmPageTest)
#include "gsm_page_test.moc"
