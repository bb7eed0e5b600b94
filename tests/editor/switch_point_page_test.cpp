#include "editor/switch_point_page.h"
#include "platform/registry.h"
#include "support/choosing.h"
#include "support/page_fixture.h"

#include <QCalendarWidget>
#include <QComboBox>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTableView>
#include <QTemporaryDir>
#include <QTextCharFormat>
#include <QTimeEdit>

using namespace ktr;
using namespace ktr::test;

class SwitchPointPageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theTypeDecidesWhatIsShown_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<bool>("period");
        QTest::addColumn<bool>("limitValue");
        QTest::newRow("once") << 13 << false << false;
        QTest::newRow("periodic") << 14 << true << false;
        QTest::newRow("exceeded") << 15 << false << true;
        QTest::newRow("undershot") << 16 << false << true;
    }
    void theTypeDecidesWhatIsShown()
    {
        QFETCH(const int, type);
        auto *types = control<QComboBox>(m_page, "Cmb_swtch_typ");
        const auto *value = control<QWidget>(m_page, "Txt_swtch_wert");
        const QRect place = value->geometry();
        choose(types, type);
        QCOMPARE(configuration().switchPoints[0].type, type);
        QVERIFY(m_all.document.isModified());
        for (const char *name : {"Lbl_swtch_periode_0", "Lbl_swtch_periode_1", "Txt_swtch_periode"}) {
            QTEST(control<QWidget>(m_page, name)->isVisible(), "period");
        }
        for (const char *name : {"lbl_swtch_gw", "Cmb_swtch_gw"}) {
            QTEST(control<QWidget>(m_page, name)->isVisible(), "limitValue");
        }
        for (const char *name : {"lbl_swtch_start_0", "lbl_swtch_start_1", "Txt_swtch_start"}) {
            QTEST(!control<QWidget>(m_page, name)->isVisible(), "limitValue");
        }
        value->parentWidget()->layout()->activate();
        QCOMPARE(value->geometry(), place); // nothing jumps
    }

    void anEmptyStartBecomesToday()
    {
        m_all.document.adjust(
            [](Configuration &configuration) { configuration.switchPoints[18].start = "2001020304"; });
        auto *bar = control<QScrollBar>(m_page, "Scr_swtch");
        bar->setFocus();
        QTest::keyClick(bar, Qt::Key_End);
        QCOMPARE(control<QLineEdit>(m_page, "Txt_swtch_start")->text(), "0911150000");
        QCOMPARE(configuration().switchPoints[19].start, "0911150000");
        QCOMPARE(control<QGroupBox>(m_page, "Fra_swtch_nr")->title(), "Switchpoint 20");
        QTest::keyClick(bar, Qt::Key_Up);
        QCOMPARE(control<QLineEdit>(m_page, "Txt_swtch_start")->text(), "2001020304");
        QCOMPARE(configuration().switchPoints[17].start, "");
        QVERIFY(!m_all.document.isModified());
        QVERIFY(!m_all.history.canUndo());
    }

    void whatIsTypedIsStoredInTheEntryShown()
    {
        m_page.showEntry(4);
        typeOver(control<QLineEdit>(m_page, "Txt_swtch_start"), "1012312359");
        typeOver(control<QLineEdit>(m_page, "Txt_swtch_wert"), "4,5");
        choose(control<QComboBox>(m_page, "Cmb_swtch_typ"), 14);
        typeOver(control<QLineEdit>(m_page, "Txt_swtch_periode"), "720");
        choose(control<QComboBox>(m_page, "Cmb_swtch_ip"), 6);
        const SwitchPoint expected{6, 14, "1012312359", "720", "4,5", 0};
        QCOMPARE(configuration().switchPoints[4], expected);
        QCOMPARE(row(4),
                 QStringList({"5", "GSM Num. 2", "14 periodic, 31 Dec 2010 23:59, 720 Minutes", "4,5"}));
        choose(control<QComboBox>(m_page, "Cmb_swtch_typ"), 16);
        choose(control<QComboBox>(m_page, "Cmb_swtch_gw"), 2);
        QCOMPARE(configuration().switchPoints[4].limitValue, 2);
        QCOMPARE(row(4).at(2), QStringLiteral("16 below the limit, 3  IP:ungültig"));
    }

    void listsFollowTheConfigurationWithoutAnEdit()
    {
        m_all.document.adjust([](Configuration &configuration) {
            configuration.switchPoints[0].target = 6;
            configuration.switchPoints[0].limitValue = 2;
        });
        auto *targets = control<QComboBox>(m_page, "Cmb_swtch_ip");
        auto *limitValues = control<QComboBox>(m_page, "Cmb_swtch_gw");
        QCOMPARE(targets->itemText(6), "GSM Num. 2");
        QSignalSpy edits(&m_all.document, &Document::changed);
        m_all.document.adjust([](Configuration &configuration) {
            configuration.administrators[1].name = "Lobraile";
            configuration.administrators[2].name.clear();
            configuration.limitValues[2].channel = 9;
        });
        QCOMPARE(targets->currentText(), "Lobraile");
        QCOMPARE(targets->itemText(7), ""); // a name that was given and taken away again
        QCOMPARE(limitValues->currentText(), "3  IP:9 AnalogIn 1");
        QCOMPARE(edits.size(), 1);
        QVERIFY(!m_all.document.isModified());
    }

    void theLanguageChangesItemsAndCaptions()
    {
        QCOMPARE(control<QComboBox>(m_page, "Cmb_swtch_ip")->itemText(0), "invalid");
        QCOMPARE(control<QComboBox>(m_page, "Cmb_swtch_typ")->itemText(6), "6 on Saturdays");
        m_all.context.language = "deutsch";
        m_all.texts.setText(static_cast<int>(Text::Switchpoint), "Schaltpunkt");
        m_page.applyTexts();
        m_page.showEntry(11);
        QCOMPARE(control<QComboBox>(m_page, "Cmb_swtch_ip")->itemText(0), QStringLiteral("ungültig"));
        QCOMPARE(control<QComboBox>(m_page, "Cmb_swtch_typ")->itemText(16), "16 GW-Unterschr.");
        QCOMPARE(control<QGroupBox>(m_page, "Fra_swtch_nr")->title(), "Schaltpunkt 12");
        QCOMPARE(control<QLabel>(m_page, "lbl_swtch_start_1")->text(), "JJMMTThhmm");
    }

    void datesAreChosenOnACalendarThatMarksHolidays()
    {
        m_all.document.adjust([](Configuration &configuration) {
            configuration.holidays.add(QDate(2026, 12, 24));
            configuration.holidays.append(QStringLiteral("no date"));
            configuration.switchPoints[0].start = "2612230815";
        });
        QWidget *popup = openCalendar("cmd_swtch_start_date");
        auto *calendar = control<QCalendarWidget>(*popup, "Cal_date");
        QCOMPARE(calendar->selectedDate(), QDate(2026, 12, 23));
        QVERIFY(calendar->dateTextFormat(QDate(2026, 12, 24)).fontUnderline());
        QVERIFY(!calendar->dateTextFormat(QDate(2026, 12, 23)).fontUnderline());
        auto *days = control<QWidget>(*calendar, "qt_calendar_calendarview");
        QTest::keyClick(days, Qt::Key_Right);
        auto *time = control<QTimeEdit>(*popup, "Time_date");
        time->setFocus();
        QTest::keyClick(time, Qt::Key_Up);
        QTest::mouseClick(control<QPushButton>(*popup, "Cmd_date_take"), Qt::LeftButton);
        QVERIFY(!popup->isVisible());
        QCOMPARE(control<QLineEdit>(m_page, "Txt_swtch_start")->text(), "2612240915");
        QCOMPARE(configuration().switchPoints[0].start, "2612240915");
        QVERIFY(m_all.document.isModified());

        typeOver(control<QLineEdit>(m_page, "Text_switch_frei"), "30.12.2026");
        popup = openCalendar("cmd_swtch_frei_date");
        days = control<QWidget>(*popup, "qt_calendar_calendarview");
        QTest::keyClick(days, Qt::Key_Right);
        QTest::keyClick(days, Qt::Key_Return);
        QCOMPARE(control<QLineEdit>(m_page, "Text_switch_frei")->text(), "31.12.2026");
        popup = openCalendar("cmd_swtch_frei_date");
        QTest::keyClick(popup, Qt::Key_Escape);
        QVERIFY(!popup->isVisible());
        QCOMPARE(control<QLineEdit>(m_page, "Text_switch_frei")->text(), "31.12.2026");
    }

    void aHolidayIsAddedOnceWithEnterOrTheButton()
    {
        m_page.showEntry(5);
        auto *date = control<QLineEdit>(m_page, "Text_switch_frei");
        QCOMPARE(date->text(), "15.11.2009"); // today
        typeOver(date, "24.12.2009");
        QTest::keyClick(date, Qt::Key_Return);
        QCOMPARE(shownHolidays(), QStringList("091224\t(24.12.2009)"));
        QCOMPARE(configuration().holidays.lines(), shownHolidays());
        QVERIFY(m_all.document.isModified());
        m_all.document.setModified(false);
        click("Command_switch_add"); // again
        typeOver(date, "32.12.2009");
        click("Command_switch_add");
        QCOMPARE(shownHolidays().size(), 1);
        QVERIFY(!m_all.document.isModified());
        QCOMPARE(m_all.told.size(), 2);
        QVERIFY(m_all.messages.isEmpty());
        QSignalSpy moved(&m_all.history, &EditHistory::moved);
        m_all.history.undo();
        QVERIFY(shownHolidays().isEmpty());
        const EditPlace place{"lst_swtch_frei", 5}; // the entry shown stays shown
        QCOMPARE(moved.front().front().value<EditPlace>(), place);
    }

    void theTwentyFirstHolidayIsReported()
    {
        fill(20);
        typeOver(control<QLineEdit>(m_page, "Text_switch_frei"), "24.12.2009");
        click("Command_switch_add");
        QCOMPARE(m_all.messages, QStringList("Maximal 20 holidays"));
        QCOMPARE(shownHolidays().size(), 20);
        QVERIFY(!m_all.document.isModified());
    }

    void holidaysAreRemovedWithoutMarkingTheConfiguration()
    {
        fill(4);
        const QStringList all = shownHolidays();
        auto *list = control<QListWidget>(m_page, "lst_swtch_frei");
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(1)).center());
        QCOMPARE(shownHolidays(), QStringList({all[0], all[2], all[3]}));
        list->setFocus();
        QTest::keyClick(list, Qt::Key_Home);
        QTest::keyClick(list, Qt::Key_Down);
        QCOMPARE(shownHolidays().size(), 3); // moving along the list removes nothing
        QTest::keyClick(list, Qt::Key_Delete);
        QCOMPARE(shownHolidays(), QStringList({all[0], all[3]}));
        click("Cmd_swtch_clear");
        QVERIFY(shownHolidays().isEmpty());
        QVERIFY(!m_all.document.isModified());
        m_all.history.undo();
        m_all.history.undo();
        m_all.history.undo();
        QCOMPARE(shownHolidays(), all);
    }

    void aStoredListServesAnotherConfiguration()
    {
        fill(20);
        click("Cmd_swtch_save");
        fill(3);
        const QStringList three = shownHolidays();
        click("Cmd_swtch_save");
        fill(5);
        click("Cmd_swtch_load");
        QCOMPARE(shownHolidays(), three);
        QVERIFY(!m_all.document.isModified());
    }

    void aListThatCannotBeStoredIsTold()
    {
        QFile file(m_folder.filePath("file"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        MRegistry::setRegistryFile(m_folder.filePath("file/registry.json")); // below a file, no folder
        fill(1);
        click("Cmd_swtch_save");
        QCOMPARE(m_all.told, QStringList("The holidays could not be stored in your settings"));
    }

    void init()
    {
        MRegistry::setRegistryFile(m_folder.filePath("registry.json"));
        m_all.document.makeNew();
        m_all.document.setModified(false);
        m_all.history.clear();
        m_all.texts.fillEnglish();
        m_all.context.language = "english";
        m_all.told.clear();
        m_all.messages.clear();
        m_page.showEntry(0);
        m_all.open(m_page);
        m_page.entered();
    }
    void cleanup() { QObject::disconnect(&m_all.document, nullptr, &m_page, nullptr); }

private:
    const Configuration &configuration() const { return m_all.document.configuration(); }
    void click(const QString &button)
    {
        QTest::mouseClick(control<QPushButton>(m_page, button), Qt::LeftButton);
    }
    /// The newest of that button.
    QWidget *openCalendar(const QString &button)
    {
        QTest::mouseClick(control<QAbstractButton>(m_page, button), Qt::LeftButton);
        return m_page.findChildren<QWidget *>(button + "_popup").last();
    }
    void fill(int count)
    {
        m_all.document.adjust([count](Configuration &configuration) {
            configuration.holidays.clear();
            for (int day = 1; day <= count; ++day) {
                configuration.holidays.add(QDate(2010, 1, 1).addDays(31 * count + day));
            }
        });
    }
    QStringList shownHolidays()
    {
        const auto *list = control<QListWidget>(m_page, "lst_swtch_frei");
        QStringList lines;
        for (int row = 0; row < list->count(); ++row) {
            lines += list->item(row)->text();
        }
        return lines;
    }
    QStringList row(int row) { return rowTexts(control<QTableView>(m_page, "Tbl_swtch"), row); }

    QTemporaryDir m_folder;
    PageFixture m_all;
    SwitchPointPage m_page{m_all.context};
};

QTEST_MAIN(SwitchPointPageTest)
#include "switch_point_page_test.moc"
