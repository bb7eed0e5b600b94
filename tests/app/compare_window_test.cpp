#include "app/compare_window.h"
#include "config/fields.h"
#include "look/style.h"
#include "platform/files.h"
#include "platform/registry.h"
#include "support/page_fixture.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTreeWidget>

using namespace ktr;
using namespace ktr::test;

class CompareWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        MRegistry::setRegistryFile(path("registry.json"));
        m_pages = std::make_unique<PageFixture>();
        m_pages->document.makeNew();
        m_pages->document.setModified(false);
        m_places.clear();
        m_window = std::make_unique<CompareWindow>(CompareWindow::Services{
            m_pages->document, m_pages->history, m_pages->texts, [this] { return m_chosen; },
            [this](const QString &) { return path("table.csv"); },
            [this](const EditPlace &place) { m_places += place; }});
        m_window->appear();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }
    void cleanup() { m_window.reset(); }

    void anEditAppearsAndEnterGoesToItsField()
    {
        Configuration other = m_pages->document.configuration();
        other.limitValues[4].delay = "9";
        m_window->compareWith(other, "what the module holds");
        QCOMPARE(lines(), QStringList("Delay|0|9"));
        QVERIFY(control<QLabel>(*m_window, "lbl_compare_other")->text().contains("what the module holds"));
        m_pages->document.edit([](Configuration &c) { c.administrators[1].number = "+491711234567"; });
        QTRY_COMPARE(lines().size(), 2);
        // The chosen line stays the chosen one.
        QCOMPARE(tree()->currentItem()->text(0), "Delay");
        tree()->setFocus();
        QTest::keyClick(tree(), Qt::Key_Return);
        QCOMPARE(m_places.takeLast(), (EditPlace{"Txt_gw_delay", 4}));
        QTest::keyClick(tree(), Qt::Key_Home);
        QTest::keyClick(tree(), Qt::Key_Down);
        QCOMPARE(tree()->currentItem()->text(0), "Phone Number");
        doubleClick(tree()->currentItem());
        QCOMPARE(m_places.takeLast(), (EditPlace{"txt_gsm_num_1", 1}));
        m_pages->document.edit([&other](Configuration &c) { c = other; });
        QTRY_COMPARE(lines(), QStringList());
        QVERIFY(notice().contains("No difference"));
    }

    void fieldsAndEntriesAreTakenOverAsStepsOfUndo()
    {
        Configuration other = m_pages->document.configuration();
        other.limitValues[4].delay = "9";
        other.limitValues[4].alarm = "Tank 4";
        other.gsm.stationId = "North";
        m_window->compareWith(other, "other");
        QCOMPARE(lines().size(), 3);
        click(tree()->topLevelItem(1)); // the entry with both of its fields
        clickButton("Cmd_compare_take");
        QCOMPARE(lines(), QStringList("Station ID|–|North"));
        QCOMPARE(m_pages->document.configuration().limitValues[4], other.limitValues[4]);
        QVERIFY(m_pages->document.isModified());
        QTest::keyClick(m_window.get(), Qt::Key_Z, Qt::ControlModifier);
        QTRY_COMPARE(lines().size(), 3);
        QVERIFY(!m_pages->document.isModified());
        QTest::keyClick(m_window.get(), Qt::Key_Y, Qt::ControlModifier);
        QTRY_COMPARE(lines().size(), 1);
        click(tree()->topLevelItem(0)->child(0));
        clickButton("Cmd_compare_take");
        QCOMPARE(m_pages->document.configuration().gsm.stationId, "North");
        QCOMPARE(lines(), QStringList());
    }

    void afterALineWasTakenOverTheNextOneIsChosen()
    {
        m_window->resize(m_window->minimumSize());
        Configuration other = m_pages->document.configuration();
        for (std::size_t entry = 0; entry < 16; ++entry) {
            other.limitValues[entry].delay = "9";
            other.limitValues[entry].alarm = QString("Tank %1").arg(entry);
        }
        m_window->compareWith(other, "other");
        const auto chosen = [this] {
            const QTreeWidgetItem *line = tree()->currentItem();
            return line->isSelected() ? line->parent()->text(0) + '|' + line->text(0) : "not selected";
        };
        click(tree()->topLevelItem(8)->child(0));
        QCOMPARE(chosen(), "Limit Value – LV 9|Notification");
        const int scrolled = tree()->verticalScrollBar()->value();
        QVERIFY(scrolled > 0);
        clickButton("Cmd_compare_take");
        QCOMPARE(chosen(), "Limit Value – LV 9|Delay");
        QCOMPARE(tree()->verticalScrollBar()->value(), scrolled);
        clickButton("Cmd_compare_take"); // the heading goes with its last line
        QCOMPARE(chosen(), "Limit Value – LV 10|Notification");
        QVERIFY2(state().contains("Taken over: Limit Value – LV 9, Delay in place of 0 (Ctrl+Z)"),
                 qPrintable(state()));
        QTest::keyClick(m_window.get(), Qt::Key_Z, Qt::ControlModifier);
        QTRY_COMPARE(tree()->topLevelItemCount(), 16);
        QVERIFY2(!state().contains("Taken over"), qPrintable(state())); // it is no longer so
        QCOMPARE(chosen(), "Limit Value – LV 10|Notification");
        click(tree()->topLevelItem(15)); // both lines of the last one
        clickButton("Cmd_compare_take");
        QCOMPARE(chosen(), "Limit Value – LV 15|Delay");
        click(tree()->topLevelItem(12)->child(0));
        const int place = tree()->visualItemRect(tree()->currentItem()).top();
        m_pages->document.edit([](Configuration &c) { c.gsm.stationId = "above"; });
        QTRY_COMPARE(tree()->topLevelItemCount(), 16);
        QCOMPARE(chosen(), "Limit Value – LV 13|Notification");
        QCOMPARE(tree()->visualItemRect(tree()->currentItem()).top(), place);
    }

    void theSavedStateIsFollowed()
    {
        QVERIFY(!control<QAbstractButton>(*m_window, "Cmd_compare_saved")->isEnabled());
        m_pages->document.setFileName(path("a.xml"));
        QVERIFY(m_pages->document.save());
        clickButton("Cmd_compare_saved");
        QCOMPARE(lines(), QStringList());
        m_pages->history.edit({"txt_gsm_id", 0}, [](Configuration &c) { c.gsm.stationId = "South"; });
        QTRY_COMPARE(lines(), QStringList("Station ID|South|–"));
        QVERIFY(m_pages->document.save());
        QTRY_COMPARE(lines(), QStringList());
    }

    void aFileThatCannotBeReadIsToldAndNothingIsLost()
    {
        Configuration other = m_pages->document.configuration();
        other.gsm.stationId = "North";
        m_window->compareWith(other, "other");
        m_chosen = path("none.xml");
        clickButton("Cmd_compare_file");
        QVERIFY2(state().contains("none.xml"), qPrintable(state()));
        QVERIFY(replaceFile(path("none.xml"), "<x/>"));
        clickButton("Cmd_compare_base");
        QVERIFY2(state().contains("no configuration"), qPrintable(state()));
        QCOMPARE(lines(), QStringList("Station ID|–|North"));
    }

    void withAnAncestorConflictsAreToldAndDecided()
    {
        const Configuration base = m_pages->document.configuration();
        QVERIFY(replaceFile(path("base.xml"), writeConfiguration(base, fixedEnvironment())));
        Configuration other = base;
        other.gsm.aliveCycle = "24";
        other.limitValues[0].delay = "1";
        other.limitValues[1].delay = "1";
        m_pages->history.edit({}, [](Configuration &c) {
            c.gsm.stationId = "North";
            c.limitValues[0].delay = "2";
            c.limitValues[1].delay = "2";
        });
        m_window->compareWith(other, "other");
        m_chosen = path("base.xml");
        clickButton("Cmd_compare_base");
        QCOMPARE(lines(), (QStringList{"Station ID|North|–|–|present", "Alive Cycle|0|24|0|other side",
                                       "Delay|2|1|0|conflict", "Delay|2|1|0|conflict"}));
        QVERIFY2(state().contains("Conflicts: 2"), qPrintable(state()));
        QTest::mouseClick(control<QCheckBox>(*m_window, "Chk_compare_conflicts"), Qt::LeftButton, {}, {8, 8});
        QCOMPARE(lines().size(), 2);
        click(tree()->topLevelItem(0)->child(0));
        clickButton("Cmd_compare_keep");
        QCOMPARE(lines().size(), 1);
        click(tree()->topLevelItem(0)->child(0));
        clickButton("Cmd_compare_take");
        QVERIFY2(state().contains("Conflicts: 0"), qPrintable(state()));
        clickButton("Cmd_compare_merge");
        const Configuration &merged = m_pages->document.configuration();
        QCOMPARE(merged.gsm.stationId, "North");
        QCOMPARE(merged.gsm.aliveCycle, "24");
        QCOMPARE(merged.limitValues[0].delay, "2");
        QCOMPARE(merged.limitValues[1].delay, "1");
        m_pages->history.undo();
        QCOMPARE(m_pages->document.configuration().gsm.aliveCycle, "0");
    }

    void whatIsShownIsFilteredCopiedAndExported()
    {
        Configuration other = m_pages->document.configuration();
        other.limitValues[4].alarm = "Tank; full";
        other.gsm.stationId = "North";
        other.gsm.pin = "4711";
        other.versionText = "another";
        m_window->compareWith(other, "other");
        QCOMPARE(lines().size(), 3);
        QTest::keyClick(m_window.get(), Qt::Key_F, Qt::ControlModifier);
        auto *filter = control<QLineEdit>(*m_window, "Txt_compare_filter");
        QVERIFY(filter->hasFocus());
        type(filter, "tank");
        QCOMPARE(lines(), QStringList("Notification|–|Tank; full"));
        clickButton("Cmd_compare_export");
        QByteArray table;
        QVERIFY(readFile(path("table.csv"), table));
        QCOMPARE(table, "\xEF\xBB\xBFPage;Entry;Field;Present;Other side\r\n"
                        "Limit Value;LV 5;Notification;;\"Tank; full\"\r\n");
        filter->clear();
        QTest::keyClick(tree(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(tree(), Qt::Key_C, Qt::ControlModifier);
        QVERIFY(QApplication::clipboard()->text().contains("Notification\t–\tTank; full\n"));
        QVERIFY(!QApplication::clipboard()->text().contains("4711"));
        QTest::mouseClick(control<QCheckBox>(*m_window, "Chk_compare_stamps"), Qt::LeftButton, {}, {8, 8});
        QCOMPARE(lines().size(), 4);
        QTest::mouseClick(control<QCheckBox>(*m_window, "Chk_compare_commands"), Qt::LeftButton, {}, {8, 8});
        QCOMPARE(lines().size(), 3); // numbers, limit value, closing
        QVERIFY(lines().join('\n').contains("Tank; full"));
        QVERIFY(!lines().join('\n').contains("4711"));
        QTest::keyClick(tree(), Qt::Key_End);
        QTest::keyClick(tree(), Qt::Key_Return);
        QCOMPARE(m_places.last().control, "txt_info_version");
        QTest::keyClick(tree(), Qt::Key_Escape);
        QVERIFY(!m_window->isVisible());
    }

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    QTreeWidget *tree() const { return control<QTreeWidget>(*m_window, "Tree_compare"); }
    QString state() const { return control<QLabel>(*m_window, "lbl_compare_state")->text(); }
    QString notice() const { return control<QLabel>(*m_window, "lbl_compare_empty")->text(); }

    /// The lines below the entries, or those of a list without entries: their shown columns.
    QStringList lines() const
    {
        QStringList lines;
        for (QTreeWidgetItemIterator item(tree()); *item != nullptr; ++item) {
            if ((*item)->childCount() > 0) {
                continue;
            }
            QStringList cells;
            for (int column = 0; column < tree()->columnCount(); ++column) {
                if (!tree()->isColumnHidden(column)) {
                    cells += (*item)->text(column);
                }
            }
            lines += cells.join('|');
        }
        return lines;
    }

    void click(QTreeWidgetItem *item)
    {
        tree()->scrollToItem(item);
        QTest::mouseClick(tree()->viewport(), Qt::LeftButton, {}, tree()->visualItemRect(item).center());
    }
    void doubleClick(QTreeWidgetItem *item)
    {
        tree()->scrollToItem(item);
        const QPoint place = tree()->visualItemRect(item).center();
        QTest::mouseClick(tree()->viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(tree()->viewport(), Qt::LeftButton, {}, place);
    }
    void clickButton(const QString &name)
    {
        auto *button = control<QAbstractButton>(*m_window, name);
        QVERIFY2(button->isVisible() && button->isEnabled(), qPrintable(name));
        QTest::mouseClick(button, Qt::LeftButton);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<PageFixture> m_pages;
    std::unique_ptr<CompareWindow> m_window;
    QList<EditPlace> m_places;
    QString m_chosen;
};

QTEST_MAIN(CompareWindowTest)
#include "compare_window_test.moc"
