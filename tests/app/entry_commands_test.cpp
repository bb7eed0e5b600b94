#include "app/entry_commands.h"
#include "app/main_menu.h"
#include "editor/input_page.h"
#include "editor/limit_value_page.h"
#include "editor/switch_point_page.h"
#include "support/choosing.h"
#include "support/page_fixture.h"

#include <QAction>
#include <QClipboard>
#include <QLineEdit>
#include <QMainWindow>
#include <QMimeData>
#include <QTableView>

using namespace ktr;
using namespace ktr::test;

namespace {

/// A window with the pages of entries, as the program's own has them.
struct EntryWindow
{
    EntryWindow()
    {
        QObject::connect(&all.document, &Document::changed, &tabs, &PageTabs::showRecords);
        QObject::connect(&all.history, &EditHistory::moved, &tabs, &PageTabs::goTo);
        QObject::connect(&commands, &EntryCommands::statusMessage, &window,
                         [this](const QString &line) { all.told += line; });
        window.setCentralWidget(&tabs);
        menu.applyTexts(all.texts);
        tabs.applyTexts();
        window.show();
        window.activateWindow();
    }
    ~EntryWindow() { window.takeCentralWidget(); }

    QTableView *list(PageIndex page)
    {
        tabs.setCurrentIndex(static_cast<int>(page));
        const bool limitValues = page == PageIndex::LimitValues;
        auto *list = control<QTableView>(tabs, limitValues ? "Tbl_gw" : "Tbl_swtch");
        list->setFocus();
        return list;
    }
    QTableView *limitValues(int entry)
    {
        QTableView *found = list(PageIndex::LimitValues);
        tabs.page(PageIndex::LimitValues)->showEntry(entry);
        return found;
    }

    PageFixture all;
    QMainWindow window;
    MainMenu menu{window};
    PageTabs tabs{all.context, [this](PageIndex index) -> Page * {
                      return index == PageIndex::LimitValues ? new LimitValuePage(all.context)
                             : index == PageIndex::SwitchPoints
                                 ? new SwitchPointPage(all.context)
                                 : static_cast<Page *>(new InputPage(all.context));
                  }};
    EntryCommands commands{{window, menu, tabs, all.context}};
};

} // namespace

class EntryCommandsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_one = std::make_unique<EntryWindow>();
        QVERIFY(QTest::qWaitForWindowActive(&m_one->window));
        m_one->all.document.adjust([](Configuration &c) {
            c.limitValues[0] = {9, "high", "80", "0", "0", 3, 255, 0, 2, "30"};
            c.limitValues[1] = {1, "door", "1", "0", "0", 2, 255, 0, 0, "30"};
            c.limitValues[16].reference = 1;
            c.switchPoints[3] = {1, 15, "", "0", "1", 0};
        });
        m_one->limitValues(0);
        m_one->all.document.setModified(false);
        m_one->all.history.clear();
    }
    void cleanup() { m_one.reset(); }

    void whatWasReplacedIsToldAndNoMessageOutlivesItsUndo()
    {
        QStringList undone;
        connect(&m_one->all.history, &EditHistory::undone, this,
                [&](const QString &words) { undone += words; });
        QTableView *list = m_one->limitValues(0);
        QTest::keySequence(list, QKeySequence::Copy);
        m_one->limitValues(1);
        QTest::keySequence(list, QKeySequence::Paste);
        const QString pasted = "Pasted: LV 2, in place of 1 DigIn 1 = 1, \"door\"";
        QCOMPARE(told(), pasted + ". Ctrl+Z takes it back");
        m_one->limitValues(5);
        QTest::keySequence(list, QKeySequence::Paste);
        QCOMPARE(told(), "Pasted: LV 6"); // nothing stood there
        m_one->all.history.edit({"Txt_gw_gw", 5}, [](Configuration &c) { c.limitValues[5].limit = "81"; });
        m_one->all.history.undo();
        m_one->all.history.undo();
        m_one->all.history.undo();
        QCOMPARE(undone, QStringList({"", "Pasted: LV 6", pasted}));

        QTableView *points = m_one->list(PageIndex::SwitchPoints);
        m_one->tabs.page(PageIndex::SwitchPoints)->showEntry(3);
        QTest::keySequence(points, QKeySequence::Copy);
        QTest::keySequence(points, QKeySequence::Paste); // over itself: nothing happens
        m_one->tabs.page(PageIndex::SwitchPoints)->showEntry(3);
        QTest::keyClick(points, Qt::Key_Delete);
        QVERIFY2(told().contains("(11 DigOut 1: 15 LV exceeded (above the limit)). Ctrl+Z"),
                 qPrintable(told()));
        m_one->all.history.undo();
        QVERIFY(undone.last().startsWith("Cleared: Switchpoint 4 (11 DigOut 1"));
        QTest::keySequence(points, QKeySequence::Cut);
        m_one->all.history.undo();
        QVERIFY(undone.last().startsWith("Cut: Switchpoint 4"));
        QTest::keyClick(points, Qt::Key_Down, Qt::AltModifier);
        m_one->all.history.undo();
        QCOMPARE(undone.last(), "Switchpoint 4 moved to 5");
        QTest::keyClick(points, Qt::Key_D, Qt::ControlModifier | Qt::ShiftModifier);
        m_one->all.history.undo();
        QVERIFY(undone.last().startsWith("Switchpoint 4 duplicated"));
    }

    void theKeysMoveAnEntryAndWhatNamesItFollows()
    {
        QTableView *list = m_one->limitValues(0);
        QTest::keyClick(list, Qt::Key_Down, Qt::AltModifier);
        QTest::keyClick(list, Qt::Key_Down, Qt::AltModifier);
        QCOMPARE(now().limitValues[2].alarm, "high");
        QCOMPARE(now().limitValues[0].alarm, "door");
        QCOMPARE(now().limitValues[16].reference, 4);
        QCOMPARE(now().switchPoints[3].limitValue, 2);
        QCOMPARE(list->currentIndex().row(), 2);
        QCOMPARE(control<QLineEdit>(m_one->tabs, "Txt_gw_meldung")->text(), "high");
        m_one->all.history.undo(); // a step each
        QCOMPARE(now().limitValues[1].alarm, "high");
        QCOMPARE(now().switchPoints[3].limitValue, 1);
        m_one->all.history.undo();
        QVERIFY(!m_one->all.document.isModified());
        QTest::keyClick(list, Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(told(), "There is no place 0");
        QVERIFY(!m_one->all.history.canUndo());
    }

    void whatIsCutGoesAtOnceAndItsNamersFollowItToWhereItIsPasted()
    {
        QTableView *list = m_one->limitValues(0);
        QTest::keySequence(list, QKeySequence::Cut);
        QCOMPARE(now().limitValues[0].channel, 0);
        QCOMPARE(told(), "Cut: LV 1. It is still named by LV 17, Switchpoint 4, which follow it to where it "
                         "is pasted here");
        m_one->limitValues(7);
        QTest::keySequence(list, QKeySequence::Paste);
        QCOMPARE(now().limitValues[7].alarm, "high");
        QCOMPARE(now().limitValues[16].reference, 128);
        QCOMPARE(now().switchPoints[3].limitValue, 7);
        m_one->limitValues(9);
        QTest::keySequence(list, QKeySequence::Paste); // once more: a copy, which nothing follows
        QCOMPARE(now().limitValues[9].alarm, "high");
        QCOMPARE(now().switchPoints[3].limitValue, 7);
        m_one->limitValues(1);
        QTest::keySequence(list, QKeySequence::Paste);
        m_one->limitValues(7);
        QTest::keyClick(list, Qt::Key_Delete);
        QCOMPARE(told(),
                 "Cleared: LV 8 (9 AnalogIn 1 > 80, \"high\"). It is still named by LV 17, Switchpoint 4. "
                 "Ctrl+Z takes it back");
        for (int step = 0; step < 5; ++step) {
            m_one->all.history.undo();
        }
        QCOMPARE(now().limitValues[0].alarm, "high");
        QCOMPARE(now().switchPoints[3].limitValue, 0);
    }

    void severalEntriesGoOverTheClipboardIntoAnotherFile()
    {
        QTableView *list = m_one->limitValues(0);
        QTest::keyClick(list, Qt::Key_Down, Qt::ShiftModifier);
        QTest::keySequence(list, QKeySequence::Copy);
        QCOMPARE(told(), "Copied: LV 1–2");
        QVERIFY(QGuiApplication::clipboard()->text().startsWith("#\tNotification\t"));
        EntryWindow other;
        QVERIFY(QTest::qWaitForWindowActive(&other.window));
        QTest::keySequence(other.limitValues(4), QKeySequence::Paste);
        const Configuration &there = other.all.document.configuration();
        QVERIFY(there.limitValues[4] == now().limitValues[0]);
        QVERIFY(there.limitValues[5] == now().limitValues[1]);
        QCOMPARE(rowTexts(other.limitValues(5), 5), QStringList({"6", "1 DigIn 1", "= 1", "door"}));

        other.all.document.setModified(false);
        QTest::keySequence(other.list(PageIndex::SwitchPoints), QKeySequence::Paste);
        QCOMPARE(other.all.told.constLast(), "On the clipboard are limit values, not switch points");
        QTest::keySequence(other.limitValues(15), QKeySequence::Paste);
        QVERIFY(other.all.told.constLast().contains("has no place at 17"));
        QVERIFY(!other.all.document.isModified());
    }

    void aSpreadsheetsRowsBecomeEntries()
    {
        QGuiApplication::clipboard()->setText("Channel\tLimit Value\tNotification\r\n10\t12,5\tMühle\r\n");
        QTest::keySequence(m_one->limitValues(5), QKeySequence::Paste);
        QCOMPARE(now().limitValues[5].channel, 10);
        QCOMPARE(now().limitValues[5].limit, "12,5");
        QCOMPARE(now().limitValues[5].alarm, "Muehle");
        m_one->all.history.undo();
        QVERIFY(!m_one->all.document.isModified());
    }

    void aDuplicateIsShown()
    {
        QTableView *list = m_one->limitValues(0);
        QTest::keyClick(list, Qt::Key_D, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(now().limitValues[2].alarm, "high");
        QCOMPARE(list->currentIndex().row(), 2);
        QCOMPARE(list->selectionModel()->selectedRows().size(), 1);
        QCOMPARE(told(), "LV 1 duplicated: LV 3");
    }

    void inAFieldTheKeysBelongToItsText()
    {
        m_one->limitValues(0);
        auto *field = control<QLineEdit>(m_one->tabs, "Txt_gw_meldung");
        field->setFocus();
        field->selectAll();
        QTest::keySequence(field, QKeySequence::Cut);
        QCOMPARE(QGuiApplication::clipboard()->text(), "high");
        QCOMPARE(now().limitValues[0].alarm, "");
        QCOMPARE(now().limitValues[0].channel, 9);
        QTest::keyClick(control<QWidget>(m_one->tabs, "Cbo_gw_ip"), Qt::Key_Delete);
        QTest::keySequence(control<QWidget>(m_one->tabs, "Cbo_gw_ip"), QKeySequence::Paste);
        QCOMPARE(now().limitValues[0].channel, 9);
        QVERIFY(m_one->menu.cutEntry->isEnabled());
        m_one->tabs.setCurrentIndex(static_cast<int>(PageIndex::Ip));
        QVERIFY(!m_one->menu.cutEntry->isEnabled());
        auto *interval = control<QLineEdit>(m_one->tabs, "Txt_ip_interval_0");
        typeOver(interval, "5");
        QTest::keyClick(interval, Qt::Key_D, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(now().archiving[17].interval, "5");
    }

private:
    const Configuration &now() const { return m_one->all.document.configuration(); }
    QString told() const { return m_one->all.told.constLast(); }

    std::unique_ptr<EntryWindow> m_one;
};

QTEST_MAIN(EntryCommandsTest)
#include "entry_commands_test.moc"
