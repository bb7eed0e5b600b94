#include "look/palettes.h"
#include "look/style.h"
#include "opmode/operational_mode.h"
#include "opmode/window/timemap/time_map_look.h"
#include "opmode/window/timemap/time_map_page.h"
#include "platform/registry.h"
#include "support/environment.h"
#include "support/manual_timers.h"
#include "support/recorded_line.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

using namespace ktr;
using namespace Qt::StringLiterals;

class TimeMapPageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    static void initMain() { qputenv("QT_QPA_PLATFORM", "offscreen"); }
    void initTestCase() { applyAppearance(*qApp, Appearance::Light); }

    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        MRegistry::setRegistryFile(m_folder->filePath("registry.json"));
        m_now = QDateTime(QDate(2009, 11, 15), QTime(11, 30));
        Environment environment = test::fixedEnvironment();
        environment.now = [this] { return m_now; };
        OperationalMode::Services services{environment, m_timers,
                                           [] { return std::make_unique<test::RecordedLine>(); }, [] {},
                                           test::manualCallbackTimers(m_timers)};
        m_mode = std::make_unique<OperationalMode>(services, StationCaptions{});
        QVERIFY(m_mode->open(m_folder->filePath("nodes.xml"), OperationalMode::Use::Keep));
        for (const char *name : {"Pump 1", "Pump 2", "Tank"}) {
            m_mode->addStation(QString::fromLatin1(name), u"10.0.0.1"_s);
        }
        m_mode->setOnline(u"Pump 1"_s, true);
        m_mode->setOnline(u"Pump 2"_s, true);
        for (int period = 0; period < 3; ++period) { // nothing is heard
            m_timers.advance(Milliseconds(20'000));
        }
        QVERIFY(m_mode->keepsChanges());
        m_now = m_now.addSecs(2 * 3600);
        makePage();
    }
    void cleanup()
    {
        m_page.reset();
        m_queries.reset();
        m_mode.reset();
    }

    void whoIsSilentNowIsSaidWhateverHoursAreChosen()
    {
        find<QRadioButton>("Opt_map_silence")->click();
        find<QPushButton>("Cmd_map_midnight")->click();
        QTRY_COMPARE(cells(0), (QStringList{"Pump 1", "Pump 2"}));
        QCOMPARE(cells(2), (QStringList{"silent since 15.11. 11:30", "silent since 15.11. 11:30"}));
        const auto *listed = find<QLabel>("Label_map_listed");
        QTRY_VERIFY2(listed->text().contains("Now: silent 2, offline 1"), qPrintable(listed->text()));
        m_mode->setOnline(u"Pump 2"_s, false);
        QTRY_VERIFY2(listed->text().contains("Now: silent 1, offline 2"), qPrintable(listed->text()));
        QVERIFY(m_mode->keepsChanges());
        QTest::keyClick(find<QWidget>("TimeMap"), Qt::Key_Home, Qt::ControlModifier); // long ago
        find<QPushButton>("Cmd_map_midnight")->click();
        QTRY_COMPARE(cells(2).last(1), QStringList("offline since 15.11. 13:30"));
        find<QRadioButton>("Opt_map_alarms")->click();
        QTRY_COMPARE(table()->model()->columnCount(), 2);
        QVERIFY(!listed->text().contains("Now:"));
    }

    void aPartOfANameMeansAllThatHaveItAndAWholeOneThatStationAlone()
    {
        find<QRadioButton>("Opt_map_silence")->click();
        find<QPushButton>("Cmd_map_midnight")->click();
        auto *names = find<QLineEdit>("Text_map_station");
        QTest::keyClicks(names, "pump");
        QTest::keyClick(names, Qt::Key_Return);
        QTRY_COMPARE(cells(0), (QStringList{"Pump 1", "Pump 2"}));
        QSignalSpy wanted(m_page.get(), &TimeMapPage::placeWanted);
        find<QPushButton>("Cmd_map_show")->click();
        const auto place = [&wanted] { return wanted.takeFirst().first().value<TimeMapPage::Place>(); };
        QCOMPARE(wanted.size(), 1);
        TimeMapPage::Place to = place();
        QVERIFY(to.station.isEmpty() && to.part == "pump");
        names->setText("pump 2");
        QTest::keyClick(names, Qt::Key_Return);
        QTRY_COMPARE(cells(0), QStringList("Pump 2"));
        find<QPushButton>("Cmd_map_show")->click();
        to = place();
        QVERIFY(to.station == "Pump 2" && to.part.isEmpty());
        names->setText("nobody");
        QTRY_VERIFY(find<QLabel>("Label_map_problem")->text().contains("nobody"));
        QVERIFY(!find<QPushButton>("Cmd_map_show")->isEnabled());
    }

    void theFirstMinuteOfADayHasAnEnd()
    {
        m_now = QDateTime(QDate(2009, 11, 16), QTime(0, 0, 30));
        find<QPushButton>("Cmd_map_midnight")->click(); // the map was read on the day before
        const auto *listed = find<QLabel>("Label_map_listed");
        QTRY_VERIFY2(listed->text().contains(u"16.11.2009 00:00–00:01"_s), qPrintable(listed->text()));
    }

    void whatIsChosenIsKept()
    {
        find<QRadioButton>("Opt_map_silence")->click();
        for (const char *name : {"Combo_map_group", "Combo_map_length"}) {
            auto *box = find<QComboBox>(name);
            QTest::keyClick(box, Qt::Key_Down);
        }
        QCOMPARE(find<QComboBox>("Combo_map_group")->currentText(), "North");
        makePage();
        QVERIFY(find<QRadioButton>("Opt_map_silence")->isChecked());
        QCOMPARE(find<QComboBox>("Combo_map_group")->currentText(), "North");
        QCOMPARE(find<QComboBox>("Combo_map_length")->currentIndex(), 1);
    }

    void digitsAreReadOnEveryGround()
    {
        for (const QPalette &palette : {lightPalette(), darkPalette()}) {
            for (const TimeMapTopic topic : {TimeMapTopic::Alarms, TimeMapTopic::Silence}) {
                for (int priority = 1; priority <= 3; ++priority) {
                    for (int step = 0; step < timeMapSteps; ++step) {
                        const QColor ground = hourColour(palette, topic, priority, step);
                        QVERIFY2(contrast(textOn(ground), ground) >= 4.5, qPrintable(ground.name()));
                    }
                }
            }
        }
    }

private:
    void makePage()
    {
        m_page.reset();
        m_queries = std::make_unique<RecordQueries>(m_mode->recordPath());
        QStringList remarks;
        const StationGroups groups = StationGroups::parse("[North]\nPump *\n", remarks);
        m_page = std::make_unique<TimeMapPage>(
            *m_mode, *m_queries,
            TimeMapPage::Services{[groups] { return groups; }, [this] { return m_now; }});
        m_page->setLocale(QLocale::c());
        m_page->resize(1000, 600);
        m_page->show();
    }
    template <class Widget> Widget *find(const char *name)
    {
        return m_page->findChild<Widget *>(QLatin1String(name));
    }
    QTableView *table() { return find<QTableView>("Table_map_stations"); }
    QStringList cells(int column)
    {
        QStringList texts;
        for (int row = 0; row < table()->model()->rowCount(); ++row) {
            texts += table()->model()->index(row, column).data().toString();
        }
        return texts;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    test::ManualTimers m_timers;
    QDateTime m_now;
    std::unique_ptr<OperationalMode> m_mode;
    std::unique_ptr<RecordQueries> m_queries;
    std::unique_ptr<TimeMapPage> m_page;
};

QTEST_MAIN(TimeMapPageTest)
#include "time_map_page_test.moc"
