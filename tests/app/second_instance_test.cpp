// Each instance is a process of its own: this program, told on standard input what its user does.

#include "app/form_main.h"
#include "config/configuration_file.h"
#include "platform/ending_signals.h"
#include "platform/files.h"
#include "platform/registry.h"
#include "support/environment.h"
#include "support/recorded_line.h"
#include "support/silent_line.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QLocalServer>
#include <QLocalSocket>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QSocketNotifier>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <iostream>

using namespace ktr;
using namespace ktr::test;

namespace {

/// Tells what comes up, and does what the lines of standard input say.
class User : public QObject
{
public:
    User(FormMain &window, Transport &serial) : m_window(window), m_serial(serial)
    {
        qApp->installEventFilter(this);
        connect(&m_input, &QSocketNotifier::activated, this, [this] {
            std::string line;
            if (std::getline(std::cin, line)) {
                for (const QString &action : QString::fromStdString(line).split("; ")) {
                    act(action);
                }
            } else {
                m_input.setEnabled(false);
            }
        });
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Show) {
            if (watched == &m_window) {
                say("shown " + m_window.document().configuration().gsm.stationId);
            } else if (const auto *box = qobject_cast<QMessageBox *>(watched)) {
                say("asks " + box->text());
            } else if (watched->objectName() == u"JoinedBanner") {
                say("joined");
            } else if (watched->objectName() == u"Dialog") {
                say("asks " + watched->findChild<QLabel *>("Label_msg")->text());
            }
        }
        return false;
    }

private:
    static void say(const QString &line) { std::cout << line.simplified().toStdString() << std::endl; }

    void act(const QString &line)
    {
        const QString word = line.section(u' ', 0, 0);
        const QString rest = line.section(u' ', 1);
        if (word == u"edit") {
            m_window.document().edit(
                [&](Configuration &configuration) { configuration.gsm.stationId = rest; });
        } else if (word == u"module") {
            Q_EMIT m_serial.received(rest.toLatin1() + '\r');
        } else if (word == u"send") {
            m_window.tabs().setCurrentIndex(static_cast<int>(PageIndex::Test));
            m_window.findChild<QLineEdit *>("txt_test_send")->setText(rest);
            m_window.findChild<QPushButton *>("cmd_test_send")->click();
        } else if (word == u"close") {
            QMetaObject::invokeMethod(&m_window, "close", Qt::QueuedConnection); // behind what was pressed
        } else if (word == u"menu") {
            m_window.findChild<QAction *>(rest)->trigger(); // comes back when a question is answered
        } else {
            for (QWidget *window : QApplication::topLevelWidgets()) {
                for (auto *button : window->findChildren<QPushButton *>()) {
                    const bool wanted =
                        word == u"enter" ? button->isDefault() : rest == button->text().remove(u'&');
                    if (wanted && window->isVisible() && window != &m_window) {
                        QMetaObject::invokeMethod(button, "click", Qt::QueuedConnection);
                        return;
                    }
                }
            }
            say("there is no such button: " + rest);
        }
    }

    FormMain &m_window;
    Transport &m_serial;
    QSocketNotifier m_input{0, QSocketNotifier::Read};
};

/// Time that passes faster.
class HurriedTimers : public EventLoopTimers
{
    struct Hurried : OneShotTimer
    {
        explicit Hurried(std::unique_ptr<OneShotTimer> inner) : timer(std::move(inner)) {}
        void start(Milliseconds wait, std::function<void()> fired) override
        {
            timer->start(wait / 50, fired);
        }
        void stop() override { timer->stop(); }
        bool isRunning() const override { return timer->isRunning(); }
        std::unique_ptr<OneShotTimer> timer;
    };

public:
    std::unique_ptr<OneShotTimer> create() override
    {
        return std::make_unique<Hurried>(EventLoopTimers::create());
    }
};

/// Firmware takes long.
class SlowLine : public SilentLine
{
    void whenDrained(std::function<void()>) override {}
};

int runInstance(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QStringList arguments = QApplication::arguments().mid(2);
    const QString folder = arguments.takeFirst();
    MRegistry::setRegistryFile(folder + "/registry.json");
    EventLoopTimers timers;
    HurriedTimers hurried;
    const bool isHurried = arguments.removeAll("hurried") > 0;
    SlowLine serial;
    SilentLine ethernet;
    Environment environment = fixedEnvironment();
    environment.programFolder = folder;
    FormMain window({environment, isHurried ? static_cast<Timers &>(hurried) : timers, serial, ethernet,
                     [] { return QStringList("COM1"); }, folder + "/instance",
                     [] { return std::make_unique<RecordedLine>(); }});
    const User user(window, serial);
    const auto end = [] { QCoreApplication::exit(0); };
    QObject::connect(&window, &FormMain::closed, &application, end, Qt::QueuedConnection);
    QObject::connect(&window, &FormMain::exitWanted, &application, end);
    const EndingSignals endingSignals([&window] { window.endOnRequest(); });
    window.start(arguments);
    return QApplication::exec();
}

class Instance
{
public:
    explicit Instance(const QStringList &arguments)
    {
        m_process.start(QCoreApplication::applicationFilePath(), QStringList("--instance") + arguments);
    }
    ~Instance()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    /// Waits for a line that begins like this; what was told before it is gone through.
    bool tells(const QString &line)
    {
        return QTest::qWaitFor(
            [&] {
                while (m_process.canReadLine()) {
                    m_told += QString::fromUtf8(m_process.readLine()).trimmed();
                }
                while (!m_told.isEmpty()) {
                    if (m_told.takeFirst().startsWith(line)) {
                        return true;
                    }
                }
                return false;
            },
            patience);
    }
    bool hasTold(const QString &line)
    {
        m_told += QString::fromUtf8(m_process.readAllStandardOutput()).split(u'\n');
        return !m_told.filter(line).isEmpty();
    }
    bool ends()
    {
        return QTest::qWaitFor([this] { return !isRunning(); }, patience) &&
               m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0;
    }
    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }
    /// What it has told on its terminal.
    QString onTerminal() { return QString::fromUtf8(m_process.readAllStandardError()); }
    void does(const QByteArray &what) { m_process.write(what + '\n'); }
    void terminate() { m_process.terminate(); }
    void kill() { m_process.kill(); }
    void stop() const { ::kill(static_cast<pid_t>(m_process.processId()), SIGSTOP); }
    void goOn() const { ::kill(static_cast<pid_t>(m_process.processId()), SIGCONT); }

private:
    static constexpr int patience = 60'000;

    QProcess m_process;
    QStringList m_told;
};

} // namespace

class SecondInstanceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(QFile::copy(KTR_SOURCE_DIR "/data/language.ini", path("language.ini")));
        Configuration configuration;
        makeNew(configuration, fixedEnvironment());
        configuration.gsm.stationId = "before";
        QVERIFY(replaceFile(path("a.xml"), writeConfiguration(configuration, fixedEnvironment())));
    }

    void whatTheOtherSavesAtItsEndIsReadAfterwards_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("read");
        QTest::newRow("Yes") << QByteArray("press Yes") << "before and after";
        QTest::newRow("No") << QByteArray("press No") << "before";
    }
    void whatTheOtherSavesAtItsEndIsReadAfterwards()
    {
        QFETCH(QByteArray, answer);
        QFETCH(QString, read);
        Instance first(arguments());
        QVERIFY(first.tells("shown before"));
        first.does("edit before and after");
        Instance second(arguments());
        QVERIFY(first.tells("asks save?"));
        QVERIFY(second.tells("asks Waiting for the other KTRconfig window"));
        QVERIFY(first.isRunning() && !second.hasTold("shown"));
        first.does(answer);
        QVERIFY(first.ends());
        QVERIFY(second.tells("shown " + read));
        QVERIFY(second.onTerminal().contains("takes its place"));
        QCOMPARE(stationInFile(), read);
    }

    void editsOfAProgramThatIsEndedAreKeptUntilSomebodyDecides()
    {
        {
            Instance first(arguments());
            QVERIFY(first.tells("shown"));
            first.does("menu mnu_verbindung_ethernet");
            QVERIFY(first.tells("asks IP"));
            first.does("edit after; press Cancel");
            first.terminate();
            QVERIFY(first.tells("asks save?"));
            first.terminate(); // does not wait for an answer
            QVERIFY(QTest::qWaitFor([&first] { return !first.isRunning(); }, 60'000));
        }
        QCOMPARE(stationInFile(), "before");
        Instance second(arguments());
        QVERIFY(second.tells("asks Edits of "));
        second.does("press Open them; close");
        QVERIFY(second.tells("asks save?"));
        second.does("press Yes");
        QVERIFY(second.ends());
        QCOMPARE(stationInFile(), "after");
        Instance third(arguments());
        QVERIFY(third.tells("shown after"));
        third.terminate();
        QVERIFY(third.ends());
        QVERIFY(!third.hasTold("asks"));
    }

    void whoDoesNotWaitEndsItself()
    {
        Instance first(arguments());
        QVERIFY(first.tells("shown"));
        first.does("edit after");
        Instance second(arguments() << "-deutsch"); // the language is known before anything is asked
        QVERIFY(second.tells("asks Warten"));
        second.does("press Nicht warten, beenden");
        QVERIFY(second.ends());
        QVERIFY(first.isRunning());
        first.does("press No");
        QVERIFY(first.ends());
    }

    void whatMustNotBeCutOffIsEndedWithTheUsersConsentOnly_data()
    {
        QTest::addColumn<QByteArray>("work");
        QTest::addColumn<QString>("question");
        QTest::newRow("watching") << QByteArray("menu mnu_betriebsmodus") << "watches stations";
        QTest::newRow("transmitting")
            << QByteArray("module at+cpin?; menu mnu_doConfig; module at+cmgr=1; module at+cmgr=1")
            << "transmits a configuration";
        QTest::newRow("firmware") << QByteArray("send §88; module at+cmgr=1") << "sends firmware";
    }
    void whatMustNotBeCutOffIsEndedWithTheUsersConsentOnly()
    {
        QFETCH(QByteArray, work);
        QFETCH(QString, question);
        question.prepend("asks The KTRconfig that is open already ");
        Instance first(arguments());
        QVERIFY(first.tells("shown"));
        first.does(work);
        {
            Instance second(arguments());
            QVERIFY(second.tells(question));
            second.does("enter");
            QVERIFY(second.ends());
            const QString told = second.onTerminal(); // why it ends, and what becomes of what it was to do
            QVERIFY2(told.contains("is open already goes on") && told.contains("Not done: "),
                     qPrintable(told));
        }
        Instance third(arguments());
        QVERIFY(third.tells(question));
        QVERIFY(first.isRunning());
        third.does("press End it and start here");
        QVERIFY(first.ends());
        QVERIFY(third.tells("shown before"));
    }

    void besideOneThatWatchesAnotherMayLookOn()
    {
        Instance first(arguments());
        QVERIFY(first.tells("shown"));
        first.does("menu mnu_betriebsmodus");
        Instance second(arguments());
        QVERIFY(second.tells("asks The KTRconfig that is open already watches stations"));
        second.does("press Start here, too, and look on");
        QVERIFY(second.tells("shown before"));
        second.does("menu mnu_betriebsmodus");
        QVERIFY(second.tells("joined"));
        QVERIFY(first.isRunning());
    }

    void aQuestionThatStandsOpenIsAnsweredBeforeTheEnd()
    {
        Instance first(arguments());
        QVERIFY(first.tells("shown"));
        first.does("menu mnu_verbindung_ethernet");
        QVERIFY(first.tells("asks IP"));
        first.does("edit after");
        Instance second(arguments());
        QVERIFY(second.tells("asks Waiting"));
        QVERIFY(first.isRunning() && !first.hasTold("asks save?"));
        first.does("press Cancel");
        QVERIFY(first.tells("asks save?"));
        first.does("press Yes");
        QVERIFY(first.ends());
        QVERIFY(second.tells("shown after"));
    }

    void anInstanceThatHangsIsNotWaitedFor()
    {
        Instance first(arguments());
        QVERIFY(first.tells("shown"));
        first.stop();
        Instance second(arguments() << "hurried");
        QVERIFY(second.tells("shown before"));
        QVERIFY(second.tells("asks Another KTRconfig is open and does not answer"));
        first.goOn();
        Instance third(arguments());
        QVERIFY(third.tells("shown before"));
        QVERIFY(first.ends() && second.ends());
    }

    void whetherToWaitForOneThatHangsIsTheUsersChoice()
    {
        Instance first(arguments());
        QVERIFY(first.tells("shown"));
        first.stop();
        {
            Instance second(arguments());
            QVERIFY(second.tells("asks The KTRconfig that is open already does not answer"));
            second.does("enter");
            QVERIFY(second.ends() && !second.hasTold("shown"));
        }
        Instance third(arguments());
        QVERIFY(third.tells("asks The KTRconfig that is open already does not answer"));
        third.does("press Do not wait, start here");
        QVERIFY(third.tells("shown before"));
        QVERIFY(third.tells("asks Another KTRconfig is open and does not answer"));
    }

    void whatOnlyHangsUpKeepsNobodyFromStarting_data()
    {
        QTest::addColumn<QByteArray>("says");
        QTest::newRow("at once") << QByteArray();
        QTest::newRow("after an answer") << QByteArray("editing 1\n");
    }
    void whatOnlyHangsUpKeepsNobodyFromStarting()
    {
        QFETCH(QByteArray, says);
        QLocalServer stranger;
        QVERIFY(stranger.listen(path("instance")));
        connect(&stranger, &QLocalServer::newConnection, this, [&] {
            QLocalSocket *asker = stranger.nextPendingConnection();
            asker->write(says);
            asker->disconnectFromServer();
        });
        Instance next(arguments());
        QVERIFY(next.tells("shown before"));
        QVERIFY(next.tells("asks Something stands in the place of an open KTRconfig"));
    }

    void whatNeedsNoWindowIsAnsweredOnTheTerminal()
    {
        QProcess program;
        auto environment = QProcessEnvironment::systemEnvironment();
        for (const char *name : {"HOME", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"}) {
            environment.insert(name, m_folder->path());
        }
        environment.insert("QT_QPA_PLATFORM", "there is no display");
        program.setProcessEnvironment(environment);
        const auto answers = [&program](const QStringList &words) {
            program.start(KTRCONFIG, words);
            return program.waitForFinished() && program.exitStatus() == QProcess::NormalExit
                       ? program.exitCode()
                       : -1;
        };
        for (const QString option : {"--help", "-help", "-h", "--version", "-version"}) {
            QCOMPARE(answers({"-deutsch", option}), 0);
            const QByteArray answer = program.readAllStandardOutput();
            QVERIFY2(option.contains("-h") ? answer.contains("-operational")
                                           : answer.startsWith("KTRconfig 1."),
                     answer);
        }
        const auto toldAt = [&](const QStringList &words) {
            const int code = answers(words);
            const QString told = program.readAllStandardError();
            return code == 1 && told.contains("no window can be opened") ? told : QString();
        };
        QString told = toldAt({"--wrong", "-wrong2", "--expert", "-style", "Fusion", "a.xml", "b.xml"});
        QVERIFY2(told.contains("--wrong") && told.contains("-wrong2") && told.contains("b.xml"),
                 qPrintable(told));
        QVERIFY2(!told.contains("--expert") && !told.contains("Fusion") && !told.contains("a.xml"),
                 qPrintable(told));
        told = toldAt({"-load", "a.xml", "b.xml", "--wrong"});
        QVERIFY2(told.contains("one name: a.xml b.xml --wrong"), qPrintable(told));
        told = toldAt({"-load", "a.xml", "-expert"});
        QVERIFY2(!told.isEmpty() && !told.contains("one name"), qPrintable(told));
    }

    void ofTwoThatStartTogetherOneStays()
    {
        Instance one(arguments());
        Instance two(arguments());
        QVERIFY(QTest::qWaitFor([&] { return !one.isRunning() || !two.isRunning(); }, 60'000));
        Instance &last = one.isRunning() ? one : two;
        QVERIFY(last.tells("shown before"));
        QVERIFY((one.isRunning() ? two : one).ends());
        QVERIFY(last.isRunning());
    }

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    QStringList arguments() const { return {m_folder->path(), "-load", path("a.xml")}; }

    QString stationInFile() const
    {
        Configuration configuration;
        readConfigurationFile(path("a.xml"), configuration, fixedEnvironment());
        return configuration.gsm.stationId;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

int main(int argc, char **argv)
{
    if (argc > 2 && qstrcmp(argv[1], "--instance") == 0) {
        return runInstance(argc, argv);
    }
    QCoreApplication application(argc, argv);
    SecondInstanceTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "second_instance_test.moc"
