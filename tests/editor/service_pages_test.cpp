#include "editor/calibration_page.h"
#include "editor/connection_page.h"
#include "editor/info_page.h"
#include "editor/test_page.h"
#include "look/kept_focus.h"
#include "support/page_fixture.h"

#include <QCalendarWidget>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>

using namespace ktr;
using namespace ktr::test;

class ServicePagesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachButtonOfTheTestPagePlacesItsCommand()
    {
        TestPage page(m_all.context);
        m_all.open(page);
        const QSignalSpy placed(&page, &TestPage::commandPlaced);
        const QSignalSpy clock(&page, &TestPage::clockPlaced);
        for (const char *name : {"cmd_test_settime", "cmd_test_block", "cmd_test_free", "cmd_kill",
                                 "chk_test_answer", "cmd_kill", "cmd_historyFastExport"}) {
            press(page, name);
        }
        QCOMPARE(commands(placed), QStringList({"H,0,0", "H,0,1", "k", "K", QStringLiteral("§,77")}));
        QCOMPARE(clock.size(), 1);
    }

    void theClockCanBeSetToAnotherTimeAndCommandsAreCounted()
    {
        TestPage page(m_all.context);
        m_all.open(page);
        const QSignalSpy placed(&page, &TestPage::commandPlaced);
        press(page, "cmd_test_settime_date");
        auto *popup = control<QWidget>(page, "cmd_test_settime_date_popup");
        auto *days = control<QWidget>(*popup, "qt_calendar_calendarview");
        QTest::keyClick(days, Qt::Key_Right); // the present time is that of a Sunday
        QTest::keyClick(days, Qt::Key_Return);
        QCOMPARE(commands(placed), QStringList("T,09,11,16,14,05,37,1"));
        QTest::keyClicks(control<QLineEdit>(page, "txt_test_send"), "H,0,1");
        QCOMPARE(control<QLabel>(page, "lbl_test_length")->text(), "5 of 160");
    }

    void typedCommandsAreTakenOnlyWhileNoTransmissionRuns()
    {
        TestPage page(m_all.context);
        m_all.open(page);
        const QSignalSpy placed(&page, &TestPage::commandPlaced);
        auto *input = control<QLineEdit>(page, "txt_test_send");
        page.setIdle(false);
        typeOver(input, "v,1");
        QTest::keyClick(input, Qt::Key_Return);
        press(page, "cmd_test_send");
        QCOMPARE(placed.size(), 0);
        page.setIdle(true);
        QTest::keyClick(input, Qt::Key_Enter);
        press(page, "cmd_test_send");
        QCOMPARE(commands(placed), QStringList({"v,1", "v,1"}));
    }

    void earlierCommandsComeBackWithTheArrowKeys()
    {
        TestPage page(m_all.context);
        m_all.open(page);
        auto *input = control<QLineEdit>(page, "txt_test_send");
        for (const char *command : {"a", "b"}) {
            typeOver(input, command);
            QTest::keyClick(input, Qt::Key_Return);
            page.clearInput();
        }
        QStringList shown;
        for (const auto key : {Qt::Key_Up, Qt::Key_Up, Qt::Key_Up, Qt::Key_Down, Qt::Key_Down}) {
            QTest::keyClick(input, key);
            shown += input->text();
        }
        QCOMPARE(shown, QStringList({"b", "a", "a", "b", ""}));
    }

    void theCommandAfterTheLastPlaceTakesTheFirst()
    {
        CommandHistory history;
        for (int number = 0; number < 102; ++number) {
            history.add(QString::number(number));
        }
        QCOMPARE(history.back(), QString("101"));
        QCOMPARE(history.back(), std::nullopt);
        for (int number = 1; number < 101; ++number) {
            QCOMPARE(history.forth(), QString::number(number));
        }
        QCOMPARE(history.forth(), std::nullopt);
    }

    void theLogHasTheNewestInFrontAndAnEnd()
    {
        TestPage page(m_all.context);
        m_all.open(page);
        auto *log = control<QPlainTextEdit>(page, "txt_test_debug");
        page.appendLog("com <---- at+cpin=\"1234\"\r");
        page.appendLog("com ----> OK\r\n");
        QTRY_COMPARE(log->toPlainText(), "com ----> OK\nat+cpin=\"****\"\n");
        // Lines of 10 characters with their ends: 7999 is within the 800th, whose end is the 8000th.
        for (int line = 0; line < 900; ++line) {
            page.appendLog(QStringLiteral("line %1").arg(line, 4, 10, QLatin1Char('0')));
        }
        QTRY_COMPARE(log->toPlainText().size(), 7999);
        const QString kept = log->toPlainText();
        QVERIFY(kept.startsWith("line 0899\n"));
        QVERIFY(kept.endsWith("\nline 0100"));
        // Held, the display stays as it is, and nothing is lost but what would not be shown any more.
        press(page, "txt_test_debug_pause");
        for (int line = 0; line < 5000; ++line) {
            page.appendLog("passing");
        }
        page.appendLog("x");
        QCOMPARE(log->toPlainText(), kept);
        press(page, "txt_test_debug_pause");
        QVERIFY(log->toPlainText().startsWith("x\npassing\n"));
        QCOMPARE(log->toPlainText().size(), 8001); // the 8000th character is within the last line
        typeOver(control<QLineEdit>(page, "txt_test_debug_search"), "x");
        QCOMPARE(log->textCursor().selectedText(), "x");
        const QSignalSpy saved(&page, &TestPage::saveWanted);
        press(page, "txt_test_debug_save");
        QCOMPARE(saved.size(), 1);
        press(page, "cmd_test_clear");
        QVERIFY(log->toPlainText().isEmpty());
    }

    void aReplyIsShownWithItsTime()
    {
        TestPage page(m_all.context);
        m_all.open(page);
        page.showReply(" <-- V,2,4,7");
        const auto *replies = control<QPlainTextEdit>(page, "txt_test_receive");
        QTRY_COMPARE(replies->toPlainText(), "09,11,15 14:05:35  <-- V,2,4,7\n");
        press(page, "cmd_test_clear");
        QVERIFY(replies->toPlainText().isEmpty());
    }

    void hidingTheLogIsOfferedOnRequestOnly()
    {
        TestPage page(m_all.context);
        m_all.open(page);
        const auto *option = control<QCheckBox>(page, "chk_test_debug");
        const auto *log = control<QPlainTextEdit>(page, "txt_test_debug");
        QVERIFY(!option->isVisible());
        QVERIFY(log->isVisible());
        page.showDebugOption();
        QVERIFY(option->isVisible() && option->isChecked() && log->isVisible());
        press(page, "chk_test_debug");
        QVERIFY(!log->isVisible());
    }

    void calibrationSendsTheCodeOfItsButton()
    {
        CalibrationPage page(m_all.context);
        m_all.open(page);
        const QSignalSpy placed(&page, &CalibrationPage::commandPlaced);
        for (int index = 0; index < 8; ++index) {
            const QString name = QStringLiteral("cmd_kal_%1").arg(index);
            QTest::mouseClick(control<QPushButton>(page, name), Qt::LeftButton);
            QVERIFY(!control<QPushButton>(page, name)->isEnabled()); // until the module confirms
        }
        QCOMPARE(commands(placed).join(u' '),
                 QStringLiteral("§,0,6 §,1,6 §,2,0 §,3,0 §,4,7 §,5,7 §,6,1 §,7,1"));
    }

    void aSecondKeyPressHitsNothingElseAndAFailureIsShown()
    {
        keepFocusOfDisabledButtons(*qApp);
        CalibrationPage page(m_all.context);
        m_all.open(page);
        const QSignalSpy placed(&page, &CalibrationPage::commandPlaced);
        auto *button = control<QPushButton>(page, "cmd_kal_1");
        button->setFocus();
        QTest::keyClick(button, Qt::Key_Space);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
        QCOMPARE(commands(placed), QStringList(QStringLiteral("§,1,6")));
        page.showFailure(QStringLiteral("fail: §,1,6")); // of an earlier one: this waits to be sent
        QVERIFY(!button->isEnabled());
        page.commandLeft(QStringLiteral("§,1,6"));
        page.showFailure("fail: H,0");
        QVERIFY(!button->isEnabled());
        page.showFailure(QStringLiteral(" <-- fail: §,1,6"));
        QVERIFY(button->isEnabled() && button->hasFocus() && button->icon().isNull());
        QVERIFY(control<QLabel>(page, "lbl_kal_done")->text().contains(QStringLiteral("fail: §,1,6")));
        QTest::keyClick(button, Qt::Key_Tab); // goes on from where it was
        QVERIFY(control<QPushButton>(page, "cmd_kal_2")->hasFocus());
    }

    void earlierConfirmationsCanBeScrolledBackTo()
    {
        CalibrationPage page(m_all.context);
        m_all.open(page);
        page.confirm("0,6");
        page.confirm("1,6");
        const auto *done = control<QLabel>(page, "lbl_kal_done");
        QCOMPARE(done->text(), "1,6");
        const auto marked = [&page](int index) {
            return !control<QPushButton>(page, QStringLiteral("cmd_kal_%1").arg(index))->icon().isNull();
        };
        QVERIFY(marked(0) && marked(1) && !marked(2));
        press(page, "cmd_kal_5");
        page.confirm("done"); // without a number: the button pressed last
        QVERIFY(marked(5) && control<QPushButton>(page, "cmd_kal_5")->isEnabled());
        QTest::keyClick(control<QScrollBar>(page, "VScr_kalib"), Qt::Key_Up);
        QTest::keyClick(control<QScrollBar>(page, "VScr_kalib"), Qt::Key_Up);
        QCOMPARE(done->text(), "0,6");
        QTest::mouseDClick(control<QLabel>(page, "lbl_kal_done"), Qt::LeftButton);
        QVERIFY(!marked(0) && done->text().isEmpty());
    }

    void theVersionTakesTextsWithoutCountingAsAnEdit()
    {
        InfoPage page(m_all.context);
        m_all.open(page);
        auto *version = control<QLineEdit>(page, "txt_info_version");
        typeOver(version, "2.1");
        QCOMPARE(m_all.document.configuration().info.version, "2.1");
        QVERIFY(!m_all.document.isModified());
        auto *comment = control<QPlainTextEdit>(page, "txt_info_kommentar");
        comment->setFocus();
        QTest::keyClicks(comment, "two pumps");
        QTest::keyClick(comment, Qt::Key_Tab);
        QVERIFY(control<QLineEdit>(page, "txt_logfile")->hasFocus());
        QCOMPARE(m_all.document.configuration().info.comment, "two pumps");
        QCOMPARE(version->text(), "2009-11-15 14:05:35");
        QVERIFY(m_all.document.isModified());
    }

    void aChosenFileIsAnEdit()
    {
        InfoPage page(m_all.context);
        m_all.open(page);
        connect(&page, &InfoPage::chooseHistoryFile, &page, [&page] { page.setHistoryFile("/tmp/h.csv"); });
        press(page, "cmd_historyExportFile");
        QCOMPARE(m_all.document.configuration().info.historyExportFile, "/tmp/h.csv");
        QVERIFY(m_all.document.isModified());
    }

    void aPortIsChosenTypedOrSearched()
    {
        ConnectionPage page(m_all.context);
        m_all.open(page);
        const QSignalSpy wanted(&page, &ConnectionPage::serialWanted);
        auto *ports = control<QComboBox>(page, "Cmb_connection_port");
        page.setPorts({{"/dev/ttyS0", {}}, {"/dev/ttyS1", "Maker Cable"}});
        press(page, "cmd_connection_serial");
        ports->setFocus();
        QTest::keyClick(ports, Qt::Key_Down);
        press(page, "cmd_connection_serial");
        typeOver(ports->lineEdit(), "/dev/pts/7");
        page.setPorts({{"/dev/ttyS1", {}}});
        press(page, "cmd_connection_serial");
        QCOMPARE(commands(wanted), QStringList({"", "/dev/ttyS0", "/dev/pts/7"}));
    }

    void theAdapterBehindALineIsNamed()
    {
        ConnectionPage page(m_all.context);
        m_all.open(page);
        page.setPorts({{"/dev/ttyS0", {}}, {"/dev/ttyUSB0", "Maker Cable"}});
        page.setLast("/dev/ttyUSB0", "192.168.0.9");
        const auto *adapter = control<QLabel>(page, "lbl_connection_adapter");
        QCOMPARE(control<QComboBox>(page, "Cmb_connection_port")->currentText(), "/dev/ttyUSB0");
        QCOMPARE(adapter->text(), "Maker Cable");
        typeOver(control<QComboBox>(page, "Cmb_connection_port")->lineEdit(), "/dev/ttyS0");
        QCOMPARE(adapter->text(), "");

        const auto *network = control<QLabel>(page, "lbl_connection_network");
        auto *address = control<QLineEdit>(page, "Txt_connection_address");
        QCOMPARE(address->text(), "10.0.0.1"); // that of the configuration comes first
        QVERIFY(network->text().startsWith("No network adapter"));
        page.setAdapters({{"eth0", "192.168.0.2", 24}, {"wlan0", "10.1.2.3", 8}});
        QCOMPARE(network->text(), "Through wlan0 (10.1.2.3)");
        typeOver(address, "192.168.1.9");
        QCOMPARE(
            network->text(),
            "In none of this computer's networks, so through a router: eth0 (192.168.0.2), wlan0 (10.1.2.3)");
        typeOver(address, "pump.example.org");
        QVERIFY(network->text().startsWith("Adapters of this computer: eth0"));
        typeOver(address, "");
        m_all.document.adjust([](Configuration &changed) { changed.ethernet.ip.clear(); });
    }

    void theFirstTasksTakeTheirTurnsAndTellTheirAnswers()
    {
        using Kind = ModuleDialogue::ReplyKind;
        ConnectionPage page(m_all.context);
        m_all.open(page);
        ServiceTasks &tasks = page.tasks();
        const QSignalSpy wanted(&tasks, &ServiceTasks::wanted);
        const auto state = [&page](const char *task) {
            return control<QLabel>(page, QLatin1String("lbl_task_") + task)->text();
        };
        press(page, "cmd_task_clock");
        QCOMPARE(wanted.size(), 0); // there is no line
        tasks.setOpen(true);
        tasks.showWaiting("F,1"); // a command of the user's
        press(page, "cmd_task_clock");
        press(page, "cmd_task_version");
        QCOMPARE(wanted.size(), 0);
        QCOMPARE(state("clock"), "is sent next");
        tasks.commandLeft("F,1");
        tasks.showWaiting({});
        QCOMPARE(wanted.size(), 1);
        tasks.showWaiting("T,09,11,15,14,05,37,7");
        QCOMPARE(state("clock"), "waits until the module reads an SMS");
        tasks.commandLeft("T,09,11,15,14,05,38,7"); // made anew when the module reads
        tasks.showWaiting({});
        QCOMPARE(state("clock"), "handed over, not answered yet");
        QCOMPARE(wanted.size(), 2);
        tasks.showWaiting(QStringLiteral("V,§"));
        tasks.showReply({Kind::Sms, "+IP", "OK: T"});
        QCOMPARE(state("clock"), "done");
        tasks.commandLeft(QStringLiteral("V,§"));
        tasks.showWaiting({});
        tasks.showReply({Kind::Sms, "+IP", "V,2.1.5,Monday,KTR"});
        QCOMPARE(state("version"), "application 2.1.05, configuration Monday");

        tasks.showLine("com <---- +CSQ: 3,0");
        QCOMPARE(state("signal"), QStringLiteral("–")); // nobody asked
        press(page, "cmd_task_signal");
        tasks.showLine("com <---- +CSQ: 18,0");
        QCOMPARE(state("signal"), "-77 dBm (18 of 31)");
        press(page, "cmd_task_clock");
        tasks.showWaiting("T,1");
        tasks.showWaiting({}); // taken back
        QCOMPARE(state("clock"), "not sent");
        tasks.setOpen(false);
        QCOMPARE(state("version"), "application 2.1.05, configuration Monday");
        QCOMPARE(wanted.size(), 3);
    }

    void theConfigurationsAddressIsProposedUntilAnotherIsTyped()
    {
        ConnectionPage page(m_all.context);
        m_all.open(page);
        const QSignalSpy wanted(&page, &ConnectionPage::ethernetWanted);
        press(page, "cmd_connection_ethernet");
        typeOver(control<QLineEdit>(page, "Txt_connection_address"), "192.168.0.9");
        m_all.document.adjust([](Configuration &changed) { changed.ethernet.subnet = "255.0.0.0"; });
        press(page, "cmd_connection_exclusive");
        QCOMPARE(wanted.value(0), QVariantList({"10.0.0.1", false}));
        QCOMPARE(wanted.value(1), QVariantList({"192.168.0.9", true}));
    }

    void init() { m_all.document.restore(m_fresh, false); }

private:
    static void press(const QWidget &page, const char *name)
    {
        auto *button = control<QAbstractButton>(page, QString::fromLatin1(name));
        QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(8, button->height() / 2));
    }

    /// The first argument of each signal.
    static QStringList commands(const QSignalSpy &spy)
    {
        QStringList texts;
        for (const QVariantList &arguments : spy) {
            texts += arguments.first().toString();
        }
        return texts;
    }

    PageFixture m_all;
    Configuration m_fresh = m_all.document.configuration();
};

QTEST_MAIN(ServicePagesTest)
#include "service_pages_test.moc"
