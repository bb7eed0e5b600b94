#include "opmode/overview/overview_model.h"
#include "opmode/window/form_betriebsmodus.h"
#include "opmode/window/overview/overview_view.h"
#include "platform/files.h"
#include "platform/registry.h"
#include "support/environment.h"
#include "support/manual_timers.h"
#include "support/recorded_line.h"

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDir>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeView>
#include <QWheelEvent>

using namespace ktr;
using namespace ktr::test;

class OverviewWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        MRegistry::setRegistryFile(m_folder->filePath("registry.json"));
    }
    void cleanup()
    {
        m_window.reset();
        m_mode.reset();
        m_lines.clear();
    }

    void keysSearchChooseAndGoToTheStationInTheTree()
    {
        open({"Pump 1", "Pump 2", "Tower", "Weir"});
        showOverview();
        QVERIFY(!tree()->isVisible() && view()->hasFocus());
        QTest::keyClick(view(), Qt::Key_End);
        QCOMPARE(view()->chosen(), "Weir");
        QCOMPARE(tree()->currentIndex().data().toString(), "Weir"); // what the menus are about
        const QRect tile = view()->visualRect(view()->model()->index(0, 0));
        QTest::mouseClick(view()->viewport(), Qt::LeftButton, {}, tile.center());
        QContextMenuEvent wanted(QContextMenuEvent::Mouse, tile.center(),
                                 view()->viewport()->mapToGlobal(tile.center()));
        QApplication::sendEvent(view()->viewport(), &wanted);
        const auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        QVERIFY(menu != nullptr && menu->actions().contains(action("mnu_station_online", 0)));
        QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
        QTest::keyClick(view(), Qt::Key_Home);
        QTest::keyClick(view(), Qt::Key_Right);
        QCOMPARE(view()->chosen(), "Pump 2");

        QTest::keyClicks(view(), "tow");
        auto *search = m_window->findChild<QLineEdit *>("Text_overview_search");
        QVERIFY(search->hasFocus() && search->text() == "tow");
        QCOMPARE(view()->model()->rowCount(), 1);
        QTest::keyClick(search, Qt::Key_Return);
        QVERIFY(tree()->isVisible() && !view()->isVisible());
        QCOMPARE(tree()->currentIndex().data().toString(), "Tower");
    }

    void searchIsTheOverviewsWhileItIsThere()
    {
        open({"A", "B"});
        showOverview();
        QTest::keyClick(view(), Qt::Key_F, Qt::ControlModifier);
        auto *search = m_window->findChild<QLineEdit *>("Text_overview_search");
        QVERIFY(search->hasFocus());
        const QWidgetList windows = QApplication::topLevelWidgets();
        QVERIFY(std::ranges::none_of(windows, [](const QWidget *window) {
            return window->objectName() == "Form_record" && window->isVisible();
        }));
        QTest::keyClicks(search, "nobody");
        QVERIFY(m_window->findChild<QLabel *>("lbl_overview_none")->isVisible());
        QTest::keyClick(search, Qt::Key_Escape);
        QCOMPARE(view()->model()->rowCount(), 2);
        QVERIFY(view()->hasFocus());
    }

    void fittingTilesFillThePage_data()
    {
        QTest::addColumn<int>("stations");
        QTest::addColumn<QSize>("size");
        for (const int stations : {24, 60, 300, 1000}) {
            for (const QSize size : {QSize(1024, 700), QSize(1920, 1080)}) {
                QTest::addRow("%d at %d", stations, size.width()) << stations << size;
            }
        }
    }
    void fittingTilesFillThePage()
    {
        QFETCH(const int, stations);
        QFETCH(const QSize, size);
        QStringList names;
        for (int station = 0; station < stations; ++station) {
            names += QString("Pump %1").arg(station);
        }
        open(names);
        m_window->resize(size);
        showOverview();
        QTRY_VERIFY(view()->isFitting() && view()->showsAll());
        const QRect last = view()->visualRect(view()->model()->index(stations - 1, 0));
        const int height = view()->viewport()->height();
        QVERIFY2(last.bottom() < height && last.bottom() > height * 9 / 10,
                 qPrintable(QString("%1 of %2").arg(last.bottom()).arg(height)));
        QVERIFY(view()->visualRect(view()->model()->index(0, 0)).top() == 0);
    }

    void aChosenTileLooksNoLessUrgent_data()
    {
        QTest::addColumn<bool>("isDark");
        QTest::newRow("light") << false;
        QTest::newRow("dark") << true;
    }
    void aChosenTileLooksNoLessUrgent()
    {
        QFETCH(const bool, isDark);
        QPalette palette = QApplication::palette();
        if (isDark) {
            palette.setColor(QPalette::Window, QColor(30, 32, 36));
            palette.setColor(QPalette::WindowText, Qt::white);
        }
        StationGlance glance{"A", "A"};
        glance.urgency = Urgency::HighAlarm;
        glance.waiting = glance.standing = 1;
        for (const TileLevel &level : tileLevels()) {
            const QSize size = (QSizeF(level.width, level.height) * 16).toSize();
            const auto redness = [&](bool isChosen) {
                QImage image(size, QImage::Format_RGB32);
                image.fill(palette.color(QPalette::Window));
                QPainter painter(&image);
                const TilePainter tile(level, QFont(), palette);
                const TilePainter::Place place{QRectF(QPointF(), size), isChosen, false};
                level.isCell() ? tile.paintCell(painter, place, glance)
                               : tile.paint(painter, place, glance, {});
                if (isChosen) {
                    tile.paintChosen(painter, place.rect, glance.urgency);
                }
                painter.end();
                std::vector<int> red;
                for (int at = 0; at < size.width() * size.height(); ++at) {
                    const QRgb pixel = image.pixel(at % size.width(), at / size.width());
                    red.push_back(qRed(pixel) - (qGreen(pixel) + qBlue(pixel)) / 2);
                }
                std::ranges::nth_element(red, red.begin() + std::ssize(red) * 3 / 4);
                return red[red.size() * 3 / 4]; // of the ground, beside marks and frames
            };
            QVERIFY2(std::min(size.width(), size.height()) < 16 || redness(true) >= redness(false),
                     qPrintable(QString::number(level.height)));
        }
    }

    void tilesAreZoomedDownToCellsThatStillTellAll()
    {
        open({"A", "B"});
        online("B");
        say(1, "Pump 1 fail");
        showOverview();
        const int fitting = view()->level();
        const QPoint middle = view()->viewport()->rect().center();
        for (int turn = 0; turn < 20; ++turn) {
            QWheelEvent wheel(middle, view()->viewport()->mapToGlobal(middle), {}, {0, -120}, Qt::NoButton,
                              Qt::ControlModifier, Qt::NoScrollPhase, false);
            QApplication::sendEvent(view()->viewport(), &wheel);
        }
        QVERIFY(tileLevels()[std::size_t(view()->level())].isCell());
        const QString tip = view()->model()->index(0, 0).data(Qt::ToolTipRole).toString();
        QVERIFY2(tip.contains("B") && tip.contains("Pump 1 fail"), qPrintable(tip));
        const QAccessibleInterface *tiles = QAccessible::queryAccessibleInterface(view());
        QVERIFY(tiles != nullptr && tiles->childCount() >= 2);
        QVERIFY(tiles->child(0)->text(QAccessible::Name).contains("Pump 1 fail"));
        QTest::keyClick(view(), Qt::Key_0, Qt::ControlModifier);
        QCOMPARE(view()->level(), fitting);
    }

    void groupsAreFoldedByKeysAndMouse()
    {
        QVERIFY(replaceFile(m_folder->filePath("nodes.groups"), "[Pumps]\nPump *\n[Towers]\nTower*\n"));
        open({"Pump 1", "Pump 2", "Tower 1", "Weir"});
        showOverview();
        auto *order = m_window->findChild<QComboBox *>("Combo_overview_order");
        order->setFocus();
        QTest::keyClick(order, Qt::Key_End);
        view()->setFocus();
        QCOMPARE(view()->model()->rowCount(), 7);
        const auto place = [this](int row) { return view()->visualRect(view()->model()->index(row, 0)); };
        QVERIFY(place(0).width() >= 2 * place(1).width() && place(1).top() == place(2).top());
        QVERIFY(place(3).top() > place(1).bottom() && place(3).left() == 0);
        QTest::keyClick(view(), Qt::Key_Home);
        QCOMPARE(view()->currentIndex().row(), 0);
        const QStringList steps{"Pump 1", "Towers", "Tower 1", ""};
        for (const QString &step : steps) {
            QTest::keyClick(view(), Qt::Key_Down);
            QCOMPARE(view()->currentIndex().data().toString(), step);
        }
        QTest::keyClick(view(), Qt::Key_Up);
        QTest::keyClick(view(), Qt::Key_Up);
        QCOMPARE(view()->currentIndex().row(), 3);
        QTest::keyClick(view(), Qt::Key_Space);
        QCOMPARE(view()->model()->rowCount(), 6);
        QCOMPARE(view()->currentIndex().data().toString(), "Towers");
        QVERIFY(view()->currentIndex().data(Qt::ToolTipRole).toString().contains("folded"));
        QTest::keyClick(view(), Qt::Key_Right);
        QCOMPARE(view()->model()->rowCount(), 7);
        QTest::mouseClick(view()->viewport(), Qt::LeftButton, {}, place(0).center());
        QCOMPARE(view()->model()->rowCount(), 5);
        QVERIFY(!tree()->currentIndex().isValid()); // what is folded is the target of nothing

        auto *options = m_window->findChild<QAction *>("mnu_overview_value_9");
        Q_EMIT qobject_cast<QMenu *>(options->parent())
            ->aboutToShow(); // of the group whose heading is chosen
        options->trigger();
        QByteArray file;
        QVERIFY(readFile(m_folder->filePath("nodes.groups"), file));
        QCOMPARE(file, "[Pumps]\n= 9\nPump *\n[Towers]\nTower*\n");
        m_window.reset();
        m_mode.reset();
        openAgain();
        showOverview();
        QCOMPARE(view()->model()->rowCount(), 5); // kept
    }

    void groupsAreEditedAsTextAndChosen()
    {
        open({"Pump 1", "Pump 2", "Tower"});
        showOverview();
        auto *groups = m_window->findChild<QComboBox *>("Combo_overview_group");
        QVERIFY(!groups->isVisible());
        QTimer::singleShot(0, this, [] {
            QWidget *dialog = QApplication::activeModalWidget();
            auto *text = dialog->findChild<QPlainTextEdit *>("Text_groups");
            text->setPlainText("Pump *");
            QVERIFY(dialog->findChild<QWidget *>("lbl_groups_problem")->isVisible());
            text->setPlainText("# by hand\n[Pumps]\nPump *");
            const QString found = dialog->findChild<QLabel *>("lbl_groups_found")->text();
            QVERIFY2(found.contains("Pumps: 2") && found.contains("no group: 1"), qPrintable(found));
            dialog->findChild<QPushButton *>("Cmd_groups_ok")->click();
        });
        m_window->findChild<QAction *>("mnu_overview_groups")->trigger();
        QByteArray file;
        QVERIFY(readFile(m_folder->filePath("nodes.groups"), file));
        QCOMPARE(file, "# by hand\n[Pumps]\nPump *\n");
        QVERIFY(groups->isVisible());
        QCOMPARE(groups->itemText(1), "Pumps (2)");
        groups->setCurrentIndex(1);
        Q_EMIT groups->activated(1);
        QCOMPARE(view()->model()->rowCount(), 2);
        online("Pump 2");
        say(1, "DI1 fail");
        m_timers.advance(OverviewModel::longestDelay);
        QCOMPARE(groups->itemText(1), "Pumps (2, in alarm 1)");
        action("mnu_wall", 0)->trigger();
        QVERIFY(m_window->findChild<QWidget *>("WallHeader")->accessibleName().contains("Pumps"));
    }

    void upToFourValuesAreChosenForGood()
    {
        open({"A"});
        showOverview();
        for (const int channel : {9, 5, 1, 17}) {
            action("mnu_overview_value_%1", channel)->trigger();
        }
        QVERIFY(!action("mnu_overview_value_%1", 2)->isEnabled());
        QVERIFY(!action("mnu_overview_named", 0)->isChecked());
        m_window.reset();
        open({"A"});
        QVERIFY(action("mnu_overview_value_%1", 9)->isChecked());
        action("mnu_overview_named", 0)->trigger();
        QVERIFY(!action("mnu_overview_value_%1", 9)->isChecked());
        QVERIFY(action("mnu_overview_value_%1", 2)->isEnabled());
    }

    void groupsThatCannotBeWrittenStayInTheDialog()
    {
        open({"Pump 1"});
        showOverview();
        const QString blocked = m_folder->filePath("nodes.groups");
        QTimer::singleShot(0, this, [&blocked] {
            QVERIFY(QDir().mkdir(blocked));
            QWidget *dialog = QApplication::activeModalWidget();
            dialog->findChild<QPlainTextEdit *>("Text_groups")->setPlainText("[Pumps]\nPump *");
            QTimer::singleShot(0, dialog, [dialog, &blocked] {
                const auto *problem = dialog->findChild<QLabel *>("lbl_groups_problem");
                QVERIFY2(problem->text().contains(blocked), qPrintable(problem->text()));
                dialog->findChild<QPushButton *>("Cmd_groups_cancel")->click();
            });
            dialog->findChild<QPushButton *>("Cmd_groups_ok")->click();
        });
        action("mnu_overview_groups", 0)->trigger();
        QVERIFY(!m_window->findChild<QComboBox *>("Combo_overview_group")->isVisible());
    }

    void whatCannotBeUsedBesideTheListIsToldUntilItCanAndStaysAsItIs_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QByteArray>("mended");
        QTest::newRow("groups, no text")
            << "nodes.groups" << QByteArray("[Pumps]\nPump *\n\xff\xfe") << QByteArray("[Pumps]\nPump *\n");
        QTest::newRow("groups, not understood")
            << "nodes.groups" << QByteArray("Pump *\n") << QByteArray("[Pumps]\nPump *\n");
        QTest::newRow("links, no text")
            << "nodes.links" << QByteArray("A;a.xml\n\xff\xfe") << QByteArray("A;a.xml\n");
        QTest::newRow("links, not understood")
            << "nodes.links" << QByteArray("A;a.xml\nB\n") << QByteArray("A;a.xml\n");
    }
    void whatCannotBeUsedBesideTheListIsToldUntilItCanAndStaysAsItIs()
    {
        QFETCH(const QString, name);
        QFETCH(const QByteArray, content);
        QFETCH(const QByteArray, mended);
        const QString file = m_folder->filePath(name);
        QVERIFY(replaceFile(file, content));
        open({"A", "Pump 1"});
        m_mode->configurations().open(m_folder->filePath("nodes.xml"));
        const auto *banner = m_window->findChild<QWidget *>("BesideBanner");
        const auto isTold = [&] {
            return banner->isVisible() &&
                   banner->findChild<QLabel *>("lbl_list_reason")->text().contains(name);
        };
        QVERIFY(isTold());
        showOverview();
        QVERIFY(isTold());
        if (content.contains('\xff')) { // nothing writes over it
            (void)m_mode->configurations().choose("Pump 1", m_folder->filePath("a.xml"));
            if (name.endsWith("groups")) {
                QVERIFY(!action("mnu_overview_groups", 0)->isEnabled());
            }
            QVERIFY(isTold());
        }
        QByteArray present;
        QVERIFY(readFile(file, present));
        QCOMPARE(present, content);
        QVERIFY(replaceFile(file, mended));
        QTRY_VERIFY(m_mode->configurations().isSettled());
        banner->findChild<QPushButton *>("Cmd_list_retry")->click();
        QTRY_VERIFY(!banner->isVisible());
    }

    /// Who sees no colours, or red as green, sees the marks.
    void eachStateIsToldWithoutColoursToo()
    {
        using Line = StationStatus::Line;
        QList<QImage> cells;
        const std::tuple<Urgency, Line, int> kinds[] = {
            {Urgency::HighAlarm, Line::Alive, 1},  {Urgency::MediumAlarm, Line::Alive, 1},
            {Urgency::LowAlarm, Line::Alive, 1},   {Urgency::Silent, Line::Silent, 0},
            {Urgency::Standing, Line::Alive, 1},   {Urgency::Unheard, Line::Connecting, 0},
            {Urgency::Quiet, Line::Alive, 0},      {Urgency::Offline, Line::Offline, 0},
            {Urgency::HighAlarm, Line::Silent, 1}, // no state hides another one
            {Urgency::LowAlarm, Line::Offline, 1}, {Urgency::LowAlarm, Line::Silent, 1},
            {Urgency::Silent, Line::Silent, 1},    {Urgency::Standing, Line::Offline, 1}};
        for (const auto &[urgency, line, alarms] : kinds) {
            StationGlance glance;
            glance.urgency = urgency;
            glance.status.line = line;
            glance.standing = alarms;
            QImage cell(24, 24, QImage::Format_RGB32);
            cell.fill(Qt::white);
            QPainter painter(&cell);
            TilePainter({2, 1}, QApplication::font(), QApplication::palette())
                .paintCell(painter, {QRectF(cell.rect()), false, false}, glance);
            cells += cell.convertToFormat(QImage::Format_Grayscale8);
        }
        for (qsizetype one = 0; one < cells.size(); ++one) {
            for (qsizetype other = 0; other < one; ++other) {
                int different = 0;
                for (int at = 0; at < 24 * 24; ++at) {
                    const auto grey = [at](const QImage &cell) {
                        return qGray(cell.pixel(at % 24, at / 24));
                    };
                    different += std::abs(grey(cells[one]) - grey(cells[other])) > 60 ? 1 : 0;
                }
                QVERIFY2(different >= 8,
                         qPrintable(QString("%1 and %2: %3").arg(one).arg(other).arg(different)));
            }
        }
    }

    void howItWasShownIsSoAgainAndTheOtherOrderIsKept()
    {
        open({"B", "A"});
        online("B");
        say(0, "Pump 1 fail");
        showOverview();
        QCOMPARE(view()->model()->index(0, 0).data(), "B");
        auto *order = m_window->findChild<QComboBox *>("Combo_overview_order");
        order->setCurrentIndex(1);
        Q_EMIT order->activated(1);
        QCOMPARE(view()->model()->index(0, 0).data(), "A");
        view()->setLevel(7);
        action("mnu_wall", 0)->trigger(); // urgent first, whatever is kept
        QCOMPARE(view()->model()->index(0, 0).data(), "B");
        m_window->setAsksBeforeEnd(false);
        QVERIFY(m_window->close());
        m_window.reset();
        m_mode.reset();
        m_lines.clear();
        openAgain();
        showOverview();
        QVERIFY(!m_window->isFullScreen());
        QCOMPARE(view()->level(), 7);
        QCOMPARE(view()->model()->index(0, 0).data(), "A");
    }

    void onAWallWithManyTheUrgentOnesStandAboveWithTheirNames()
    {
        QStringList stations;
        for (int station = 1; station <= 300; ++station) {
            stations += QStringLiteral("Station %1").arg(station);
        }
        open(stations);
        online("Station 300");
        action("mnu_wall", 0)->trigger();
        m_timers.advance(OverviewModel::longestDelay);
        const auto *urgent = m_window->findChild<OverviewView *>("List_overview_urgent");
        QVERIFY(view()->showsCells());
        QVERIFY(!urgent->isVisible());
        QTRY_COMPARE(view()->verticalScrollBar()->maximum(), 0); // all are seen
        say(299, "Pump 1 fail");
        m_timers.advance(OverviewModel::longestDelay);
        QTRY_VERIFY(urgent->isVisible());
        QVERIFY(!urgent->showsCells());
        QCOMPARE(urgent->model()->index(0, 0).data(), "Station 300");
        QTRY_COMPARE(view()->verticalScrollBar()->maximum(), 0);
        for (const int station : {3, 150, 290}) { // the newest one stands in front
            online(stations[station]);
            say(station, "Pump 1 fail");
            m_now = m_now.addSecs(60);
        }
        m_timers.advance(OverviewModel::longestDelay);
        const auto large = [urgent](int row) { return urgent->model()->index(row, 0).data().toString(); };
        QCOMPARE(large(0), stations[290]);
        QCOMPARE(large(1), stations[150]);
        QTRY_VERIFY(urgent->viewport()->rect().contains(urgent->visualRect(urgent->model()->index(1, 0))));
        // Four of them fill the room.
        const auto rightmost = [urgent] {
            int right = 0;
            for (int row = 0; row < 4; ++row) {
                right = std::max(right, urgent->visualRect(urgent->model()->index(row, 0)).right());
            }
            return right;
        };
        QTRY_VERIFY(rightmost() > urgent->viewport()->width() * 9 / 10);
        while (!m_mode->alarms().waiting().empty()) {
            QVERIFY(m_mode->acknowledgeAlarms({*m_mode->alarms().waiting().begin()}));
        }
        for (const int station : {3, 150, 290, 299}) {
            m_mode->removeStation(stations[station]);
        }
        m_timers.advance(OverviewModel::longestDelay);
        QTRY_VERIFY(!urgent->isVisible());
    }

    void groupsAreFittedWholeAndHaveTheirHeadingsOnAWallToo()
    {
        QByteArray groups;
        QStringList stations;
        for (int group = 0; group < 6; ++group) {
            groups += "[Group " + QByteArray::number(group) + "]\nG" + QByteArray::number(group) + "*\n";
            for (int station = 0; station < 60; ++station) {
                stations += QStringLiteral("G%1 %2").arg(group).arg(station);
            }
        }
        QVERIFY(replaceFile(m_folder->filePath("nodes.groups"), groups));
        open(stations);
        m_window->resize(1024, 700);
        showOverview();
        auto *order = m_window->findChild<QComboBox *>("Combo_overview_order");
        order->setFocus();
        QTest::keyClick(order, Qt::Key_End);
        QTest::keyClick(view(), Qt::Key_0, Qt::ControlModifier);
        QCOMPARE(view()->model()->rowCount(), 366);
        QTRY_COMPARE(view()->verticalScrollBar()->maximum(), 0); // all are seen
        view()->setFocus();
        QTest::keyClick(view(), Qt::Key_Home);
        QTest::keyClick(view(), Qt::Key_Space); // folds the first one
        QCOMPARE(view()->model()->rowCount(), 306);
        action("mnu_wall", 0)->trigger();
        m_timers.advance(OverviewModel::longestDelay);
        QTRY_COMPARE(view()->model()->rowCount(), 366); // nobody can unfold it there
        QTRY_COMPARE(view()->verticalScrollBar()->maximum(), 0);
        QTest::keyClick(m_window.get(), Qt::Key_Escape);
        QCOMPARE(view()->model()->rowCount(), 306);
    }

    void onAWallThereAreNoMenusAndWhatIsNotWatchedIsTold()
    {
        open({"A", "B"});
        online("B");
        say(1, "Pump 1 fail");
        auto *header = m_window->findChild<QWidget *>("WallHeader");
        auto *alarmBar = m_window->findChild<QWidget *>("AlarmBar");
        QTest::keyClick(m_window.get(), Qt::Key_F11);
        QVERIFY(m_window->isFullScreen() && view()->isVisible() && header->isVisible());
        QVERIFY(!m_window->menuBar()->isVisible() && !m_window->statusBar()->isVisible());
        QVERIFY(!alarmBar->isVisible() && !view()->verticalScrollBar()->isVisible());
        const QString told = header->accessibleName();
        QVERIFY2(told.contains("1 not acknowledged") && told.contains("1 not watched"), qPrintable(told));
        const int letters = QFontInfo(view()->font()).pixelSize();
        QVERIFY(letters > QFontInfo(QApplication::font()).pixelSize());
        m_mode->setOnline("A", true);
        m_timers.advance(Milliseconds(1000));
        QVERIFY(header->accessibleName().contains("0 not watched"));
        QTest::keyClicks(view(), "x+"); // a search that cannot be seen
        QCOMPARE(view()->model()->rowCount(), 2);

        QTest::keyClick(m_window.get(), Qt::Key_Escape);
        QVERIFY(!m_window->isFullScreen() && view()->isVisible() && !header->isVisible());
        QVERIFY(m_window->menuBar()->isVisible() && m_window->statusBar()->isVisible());
        QTRY_VERIFY(alarmBar->isVisible());
        QVERIFY(QFontInfo(view()->font()).pixelSize() < letters);
        QTest::keyClick(m_window.get(), Qt::Key_F11);
        QTest::keyClick(view(), Qt::Key_Return); // the station is shown in the tree
        QVERIFY(!m_window->isFullScreen() && tree()->isVisible());
    }

    void tilesStayUnderTheMouse()
    {
        open({"A", "B"});
        online("A");
        online("B");
        showOverview();
        QTest::mouseMove(view()->viewport(), QPoint(20, 20));
        QTest::mouseMove(view()->viewport(), QPoint(24, 24));
        QTRY_VERIFY(view()->underMouse());
        say(1, "Pump 1 fail");
        m_timers.advance(Milliseconds(1000));
        QCOMPARE(view()->model()->index(0, 0).data(), "A");
        QTest::mouseMove(m_window.get(), QPoint(5, m_window->height() - 5));
        QTRY_VERIFY(!view()->isInUse());
        m_timers.advance(Milliseconds(1000));
        QCOMPARE(view()->model()->index(0, 0).data(), "B");
    }

private:
    void open(const QStringList &stations)
    {
        QByteArray document;
        for (const QString &station : stations) {
            const QByteArray name = station.toUtf8();
            document += "<item key=\"" + name + "\" text=\"" + name + "\" ForeColor=\"-2147483640\"/>";
        }
        QVERIFY(replaceFile(m_folder->filePath("nodes.xml"), "<KTR>" + document + "</KTR>"));
        openAgain();
    }
    void openAgain()
    {
        Environment environment = fixedEnvironment();
        environment.now = [this] { return m_now; };
        m_mode = std::make_unique<OperationalMode>(
            OperationalMode::Services{environment, m_timers,
                                      [this] {
                                          auto line = std::make_unique<RecordedLine>();
                                          m_lines += line.get();
                                          return line;
                                      },
                                      [] {}, manualCallbackTimers(m_timers)},
            stationCaptions(m_texts));
        m_window = std::make_unique<Form_betriebsmodus>(
            *m_mode, m_texts, Form_betriebsmodus::Services{m_timers, english(), {}, {}});
        m_window->show();
        m_window->open(m_folder->filePath("nodes.xml"));
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        m_mode->setOperator("Eva");
    }
    void showOverview()
    {
        m_window->findChild<QAction *>("mnu_overview")->trigger();
        m_timers.advance(OverviewModel::longestDelay);
    }
    QAction *action(const char *name, int channel) const
    {
        const QString text = QString::fromLatin1(name);
        return m_window->findChild<QAction *>(channel == 0 ? text : text.arg(channel));
    }
    void online(const QString &kennung) { m_mode->setOnline(kennung, true); }
    void say(int station, const QByteArray &text)
    {
        m_lines[station]->say("at+cmgs=\"+4917012345\"\r");
        m_lines[station]->say("M," + text + '\x1A');
    }
    OverviewView *view() const { return m_window->findChild<OverviewView *>("List_overview"); }
    QTreeView *tree() const { return m_window->findChild<QTreeView *>("TreeView_KTR_Nodes"); }

    std::unique_ptr<QTemporaryDir> m_folder;
    TextTable m_texts;
    ManualTimers m_timers;
    QDateTime m_now = fixedEnvironment().now();
    QList<RecordedLine *> m_lines;
    std::unique_ptr<OperationalMode> m_mode;
    std::unique_ptr<Form_betriebsmodus> m_window;
};

QTEST_MAIN(OverviewWindowTest)
#include "overview_window_test.moc"
