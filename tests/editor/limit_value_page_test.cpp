#include "config/configuration_file.h"
#include "editor/limit_value_page.h"
#include "link/command_sequence.h"
#include "support/choosing.h"
#include "support/page_fixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QScrollBar>
#include <QTableView>

using namespace ktr;
using namespace ktr::test;

class LimitValuePageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theUsersUnitOfCountersStandsBesideTheDescribedText()
    {
        m_all.document.adjust([](Configuration &configuration) {
            configuration.digitalInputs[0].countsPulses = true;
            configuration.limitValues[0] = {1, "much", "90", "0", "0", 3, 255, 0, 0, "30"};
            configuration.names.channels[0].unit = "kWh";
        });
        QCOMPARE(control<QLabel>(m_page, "lbl_gw_gw_0")->text(), "Pulses");
        QCOMPARE(control<QLabel>(m_page, "lbl_gw_gw_0")->toolTip(), QStringLiteral("Pulses – kWh"));
        QCOMPARE(control<QLabel>(m_page, "lbl_gw_hysterese_0")->text(), "Pulses");
        QCOMPARE(rowTexts(control<QTableView>(m_page, "Tbl_gw"), 0).at(2), "> 90 kWh");
        m_all.document.adjust(
            [](Configuration &configuration) { configuration.digitalInputs[0].countsPulses = false; });
        QCOMPARE(control<QLabel>(m_page, "lbl_gw_gw_0")->toolTip(), QString()); // 0 or 1 has no unit
        QCOMPARE(rowTexts(control<QTableView>(m_page, "Tbl_gw"), 0).at(2), "> 90");
    }

    void combinationsShowReferencesInPlaceOfAThreshold()
    {
        const QStringList ofThresholds{
            "lbl_gw_ip",        "Cbo_gw_ip",          "lbl_gw_gw_0",
            "lbl_gw_gw_1",      "Txt_gw_gw",          "lbl_gw_hysterese_0",
            "Txt_gw_hysterese", "lbl_gw_hysterese_1", QStringLiteral("lbl_gw_verzögerung_0"),
            "Txt_gw_delay",     "Fra_gw_vergleich",   QStringLiteral("lbl_gw_verzögerung_1")};
        auto *bar = control<QScrollBar>(m_page, "Scr_gw");
        const int height = control<QWidget>(m_page, "Txt_gw_meldung")->y();
        for (const int entry : {15, 16, 19, 0}) {
            bar->setValue(entry);
            for (const QString &name : ofThresholds) {
                QCOMPARE(control<QWidget>(m_page, name)->isVisible(), entry < 16);
            }
            QCOMPARE(control<QWidget>(m_page, "Frame_gw_Bezug")->isVisible(), entry >= 16);
            QCOMPARE(control<QWidget>(m_page, "Txt_gw_meldung")->y(), height);
            QCOMPARE(control<QGroupBox>(m_page, "Fra_gw")->title(), QString("LV %1").arg(entry + 1));
        }
    }

    void overviewAndScrollBarAlwaysAgree()
    {
        auto *bar = control<QScrollBar>(m_page, "Scr_gw");
        auto *overview = control<QTableView>(m_page, "Tbl_gw");
        const auto rowAt = [&](int row) {
            return overview->visualRect(overview->model()->index(row, 1)).center();
        };
        QTest::mouseClick(overview->viewport(), Qt::LeftButton, {}, rowAt(3));
        QCOMPARE(bar->value(), 3);
        QTest::keyClick(overview, Qt::Key_Down);
        QCOMPARE(bar->value(), 4);
        bar->setFocus();
        QTest::keyClick(bar, Qt::Key_End);
        QCOMPARE(overview->currentIndex().row(), 19);
        m_page.showEntry(7);
        QCOMPARE(overview->currentIndex().row(), 7);
        typeOver(control<QLineEdit>(m_page, "Txt_gw_gw"), "12");
        QCOMPARE(configuration().limitValues[7].limit, "12");
    }

    void theOverviewTellsWhatEachEntryDoes()
    {
        change([](Configuration &configuration) {
            configuration.scaling[1].unit = "Volt";
            configuration.limitValues[2] = {10, "high", "80", "0", "0", 3, 255, 0, 0, "30"};
            configuration.limitValues[5] = {12, "", "1", "0", "0", 2, 255, 0, 0, "30"};
            configuration.limitValues[16].reference = 1 + 4 + 16;
        });
        QCOMPARE(row(2), QStringList({"3", "10 Analog In 2", "> 80 Volt", "high"}));
        QCOMPARE(row(5), QStringList({"6", "12 DigOut 2", "= 1", ""}));
        QCOMPARE(row(16), QStringList({"17", "1+3+5", "", ""}));
        const auto *model = control<QTableView>(m_page, "Tbl_gw")->model();
        QVERIFY(model->data(model->index(0, 0), Qt::ForegroundRole).isValid()); // dimmed: not in use
        QVERIFY(!model->data(model->index(2, 0), Qt::ForegroundRole).isValid());

        m_page.setProblems({{"x", "Txt_gw_gw", 2, "is no number"}, {"x", "Txt_swtch_wert", 5, "is none"}});
        QVERIFY(model->data(model->index(2, 0), Qt::DecorationRole).isValid());
        QVERIFY(!model->data(model->index(5, 0), Qt::DecorationRole).isValid());
        m_page.showEntry(2);
        QCOMPARE(control<QLineEdit>(m_page, "Txt_gw_gw")->accessibleDescription(), "is no number");
        m_page.showEntry(5);
        QCOMPARE(control<QLineEdit>(m_page, "Txt_gw_gw")->accessibleDescription(), "");
    }

    void showingThePageFillsInWhatEntriesLack()
    {
        change([](Configuration &configuration) {
            configuration.limitValues[0].limit.clear();
            configuration.limitValues[9].delay.clear();
            configuration.limitValues[18].repetitionInterval.clear();
            configuration.limitValues[4].repetitionInterval = "7";
        });
        m_page.entered();
        QCOMPARE(configuration().limitValues[0].limit, "0");
        QCOMPARE(configuration().limitValues[9].delay, "0");
        QCOMPARE(configuration().limitValues[18].repetitionInterval, "30");
        QCOMPARE(configuration().limitValues[4].repetitionInterval, "7");
        QVERIFY(!m_all.document.isModified());
        QVERIFY(!m_all.history.canUndo());
    }

    void onlyAnotherChannelIsAnEdit()
    {
        auto *channel = control<QComboBox>(m_page, "Cbo_gw_ip");
        QCOMPARE(channel->count(), 19);
        QCOMPARE(channel->itemText(0), QStringLiteral("ungültig"));
        choose(channel, 0);
        QVERIFY(!m_all.document.isModified());
        choose(channel, 9);
        QVERIFY(m_all.document.isModified());
        QCOMPARE(configuration().limitValues[0].channel, 9);
        m_all.document.setModified(false);
        change([](Configuration &configuration) { configuration.limitValues[3].limit.clear(); });
        choose(channel, 9);
        QVERIFY(!m_all.document.isModified());
        QCOMPARE(configuration().limitValues[3].limit, "0"); // the entry was loaded again
    }

    void unitsFollowTheChannel_data()
    {
        QTest::addColumn<int>("channel");
        QTest::addColumn<bool>("counting");
        QTest::addColumn<QString>("limit");
        QTest::addColumn<QString>("hysteresis");
        QTest::addColumn<QString>("delay");
        QTest::newRow("none") << 0 << false << ""
                              << ""
                              << "delay";
        QTest::newRow("input 1") << 1 << false << "0/1"
                                 << "0"
                                 << "delay";
        QTest::newRow("input 2 counting") << 2 << true << "Pulses"
                                          << "Pulses"
                                          << "pro Intervall";
        QTest::newRow("input 3") << 3 << false << "0/1"
                                 << "0"
                                 << "delay";
        QTest::newRow("input 4 counting") << 4 << true << "Hours"
                                          << "Hours"
                                          << "delay";
        QTest::newRow("input 8") << 8 << true << "0/1"
                                 << "0"
                                 << "delay";
        QTest::newRow("analog input 2") << 10 << false << "u1"
                                        << "u1"
                                        << "delay";
        QTest::newRow("output 1") << 11 << false << "0/1"
                                  << "0"
                                  << "delay";
        QTest::newRow("analog output 1") << 13 << false << "u2"
                                         << "u2"
                                         << "delay";
        QTest::newRow("hours of output 2") << 16 << false << "Hours"
                                           << "Hours"
                                           << "delay";
        QTest::newRow("temperature") << 18 << false << QStringLiteral("°C") << "Kelvin"
                                     << "delay";
    }
    void unitsFollowTheChannel()
    {
        QFETCH(const int, channel);
        QFETCH(const bool, counting);
        change([&](Configuration &configuration) {
            for (std::size_t index = 0; index < 4; ++index) {
                configuration.digitalInputs[index].countsPulses = counting && index < 2;
                configuration.digitalInputs[index].countsHours = counting && index >= 2;
                configuration.scaling[index].unit = QString("u%1").arg(index);
            }
        });
        choose(control<QComboBox>(m_page, "Cbo_gw_ip"), channel);
        QTEST(control<QLabel>(m_page, "lbl_gw_gw_0")->text(), "limit");
        QTEST(control<QLabel>(m_page, "lbl_gw_hysterese_0")->text(), "hysteresis");
        QTEST(control<QLabel>(m_page, QStringLiteral("lbl_gw_verzögerung_1"))->text(), "delay");
    }

    void boxesAreBitsOfTheirMasks()
    {
        click(control<QCheckBox>(m_page, "chk_gw_msn_2"));
        QCOMPARE(configuration().limitValues[0].recipients, 251);
        QTest::keyClick(control<QRadioButton>(m_page, "Opt_gw_vergleich_3"), Qt::Key_Space);
        QCOMPARE(configuration().limitValues[0].comparison, 3);
        change([](Configuration &configuration) { configuration.limitValues[17].reference = 65535; });
        m_page.showEntry(17);
        QVERIFY(control<QCheckBox>(m_page, "chk_gw_msn_2")->isChecked());
        click(control<QCheckBox>(m_page, "Check_gw_Bezug_0"));
        QCOMPARE(configuration().limitValues[17].reference, 65534.0);
        click(control<QCheckBox>(m_page, "Check_gw_Bezug_0"));
        QCOMPARE(configuration().limitValues[17].reference, 65535.0);
    }

    void aComparisonThatNoButtonStandsForIsShownByNone()
    {
        change([](Configuration &configuration) { configuration.limitValues[1].comparison = 7; });
        m_page.showEntry(1);
        for (const int id : {1, 2, 3}) {
            QVERIFY(!control<QRadioButton>(m_page, QString("Opt_gw_vergleich_%1").arg(id))->isChecked());
        }
        m_page.showEntry(2);
        QVERIFY(control<QRadioButton>(m_page, "Opt_gw_vergleich_1")->isChecked());
    }

    void theRepetitionIntervalIsMinutesOfADay()
    {
        auto *interval = control<QLineEdit>(m_page, "Text_gw_wiederholungsintervall");
        typeOver(interval, "0");
        QCOMPARE(interval->text(), "1");
        typeOver(interval, "2000");
        QCOMPARE(interval->text(), "1440");
        interval->selectAll();
        QTest::keyClick(interval, Qt::Key_Delete);
        QCOMPARE(configuration().limitValues[0].repetitionInterval, "");
        m_all.document.setModified(false);
        QTest::keyClick(interval, Qt::Key_Tab);
        QCOMPARE(interval->text(), "1");
        QCOMPARE(configuration().limitValues[0].repetitionInterval, "1");
        QVERIFY(!m_all.document.isModified());
    }

    void umlautsAreWrittenOutWhereTheUserTypesAndKeptWhereAFileHasThem()
    {
        auto *text = control<QLineEdit>(m_page, "Txt_gw_meldung");
        typeOver(text, QStringLiteral("Größe"));
        QCOMPARE(configuration().limitValues[0].alarm, "Groesse");
        readConfiguration(QStringLiteral("<KTR><Grenzwert0 Alarm='Größe'/></KTR>").toUtf8(), m_read,
                          m_all.document.environment());
        change([this](Configuration &configuration) { configuration = m_read; });
        m_page.entered();
        QCOMPARE(text->text(), QStringLiteral("Größe"));
        QCOMPARE(configuration().limitValues[0].alarm, QStringLiteral("Größe"));
        text->setCursorPosition(3);
        type(text, "x");
        QCOMPARE(configuration().limitValues[0].alarm, "Groexsse");
        QCOMPARE(text->cursorPosition(), 5);
    }

    void recipientsBearTheNamesOfTheAdministrators()
    {
        change([](Configuration &configuration) {
            configuration.administrators[1].name = "Lobraile & Co";
            configuration.administrators[4].name.clear();
        });
        QCOMPARE(control<QCheckBox>(m_page, "chk_gw_msn_1")->text(), "Lobraile && Co"); // no shortcut
        QCOMPARE(control<QCheckBox>(m_page, "chk_gw_msn_4")->text(), "");
        QCOMPARE(control<QCheckBox>(m_page, "chk_gw_msn_4")->accessibleName(), "Admin 5");
    }

    void theLengthOfTheCommandIsCounted()
    {
        m_page.showEntry(2);
        auto *text = control<QLineEdit>(m_page, "Txt_gw_meldung");
        const auto *counter = control<QLabel>(m_page, "lbl_gw_length");
        const auto sent = [this] {
            return commandsOf(configuration(), {})[stepOf(2)].value_or(QString()).size();
        };
        typeOver(text, "Pump fails");
        QCOMPARE(counter->text(), QStringLiteral("%1 of 160").arg(sent()));
        const qsizetype room = longestCommand - sent();
        QTest::keyClicks(text, QString(room, u'x'));
        QCOMPARE(counter->text(), "160 of 160");
        QTest::keyClicks(text, "x");
        QCOMPARE(counter->text(), "161 of 160: too long");
        m_page.showEntry(0);
        QVERIFY(!counter->text().contains("long"));
    }

    void init()
    {
        m_all.document.makeNew();
        m_all.document.adjust([](Configuration &configuration) {
            for (LimitValue &value : configuration.limitValues) {
                value.repetitionInterval = "30";
            }
        });
        m_all.document.setModified(false);
        m_all.history.clear();
        m_page.showEntry(0);
        m_all.open(m_page);
        m_page.entered();
    }
    void cleanup() { QObject::disconnect(&m_all.document, nullptr, &m_page, nullptr); }

private:
    static std::size_t stepOf(int entry)
    {
        const StepSet steps = stepsOfEntry(EntryKind::LimitValue, entry + 1);
        std::size_t step = 0;
        while (!steps.test(step)) {
            ++step;
        }
        return step;
    }
    static void click(QCheckBox *box) { QTest::keyClick(box, Qt::Key_Space); }
    const Configuration &configuration() const { return m_all.document.configuration(); }
    void change(const std::function<void(Configuration &)> &changed) { m_all.document.adjust(changed); }

    QStringList row(int row) { return rowTexts(control<QTableView>(m_page, "Tbl_gw"), row); }

    PageFixture m_all;
    Configuration m_read;
    LimitValuePage m_page{m_all.context};
};

QTEST_MAIN(LimitValuePageTest)
#include "limit_value_page_test.moc"
