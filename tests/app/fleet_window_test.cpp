#include "app/fleet/fleet_window.h"
#include "config/configuration_file.h"
#include "config/fields.h"
#include "platform/files.h"
#include "platform/registry.h"
#include "simulator/module_on_udp.h"
#include "support/choosing.h"
#include "support/kept_stations.h"
#include "support/page_fixture.h"
#include "support/test_files.h"

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTemporaryDir>

using namespace ktr;
using namespace ktr::test;
using namespace Qt::StringLiterals;

/// Two modules over UDP, which the operational mode watches, and a station whose module does not answer.
class FleetWindowTest : public QObject
{
    Q_OBJECT

private:
    static constexpr int answering = 2;
    static constexpr int all = 3;

    QString path(const QString &name) const { return m_folder->filePath(name); }
    QString fileOf(int station) const { return path(u"files/S%1.xml"_s.arg(station)); }

    template <class Control> Control *part(const char *name) const
    {
        auto *found = m_window->findChild<Control *>(QLatin1String(name));
        Q_ASSERT(found != nullptr);
        return found;
    }
    void click(const char *name) const { QTest::mouseClick(part<QPushButton>(name), Qt::LeftButton); }
    QString cell(int row, int column) const
    {
        return part<QTableView>("Table_fleet")->model()->index(row, column).data().toString();
    }
    QString problem() const
    {
        const auto *label = part<QLabel>("Label_fleet_problem");
        return label->isHidden() ? QString() : label->text();
    }
    void tick(int row, bool on) const
    {
        QAbstractItemModel *model = part<QTableView>("Table_fleet")->model();
        model->setData(model->index(row, 0), on ? Qt::Checked : Qt::Unchecked, Qt::CheckStateRole);
    }
    void setField(const QString &field, const QString &value) const
    {
        part<QLineEdit>("Text_fleet_field")->setText(field);
        part<QLineEdit>("Text_fleet_value")->setText(value);
        click("Cmd_fleet_set");
    }
    /// Presses a button of the question that a click brings.
    void clickAndAnswer(const char *name, const QString &button) const
    {
        QTimer::singleShot(0, m_window.get(), [button] {
            QWidget *question = QApplication::activeModalWidget();
            QVERIFY(question != nullptr);
            QTest::mouseClick(question->findChild<QPushButton *>(button), Qt::LeftButton);
        });
        click(name);
    }
    QString numberIn(const QString &file) const
    {
        Configuration configuration;
        (void)readConfigurationFile(file, configuration, fixedEnvironment());
        return configuration.administrators[0].number;
    }

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        MRegistry::setRegistryFile(path(u"registry.json"_s));
        QVERIFY(QDir().mkpath(path(u"files"_s)));
        m_stations = std::make_unique<KeptStations>(m_folder->path());
        QVERIFY(m_stations->opened);
        OperationalMode &mode = *m_stations->mode;
        while (mode.tree().rowCount() > 0) { // what an empty list begins with
            mode.removeStation(mode.tree().index(0, 0).data(StationTree::KeyRole).toString());
        }
        m_stations->lines.clear();
        for (int station = 0; station < all; ++station) {
            QString address = u"127.0.0.1:9"_s;
            if (station < answering) {
                ModuleOptions options;
                options.times = {Milliseconds{20}, Milliseconds{2}, Milliseconds{5000}};
                options.tellsEnd = true;
                m_modules.push_back(std::make_unique<ModuleOnUdp>(m_stations->timers, options));
                QVERIFY(m_modules.back()->open(u"0"_s));
                m_modules.back()->module().onConfigured([this, station](const ModuleMemory &memory) {
                    m_held[station] = memory.configuration.administrators[0].number;
                });
                address = m_modules.back()->address();
            }
            const QString name = u"S%1"_s.arg(station);
            mode.addStation(name, address);
            if (station < answering) {
                mode.setOnline(name, true);
            }
            Configuration configuration;
            makeNew(configuration, fixedEnvironment());
            configuration.gsm.stationId = name;
            configuration.versionText = configuration.info.version = u"2026-01-01 10:00:00"_s;
            QVERIFY(writeConfigurationFile(fileOf(station), configuration, fixedEnvironment()));
        }
        m_memory = std::make_unique<TransmissionMemory>(path(u"transmissions.sqlite"_s));
        m_window = std::make_unique<FleetWindow>(
            FleetWindow::Services{{mode, *m_memory, m_io, m_stations->timers, m_environment, m_texts},
                                  [this](const QString &, const QString &) { return path(u"results.csv"_s); },
                                  [this](const QString &) { return m_chosen; },
                                  [this](const QString &) { return path(u"files"_s); }},
            QStringList{u"S0"_s, u"S1"_s, u"S2"_s});
        m_window->show();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        QTRY_COMPARE(cell(0, FleetModel::PlanColumn), u"no file is known"_s);
        QVERIFY(!part<QPushButton>("Cmd_fleet_transmit")->isEnabled());
        click("Cmd_fleet_folder");
        QTRY_VERIFY(cell(2, FleetModel::PlanColumn).contains("nothing is proved"_L1));
        QTRY_VERIFY(part<QPushButton>("Cmd_fleet_transmit")->isEnabled());
    }
    void cleanup()
    {
        m_window.reset();
        m_memory.reset();
        m_stations.reset();
        m_modules.clear();
        m_held.clear();
    }

    void aValueIsSetInAllTickedFilesOrInNone()
    {
        tick(2, false);
        setField(u"numbr 1"_s, u"+44123"_s);
        QVERIFY(problem().contains("numbr 1"_L1));
        setField(u"Limit Value/LV 1/Delay"_s, u"soon"_s);
        QVERIFY2(problem().contains("S0.xml"_L1) && problem().contains("number from 0"_L1),
                 qPrintable(problem()));
        const QByteArray before = contentOf(fileOf(0));
        QVERIFY(writeFile(fileOf(1), "no configuration"));
        setField(u"number 1"_s, u"+44123456789"_s);
        QVERIFY(!problem().isEmpty());
        QCOMPARE(contentOf(fileOf(0)), before);
        // It is left out of what follows, and told in its row.
        QVERIFY(cell(1, FleetModel::PlanColumn).contains("S1.xml"_L1));
        setField(u"number 1"_s, u"+44123456789"_s);
        QCOMPARE(problem(), QString());
        QCOMPARE(numberIn(fileOf(0)), u"+44123456789"_s);
        QVERIFY(numberIn(fileOf(2)) != u"+44123456789"_s);
    }

    void stationsAreLetGoOfTransmittedToAndWatchedAgain()
    {
        OperationalMode &mode = *m_stations->mode;
        clickAndAnswer("Cmd_fleet_transmit", u"CancelButton"_s);
        QVERIFY(!m_window->isRunning() && m_stations->lines[0]->isOpened);
        part<QLineEdit>("Text_fleet_receipts")->setText(path(u"receipts"_s));
        clickAndAnswer("Cmd_fleet_transmit", u"OKButton"_s);
        QVERIFY(m_window->isRunning());
        QTRY_VERIFY(mode.isLent(u"S0"_s));
        QVERIFY(!m_stations->lines[0]->isOpened && mode.attributes(u"S0"_s).online);
        QVERIFY(!m_window->close()); // what runs needs it
        for (int station = 0; station < answering; ++station) {
            QTRY_VERIFY_WITH_TIMEOUT(cell(station, FleetModel::OutcomeColumn).startsWith("whole"_L1),
                                     120'000);
            QVERIFY(!mode.isLent(u"S%1"_s.arg(station)) && m_stations->lines[station]->isOpened);
            QVERIFY(contentOf(path(u"receipts/S%1.pdf"_s.arg(station))).startsWith("%PDF"));
        }
        click("Cmd_fleet_cancel"); // the third does not answer
        QTRY_VERIFY(!m_window->isRunning());
        QVERIFY(cell(2, FleetModel::OutcomeColumn).contains("cancelled"_L1));
        QVERIFY(part<QPushButton>("Cmd_fleet_retry")->isEnabled());
        click("Cmd_fleet_results");
        const QByteArray results = contentOf(path(u"results.csv"_s));
        QVERIFY2(results.count(";whole;") == answering && results.count(";broken off;") == 1, results);

        // What they are proved to hold now is not sent again.
        tick(2, false);
        setField(u"number 1"_s, u"+44123456789"_s);
        QTRY_COMPARE(cell(0, FleetModel::PlanColumn).section(u' ', 0, 0).toInt(), 4);
        QAbstractItemModel *differences = part<QTableView>("Table_fleet_details")->model();
        QTRY_VERIFY(differences->rowCount() > 0 &&
                    differences->index(0, 2).data().toString() == u"+44123456789"_s);
        clickAndAnswer("Cmd_fleet_transmit", u"OKButton"_s);
        for (int station = 0; station < answering; ++station) {
            QTRY_VERIFY_WITH_TIMEOUT(
                cell(station, FleetModel::OutcomeColumn).contains("whole, 4 commands"_L1), 120'000);
            QCOMPARE(m_held[station], u"+44123456789"_s);
        }
        QTRY_VERIFY(!m_window->isRunning());
        QVERIFY(m_window->close());
    }

    void faultsOfTheChoiceAreToldBeforeAnythingIsSent()
    {
        m_chosen = fileOf(0);
        part<QTableView>("Table_fleet")->selectRow(1);
        click("Cmd_fleet_file");
        QVERIFY(cell(1, FleetModel::PlanColumn).contains("identifier \"S0\""_L1));
        click("Cmd_fleet_transmit");
        QVERIFY2(problem().contains("S1 (S0.xml): the file"_L1), qPrintable(problem()));
        QVERIFY(!m_window->isRunning() && m_stations->lines[0]->isOpened);
        // Two with one MAC address, which is a problem of each before, and folders that are none.
        for (int station = 0; station < 2; ++station) {
            Configuration configuration;
            QVERIFY(readConfigurationFile(fileOf(station), configuration, fixedEnvironment()).document);
            configuration.ethernet.mac5 = u"07"_s;
            QVERIFY(writeConfigurationFile(fileOf(station), configuration, fixedEnvironment()));
        }
        click("Cmd_fleet_folder");
        QVERIFY2(cell(0, FleetModel::PlanColumn).contains("problems: 1"_L1),
                 qPrintable(cell(0, FleetModel::PlanColumn)));
        click("Cmd_fleet_transmit");
        QVERIFY2(problem().contains("S1 (S1.xml): the MAC address"_L1) &&
                     problem().contains("S0 (S0.xml)"_L1),
                 qPrintable(problem()));
        tick(1, false);
        part<QLineEdit>("Text_fleet_receipts")->setText(fileOf(2));
        click("Cmd_fleet_transmit");
        QVERIFY2(problem().contains(fileOf(2)), qPrintable(problem()));
        part<QLineEdit>("Text_fleet_receipts")->clear();
        tick(1, true);
        QVERIFY(!m_window->isRunning() && m_stations->lines[0]->isOpened);
        // The space bar and the filter choose others.
        part<QLineEdit>("Text_fleet_filter")->setText(u"S2"_s);
        part<QCheckBox>("Check_fleet_all")->click();
        part<QLineEdit>("Text_fleet_filter")->clear();
        part<QTableView>("Table_fleet")->selectRow(1);
        part<QTableView>("Table_fleet")->setFocus();
        QTest::keyClick(part<QTableView>("Table_fleet"), Qt::Key_Space);
        QTRY_COMPARE(part<QPushButton>("Cmd_fleet_transmit")->text().remove(u'&'), u"Transmit to 1"_s);
    }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    const Environment m_environment = fixedEnvironment();
    const TextTable m_texts;
    IoThread m_io;
    std::unique_ptr<KeptStations> m_stations;
    std::vector<std::unique_ptr<ModuleOnUdp>> m_modules;
    QHash<int, QString> m_held;
    std::unique_ptr<TransmissionMemory> m_memory;
    std::unique_ptr<FleetWindow> m_window;
    QString m_chosen;
};

QTEST_MAIN(FleetWindowTest)
#include "fleet_window_test.moc"
