#include "look/list_views.h"

#include <QContextMenuEvent>
#include <QStandardItemModel>
#include <QTest>
#include <QTreeView>

using namespace ktr;
using namespace Qt::StringLiterals;

namespace {

/// A field and a list below it, in a window.
struct Window : QWidget
{
    Window() : field(new QLineEdit(this)), list(new QTreeView(this))
    {
        list->setModel(&lines);
        setUpLines(*list);
        list->move(0, 40);
        setTabOrder(field, list);
        show();
        activateWindow();
        field->setFocus();
    }

    QStandardItemModel lines;
    QLineEdit *field;
    QTreeView *list;
};

} // namespace

class ListViewsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keysActOnTheLineThatHasTheFocus()
    {
        Window window;
        chooseOnArrival(*window.list);
        QTRY_VERIFY(window.field->hasFocus());
        QTest::keyClick(&window, Qt::Key_Tab);
        QVERIFY(window.list->hasFocus() && chosenLines(*window.list).isEmpty()); // there is none
        QTest::keyClick(&window, Qt::Key_Backtab);
        window.lines.appendRow(new QStandardItem("most urgent"));
        window.lines.appendRow(new QStandardItem("less urgent"));
        QTest::keyClick(&window, Qt::Key_Tab);
        QVERIFY(window.list->hasFocus());
        QCOMPARE(chosenLines(*window.list), QModelIndexList{window.lines.index(0, 0)});
        QTest::keyClick(window.list, Qt::Key_Down);
        QTest::keyClick(&window, Qt::Key_Backtab);
        QTest::keyClick(&window, Qt::Key_Tab);
        QCOMPARE(chosenLines(*window.list),
                 QModelIndexList{window.lines.index(1, 0)}); // what was chosen stays
    }

    void aWindowMayGoWhileTheMenuOfItsListIsOpen()
    {
        auto window = std::make_unique<Window>();
        int done = 0;
        QAction act("Act", nullptr);
        connect(&act, &QAction::triggered, this, [&done] { ++done; });
        window->list->addAction(&act);
        offerActions(*window->list);
        const auto ask = [&window] {
            QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5),
                                    window->list->viewport()->mapToGlobal(QPoint(5, 5)));
            QCoreApplication::sendEvent(window->list->viewport(), &event);
            return qobject_cast<QMenu *>(QApplication::activePopupWidget());
        };
        QMenu *menu = ask();
        QVERIFY(menu != nullptr && menu->actions() == QList<QAction *>{&act});
        QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Return);
        QCOMPARE(done, 1);
        QVERIFY(ask() != nullptr);
        window.reset();
        QVERIFY(QApplication::activePopupWidget() == nullptr);
    }
};

QTEST_MAIN(ListViewsTest)
#include "list_views_test.moc"
