#include "editor/input_page.h"
#include "support/page_fixture.h"

#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>

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

    void twoPointsGiveOffsetAndFactorInOneStep()
    {
        control<QWidget>(m_page, "Txt_ip_faktor_1")->setFocus(); // of channel 10
        QTest::mouseClick(control<QPushButton>(m_page, "cmd_ip_scaling"), Qt::LeftButton);
        const QPointer<QDialog> helper = control<QDialog>(m_page, "Form_scaling");
        QVERIFY(QTest::qWaitForWindowActive(helper));
        QCOMPARE(control<QComboBox>(*helper, "Cmb_scaling_channel")->currentText(), "10 Analog In 2");
        auto *take = control<QPushButton>(*helper, "Cmd_scaling_take");
        for (const auto &[name, number] :
             {std::pair{"Txt_scaling_signal_0", "4"}, std::pair{"Txt_scaling_value_0", "-1,5"},
              std::pair{"Txt_scaling_signal_1", "4"}, std::pair{"Txt_scaling_value_1", "14,5"}}) {
            QVERIFY(!take->isEnabled());
            typeOver(control<QLineEdit>(*helper, name), number);
        }
        QVERIFY(!take->isEnabled()); // equal signals
        typeOver(control<QLineEdit>(*helper, "Txt_scaling_signal_1"), "20");
        QTest::keyClick(helper, Qt::Key_Return);
        QTRY_VERIFY(helper == nullptr);
        QCOMPARE(control<QLineEdit>(m_page, "Txt_ip_offset_1")->text(), "-5.5");
        QCOMPARE(control<QLineEdit>(m_page, "Txt_ip_faktor_1")->text(), "1");
        QVERIFY(m_all.document.isModified());
        m_all.history.undo();
        QCOMPARE(m_all.document.configuration(), m_fresh);
        m_page.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&m_page));
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

    void theArrowKeysGoUpAndDownAColumn()
    {
        const auto goes = [this](const char *from, Qt::Key key, const char *to) {
            control<QWidget>(m_page, from)->setFocus();
            QTest::keyClick(m_page.focusWidget(), key);
            QCOMPARE(m_page.focusWidget()->objectName(), to);
        };
        goes("Txt_ip_interval_3", Qt::Key_Down, "Txt_ip_interval_4");
        goes("Txt_ip_interval_3", Qt::Key_Up, "Txt_ip_interval_2");
        goes("Txt_ip_interval_0", Qt::Key_Up, "Txt_ip_interval_0");
        goes("Txt_ip_delta_17", Qt::Key_Down, "Txt_ip_delta_17");
        goes("Txt_ip_einheit_1", Qt::Key_Down, "Txt_ip_einheit_2"); // over rows that have none
        goes("Chk_ip_zaehler_1", Qt::Key_Up, "Chk_ip_zaehler_0");
        goes("Chk_ip_zaehler_0", Qt::Key_Left, "Txt_ip_delta_0");
        goes("Chk_ip_invers_4", Qt::Key_Up, "Chk_ip_invers_4"); // those above are disabled
        auto *interval = control<QLineEdit>(m_page, "Txt_ip_interval_3");
        typeOver(interval, "125");
        QTest::keyClick(interval, Qt::Key_Left);
        type(interval, "0");
        QCOMPARE(interval->text(), "1205");
    }

    void aValueIsFilledDownInOneStep()
    {
        typeOver(control<QLineEdit>(m_page, "Txt_ip_interval_12"), "15");
        m_page.fillDown();
        for (std::size_t channel = 11; channel < 18; ++channel) {
            QCOMPARE(m_all.document.configuration().archiving[channel].interval, channel < 12 ? "0" : "15");
        }
        QCOMPARE(control<QLineEdit>(m_page, "Txt_ip_interval_17")->text(), "15");
        QCOMPARE(m_all.told.takeLast(), "Fields filled down: 5");
        QSignalSpy undone(&m_all.history, &EditHistory::undone);
        m_all.history.undo();
        QCOMPARE(undone.takeFirst().constFirst(), "Fields filled down: 5");
        QCOMPARE(m_all.document.configuration().archiving[17].interval, "0");
        QCOMPARE(m_all.document.configuration().archiving[12].interval, "15");
        control<QCheckBox>(m_page, "chk_ip_wert")->setFocus();
        m_page.fillDown();
        QVERIFY(m_all.told.takeLast().startsWith("Choose the field first"));
    }

    void aBlockIsPastedFromTheFieldOn()
    {
        paste("Txt_ip_interval_0", "5\t0,5\tx\r\n10\t\t1\r\n");
        const Configuration &now = m_all.document.configuration();
        QCOMPARE(now.archiving[0].interval, "5");
        QCOMPARE(now.archiving[0].delta, "0,5");
        QVERIFY(now.digitalInputs[0].countsPulses && now.digitalInputs[1].countsPulses);
        QCOMPARE(now.archiving[1].interval, "10");
        QCOMPARE(now.archiving[1].delta, "0"); // an empty cell leaves it
        QVERIFY(control<QWidget>(m_page, "Txt_ip_teiler_1")->isEnabled());
        paste("Txt_ip_zaehler_4", "7\t1\t2\n"); // the unit behind has no column
        QCOMPARE(now.outputHours[0].value, "0");
        paste("Txt_ip_interval_0", "6\t0,5\n");
        QCOMPARE(m_all.told.takeLast(),
                 "Fields pasted: 2, in place of other values: 1. Ctrl+Z takes it back");
        m_all.history.undo();
        paste("Txt_ip_value_0", "3\t-1,5\t2\t'=bar\n20\t1\t2\tml\n");
        QCOMPARE(now.outputValues[1].analog, "20");
        QCOMPARE(now.scaling[2].offset, "-1,5");
        QCOMPARE(now.scaling[2].unit, "=bar");
        QCOMPARE(now.scaling[3].unit, "ml");
        paste("Txt_ip_teiler_0", "20000\n");
        QCOMPARE(now.digitalInputs[0].divider, "10000"); // its rule
        m_all.history.undo();
        m_all.history.undo();
        QCOMPARE(now.outputValues[1].analog, "0");
        QCOMPARE(now.archiving[1].interval, "10");
    }

    void nothingOfABlockIsPastedThatDoesNotFit_data()
    {
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("block");
        QTest::addColumn<QString>("told");
        QTest::newRow("letters") << "Txt_ip_interval_0"
                                 << "5\t1\nsix\t1\n"
                                 << "Row 2, column 1";
        QTest::newRow("half a minute") << "Txt_ip_interval_0"
                                       << "5\n1.5\n"
                                       << "Row 2, column 1";
        QTest::newRow("digit grouping") << "Txt_ip_delta_0"
                                        << "1.234,5\n"
                                        << "\"1.234,5\"";
        QTest::newRow("no box") << "Txt_ip_delta_0"
                                << "1\tmaybe\n"
                                << "Row 1, column 2";
        QTest::newRow("below the last") << "Txt_ip_delta_16"
                                        << "1\n2\n3\n"
                                        << "Row 3, column 1";
        QTest::newRow("where no field is") << "Txt_ip_delta_8"
                                           << "1\t1\n"
                                           << "there is no field";
        QTest::newRow("empty cells") << "Txt_ip_delta_8"
                                     << "\t\n"
                                     << "only empty cells";
    }
    void nothingOfABlockIsPastedThatDoesNotFit()
    {
        QFETCH(QString, from);
        QFETCH(QString, block);
        QFETCH(QString, told);
        paste(from, block);
        QVERIFY2(m_all.told.constLast().contains(told), qPrintable(m_all.told.constLast()));
        QVERIFY(m_all.document.configuration() == m_fresh);
        QVERIFY(!m_all.document.isModified());
    }

    void init()
    {
        m_all.document.restore(m_fresh, false);
        m_all.history.clear();
        m_all.open(m_page);
    }

private:
    void paste(const QString &name, const QString &text)
    {
        QGuiApplication::clipboard()->setText(text);
        auto *field = control<QWidget>(m_page, name);
        field->setFocus();
        QTest::keySequence(field, QKeySequence::Paste);
    }

    PageFixture m_all;
    Configuration m_fresh = m_all.document.configuration();
    InputPage m_page{m_all.context};
};

QTEST_MAIN(InputPageTest)
#include "input_page_test.moc"
