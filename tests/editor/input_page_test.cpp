#include "editor/input_page.h"
#include "support/page_fixture.h"

#include <QCheckBox>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>

using namespace ktr;
using namespace ktr::test;

class InputPageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anIntervalTakesWholeNumbersOnly_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("kept");
        QTest::newRow("a number") << "120"
                                  << "120";
        QTest::newRow("a decimal point") << "1.5"
                                         << "15";
        QTest::newRow("a decimal comma") << "1,5"
                                         << "15";
        QTest::newRow("a letter") << "6a0"
                                  << "60";
        QTest::newRow("a leading zero blocks what follows") << "077"
                                                            << "0";
        QTest::newRow("a sign") << "-3"
                                << "3";
    }
    void anIntervalTakesWholeNumbersOnly()
    {
        QFETCH(QString, typed);
        auto *interval = control<QLineEdit>(m_page, "Txt_ip_interval_4");
        typeOver(interval, typed);
        QTEST(interval->text(), "kept");
        QCOMPARE(m_all.document.configuration().archiving[4].interval, interval->text());
    }

    void textPastedIntoAnIntervalLosesItsLastCharacterOnly()
    {
        QGuiApplication::clipboard()->setText("1x2y3");
        auto *interval = control<QLineEdit>(m_page, "Txt_ip_interval_0");
        interval->setFocus();
        QTest::keySequence(interval, QKeySequence::SelectAll);
        QTest::keySequence(interval, QKeySequence::Paste);
        QCOMPARE(interval->text(), "1x2y");
        QCOMPARE(m_all.document.configuration().archiving[0].interval, "1x2y");
    }

    void whatIsLoadedIntoAnIntervalIsNotFiltered()
    {
        m_all.document.adjust([](Configuration &changed) { changed.archiving[2].interval = "007"; });
        QCOMPARE(control<QLineEdit>(m_page, "Txt_ip_interval_2")->text(), "007");
    }

    void typedNumbersAreOneStepOfTheHistory()
    {
        auto *interval = control<QLineEdit>(m_page, "Txt_ip_interval_1");
        typeOver(interval, "1.5");
        m_all.history.undo();
        QCOMPARE(interval->text(), "0");
        QVERIFY(!m_all.document.isModified());
    }

    void countingPulsesOpensItsFields()
    {
        auto *counts = control<QCheckBox>(m_page, "Chk_ip_zaehler_0");
        auto *unit = control<QLabel>(m_page, "lbl_ip_digineinheit_0");
        const auto enabled = [this] {
            return QList<bool>{control<QWidget>(m_page, "Chk_ip_invers_0")->isEnabled(),
                               control<QWidget>(m_page, "Txt_ip_zaehler_0")->isEnabled(),
                               control<QWidget>(m_page, "Txt_ip_teiler_0")->isEnabled()};
        };
        QCOMPARE(enabled(), QList<bool>(3, false));
        QTest::mouseClick(counts, Qt::LeftButton, {}, QPoint(8, counts->height() / 2));
        QCOMPARE(enabled(), QList<bool>(3, true));
        QCOMPARE(unit->text(), "Pulses");
        QVERIFY(m_all.document.configuration().digitalInputs[0].countsPulses);
        QTest::keyClick(counts, Qt::Key_Space);
        QCOMPARE(enabled(), QList<bool>(3, false));
        QVERIFY(unit->text().isEmpty());
    }

    void countingHoursOpensTheFieldsOfItsInput()
    {
        auto *counts = control<QCheckBox>(m_page, "Chk_ip_bstz_1");
        counts->setFocus();
        QTest::keyClick(counts, Qt::Key_Space);
        QVERIFY(m_all.document.configuration().digitalInputs[3].countsHours);
        QVERIFY(control<QWidget>(m_page, "Txt_ip_zaehler_3")->isEnabled());
        QVERIFY(!control<QWidget>(m_page, "Txt_ip_zaehler_2")->isEnabled());
        QCOMPARE(control<QLabel>(m_page, "lbl_ip_digineinheit_3")->text(), "Hours");
    }

    void theCountersOfTheOutputsAreAlwaysOpen()
    {
        typeOver(control<QLineEdit>(m_page, "Txt_ip_zaehler_5"), "12");
        QCOMPARE(m_all.document.configuration().outputHours[1].value, "12");
        QVERIFY(control<QWidget>(m_page, "Chk_ip_invers_4")->isEnabled());
        m_all.texts.setText(static_cast<int>(Text::Hours), "Stunden");
        m_page.applyTexts();
        QCOMPARE(control<QLabel>(m_page, "lbl_ip_digineinheit_5")->text(), "Stunden");
    }

    void theDividerStaysWithinItsBounds()
    {
        control<QCheckBox>(m_page, "Chk_ip_zaehler_1")->click();
        auto *divider = control<QLineEdit>(m_page, "Txt_ip_teiler_1");
        typeOver(divider, "0");
        QCOMPARE(divider->text(), "1");
        typeOver(divider, "20000");
        QCOMPARE(divider->text(), "10000");
    }

    void theUnitOfAnAnalogOutputStandsBesideItsValue()
    {
        typeOver(control<QLineEdit>(m_page, "Txt_ip_einheit_3"), "bar");
        QCOMPARE(control<QLabel>(m_page, "lbl_ip_einheit_1")->text(), "bar");
        QVERIFY(control<QLabel>(m_page, "lbl_ip_einheit_0")->text().isEmpty());
    }

    void theKeyboardGoesRowByRow()
    {
        QStringList visited;
        control<QWidget>(m_page, "Txt_ip_interval_11")->setFocus();
        for (int step = 0; step < 10; ++step) {
            visited += m_page.focusWidget()->objectName();
            QTest::keyClick(m_page.focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(visited,
                 QStringList({"Txt_ip_interval_11", "Txt_ip_delta_11", "Chk_ip_value_1", "Txt_ip_interval_12",
                              "Txt_ip_delta_12", "Txt_ip_value_0", "Txt_ip_offset_2", "Txt_ip_faktor_2",
                              "Txt_ip_einheit_2", "Txt_ip_interval_13"}));
    }

    void init()
    {
        m_all.document.restore(m_fresh, false);
        m_all.history.clear();
        m_all.open(m_page);
    }

private:
    PageFixture m_all;
    Configuration m_fresh = m_all.document.configuration();
    InputPage m_page{m_all.context};
};

QTEST_MAIN(InputPageTest)
#include "input_page_test.moc"
