#include "config/configuration_file.h"
#include "look/style.h"
#include "opmode/window/curves/curves_page.h"
#include "opmode/window/curves/series_chooser.h"
#include "platform/csv.h"
#include "platform/registry.h"
#include "support/environment.h"
#include "support/manual_timers.h"
#include "support/recorded_line.h"
#include "support/test_files.h"

#include <QApplication>
#include <QComboBox>
#include <QDropEvent>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>
#include <QTreeWidget>

using namespace ktr;
using namespace Qt::StringLiterals;

class CurvesPageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    static void initMain() { qputenv("QT_QPA_PLATFORM", "offscreen"); }
    void initTestCase() { applyAppearance(*qApp, Appearance::Light); }

    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        MRegistry::setRegistryFile(m_folder->filePath("registry.json"));
        m_now = QDateTime(QDate(2009, 11, 15), QTime(14, 5));
        Environment environment = test::fixedEnvironment();
        environment.now = [this] { return m_now; };
        OperationalMode::Services services{environment, m_timers,
                                           [] { return std::make_unique<test::RecordedLine>(); }, [] {},
                                           test::manualCallbackTimers(m_timers)};
        m_mode = std::make_unique<OperationalMode>(services, stationCaptions(m_texts));
        QVERIFY(m_mode->open(m_folder->filePath("nodes.xml"), OperationalMode::Use::Keep));
        for (const char *name : {"pump", "well"}) {
            m_mode->addStation(QString::fromLatin1(name));
        }
        Configuration configuration;
        configuration.gsm.stationId = "well";
        QVERIFY(writeConfigurationFile(m_folder->filePath("well.xml"), configuration, environment));
        QVERIFY(test::writeFile(m_folder->filePath("well.names"), "9=Level;m\n"));
        m_mode->configurations().open(m_folder->filePath("nodes.xml"));
        QTRY_VERIFY(m_mode->configurations().isSettled());
        write("pump", 9, {"1", "1.5", "2"});
        write("well", 9, {"101", "101.5", "102"});
        QVERIFY(m_mode->keepsChanges());
        makePage();
    }
    void cleanup()
    {
        m_page.reset();
        m_mode.reset();
    }

    void whatIsDroppedIsReadFromTheRecordAndListed()
    {
        QVERIFY(m_page->findChild<QLabel *>("lbl_curves_empty")->isVisible());
        drop({{"pump", 9}, {"well", 9}, {"gone", 9}, {"pump", 19}});
        QCOMPARE(m_page->series().size(), 2);
        QVERIFY(!m_page->findChild<QLabel *>("lbl_curves_empty")->isVisible());
        QTRY_COMPARE(cells(1), (QStringList{"2", "102"}));
        QCOMPARE(cells(0), (QStringList{u"pump – Analog In 1"_s, u"well – Level"_s}));
        QCOMPARE(cells(2), (QStringList{"", "m"}));
        QCOMPARE(cells(3), (QStringList{"+2", "+2"})); // each quarter of an hour a half
        QCOMPARE(header(3), u"Rise per hour\nover 24 h"_s);
        auto *form = m_page->findChild<QComboBox *>("Combo_curves_form");
        form->setCurrentIndex(1);
        Q_EMIT form->activated(1);
        QCOMPARE(cells(1), (QStringList{"1", "1"}));

        m_saveAs = m_folder->filePath("curves.csv");
        m_page->findChild<QPushButton *>("Cmd_curves_table")->click();
        const QByteArray table = test::contentOf(m_saveAs);
        QVERIFY(table.startsWith(csvMark));
        QVERIFY2(table.contains("15.11.2009 13:45:00;") && table.contains(";0,5;0,5\r\n"), table.constData());
        for (const char *name : {"curves.png", "curves.pdf"}) {
            m_saveAs = m_folder->filePath(name);
            m_page->findChild<QPushButton *>("Cmd_curves_picture")->click();
            QVERIFY(QFileInfo(m_saveAs).size() > 1000);
        }
    }

    void aPictureShowsWholeNamesAndTimes()
    {
        const auto picture = [this] {
            m_saveAs = m_folder->filePath("curves.png");
            m_page->findChild<QPushButton *>("Cmd_curves_picture")->click();
            return QImage(m_saveAs);
        };
        drop({{"pump", 9}, {"well", 9}});
        QTRY_COMPARE(cells(1), (QStringList{"2", "102"}));
        const QImage usual = picture();
        m_mode->tree().setData(m_mode->tree().find("pump"),
                               u"Pumping station with a name that nobody can read in one line "_s +
                                   QString(90, u'W'));
        QTRY_VERIFY(cells(0).first().startsWith(u"Pumping"));
        const QImage wide = picture();
        QVERIFY(wide.width() > usual.width()); // of the one long word
        QVERIFY(wide.height() > usual.height());
        for (const QImage &image : {usual, wide}) { // nothing runs over the edge below the plot
            const QRgb paper = image.pixel(0, 0);
            constexpr int margin = 20; // twice as fine as on the screen
            for (int y = image.height() - 2 * margin; y < image.height(); ++y) {
                for (int x = image.width() - margin; x < image.width(); ++x) {
                    QCOMPARE(image.pixel(x, y), paper);
                }
            }
        }
    }

    void theListOfCurvesHasWholeValuesAndTheNamesTheRest()
    {
        drop({{"pump", 9}, {"well", 9}});
        QTRY_COMPARE(cells(1), (QStringList{"2", "102"}));
        auto *list = m_page->findChild<QTreeView *>("Table_curves");
        m_page->resize(480, 600);
        for (int column = 1; column < list->model()->columnCount(); ++column) {
            for (int row = 0; row < 2 && !list->isColumnHidden(column); ++row) {
                const QString text = list->model()->index(row, column).data().toString();
                QVERIFY2(list->columnWidth(column) > list->fontMetrics().horizontalAdvance(text),
                         qPrintable(text));
            }
        }
        m_page->resize(1400, 600);
        QTRY_COMPARE(list->header()->length(), list->viewport()->width());
        // What the user draws it to stays, whatever arrives.
        list->header()->resizeSection(0, 200);
        list->header()->resizeSection(1, 160);
        m_page->findChild<QComboBox *>("Combo_curves_form")->activated(1);
        QCOMPARE(list->columnWidth(0), 200);
        QCOMPARE(list->columnWidth(1), 160);
        Q_EMIT list->header()->sectionHandleDoubleClicked(0);
        QCOMPARE(list->header()->length(), list->viewport()->width());
    }

    void theChosenOnesOutliveTheProgramAndCanBeRemoved()
    {
        drop({{"well", 9}, {"pump", 9}});
        makePage();
        QCOMPARE(m_page->series(), (QList<SeriesId>{{"well", 9}, {"pump", 9}}));
        auto *list = m_page->findChild<QTreeView *>("Table_curves");
        list->setCurrentIndex(list->model()->index(0, 0));
        list->setFocus();
        QTest::keyClick(list, Qt::Key_Delete);
        QCOMPARE(m_page->series(), (QList<SeriesId>{{"pump", 9}}));
    }

    void anUndoneRemovalBringsTheCurvesBackInTheirPlaces()
    {
        drop({{"pump", 9}, {"well", 9}});
        m_mode->removal().begin();
        m_mode->removal().remove("pump");
        QTRY_COMPARE(m_page->series(), (QList<SeriesId>{{"well", 9}}));
        QVERIFY(m_mode->removal().restoreNext());
        m_mode->settleRestored();
        QTRY_COMPARE(m_page->series(), (QList<SeriesId>{{"pump", 9}, {"well", 9}}));
        QTRY_COMPARE(cells(1), (QStringList{"2", "102"}));
        for (const QString &kennung : {u"pump"_s, u"well"_s}) { // the first one for good
            m_mode->removal().begin();
            m_mode->removal().remove(kennung);
            QTRY_VERIFY(!m_page->series().contains(SeriesId{kennung, 9}));
        }
        QCOMPARE(m_mode->addStation("pump"), "pump"); // another station
        QVERIFY(m_mode->removal().restoreNext());
        QTRY_COMPARE(m_page->series(), (QList<SeriesId>{{"well", 9}}));
    }

    void theListOfInputsTicksThem()
    {
        auto *inputs = m_page->findChild<QTreeWidget *>("List_curves_inputs");
        QVERIFY(inputs->isVisible()); // while there are none
        QCOMPARE(inputs->topLevelItemCount(), 2);
        QTreeWidgetItem *well = inputs->topLevelItem(1);
        inputs->expandItem(well);
        QTRY_COMPARE(well->childCount(), 1);
        QCOMPARE(well->child(0)->text(0), "9 Level [m]");
        well->child(0)->setCheckState(0, Qt::Checked);
        QCOMPARE(m_page->series(), (QList<SeriesId>{{"well", 9}}));
        well->child(0)->setCheckState(0, Qt::Unchecked);
        QVERIFY(m_page->series().isEmpty());
    }

    void theSearchLeadsToTheOnlyInputThatIsFound()
    {
        auto *inputs = m_page->findChild<QTreeWidget *>("List_curves_inputs");
        auto *search = m_page->findChild<QLineEdit *>("Text_curves_search");
        QTest::keyClick(search, Qt::Key_Down);
        QVERIFY(inputs->hasFocus());
        QCOMPARE(inputs->currentItem()->text(0), "pump");
        QVERIFY(!inputs->topLevelItem(0)->isExpanded()); // there are several
        search->setFocus();
        QTest::keyClicks(search, "lev");
        QTRY_COMPARE(inputs->topLevelItem(1)->childCount(), 1);
        QVERIFY(inputs->topLevelItem(1)->isExpanded());
        QTest::keyClick(search, Qt::Key_Return);
        QCOMPARE(m_page->series(), (QList<SeriesId>{{"well", 9}}));
        QTest::keyClick(search, Qt::Key_Down);
        QVERIFY(inputs->hasFocus());
        QCOMPARE(inputs->currentItem()->text(0), "9 Level [m]");
        QTest::keyClick(inputs, Qt::Key_Return);
        QVERIFY(m_page->series().isEmpty());
    }

    void theSearchFindsInputsOfAllStationsAndSaysWhenItFindsNone()
    {
        auto *inputs = m_page->findChild<QTreeWidget *>("List_curves_inputs");
        auto *search = m_page->findChild<QLineEdit *>("Text_curves_search");
        const auto *nothing = m_page->findChild<QLabel *>("lbl_curves_nothing");
        const auto found = [inputs] {
            QStringList texts;
            for (int row = 0; row < inputs->topLevelItemCount(); ++row) {
                const QTreeWidgetItem *station = inputs->topLevelItem(row);
                for (int child = 0; child < station->childCount() && !station->isHidden(); ++child) {
                    if (!station->child(child)->isHidden()) {
                        texts += station->text(0) + u'/' + station->child(child)->text(0);
                    }
                }
            }
            return texts;
        };
        QTest::keyClicks(search, "analog in 1"); // which is that of the other with a name
        QTRY_COMPARE(found(), (QStringList{"pump/Analog In 1", "well/9 Level [m]"}));
        QVERIFY(!nothing->isVisible());
        search->setText("well lev"); // of both a part
        QTRY_COMPARE(found(), QStringList("well/9 Level [m]"));
        for (const char *text : {"nobody", "PT 1000", "pump level"}) { // the second one has no values
            search->setText(QLatin1String(text));
            QTRY_VERIFY2(nothing->isVisible(), text);
            QVERIFY(found().isEmpty());
        }
        search->clear();
        QVERIFY(!nothing->isVisible());
    }

    void aWholeStationGivesLevelsBeforeStates()
    {
        for (int channel = 1; channel <= 8; ++channel) {
            write("pump", channel, {"0", "1", "0"});
        }
        write("well", 1, {"0", "1", "0"}); // "Level" alone has a name
        write("pump", 17, {"12.5"});
        QVERIFY(m_mode->keepsChanges());
        m_page->add(usualSeries(*m_mode, "pump") + usualSeries(*m_mode, "well") +
                    usualSeries(*m_mode, "gone"));
        QTRY_COMPARE(m_page->series(), (QList<SeriesId>{{"pump", 9}, {"pump", 17}, {"well", 9}}));
        // Where there is nothing else states are shown.
        QVERIFY(m_mode->addStation("gate") == "gate");
        write("gate", 5, {"0", "1"});
        QVERIFY(m_mode->keepsChanges());
        drop(usualSeries(*m_mode, "gate"));
        QTRY_COMPARE(m_page->series().last(), (SeriesId{"gate", 5}));
    }

    void namesThatBeginAlikeAreToldApartInANarrowList()
    {
        const QString common = u"Hochbehälter Oberndorf am Unteren Anger "_s;
        m_mode->tree().setData(m_mode->tree().find("pump"), common + u"Nord"_s);
        m_mode->tree().setData(m_mode->tree().find("well"), common + u"Süd"_s);
        m_page->resize(480, 600);
        drop({{"pump", 9}, {"well", 9}});
        QTRY_COMPARE(cells(1), (QStringList{"2", "102"}));
        auto *list = m_page->findChild<QTreeView *>("Table_curves");
        const int usual = list->fontMetrics().height();
        QTRY_VERIFY(list->visualRect(list->model()->index(0, 0)).height() >= 2 * usual); // in two lines
        // What is painted of them differs, also on the chosen line, where the colour is seen, too.
        list->selectAll();
        const auto painted = [list](int row, const QRect &part) {
            return list->viewport()
                ->grab(part.translated(list->visualRect(list->model()->index(row, 0)).topLeft()))
                .toImage();
        };
        const QRect name(80, 0, list->columnWidth(0) - 90, 2 * usual);
        QVERIFY(painted(0, name) != painted(1, name));
        const auto icon = list->model()->index(0, 0).data(Qt::DecorationRole).value<QIcon>();
        const QImage sample = icon.pixmap(QSize(30, 14), QIcon::Selected).toImage();
        QCOMPARE(sample.pixelColor(2, 2), list->palette().color(QPalette::Base));
        m_page->resize(1800, 600);
        QTRY_VERIFY(list->visualRect(list->model()->index(0, 0)).height() < 2 * usual);
    }

    void aSilenceOfTheStationIsAGap()
    {
        // Of the quarter of an hour behind each value.
        qint64 at = QDateTime(m_now.date(), QTime(13, 31)).toMSecsSinceEpoch();
        const qint64 station = m_mode->alarmActions().numberOf("pump");
        for (const EventKind kind : {EventKind::Silent, EventKind::Alive}) {
            EventRow event;
            event.id = m_mode->record().writer().nextEventId();
            event.at = at;
            event.station = station;
            event.kind = kind;
            m_mode->record().writer().add(event);
            at += 600'000;
        }
        QVERIFY(m_mode->keepsChanges());
        CurveStore store(*m_mode);
        const SeriesId pump{"pump", 9};
        const SeriesId well{"well", 9};
        const qint64 now = m_now.toMSecsSinceEpoch();
        store.want({pump, well}, {now - 24 * 3'600'000, now});
        QTRY_VERIFY(!store.isReading());
        QVERIFY2(store.trouble().isEmpty(), qPrintable(store.trouble()));
        QCOMPARE(store.points(pump)->gaps.size(), 1U);
        QCOMPARE(store.points(pump)->gaps.front().length(), 600'000);
        QVERIFY(store.points(well)->gaps.empty());
    }

private:
    /// Values of the last three quarters of an hour.
    void write(const QString &station, int channel, const QStringList &values)
    {
        constexpr qint64 quarter = 900'000;
        qint64 at = QDateTime(m_now.date(), QTime(13, 30)).toMSecsSinceEpoch();
        for (const QString &value : values) {
            m_mode->record().writer().add(HistoryRow{m_mode->alarmActions().numberOf(station), channel, at,
                                                     QString::number(channel), value});
            at += quarter;
        }
    }
    void makePage()
    {
        m_page.reset();
        m_page = std::make_unique<CurvesPage>(*m_mode, m_texts,
                                              [this](const QString &, const QString &) { return m_saveAs; });
        m_page->setLocale(test::german());
        m_page->applyTexts();
        m_page->resize(900, 600);
        m_page->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_page.get()));
    }
    void drop(const QList<SeriesId> &series)
    {
        QMimeData data;
        data.setData(seriesMimeType, seriesToDrag(series));
        const QPoint place(300, 300);
        QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_page.get(), &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent event(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_page.get(), &event);
    }
    QString header(int column) const
    {
        return m_page->findChild<QTreeView *>("Table_curves")
            ->model()
            ->headerData(column, Qt::Horizontal)
            .toString();
    }
    QStringList cells(int column) const
    {
        const QAbstractItemModel *model = m_page->findChild<QTreeView *>("Table_curves")->model();
        QStringList texts;
        for (int row = 0; row < model->rowCount(); ++row) {
            texts += model->index(row, column).data().toString();
        }
        return texts;
    }

    const TextTable m_texts;
    test::ManualTimers m_timers;
    QDateTime m_now;
    QString m_saveAs;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<OperationalMode> m_mode;
    std::unique_ptr<CurvesPage> m_page;
};

QTEST_MAIN(CurvesPageTest)
#include "curves_page_test.moc"
