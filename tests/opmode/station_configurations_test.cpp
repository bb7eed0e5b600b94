#include "config/configuration_file.h"
#include "opmode/beside_list.h"
#include "opmode/operational_mode.h"
#include "opmode/station_configurations.h"
#include "platform/files.h"
#include "support/environment.h"
#include "support/manual_timers.h"
#include "support/recorded_line.h"
#include "support/test_files.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace ktr;
using namespace ktr::test;

using Origin = StationConfiguration::Origin;

/// Which file is which station's, and what it says of the inputs.
class StationConfigurationsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_configurations.reset();
        m_folder = std::make_unique<QTemporaryDir>();
        m_timers = std::make_unique<ManualTimers>();
        m_configurations = std::make_unique<StationConfigurations>(*m_timers);
        QVERIFY(QDir(m_folder->path()).mkpath("lists/far"));
        QVERIFY(QDir(m_folder->path()).mkpath("beside"));
    }

    void choicesAreALineEachAndWhatIsNoneStays()
    {
        const QByteArray text = "# made by hand\n"
                                "\n"
                                "Mill;north/mill.xml\n"
                                "\"Pump; 2\";\"/a \"\"b\"\"/2.xml\"\n"
                                "Tower;\n"
                                "no file\n"
                                "Mill;other.xml\n"
                                "\"open;x\n";
        QStringList remarks;
        StationLinks links = StationLinks::parse(text, "/ktr/lists", remarks);
        QCOMPARE(remarks.size(), 3);
        QVERIFY(remarks.front().contains("Line 6"));
        QCOMPARE(links.text(), text);
        QCOMPARE(links.fileOf("Mill"), "/ktr/lists/north/mill.xml");
        QCOMPARE(links.fileOf("Pump; 2"), "/a \"b\"/2.xml");
        QCOMPARE(links.fileOf("Tower"), QString());
        QCOMPARE(links.fileOf("open"), std::nullopt);
        links.set("Mill", "/ktr/lists/mill.xml");
        links.set("Pump; 2", std::nullopt);
        links.set("#1 \"x\"", "/ktr/configurations/1.xml");
        links.set("Far", "/far/away/2.xml");
        QVERIFY(links.rename("Tower", "Weir"));
        QVERIFY(!links.rename("nobody", "Weir"));
        QCOMPARE(links.text(), "# made by hand\n"
                               "\n"
                               "Mill;mill.xml\n"
                               "no file\n"
                               "Mill;other.xml\n"
                               "\"open;x\n"
                               "\"#1 \"\"x\"\"\";../configurations/1.xml\n"
                               "Far;/far/away/2.xml\n"
                               "Weir;\n");
        remarks.clear();
        QCOMPARE(StationLinks::parse(links.text(), "/ktr/lists", remarks), links);
        remarks.clear();
        (void)StationLinks::parse("Mill;mill.xml\n", QString(), remarks);
        QCOMPARE(remarks.size(), 1); // of a record on a server there is no folder to begin at
    }

    void aFileIsFoundByItsIdentifier()
    {
        write("lists/one.xml", "Werk 7");
        QVERIFY(writeFile(path("lists/one.names"), "1=old;\n"));
        age("lists/one.names", 2);
        write("lists/two.xml", "Werk 7");
        QVERIFY(writeFile(path("lists/two.names"), "1=new;\n"));
        age("lists/two.names", 1);
        write("lists/three.xml", "Muehle");
        QVERIFY(writeFile(path("lists/nodes.xml"), contentOf(path("lists/three.xml"))));
        open();
        QCOMPARE(of("Werk 7").origin, Origin::Found);
        QCOMPARE(of("Werk 7").names().of(1).name, "new");
        QCOMPARE(of("Werk 7").candidates, (QStringList{real("lists/two.xml"), real("lists/one.xml")}));
        QVERIFY(of("Werk 7").isDoubtful());
        QCOMPARE(of(QString::fromUtf8("Mühle")).candidates, QStringList{real("lists/three.xml")});
        QCOMPARE(of("Werk 9").origin, Origin::None);
        QCOMPARE(of("").origin, Origin::None);

        const QString other = path("beside");
        write("beside/four.xml", "Werk 9");
        m_configurations->setFolders({other, path("missing"), QString()});
        settle();
        QCOMPARE(of("Werk 9").file, real("beside/four.xml"));
    }

    /// Neither the length nor the time tells, and nothing is told when nothing has changed.
    void whatChangesOnTheDiskIsRead()
    {
        write("lists/a.xml", "Werk 1");
        QVERIFY(writeFile(path("lists/a.names"), "1=Pump 1;\n"));
        open();
        const QSignalSpy changes(m_configurations.get(), &StationConfigurations::changed);
        settle();
        QCOMPARE(changes.count(), 0);
        const QDateTime time = QFileInfo(path("lists/a.xml")).lastModified();
        QVERIFY(writeFile(path("lists/a.xml"), contentOf(path("lists/a.xml")).replace("Werk 1", "Werk 2")));
        setTime("lists/a.xml", time);
        QVERIFY(writeFile(path("lists/a.names"), "1=Pump 2;\n"));
        settle();
        QCOMPARE(changes.count(), 1);
        QCOMPARE(of("Werk 1").origin, Origin::None);
        QCOMPARE(of("Werk 2").names().of(1).name, "Pump 2");
        QVERIFY(writeFile(path("lists/a.xml"), "torn"));
        settle();
        QCOMPARE(of("Werk 2").origin, Origin::None);
    }

    void theSystemTellsOfAFileThatIsReplaced()
    {
        open();
        write("lists/a.xml", "Werk 1");
        QTRY_VERIFY((m_timers->advance(StationConfigurations::pauseAfterChange),
                     of("Werk 1").origin == Origin::Found));
    }

    void theUsersChoiceComesFirstAndIsKept()
    {
        write("lists/own.xml", "Werk 1");
        write("beside/other.xml", "Werk 2");
        open();
        QVERIFY(m_configurations->choose("Werk 1", path("beside/other.xml")));
        QCOMPARE(contentOf(path("lists/nodes.links")), "Werk 1;../beside/other.xml\n");
        QVERIFY(of("Werk 1").trouble.isEmpty()); // it was not looked at yet
        settle();
        QCOMPARE(of("Werk 1").origin, Origin::Chosen);
        QCOMPARE(of("Werk 1").inputs->station, "Werk 2");
        QCOMPARE(of("Werk 2").origin, Origin::Found); // in the folder of a file that was chosen
        m_configurations->rename("Werk 1", "Dam");
        QCOMPARE(of("Dam").origin, Origin::Chosen);
        QCOMPARE(of("Werk 1").origin, Origin::Found);

        m_configurations = std::make_unique<StationConfigurations>(*m_timers);
        open();
        QCOMPARE(of("Dam").inputs->station, "Werk 2");
        QVERIFY(QFile::remove(path("beside/other.xml")));
        settle();
        QCOMPARE(of("Dam").file, path("beside/other.xml"));
        QVERIFY(!of("Dam").trouble.isEmpty() && of("Dam").inputs == nullptr);
        QVERIFY(m_configurations->forget("Dam"));
        QCOMPARE(of("Dam").origin, Origin::None);
        QVERIFY(m_configurations->choose("Werk 1", QString()));
        QCOMPARE(of("Werk 1").origin, Origin::None);
        QCOMPARE(of("Werk 1").candidates.size(), 1);

        const QByteArray broken = "Werk 1;\xFF\n";
        QVERIFY(writeFile(path("lists/nodes.links"), broken));
        QVERIFY(!m_configurations->choose("Werk 1", path("lists/own.xml")));
        QCOMPARE(contentOf(path("lists/nodes.links")), broken);
    }

    void whatWasTransmittedCountsWhereTheIdentifierDoesNotDecide()
    {
        write("lists/one.xml", "Werk 1");
        write("lists/two.xml", "Werk 1");
        write("beside/three.xml", "Werk 3");
        open();
        m_configurations->setTransmitted({{"10.0.0.1", path("lists/one.xml")},
                                          {"10.0.0.3", path("beside/three.xml")},
                                          {"10.0.0.4", path("beside/gone.xml")}});
        settle();
        QCOMPARE(of("Werk 1", "10.0.0.1").origin, Origin::Transmitted);
        QCOMPARE(of("Werk 1", "10.0.0.1").file, path("lists/one.xml"));
        QCOMPARE(of("Werk 1", "10.0.0.3").origin, Origin::Found); // the address was another station's
        QCOMPARE(of("anybody", "10.0.0.3").file, path("beside/three.xml"));
        QCOMPARE(of("anybody", "10.0.0.4").origin, Origin::None);
    }

    void limitsAndUnitsAreThoseOfTheConfiguration()
    {
        Configuration configuration;
        configuration.scaling[0].unit = " m ";
        configuration.scaling[1].unit = "l/s";
        configuration.names.channels[9].unit = "m3/h";
        configuration.digitalInputs[0].countsPulses = true;
        configuration.digitalInputs[2].countsHours = true;
        const auto watch = [&configuration](std::size_t at, qint16 channel, qint16 comparison,
                                            const char *limit, const char *hysteresis, const char *text) {
            LimitValue &value = configuration.limitValues[at];
            value.channel = channel;
            value.comparison = comparison;
            value.limit = limit;
            value.hysteresis = hysteresis;
            value.alarm = text;
        };
        watch(4, 9, 3, "3,5", "", "high");
        watch(5, 9, 1, "0.5", "0.1", "");
        watch(6, 5, 2, "1", "0", "");
        watch(7, 9, 3, "much", "0", "");
        watch(16, 9, 3, "1", "0", ""); // combines others
        const ConfiguredInputs inputs = inputsOf(configuration);
        QCOMPARE(inputs.names.of(9).unit, "m");
        QCOMPARE(inputs.names.of(10).unit, "m3/h");
        QCOMPARE(inputs.names.of(3).unit, "h");
        QCOMPARE(inputs.names.of(4).unit, "");
        QCOMPARE(inputs.measure(1), Measure::Pulses);
        QCOMPARE(inputs.measure(4), Measure::Binary);
        QCOMPARE(inputs.measure(0), Measure::None);
        const QList<InputLimit> limits = inputs.limitsOf(9);
        QCOMPARE(limits.size(), 2);
        QCOMPARE(limits[0], (InputLimit{5, 9, 3, 3.5, 0, "high"}));
        QCOMPARE(limits[1].hysteresis, 0.1);
        QVERIFY(limits[0].isBeyond(3.6) && !limits[0].isBeyond(3.5));
        QVERIFY(limits[1].isBeyond(0.4) && !limits[1].isBeyond(0.5));
        QVERIFY(inputs.limitsOf(5).front().isBeyond(1) && !inputs.limitsOf(5).front().isBeyond(0));
    }

    void aStationOfTheOperationalModeHasItsFileUnderItsPresentName()
    {
        write("lists/one.xml", "Werk 1");
        OperationalMode mode({fixedEnvironment(), *m_timers, [] { return std::make_unique<RecordedLine>(); },
                              [] {}, manualCallbackTimers(*m_timers)},
                             StationCaptions{});
        QVERIFY(mode.open(path("lists/nodes.xml"), OperationalMode::Use::Watch));
        const QString key = mode.addStation("Werk 1", "10.0.0.1");
        QSignalSpy changes(&mode.configurations(), &StationConfigurations::changed);
        mode.configurations().open(path("lists/nodes.xml"));
        QTRY_COMPARE(mode.configuration(key).origin, Origin::Found);
        QVERIFY(mode.configurations().choose("Werk 1", path("lists/one.xml")));
        QVERIFY(mode.tree().setData(mode.tree().find(key), "Dam", Qt::EditRole));
        QCOMPARE(mode.configuration(key).origin, Origin::Chosen);
        QCOMPARE(contentOf(path("lists/nodes.links")), "Dam;one.xml\n");
    }

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    QString real(const QString &name) const { return QFileInfo(path(name)).canonicalFilePath(); }
    StationConfiguration of(const QString &station, const QString &address = {}) const
    {
        return m_configurations->of(station, address);
    }
    void open()
    {
        m_configurations->open(path("lists/nodes.xml"));
        settle();
    }
    /// Looks, and waits until that is done: the next look is then planned.
    void settle()
    {
        m_configurations->look();
        QTRY_VERIFY(m_configurations->isSettled());
    }
    void write(const QString &file, const QString &station) const
    {
        Configuration configuration;
        configuration.gsm.stationId = station;
        QVERIFY(writeConfigurationFile(path(file), configuration, fixedEnvironment()));
    }
    void setTime(const QString &file, const QDateTime &time) const
    {
        QFile changed(path(file));
        QVERIFY(changed.open(QIODevice::ReadWrite));
        QVERIFY(changed.setFileTime(time, QFileDevice::FileModificationTime));
    }
    void age(const QString &file, int days) const
    {
        setTime(file, QDateTime(QDate(2026, 11, 20), QTime(8, 0)).addDays(-days));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ManualTimers> m_timers;
    std::unique_ptr<StationConfigurations> m_configurations;
};

QTEST_GUILESS_MAIN(StationConfigurationsTest)
#include "station_configurations_test.moc"
