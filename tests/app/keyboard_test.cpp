#include "app/form_main.h"
#include "opmode/window/form_betriebsmodus.h"
#include "platform/files.h"
#include "platform/registry.h"
#include "support/environment.h"
#include "support/manual_timers.h"
#include "support/recorded_line.h"
#include "support/silent_line.h"

#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QTreeView>

using namespace ktr;
using namespace ktr::test;

namespace {

QString nameOf(const QWidget &widget)
{
    const QString own = widget.objectName().isEmpty() ? QStringLiteral("(no name)") : widget.objectName();
    const QWidget *above = widget.parentWidget();
    return QLatin1String(widget.metaObject()->className()) + u' ' + own +
           (above == nullptr ? QString() : QStringLiteral(" in ") + above->objectName());
}

/// Tab reaches of several radio buttons the one that is chosen alone, and of a view or a field what is in it.
bool isForTab(const QWidget &widget, const QWidget &window)
{
    const auto *radio = qobject_cast<const QRadioButton *>(&widget);
    return widget.isVisible() && widget.isEnabled() && widget.window() == &window &&
           (widget.focusPolicy() & Qt::TabFocus) != 0 && widget.focusProxy() == nullptr &&
           (radio == nullptr || radio->isChecked());
}

} // namespace

/// All by keys, and for whoever does not see: on each page of the main window and of the operational mode.
class KeyboardTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        MRegistry::setRegistryFile(m_folder->filePath("registry.json"));
        QVERIFY(QFile::copy(KTR_SOURCE_DIR "/data/language.ini", m_folder->filePath("language.ini")));
        QVERIFY(QFile::copy(KTR_SOURCE_DIR "/samples/pumping-station.xml", m_folder->filePath("pump.xml")));
        QVERIFY(replaceFile(m_folder->filePath("nodes.xml"), list()));
        Environment environment = fixedEnvironment();
        environment.programFolder = m_folder->path();
        m_main = std::make_unique<FormMain>(
            Services{environment, m_timers, m_line, m_network, [] { return QStringList("/dev/ttyUSB0"); },
                     m_folder->path() + "/instance", [] { return std::make_unique<RecordedLine>(); }});
        m_main->start({"-english", "-load", m_folder->filePath("pump.xml")});
        QVERIFY(QTest::qWaitForWindowActive(m_main.get()));
        QTRY_VERIFY(m_main->findChild<QTabWidget *>()->count() >= 9);
        QCoreApplication::processEvents();
    }
    void cleanupTestCase()
    {
        m_main.reset();
        m_folder.reset();
    }

    void tabReachesEveryControlOfEachPageOfTheMainWindow() { lookAtPages(*m_main); }

    void everyActionOfAMenuHasATextAndIsReached()
    {
        lookAtMenus(*m_main->menuBar());
        openMode();
        lookAtMenus(*m_mode->menuBar());
        lookAtMenu(*m_mode->findChild<QToolButton *>("Cmd_tree_order")->menu());
    }

    void tabReachesEveryControlOfEachPageOfTheOperationalMode()
    {
        openMode();
        lookAtPages(*m_mode);
        m_mode->findChild<QAction *>("mnu_overview")->trigger();
        look(*m_mode, "overview");
        m_mode->findChild<QAction *>("mnu_ansicht_normal")->trigger();
    }

    void theFocusIsWhereOneGoesOn()
    {
        openMode();
        auto *tree = m_mode->findChild<QTreeView *>("TreeView_KTR_Nodes");
        auto *pages = m_mode->findChild<QTabWidget *>("TabStrip_pages");
        auto *list = m_mode->findChild<QAbstractItemView *>("Tbl_meldung");
        QVERIFY(choose(*tree, "South"));
        pages->setCurrentIndex(1);
        QTRY_COMPARE(list->model()->rowCount(), 2);
        list->setCurrentIndex(list->model()->index(0, 0));
        press("Cmd_meldung_accept", Qt::Key_Space);
        QVERIFY2(list->hasFocus(), focus()); // not at the search
        press("Cmd_meldung_acceptAll", Qt::Key_Space);
        QVERIFY2(list->hasFocus(), focus());

        auto *search = m_mode->findChild<QLineEdit *>("Text_filter_station");
        search->setFocus();
        QTest::keyClicks(search, "Nor");
        QTRY_VERIFY(tree->isRowHidden(1, {}));
        QVERIFY(search->hasFocus());
        QTest::keyClick(search, Qt::Key_Down);
        QVERIFY2(tree->hasFocus(), focus());
        search->setFocus();
        QTest::keyClick(search, Qt::Key_Escape);
        QVERIFY(search->text().isEmpty());
        QVERIFY2(tree->hasFocus(), focus());

        QTRY_VERIFY(!tree->isRowHidden(1, {}));
        QVERIFY(choose(*tree, "North"));
        QTimer::singleShot(0, this, [] {
            QTest::mouseClick(QApplication::activeModalWidget()->findChild<QPushButton *>("OKButton"),
                              Qt::LeftButton);
        });
        m_mode->findChild<QAction *>("mnu_station_del")->trigger();
        QTRY_VERIFY2(m_mode->focusWidget() == tree && tree->currentIndex().data().toString() == u"South",
                     focus());
        m_mode->findChild<QAction *>("mnu_station_undo")->trigger();
        QTRY_VERIFY2(m_mode->focusWidget() == tree && tree->currentIndex().data().toString() == u"North",
                     focus());
        m_mode->findChild<QAction *>("mnu_overview")->trigger();
        QVERIFY2(m_mode->focusWidget()->objectName() == u"List_overview", focus());
        m_mode->findChild<QAction *>("mnu_ansicht_normal")->trigger();
        QVERIFY2(m_mode->focusWidget() == tree, focus());
    }

private:
    static QByteArray list()
    {
        QByteArray nodes;
        const auto add = [&nodes](const QByteArray &key, const QByteArray &text, bool isRed) {
            nodes += "<i key=\"" + key + "\" text=\"" + text + "\" ForeColor=\"" +
                     (isRed ? "255" : "-2147483640") + "\"/>";
        };
        add("North", "North", false);
        add("South", "South", true);
        add("South/meldung", "Notifications", true);
        for (const QByteArray text : {"+4917012345 --&gt; M,Pump fail", "+4917012345 --&gt; M,Door fail"}) {
            add("South/meldung/" + text, text, true);
        }
        add("South/history/1", "01.02.2010 10:00 : IP9 = 12.5", false);
        return "<KTR>" + nodes + "</KTR>";
    }

    void openMode()
    {
        if (m_mode == nullptr) {
            m_main->findChild<QAction *>("mnu_betriebsmodus")->trigger();
            for (QWidget *window : QApplication::topLevelWidgets()) {
                if (auto *found = qobject_cast<Form_betriebsmodus *>(window)) {
                    m_mode = found;
                }
            }
        }
        QVERIFY(m_mode != nullptr && QTest::qWaitForWindowActive(m_mode));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape); // nobody is on duty
    }

    bool choose(QTreeView &tree, const QString &station) const
    {
        for (int row = 0; row < tree.model()->rowCount(); ++row) {
            if (tree.model()->index(row, 0).data().toString() == station) {
                tree.setCurrentIndex(tree.model()->index(row, 0));
                tree.setFocus();
                return true;
            }
        }
        return false;
    }
    void press(const char *button, Qt::Key key)
    {
        auto *found = m_mode->findChild<QPushButton *>(button);
        QTRY_VERIFY(found->isEnabled());
        found->setFocus(Qt::TabFocusReason);
        QTest::keyClick(found, key);
    }
    static const char *focus()
    {
        static QByteArray text;
        const QWidget *widget = QApplication::focusWidget();
        text = widget == nullptr ? QByteArray("nowhere") : nameOf(*widget).toUtf8();
        return text.constData();
    }

    void lookAtPages(QWidget &window)
    {
        auto *pages = window.findChild<QTabWidget *>();
        for (int page = 0; page < pages->count(); ++page) {
            pages->setCurrentIndex(page);
            look(window, pages->tabText(page));
        }
    }

    void look(QWidget &window, const QString &where)
    {
        QCoreApplication::processEvents();
        QStringList problems;
        QSet<QWidget *> reached;
        QWidget *const first = window.focusWidget();
        QVERIFY(first != nullptr);
        constexpr int most = 400;
        int steps = 0;
        for (; steps < most && !reached.contains(QApplication::focusWidget()); ++steps) {
            QWidget *before = QApplication::focusWidget();
            reached += before;
            constexpr int mostParts = 6; // of a date, which Tab goes through
            for (int part = 0; part < mostParts && QApplication::focusWidget() == before; ++part) {
                QTest::keyClick(before, Qt::Key_Tab);
            }
            if (QApplication::focusWidget() == before) {
                problems += "Tab does not leave " + nameOf(*before);
                break;
            }
        }
        for (QWidget *widget : window.findChildren<QWidget *>()) {
            if (isForTab(*widget, window) && !reached.contains(widget)) {
                problems += "Tab does not reach " + nameOf(*widget);
            }
            problems += unnamed(*widget, window);
        }
        for (const QString &problem : std::as_const(problems)) {
            qWarning("%s: %s", qPrintable(where), qPrintable(problem));
        }
        QVERIFY(problems.isEmpty());
    }

    /// What assistive tools could not tell of a control, or of something that draws itself.
    static QStringList unnamed(QWidget &widget, const QWidget &window)
    {
        if (!widget.isVisible() || widget.window() != &window) {
            return {};
        }
        const QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(&widget);
        if (interface == nullptr) {
            return {"no interface: " + nameOf(widget)};
        }
        const bool hasName = !interface->text(QAccessible::Name).isEmpty();
        if (widget.focusPolicy() != Qt::NoFocus && widget.isEnabled() && widget.focusProxy() == nullptr &&
            !hasName && widget.objectName() != u"qt_scrollarea_viewport" &&
            qobject_cast<QTabWidget *>(&widget) == nullptr) {
            return {"no name: " + nameOf(widget)};
        }
        const bool isPicture = widget.findChild<QWidget *>() == nullptr && widget.layout() == nullptr &&
                               interface->role() == QAccessible::Client && !widget.size().isEmpty();
        if (isPicture && widget.accessibleName().isEmpty() && !widget.objectName().startsWith("qt_") &&
            !widget.inherits("QToolBarSeparator")) {
            return {"draws something that is told to nobody: " + nameOf(widget)};
        }
        return {};
    }

    void lookAtMenus(const QMenuBar &bar)
    {
        for (const QAction *menu : bar.actions()) {
            QVERIFY2(menu->text().contains(u'&'), qPrintable(menu->text()));
            if (menu->menu() != nullptr) { // else it is one that does something itself
                lookAtMenu(*menu->menu());
            }
        }
    }
    void lookAtMenu(const QMenu &menu)
    {
        for (const QAction *action : menu.actions()) {
            QVERIFY2(action->isSeparator() || !action->text().isEmpty(), qPrintable(action->objectName()));
            if (action->menu() != nullptr) {
                lookAtMenu(*action->menu());
            }
        }
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    ManualTimers m_timers;
    SilentLine m_line;
    SilentLine m_network;
    std::unique_ptr<FormMain> m_main;
    Form_betriebsmodus *m_mode = nullptr;
};

QTEST_MAIN(KeyboardTest)
#include "keyboard_test.moc"
