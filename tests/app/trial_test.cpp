#include "app/command_line.h"
#include "app/file_commands.h"
#include "app/form_main.h"
#include "app/language_setting.h"
#include "app/trial/trial_conduct.h"
#include "app/trial/trial_files.h"
#include "app/trial/trial_folder.h"
#include "app/trial/trial_launcher.h"
#include "app/welcome_window.h"
#include "config/configuration_file.h"
#include "link/io_thread.h"
#include "link/udp_transport.h"
#include "opmode/window/form_betriebsmodus.h"
#include "platform/files.h"
#include "platform/registry.h"
#include "support/environment.h"
#include "support/manual_timers.h"
#include "support/patience.h"
#include "support/recorded_line.h"
#include "support/silent_line.h"

#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>
#include <QUdpSocket>

using namespace Qt::StringLiterals;
using namespace ktr;
using namespace ktr::test;

namespace {

QByteArray contentOf(const QString &path)
{
    QByteArray content;
    return readFile(path, content) ? content : QByteArray("cannot be read");
}

bool write(const QString &path)
{
    return bool(replaceFile(path, "something"));
}

} // namespace

class TrialTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        MRegistry::setRegistryFile(m_folder->filePath("registry.json"));
        QVERIFY(QFile::copy(KTR_SOURCE_DIR "/data/language.ini", m_folder->filePath("language.ini")));
        QVERIFY(QFile::copy(KTR_SOURCE_DIR "/samples/pumping-station.xml", m_folder->filePath("pump.xml")));
    }
    void cleanup()
    {
        m_window.reset();
        m_folder.reset();
        MRegistry::setRegistryFile({});
    }

    void theWelcomeComesToWhoNamesNoWork_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<bool>("comes");
        QTest::newRow("nothing") << QStringList() << true;
        QTest::newRow("German") << QStringList("-deutsch") << true;
        QTest::newRow("a language") << QStringList{"-language", "de"} << true;
        QTest::newRow("an option for experts") << QStringList("-expert") << true;
        QTest::newRow("a file") << QStringList("pump.xml") << false;
        QTest::newRow("a file to load") << QStringList{"-deutsch", "-load", "pump.xml"} << false;
    }
    void theWelcomeComesToWhoNamesNoWork()
    {
        QFETCH(const QStringList, arguments);
        QFETCH(const bool, comes);
        start(arguments);
        showAll();
        QCOMPARE(welcome() != nullptr, comes);
    }

    void theWelcomeIsPutAwayForGood_data()
    {
        QTest::addColumn<QString>("by");
        for (const char *way : {"Escape", "closing it", "a choice", "closing the program"}) {
            QTest::newRow(way) << way;
        }
    }
    void theWelcomeIsPutAwayForGood()
    {
        QFETCH(const QString, by);
        start({});
        showAll();
        QVERIFY(welcome() != nullptr);
        if (by == u"Escape") {
            QTest::keyClick(welcome(), Qt::Key_Escape);
        } else if (by == u"closing it") {
            welcome()->close();
        } else if (by == u"a choice") {
            QTest::keyClick(welcome()->findChild<QPushButton *>("Cmd_welcome_new"), Qt::Key_Return);
        } else {
            m_window->close();
        }
        start({});
        showAll();
        QVERIFY(welcome() == nullptr);
        m_window->findChild<QAction *>("mnu_help_welcome")->trigger();
        QVERIFY(welcome() != nullptr);
        // Here nothing can be started to try things out.
        QVERIFY(!welcome()->findChild<QPushButton *>("Cmd_welcome_module")->isEnabled());
        QVERIFY(!m_window->findChild<QAction *>("mnu_try_fleet")->isEnabled());
    }

    void theFirstStartSpeaksAsTheSystemDoes_data()
    {
        QTest::addColumn<QStringList>("system");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("kept");
        QTest::newRow("German") << QStringList{"de-AT", "en"} << QStringList() << "deutsch"
                                << "deutsch";
        QTest::newRow("English") << QStringList{"en-GB", "de"} << QStringList() << "english"
                                 << "english";
        QTest::newRow("one without texts") << QStringList("fi-FI") << QStringList() << "english"
                                           << "english";
        QTest::newRow("English is asked for") << QStringList("de-DE") << QStringList("-english") << "english"
                                              << "english";
        QTest::newRow("German is asked for") << QStringList("en-US") << QStringList("-deutsch") << "deutsch"
                                             << "english";
    }
    void theFirstStartSpeaksAsTheSystemDoes()
    {
        QFETCH(const QStringList, system);
        QFETCH(const QStringList, arguments);
        QFETCH(const QString, shown);
        QFETCH(const QString, kept);
        m_system = system;
        start(arguments);
        showAll();
        QCOMPARE(languageSetting(), "english"); // until the user goes on
        QCOMPARE(m_window->findChild<QAction *>("mnu_Load")->text().remove(u'&'),
                 shown == u"deutsch" ? u"Öffnen"_s : u"Open"_s);
        QTest::keyClick(welcome(), Qt::Key_Escape);
        QCOMPARE(languageSetting(), kept);
    }

    void aLanguageChosenInTheWelcomeStays()
    {
        m_system = QStringList("de");
        start({}); // and ends without a choice
        start({});
        showAll();
        auto *english = welcome()->findChild<QRadioButton *>("opt_welcome_english");
        QVERIFY(welcome()->findChild<QRadioButton *>("opt_welcome_deutsch")->isChecked());
        english->click();
        QCOMPARE(languageSetting(), "english");
        QTRY_COMPARE(welcome()->windowTitle(), "Welcome");
        QVERIFY(english->isChecked());
        QTest::keyClick(welcome(), Qt::Key_Escape);
        QCOMPARE(languageSetting(), "english");
    }

    void onlyAbandonedFoldersAreRemoved()
    {
        const QString place = m_folder->filePath("temporary");
        QVERIFY(QDir().mkpath(place));
        const auto folderCalled = [&place](const QString &name) {
            QString path = place + "/KTRconfig-trial-" + name;
            QDir().mkdir(path);
            QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
            return path;
        };
        const QString ended = folderCalled("ended");
        const QString kept = m_folder->filePath("kept");
        QVERIFY(QDir().mkpath(kept) && write(kept + "/file"));
        QVERIFY(QDir().mkpath(ended + "/data") && write(ended + "/data/transmissions") &&
                write(ended + "/starter.lock"));
        QVERIFY(QFile::link(kept, ended + "/link"));
        const QString running = folderCalled("running");
        QVERIFY(write(running + "/starter.lock"));
        FileLock run;
        QCOMPARE(run.take(TrialFolder::lockOfRun(running)), FileLock::Outcome::Taken);
        const QString beingMade = folderCalled("made");
        const QString link = place + "/KTRconfig-trial-link";
        QVERIFY(QFile::link(kept, link) && write(kept + "/starter.lock"));
        const QString open = folderCalled("open");
        QVERIFY(write(open + "/starter.lock"));
        QVERIFY(QFile::setPermissions(open, QFile::permissions(open) | QFile::WriteOther));
        {
            const TrialFolder own(place);
            QVERIFY2(own.made(), qPrintable(own.made().message()));
            QCOMPARE(TrialFolder::removeAbandoned(place), 1);
            QVERIFY(QFile::exists(own.path()));
        }
        QVERIFY(!QFile::exists(ended));
        QCOMPARE(QDir(kept).entryList(QDir::Files), (QStringList{"file", "starter.lock"}));
        QCOMPARE(QDir(place).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), 4);
        QVERIFY(!TrialFolder(m_folder->filePath("pump.xml")).made()); // no folder
    }

    void whatIsSavedHasTheUsersNames()
    {
        TrialFiles files("/tmp/trial", "/home/somebody");
        Configuration configuration;
        configuration.info.logFile = "/var/north/Log.txt";
        configuration.info.historyExportFile = "archive.csv";
        Configuration other = configuration;
        other.info.logFile = "/var/south/Log.txt";
        const Configuration meant = configuration;
        files.take(configuration);
        files.take(other);
        QVERIFY(files.isInside(configuration.info.logFile));
        QVERIFY(files.isInside(configuration.info.historyExportFile));
        QVERIFY(other.info.logFile != configuration.info.logFile);
        files.giveBack(configuration);
        files.giveBack(other);
        QVERIFY(configuration == meant);
        QCOMPARE(other.info.logFile, "/var/south/Log.txt");
        other.info.logFile = "/tmp/trial/Log.txt"; // as a new one has
        other.info.historyExportFile = "/srv/chosen.csv";
        files.take(other);
        files.giveBack(other);
        QCOMPARE(other.info.historyExportFile, "/srv/chosen.csv");
        QVERIFY(!files.isInside("/tmp/trial-of-another/Log.txt"));
    }

    void theFirstTransmissionOfATrialIsConfirmedWhole()
    {
        QTemporaryDir own;
        const TrialOfModule trial(own.path(), *this);
        auto *title = m_window->findChild<QLabel *>("lbl_transmission");
        m_window->findChild<QAction *>("mnu_doConfig")->trigger();
        constexpr int transmissionWait = 240'000;
        QTRY_VERIFY2_WITH_TIMEOUT(title->text() == u"The configuration was transmitted"_s,
                                  qPrintable(title->text()), transmissionWait);
        QVERIFY(m_window->findChild<QMessageBox *>("msg_differentVersions") == nullptr);
        auto *version = m_window->findChild<QLineEdit *>("txt_info_version_ktr");
        QVERIFY(version != nullptr && !version->text().isEmpty());
    }

    void theEndOfATrialAsksForAPlaceOfTheUsers()
    {
        QTemporaryDir own;
        const QString saved = m_folder->filePath("mine.xml");
        {
            const TrialOfModule trial(own.path(), *this);
            QVERIFY2(m_window->windowTitle().endsWith("Trial"), qPrintable(m_window->windowTitle()));
            QVERIFY(!m_window->windowTitle().contains(own.path()));
            QVERIFY(!m_window->document().isModified());
            m_window->document().edit([](Configuration &changed) { changed.gsm.stationId = "Mine"; });
            answerEnd(u"Stay"_s);
            QVERIFY(!m_window->close());
            QTimer chooses;
            connect(&chooses, &QTimer::timeout, this, [&] {
                if (auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget())) {
                    chooses.stop();
                    m_startFolder = dialog->directory().absolutePath();
                    dialog->setAttribute(Qt::WA_DontShowOnScreen);
                    dialog->selectFile(saved);
                    QMetaObject::invokeMethod(dialog, "accept", Qt::QueuedConnection);
                }
            });
            chooses.start(0);
            answerEnd(u"Save as..."_s);
            QVERIFY(m_window->close());
        }
        QVERIFY(!TrialFiles(own.path(), {}).isInside(m_startFolder));
        Configuration found;
        const ReadReport report = readConfigurationFile(saved, found, fixedEnvironment());
        QVERIFY2(report.document, qPrintable(report.document.message()));
        QCOMPARE(found.gsm.stationId, "Mine");
        QVERIFY2(!found.info.logFile.startsWith(own.path()), qPrintable(found.info.logFile));
    }

    void aFleetSpeaksAsTheProgramDoes_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("English") << "english" << QByteArray("Pumping station North");
        QTest::newRow("German") << "deutsch" << QByteArray("Pumpwerk Nord");
    }
    void aFleetSpeaksAsTheProgramDoes()
    {
        QFETCH(const QString, language);
        QFETCH(const QByteArray, name);
        QTemporaryDir own;
        IoThread io;
        EventLoopTimers timers;
        TrialRun trial({TrialKind::Fleet, own.path(), {language, true}}, io, timers);
        const Status begun = trial.begin();
        QVERIFY2(begun, qPrintable(begun.message()));
        QVERIFY(contentOf(own.filePath("nodes.xml")).contains(name));
        QCOMPARE(languageSetting(), language);
    }

    void aTrialWorksWhereTheUsualPortIsTaken()
    {
        QUdpSocket other;
        QVERIFY(other.bind(QHostAddress::AnyIPv4));
        IoThread io;
        EventLoopTimers timers;
        QTemporaryDir own;
        TrialRun module({TrialKind::Module, own.path(), {}}, io, timers);
        QVERIFY(module.begin(other.localPort()));
        const QString port = u':' + QString::number(other.localPort());
        QVERIFY2(module.moduleAddress().contains(u':'), qPrintable(module.moduleAddress()));
        QVERIFY(!module.moduleAddress().endsWith(port));
        QTemporaryDir ofFleet;
        TrialRun fleet({TrialKind::Fleet, ofFleet.path(), {}}, io, timers);
        QVERIFY(fleet.begin(other.localPort()));
        QVERIFY(contentOf(ofFleet.filePath("nodes.xml")).contains(".1.1:"));
    }

    void aTrialOfTheOperationalModeLeavesTheUsersThingsAlone()
    {
        start({"-english", "pump.xml"});
        m_window.reset();
        const QByteArray settings = contentOf(m_folder->filePath("registry.json"));
        const QStringList files = QDir(m_folder->path()).entryList(QDir::Files);
        QTemporaryDir own;
        IoThread io;
        EventLoopTimers timers;
        TrialRun trial({TrialKind::Fleet, own.path(), {"deutsch", false}}, io, timers);
        const Status begun = trial.begin();
        QVERIFY2(begun, qPrintable(begun.message()));
        Services services = servicesOf(trial.environment(environment()), trial.instanceName());
        services.trial = &trial;
        services.trialProgram = "never started";
        m_window = std::make_unique<FormMain>(services);
        m_window->start({"-operational"});
        auto *mode = operationalWindow();
        QVERIFY(mode != nullptr);
        QVERIFY2(mode->windowTitle().endsWith("Probelauf"), qPrintable(mode->windowTitle()));
        auto *notice = mode->findChild<QLabel *>("lbl_trial");
        QVERIFY(notice != nullptr && notice->isVisible() && notice->text().contains("virtuell"));
        QTRY_VERIFY(notice->width() >=
                    notice->fontMetrics().horizontalAdvance(notice->text().section(u'\n', 1)));
        auto *tree = mode->findChild<QTreeView *>("TreeView_KTR_Nodes");
        QTRY_COMPARE(tree->model()->rowCount(), TrialRun::fleetSize);
        QVERIFY(!mode->findChild<QAction *>("mnu_try_fleet")->isEnabled()); // not one inside the other
        QSignalSpy ended(m_window.get(), &FormMain::exitWanted);
        QTimer agrees; // that nobody watches its stations any more
        connect(&agrees, &QTimer::timeout, this, [] {
            if (QWidget *asks = QApplication::activeModalWidget()) {
                asks->findChild<QPushButton *>("OKButton")->click();
            }
        });
        agrees.start(0);
        mode->close();
        QTRY_COMPARE(ended.size(), 1);
        m_window.reset();
        QVERIFY(QFile::exists(own.filePath("nodes.xml")));
        QCOMPARE(contentOf(m_folder->filePath("registry.json")), settings);
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), files);
    }

#ifdef KTRCONFIG
    void aTrialWithoutAPlaceIsTold()
    {
        const QByteArray before = qgetenv("TMPDIR");
        qputenv("TMPDIR", m_folder->filePath("pump.xml").toLocal8Bit()); // no folder
        TrialLauncher launcher(KTRCONFIG);
        QSignalSpy failed(&launcher, &TrialLauncher::failed);
        const auto prepare = [](const QString &, QStringList &) { return Status::done(); };
        launcher.start(TrialKind::Module, {}, prepare);
        before.isEmpty() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", before);
        QCOMPARE(failed.size(), 1);
        QVERIFY2(failed[0][0].toString().contains("pump.xml"), qPrintable(failed[0][0].toString()));
        QVERIFY(!launcher.isRunning(TrialKind::Module));
        launcher.start(TrialKind::Module, {},
                       [](const QString &, QStringList &) { return Status::failed(u"disk full"_s); });
        QCOMPARE(failed.size(), 2);
        QVERIFY(failed[1][0].toString().contains("disk full"));
    }

    void aTrialEndsWithTheProgramThatStartedIt_data()
    {
        QTest::addColumn<TrialKind>("kind");
        QTest::newRow("module") << TrialKind::Module;
        QTest::newRow("fleet") << TrialKind::Fleet;
    }
    void aTrialEndsWithTheProgramThatStartedIt()
    {
        QFETCH(const TrialKind, kind);
        QString folder;
        {
            TrialLauncher launcher(KTRCONFIG);
            launcher.start(kind, {"english", false}, [&](const QString &path, QStringList &arguments) {
                folder = path;
                arguments = kind == TrialKind::Fleet ? QStringList{"-operational"} : QStringList();
                return Status::done();
            });
            QVERIFY(launcher.isRunning(kind));
            QTRY_VERIFY(QFile::exists(folder + "/registry.json"));
            QVERIFY(launcher.isRunning(kind));
        }
        QVERIFY(!QFile::exists(folder));
    }
#endif

private:
    Environment environment() const
    {
        Environment environment = fixedEnvironment();
        environment.programFolder = m_folder->path();
        return environment;
    }
    Services servicesOf(const Environment &environment, const QString &instance)
    {
        return {environment,
                m_timers,
                m_line,
                m_network,
                [] { return QStringList(); },
                instance,
                [] { return std::make_unique<RecordedLine>(); }};
    }

    void start(QStringList arguments)
    {
        m_window.reset();
        for (QString &argument : arguments) {
            argument.replace("pump.xml", m_folder->filePath("pump.xml"));
        }
        Services services = servicesOf(environment(), m_folder->path() + "/instance");
        services.welcomes = true;
        services.systemLanguages = m_system;
        m_window = std::make_unique<FormMain>(services);
        m_window->start(arguments);
    }
    /// What comes after the window comes behind its first frame.
    void showAll() const
    {
        QTRY_VERIFY(m_window->findChildren<Page *>().size() >= 9);
        QCoreApplication::processEvents();
    }
    WelcomeWindow *welcome() const
    {
        for (auto *each : m_window->findChildren<WelcomeWindow *>()) {
            if (each->isVisible()) {
                return each;
            }
        }
        return nullptr;
    }
    static QWidget *operationalWindow()
    {
        for (QWidget *window : QApplication::topLevelWidgets()) {
            if (window->objectName() == u"Form_betriebsmodus"_s && window->isVisible()) {
                return window;
            }
        }
        return nullptr;
    }
    /// Chooses a button of the next question.
    void answerEnd(const QString &button)
    {
        auto *answers = new QTimer(this);
        connect(answers, &QTimer::timeout, this, [answers, button] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (box == nullptr || box->objectName() != u"box_endOfTrial"_s) {
                return;
            }
            answers->stop();
            answers->deleteLater();
            for (QAbstractButton *each : box->buttons()) {
                if (each->text() == button) {
                    each->click();
                }
            }
        });
        answers->start(0);
    }

    /// A main window in a trial of the pumping station.
    class TrialOfModule
    {
    public:
        TrialOfModule(const QString &folder, TrialTest &test)
            : m_test(test),
              m_network(m_io),
              m_run({TrialKind::Module, folder, {"english", false}}, m_io, m_timers)
        {
            Configuration configuration;
            (void)readConfigurationFile(test.m_folder->filePath("pump.xml"), configuration,
                                        test.environment());
            configuration.info.logFile = "/somewhere/Log.txt";
            const Status prepared = TrialConduct::prepare(folder, configuration, test.environment());
            const Status begun = m_run.begin();
            [&] { QVERIFY2(prepared && begun, qPrintable(prepared.message() + begun.message())); }();
            QFile::copy(KTR_SOURCE_DIR "/data/language.ini", folder + "/language.ini");
            Services services{m_run.environment(test.environment()),
                              m_timers,
                              test.m_line,
                              m_network,
                              [] { return QStringList(); },
                              m_run.instanceName()};
            services.trial = &m_run;
            test.m_window = std::make_unique<FormMain>(services);
            test.m_window->start({});
            test.showAll();
        }
        ~TrialOfModule() { m_test.m_window.reset(); }
        Q_DISABLE_COPY_MOVE(TrialOfModule)

    private:
        TrialTest &m_test;
        IoThread m_io;
        UdpTransport m_network;
        EventLoopTimers m_timers;
        TrialRun m_run;
    };

    std::unique_ptr<QTemporaryDir> m_folder;
    QStringList m_system;
    QString m_startFolder;
    ManualTimers m_timers;
    SilentLine m_line;
    SilentLine m_network;
    std::unique_ptr<FormMain> m_window;
};

QTEST_MAIN(TrialTest)
#include "trial_test.moc"
