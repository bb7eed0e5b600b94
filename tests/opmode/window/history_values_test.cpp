#include "config/configuration_file.h"
#include "look/palettes.h"
#include "look/style.h"
#include "opmode/tree/history_entry_text.h"
#include "opmode/window/history/history_page.h"
#include "opmode/window/history/history_plot.h"
#include "opmode/window/values_page.h"
#include "support/choosing.h"
#include "support/environment.h"
#include "support/manual_timers.h"
#include "support/test_files.h"

#include <QAction>
#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>

using namespace ktr;
using ktr::test::rowTexts;

namespace {

class ModuleLine : public StationLine
{
public:
    Status open(const QString &) override { return Status::done(); }
    void close() override {}
    bool isOpen() const override { return true; }
    void send(const QByteArray &) override {}
    void say(const char *line) { m_listener->DataArrival(line); }
    void arrive(const char *sms) { m_listener->DataArrival(QByteArray(sms) + '\x1a'); }
};

} // namespace

class HistoryValuesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { applyAppearance(*qApp, Appearance::Light); }

    void init()
    {
        m_now = QDateTime(QDate(2009, 11, 15), QTime(14, 5));
        Environment environment = test::fixedEnvironment();
        environment.now = [this] { return m_now; };
        m_lines.clear();
        OperationalMode::Services services{environment, m_timers,
                                           [this] {
                                               auto line = std::make_unique<ModuleLine>();
                                               m_lines.push_back(line.get());
                                               return line;
                                           },
                                           [] {}, test::manualCallbackTimers(m_timers)};
        m_mode = std::make_unique<OperationalMode>(services, stationCaptions(m_texts));
        QVERIFY(m_mode->open(m_folder.filePath("none.xml"), OperationalMode::Use::Watch));
        for (const char *name : {"pump", "well"}) {
            m_mode->addStation(QString::fromLatin1(name), "127.0.0.1");
            m_mode->setOnline(QString::fromLatin1(name), true);
        }
        Configuration configuration;
        configuration.gsm.stationId = "well";
        QVERIFY(writeConfigurationFile(m_folder.filePath("well.xml"), configuration, environment));
        QVERIFY(test::writeFile(m_folder.filePath("well.names"), "9=Wet well;m\n"));
        m_mode->configurations().open(m_folder.filePath("none.xml"));
        QTRY_VERIFY(m_mode->configurations().isSettled());
        m_history = std::make_unique<HistoryPage>(
            *m_mode, m_texts, [this](const QString &, const QString &) { return m_pictureName; });
        m_values = std::make_unique<ValuesPage>(*m_mode, m_texts);
        for (OpmodePage *page :
             {static_cast<OpmodePage *>(m_history.get()), static_cast<OpmodePage *>(m_values.get())}) {
            page->setLocale(test::german());
            page->applyTexts();
            page->resize(900, 500);
            page->show();
            QVERIFY(QTest::qWaitForWindowExposed(page));
        }
    }
    void cleanup()
    {
        m_history.reset();
        m_values.reset();
        m_mode.reset();
    }

    void entriesOfTheHistoryAreRead_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("minute"); // -1 for "?", -2 for no such entry
        QTest::addColumn<QString>("value");
        QTest::newRow("record") << "01.01.2000 01:02 : IP9 = 12.5" << 62 << "12.5";
        QTest::newRow("leap day") << "29.02.2000 00:00 : IP9 = 1" << 59 * 1440 << "1";
        QTest::newRow("no time") << "? : IP9 = a = b" << -1 << "a = b";
        QTest::newRow("no day") << "30.02.2000 00:00 : IP9 = 1" << -2 << "";
        QTest::newRow("no hour") << "01.01.2000 24:00 : IP9 = 1" << -2 << "";
        QTest::newRow("sign") << "01.01.2000 -1:00 : IP9 = 1" << -2 << "";
        QTest::newRow("other century") << "01.01.1999 00:00 : IP9 = 1" << -2 << "";
        QTest::newRow("no input") << "01.01.2000 00:00 : IP = 1" << -2 << "";
        QTest::newRow("no value") << "01.01.2000 00:00 : IP9" << -2 << "";
    }
    void entriesOfTheHistoryAreRead()
    {
        QFETCH(QString, text);
        QFETCH(int, minute);
        const auto entry = splitHistoryEntry(text);
        QCOMPARE(entry.has_value(), minute != -2);
        if (entry) {
            QCOMPARE(entry->minute.value_or(-1), minute);
            QCOMPARE(entry->input, 9);
            QTEST(entry->value.toString(), "value");
        }
    }

    void everyLineIsListedAndWhatHasATimeAndANumberIsDrawn()
    {
        give("pump", {"14.11.2009 10:00 : IP9 = 12.5", "? : IP10 = 3", "left by an old program",
                      "14.11.2009 09:00 : IP1 = 1", "14.11.2009 11:00 : IP17 = broken",
                      "14.11.2009 12:00 : IP40 = 7"});
        m_history->showStation("pump");
        QStringList rows;
        for (int row = 0; row < table().model()->rowCount(); ++row) {
            rows += rowTexts(&table(), row).join('|');
        }
        QCOMPARE(rows, (QStringList{"14.11.2009 09:00|Digital In 1|1", "14.11.2009 10:00|Analog In 1|12,5",
                                    "?|Analog In 2|3", "||left by an old program",
                                    "14.11.2009 11:00|PT 1000 In 1|broken", "14.11.2009 12:00|IP40|7"}));
        QCOMPARE(plot().channels(), (QList<int>{1, 9}));
        QVERIFY(plot().isSteps(1));
        QVERIFY(!plot().isSteps(9));
    }

    void newRecordsAppearAndOnlyAViewAtTheEndFollows()
    {
        m_history->showStation("pump");
        giveHours("pump", 200);
        QTRY_COMPARE(table().model()->rowCount(), 200);
        QScrollBar *bar = table().verticalScrollBar();
        QTRY_VERIFY(bar->maximum() > 0 && bar->value() == bar->maximum());
        m_lines.front()->arrive("H,7,0912010000,9,99.5"); // a module that tells it by itself
        QTRY_COMPARE(rowTexts(&table(), 200), (QStringList{"01.12.2009 00:00", "Analog In 1", "99,5"}));
        QTRY_COMPARE(bar->value(), bar->maximum());

        bar->setValue(40);
        give("well", {"01.01.2009 00:00 : IP9 = 5"});
        give("pump", {"01.01.2009 00:00 : IP9 = 5"}); // late: it goes to its place
        QTRY_COMPARE(rowTexts(&table(), 0).front(), "01.01.2009 00:00");
        QCOMPARE(table().model()->rowCount(), 202);
        QCOMPARE(bar->value(), 40);
        QHeaderView *header = table().horizontalHeader();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, QPoint(20, header->height() / 2));
        QCOMPARE(rowTexts(&table(), 0).front(), "01.12.2009 00:00");
        m_mode->tree().remove(m_mode->tree().index(0, 0, m_mode->tree().find("pump/history")));
        QCOMPARE(table().model()->rowCount(), 201);
    }

    void anInputThatCountsLeavesItsLane()
    {
        give("pump", {"14.11.2009 10:00 : IP1 = 0", "14.11.2009 11:00 : IP1 = 1"});
        m_history->showStation("pump");
        QVERIFY(plot().isSteps(1));
        give("pump", {"14.11.2009 12:00 : IP1 = 2", "14.11.2009 12:00 : IP2 = 1"});
        QTRY_VERIFY(!plot().isSteps(1));
        QVERIFY(plot().isShown(1));
        QVERIFY(plot().isSteps(2));
        auto *inputs = m_history->findChild<QListWidget *>("List_history_inputs");
        inputs->setFocus();
        inputs->setCurrentRow(1);
        QTest::keyClick(inputs, Qt::Key_Space);
        QVERIFY(!plot().isShown(2));
        QVERIFY(plot().isShown(1));
        give("pump", {"14.11.2009 13:00 : IP3 = 1"}); // a further input brings none back
        QTRY_COMPARE(inputs->count(), 3);
        QVERIFY(!plot().isShown(2));
    }

    void entriesAreRemovedByHandAndTheChoiceOfInputsStays()
    {
        give("pump", {"14.11.2009 10:00 : IP9 = 1", "14.11.2009 11:00 : IP10 = 2",
                      "14.11.2009 12:00 : IP11 = 3", "14.11.2009 13:00 : IP9 = 4"});
        m_history->showStation("pump");
        m_history->findChild<QListWidget *>("List_history_inputs")->item(2)->setCheckState(Qt::Unchecked);
        for (const int row : {1, 0}) {
            table().selectRow(row);
            QTimer::singleShot(0, this, [] {
                auto *ok = QApplication::activeModalWidget()->findChild<QPushButton *>("OKButton");
                QTest::mouseClick(ok, Qt::LeftButton);
            });
            m_history->findChild<QAction *>("mnu_history_remove")->trigger();
        }
        QCOMPARE(rowTexts(&table(), 0).join('|'), "14.11.2009 12:00|Digital Out 1|3");
        QCOMPARE(rowTexts(&table(), 1).join('|'), "14.11.2009 13:00|Analog In 1|4");
        QTRY_COMPARE(plot().channels(), (QList<int>{9, 11}));
        QVERIFY(plot().isShown(9) && !plot().isShown(11));
    }

    void timeIsZoomedAndReadWithMouseAndKeys()
    {
        giveHours("pump", 100);
        m_history->showStation("pump");
        QWidget *canvas = m_history->findChild<QWidget *>("Plot_history_canvas");
        QTest::qWait(0); // the plot is laid out when it is drawn
        canvas->grab();
        const auto whole = plot().timeShown();
        const auto length = [this] { return plot().timeShown().second - plot().timeShown().first; };
        const double all = length();
        const QPointF middle = canvas->rect().center();
        QWheelEvent wheel(middle, canvas->mapToGlobal(middle), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(canvas, &wheel);
        QVERIFY(length() < 0.9 * all);
        QTest::mouseDClick(canvas, Qt::LeftButton, {}, middle.toPoint());
        QCOMPARE(plot().timeShown(), whole);
        QTest::keyClick(canvas, Qt::Key_Minus); // there is no more
        QCOMPARE(plot().timeShown(), whole);
        for (int i = 0; i < 100; ++i) {
            QTest::keyClick(canvas, Qt::Key_Plus);
        }
        QVERIFY(length() > 200 && length() < 400);
        const auto zoomed = plot().timeShown();
        giveHours("pump", 101); // what comes does not move what is looked at
        QTRY_COMPARE(table().model()->rowCount(), 101);
        QCOMPARE(plot().timeShown(), zoomed);
        QTest::keyClick(canvas, Qt::Key_Home);
        QVERIFY(length() > all);

        QTest::keyClick(canvas, Qt::Key_Right, Qt::ControlModifier);
        QCOMPARE(plot().readOut(), "01.11.2009 00:00   Analog In 1 = 0,5");
        QTest::keyClick(canvas, Qt::Key_Right, Qt::ControlModifier);
        QCOMPARE(plot().readOut(), "01.11.2009 01:00   Analog In 1 = 1,5");
        QTest::mouseMove(canvas, middle.toPoint());
        QTRY_VERIFY(!plot().readOut().startsWith("01.11.2009"));
        const QDateTime moment = QDateTime::fromString(plot().readOut().first(16), "dd.MM.yyyy HH:mm");
        const qint64 hours = QDateTime(QDate(2009, 11, 1), QTime(0, 0)).secsTo(moment) / 3600;
        QVERIFY(hours > 30 && hours < 70);
        QVERIFY(plot().readOut().endsWith(QStringLiteral("   Analog In 1 = %1,5").arg(hours)));
    }

    void thePictureIsSavedInTheColoursOfTheScreenAndAFailureIsTold()
    {
        giveHours("pump", 10);
        m_history->showStation("pump");
        auto *save = m_history->findChild<QPushButton *>("Cmd_history_picture");
        const QSignalSpy told(m_history.get(), &OpmodePage::statusMessage);
        QTest::mouseClick(save, Qt::LeftButton); // cancelled
        QCOMPARE(told.size(), 0);
        m_pictureName = m_folder.filePath("a.png");
        applyAppearance(*qApp, Appearance::Dark);
        QTRY_VERIFY(isDark(plot().palette()));
        QTest::mouseClick(save, Qt::LeftButton);
        applyAppearance(*qApp, Appearance::Light);
        const QImage picture(m_pictureName);
        QVERIFY(picture.width() >= 800);
        QCOMPARE(picture.pixelColor(2, 2), cardColour(darkPalette()));
        QCOMPARE(picture.pixelColor(picture.width() / 2, 90), cardColour(darkPalette())); // of the plot
        m_pictureName = m_folder.filePath("nowhere/a.png");
        QTest::mouseClick(save, Qt::LeftButton);
        QCOMPARE(told.size(), 2);
        QVERIFY(told.back().front().toString().contains("nowhere"));
    }

    void trendsKeepTheLastValuesWithTheirTimes()
    {
        ValueTrends trends;
        const qint64 start = m_now.toSecsSinceEpoch();
        for (int minute = 0; minute < 40; ++minute) {
            trends.add("a", {{5, QString::number(minute)}, {6, "broken"}}, m_now.addSecs(minute * 60));
        }
        const auto trend = trends.trend("a", 5);
        QCOMPARE(trend.size(), ValueTrends::longest);
        QCOMPARE(trend.front(), (ValueTrends::Point{start + 600, 10}));
        QCOMPARE(trend.back(), (ValueTrends::Point{start + 2340, 39}));
        QVERIFY(trends.trend("a", 6).isEmpty());
        trends.add("a", {{5, "1"}}, m_now); // a clock put back
        QCOMPARE(trends.trend("a", 5).back().time, start);
        QVERIFY(std::ranges::is_sorted(trends.trend("a", 5), {}, &ValueTrends::Point::time));
    }

    void valuesAreShownAsTheyWereReported()
    {
        using Mark = ValueTile::Content::Mark;
        m_values->showStation("pump");
        QCOMPARE(label("Label_ip_time"), "No values reported yet");
        QVERIFY(tile(9).value.isEmpty());
        m_lines.front()->arrive("R,1,0,1,0,1,0,1,0,12.50,4,1,0,7,8,100,200,21.5,-3");
        m_lines.back()->arrive("R,9,55.5");
        QTRY_COMPARE(label("Label_ip_time"), "Report of 14:05 15.11.2009");
        QCOMPARE(tile(9).value, "12,50");
        QCOMPARE(tile(9).unit, ""); // only the configuration knows
        QCOMPARE(tile(17).unit, QString::fromUtf8("°C"));
        QCOMPARE(tile(5).mark, Mark::On);
        QCOMPARE(tile(6).mark, Mark::Off);
        QCOMPARE(tile(1).mark, Mark::On);
        m_now = m_now.addSecs(60);
        m_lines.front()->arrive("R,1,17"); // it counts
        QTRY_COMPARE(tile(1).value, "17");
        QCOMPARE(tile(1).mark, Mark::None);
        QCOMPARE(tile(1).trend.size(), 2);
        m_lines.front()->arrive("R,1,1");
        QTRY_COMPARE(tile(1).value, "1");
        QCOMPARE(tile(1).mark, Mark::None);
        m_values->showStation("well");
        QCOMPARE(tile(9).value, "55,5");
        QVERIFY(tile(1).value.isEmpty());
    }

    void inputsAreCalledWhatTheUserCallsThem()
    {
        m_values->showStation("pump");
        QCOMPARE(tile(9).caption, "Analog In 1");
        m_values->showStation("well");
        QCOMPARE(tile(9).caption, QString::fromUtf8("Analog In 1 – Wet well"));
        QCOMPARE(tile(9).unit, "m");
        QCOMPARE(tile(17).unit, QString::fromUtf8("°C"));
        for (const char *station : {"pump", "well"}) {
            giveHours(station, 2);
            m_history->showStation(station);
            const bool isNamed = QLatin1String(station) == QLatin1String("well");
            const QString expected = isNamed ? "9 Wet well" : "Analog In 1";
            QTRY_COMPARE(m_history->findChild<QListWidget *>()->count(), 1);
            QCOMPARE(m_history->findChild<QListWidget *>()->item(0)->text(), expected);
            QCOMPARE(rowTexts(&table(), 0).at(1), expected);
            auto *canvas = m_history->findChild<QWidget *>("Plot_history_canvas");
            canvas->grab();
            QTest::keyClick(canvas, Qt::Key_Right, Qt::ControlModifier);
            QCOMPARE(plot().readOut().contains(QString::fromUtf8("Analog In 1 – Wet well = ")), isNamed);
        }
    }

    void refreshAsksOnceAndSaysWhatBecomesOfIt()
    {
        m_values->showStation("pump");
        auto *refresh = m_values->findChild<QPushButton *>("Cmd_aktualisieren");
        const QSignalSpy told(m_values.get(), &OpmodePage::statusMessage);
        refresh->setFocus();
        QTest::keyClick(refresh, Qt::Key_Space);
        QCOMPARE(m_mode->station("pump")->msgText(), "A*");
        QVERIFY(label("Label_ip_answer").contains("looks for an SMS"));
        QTest::keyClick(refresh, Qt::Key_Space);
        QVERIFY(label("Label_ip_answer").contains("still waits"));
        QCOMPARE(told.back().front().toString(), label("Label_ip_answer"));
        m_values->showStation("well");
        QCOMPARE(label("Label_ip_answer"), "");
        m_values->showStation("pump");
        QVERIFY(label("Label_ip_answer").contains("looks for an SMS"));
        m_lines.front()->say("at+cpin?\r");
        m_timers.advance(Milliseconds(cStation::settleTime));
        m_lines.front()->say("at+cmgr=1\r");
        m_timers.advance(Milliseconds(cStation::textDelay));
        QVERIFY(label("Label_ip_answer").startsWith("Delivered"));
        m_lines.front()->arrive("R,9,1");
        QCOMPARE(label("Label_ip_answer"), "");
        m_mode->setOnline("pump", false);
        QVERIFY(!refresh->isEnabled());
        QVERIFY(refresh->toolTip().contains("offline"));
    }

    void aStationThatIsRemovedLeavesEmptyPages()
    {
        giveHours("pump", 3);
        m_history->showStation("pump");
        m_values->showStation("pump");
        QVERIFY(table().isVisible());
        m_mode->removeStation("pump");
        m_history->showStation("pump");
        m_values->showStation("pump");
        QVERIFY(!table().isVisible());
        QVERIFY(!m_values->findChild<QPushButton *>("Cmd_aktualisieren")->isVisible());
        m_history->showStation("well");
        QVERIFY(!table().isVisible());
        give("well", {"14.11.2009 10:00 : IP9 = 1"});
        QTRY_VERIFY(table().isVisible());
        giveHours("well", 20);
        m_history->hide();
        m_history->showStation("pump"); // nothing is read for a page that nobody sees
        m_history->showStation("well");
        QCOMPARE(table().model()->rowCount(), 0);
        m_history->show();
        QCOMPARE(table().model()->rowCount(), 21);
        m_mode->tree().setData(m_mode->tree().find("well"), "deep well");
        const QList<QLabel *> labels = m_history->findChildren<QLabel *>();
        QVERIFY(std::ranges::count(labels, QStringLiteral("deep well"), &QLabel::text) == 1);
    }

private:
    void give(const char *kennung, const QStringList &texts)
    {
        HistoryMessage report;
        for (const QString &text : texts) {
            report.entries.append(MessageEntry{text, text});
        }
        m_mode->tree().apply(QString::fromLatin1(kennung), report, m_now);
    }
    /// As many records, one an hour from the first of November on: 0.5, 1.5, ...
    void giveHours(const char *kennung, int count)
    {
        QStringList texts;
        const QDateTime first(QDate(2009, 11, 1), QTime(0, 0), Qt::UTC);
        for (int hour = 0; hour < count; ++hour) {
            texts += first.addSecs(hour * 3600).toString("dd.MM.yyyy HH:mm") +
                     QStringLiteral(" : IP9 = %1.5").arg(hour);
        }
        give(kennung, texts);
    }
    QTableView &table() { return *m_history->findChild<QTableView *>("Table_history"); }
    HistoryPlot &plot() { return *m_history->findChild<HistoryPlot *>("Plot_history"); }
    const ValueTile::Content &tile(int channel)
    {
        return m_values->findChild<ValueTile *>(QStringLiteral("Value_ip_%1").arg(channel))->content();
    }
    QString label(const char *name)
    {
        return m_values->findChild<QLabel *>(QString::fromLatin1(name))->text();
    }

    QTemporaryDir m_folder;
    QDateTime m_now;
    TextTable m_texts;
    test::ManualTimers m_timers;
    std::vector<ModuleLine *> m_lines;
    QString m_pictureName;
    std::unique_ptr<OperationalMode> m_mode;
    std::unique_ptr<HistoryPage> m_history;
    std::unique_ptr<ValuesPage> m_values;
};

QTEST_MAIN(HistoryValuesTest)
#include "history_values_test.moc"
