#include "opmode/window/form_betriebsmodus.h"
#include "opmode/window/place_dialog.h"
#include "platform/registry.h"
#include "record/record_care.h"
#include "support/kept_stations.h"
#include "support/private_postgres.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace ktr;
using namespace Qt::StringLiterals;

namespace {

const QString database = u"record"_s;

} // namespace

/// The window of the operational mode on a record that keepers share.
class SharedWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        const QString trouble = m_server.start();
        QVERIFY2(trouble.isEmpty(), qPrintable(trouble));
    }

    void init()
    {
        MRegistry::setRegistryFile(m_folder.filePath(u"registry.json"_s));
        m_server.sql(u"postgres"_s, u"DROP DATABASE IF EXISTS record WITH (FORCE)"_s);
        m_address = m_server.makeDatabase(database);
    }
    void cleanup()
    {
        m_window.reset();
        m_mode.reset();
        m_keeper.reset();
    }

    /// Neither the tables nor a keeper nor the server has to be there first.
    void itTellsWhatIsMissingUntilItIsThere()
    {
        open();
        QTRY_COMPARE(headline("ListBanner"), u"The stations cannot be shown"_s);
        QVERIFY(reason("ListBanner").contains(u"record init"_s));
        QVERIFY(!tree()->isEnabled());
        QVERIFY(initRecord(m_address));
        QTest::mouseClick(m_window->findChild<QPushButton *>("Cmd_list_retry"), Qt::LeftButton);
        QTRY_COMPARE(headline("JoinedBanner"), u"Nobody watches the stations"_s);
        QVERIFY(!m_window->findChild<QPushButton *>("Cmd_list_watch")->isVisible());
        QVERIFY(!action("mnu_station_add")->isEnabled());
        keep();
        QTRY_COMPARE(headline("JoinedBanner"), QString());
        QVERIFY(m_window->windowTitle().contains(u"joined: "_s));
        QVERIFY(action("mnu_station_add")->isEnabled());

        m_server.kill();
        QTRY_COMPARE(headline("JoinedBanner"), u"The record cannot be reached"_s);
        QVERIFY(m_window->windowTitle().contains(u"cannot be reached"_s));
        QVERIFY(!action("mnu_station_add")->isEnabled());
        QCOMPARE(m_server.startAgain(), QString());
        QTRY_COMPARE_WITH_TIMEOUT(headline("JoinedBanner"), QString(), 60'000);
        m_keeper.reset();
        QTRY_COMPARE(headline("JoinedBanner"), u"Nobody watches the stations"_s);
    }

    void whatIsDoneInItIsDoneByTheKeeper()
    {
        QVERIFY(initRecord(m_address));
        keep();
        open();
        QTRY_VERIFY(m_mode->isJoined() && !m_mode->isIdle());
        m_mode->setOperator(u"Anna"_s);
        for (const int count : {1, 2}) {
            action("mnu_station_add")->trigger();
            QTRY_COMPARE(m_mode->tree().rowCount(), count);
        }
        QCOMPARE(names(m_mode->tree()), (QStringList{u"new"_s, u"new (1)"_s}));
        QTRY_COMPARE(m_keeper->mode->tree().rowCount(), 2);
        const QString kennung = m_mode->tree().index(0, 0).data(StationTree::KeyRole).toString();
        m_mode->setHostAddress(kennung, u"10.0.0.1"_s);
        QTRY_COMPARE(m_mode->station(kennung)->hostAddress(), u"10.0.0.1"_s);
        m_mode->setOnline(kennung, true);
        QTRY_VERIFY(m_keeper->lines.size() > 0 && m_keeper->lines.constFirst()->isOpened);

        m_keeper->say(0, "M,DI1 fail");
        QTRY_COMPARE(m_mode->alarms().waitingCount(), 1);
        const qint64 alarm = *m_mode->alarms().waiting().begin();
        m_mode->alarmActions().shelve({alarm}, m_mode->now().addDays(1).toMSecsSinceEpoch(), u"new pump"_s);
        QTRY_COMPARE(m_mode->alarms().waitingCount(), 0);
        QTRY_VERIFY(
            m_server.sql(database, u"SELECT shelved_by FROM ktrconfig.alarm"_s).startsWith(u"Anna ("_s));
        m_keeper.reset(); // what is shelved stays so with the next one
        keep();
        QTRY_COMPARE(m_keeper->mode->alarms().standing().size(), std::size_t{1});
        QCOMPARE(m_keeper->mode->alarms().waitingCount(), 0);
        QTRY_VERIFY(!m_mode->isIdle());
        m_mode->alarmActions().unshelve(m_mode->alarmActions().numberOf(kennung), u"DI1 fail"_s);
        QTRY_COMPARE(m_mode->alarms().waitingCount(), 1);
        QVERIFY(m_mode->acknowledgeAlarms({alarm}));
        QTRY_COMPARE(m_mode->alarms().waitingCount(), 0);

        AlarmRule rule = AlarmRules::standard().constFirst();
        rule.pattern = u"flood"_s;
        m_mode->alarmActions().setRules(AlarmRules({rule}));
        QTRY_COMPARE(m_keeper->mode->alarmActions().rules(), AlarmRules({rule}));
        QTRY_COMPARE(m_mode->alarmActions().rules(), AlarmRules({rule}));
        m_mode->removeStation(kennung);
        QTRY_COMPARE(names(m_keeper->mode->tree()), QStringList(u"new (1)"_s));
    }

    void itOffersWhatTheDatabasesUserMayDo()
    {
        QVERIFY(initRecord(m_address));
        keep();
        for (const QString &role : {u"viewer"_s, u"operator"_s, u"administrator"_s}) {
            m_server.sql(database, u"DROP ROLE IF EXISTS w_%1"_s.arg(role));
            m_server.sql(database, u"CREATE ROLE w_%1 LOGIN IN ROLE ktrconfig_%1"_s.arg(role));
            open(QString(m_address).replace(u"administrator@"_s, u"w_%1@"_s.arg(role)));
            QTRY_VERIFY(m_mode->isJoined());
            QCOMPARE(action("mnu_station_alloffline")->isEnabled(), role != u"viewer"_s);
            for (const char *deed : {"mnu_station_add", "mnu_rules"}) {
                QCOMPARE(action(deed)->isEnabled(), role == u"administrator"_s);
                QCOMPARE(action(deed)->toolTip().isEmpty() || action(deed)->isEnabled(),
                         role == u"administrator"_s);
            }
            QVERIFY(!action("mnu_konfiguration")->isEnabled());
            QCOMPARE(m_window->findChild<QPushButton *>("Cmd_alarm_accept")->isEnabled(),
                     role != u"viewer"_s);
        }
        // Whoever asks without a window is refused by the keeper.
        const auto ask = [this](const QString &role) {
            m_server.sql(database,
                         u"SET SESSION AUTHORIZATION w_%1; INSERT INTO ktrconfig.request(at, operator,"
                         " what, detail) VALUES(extract(epoch FROM now()) * 1000, 'Ben', 'add',"
                         " '{\"name\":\"%1\"}')"_s.arg(role));
        };
        ask(u"operator"_s);
        QTRY_VERIFY(m_server.sql(database, u"SELECT result FROM ktrconfig.request WHERE taken IS NOT NULL"_s)
                        .contains(u"w_operator"_s));
        ask(u"administrator"_s);
        QTRY_COMPARE(m_mode->tree().rowCount(), 1);
        QCOMPARE(names(m_mode->tree()), QStringList(u"administrator"_s));
    }

    /// Whatever it asks of the server at that moment.
    void aServerThatHangsDoesNotHoldUpItsEnd()
    {
        QVERIFY(initRecord(m_address));
        keep();
        open();
        QTRY_VERIFY(m_mode->isJoined() && !m_mode->isIdle());
        m_server.hang();
        action("mnu_station_add")->trigger();
        QTRY_COMPARE_WITH_TIMEOUT(headline("JoinedBanner"), u"The record cannot be reached"_s, 60'000);
        QElapsedTimer time;
        time.start();
        m_window.reset();
        m_mode.reset();
        m_keeper.reset();
        const qint64 took = time.elapsed();
        m_server.goOn();
        constexpr qint64 longest = 10'000; // of a machine that has much to do; it was for ever
        QVERIFY2(took < longest, qPrintable(QString::number(took)));
        qInfo("it took %lld ms", took);
    }

    void anAddressThatIsNoneOpensNoList()
    {
        open();
        m_window->openAt(u"postgres:/db"_s);
        QTRY_COMPARE(headline("ListBanner"), u"The stations cannot be shown"_s);
        QVERIFY(reason("ListBanner").contains(u"\"postgres:/db\""_s));
        QVERIFY(!m_mode->isOpen() && m_mode->tree().rowCount() == 0);
    }

    void thePlaceOfTheStationsIsChosenInIt()
    {
        QVERIFY(initRecord(m_address));
        open(m_folder.filePath(u"nodes.xml"_s));
        QVERIFY(!m_mode->isJoined());
        QSignalSpy wanted(m_window.get(), &Form_betriebsmodus::placeWanted);
        const auto choose = [this](const QString &address) {
            QTimer::singleShot(0, this, [address] {
                auto *dialog = qobject_cast<PlaceDialog *>(QApplication::activeModalWidget());
                QVERIFY(dialog != nullptr);
                QTest::mouseClick(dialog->findChild<QRadioButton *>("opt_place_server"), Qt::LeftButton,
                                  Qt::NoModifier, QPoint(8, 8));
                auto *field = dialog->findChild<QLineEdit *>("Txt_place_address");
                for (const QString &wrong : {u"http://db/x"_s, u"postgresql://anna:secret@db/x"_s}) {
                    field->setText(wrong);
                    QTest::keyClick(field, Qt::Key_Return);
                    QVERIFY(dialog->isVisible());
                    QVERIFY(!dialog->findChild<QLabel *>("lbl_place_remark")->text().contains(u"secret"_s));
                }
                field->setText(address);
                QTest::keyClick(field, Qt::Key_Return);
            });
            action("mnu_place")->trigger();
        };
        choose(m_address);
        QCOMPARE(wanted.size(), 1);
        QCOMPARE(wanted.constFirst().constFirst().toString(), m_address);
        QVERIFY(!m_mode->isOpen());
        m_window->open(m_address);
        QTRY_VERIFY(m_mode->isJoined());
        choose(m_address); // it is there already
        QVERIFY(m_mode->isJoined() && wanted.size() == 1);
    }

private:
    void keep()
    {
        m_keeper = std::make_unique<test::KeptStations>(m_address, m_folder.path());
        QVERIFY2(m_keeper->opened, qPrintable(m_keeper->opened.message()));
    }
    void open(const QString &place = {})
    {
        m_window.reset();
        Environment environment = test::fixedEnvironment();
        environment.now = &QDateTime::currentDateTimeUtc;
        m_mode = std::make_unique<OperationalMode>(
            OperationalMode::Services{environment, m_timers,
                                      [] { return std::make_unique<test::RecordedLine>(); }},
            stationCaptions(m_texts));
        m_window = std::make_unique<Form_betriebsmodus>(
            *m_mode, m_texts, Form_betriebsmodus::Services{m_timers, test::english(), {}, {}});
        m_window->show();
        m_window->open(place.isEmpty() ? m_address : place);
    }
    QAction *action(const char *name) const { return m_window->findChild<QAction *>(QLatin1String(name)); }
    QWidget *tree() const { return m_window->findChild<QWidget *>("TreeView_KTR_Nodes"); }
    /// Empty when it is not shown.
    QString headline(const char *banner) const
    {
        auto *shown = m_window->findChild<QWidget *>(QLatin1String(banner));
        return shown->isVisible() ? shown->findChild<QLabel *>("lbl_list")->text() : QString();
    }
    QString reason(const char *banner) const
    {
        return m_window->findChild<QWidget *>(QLatin1String(banner))
            ->findChild<QLabel *>("lbl_list_reason")
            ->text();
    }
    static QStringList names(const StationTree &tree)
    {
        QStringList names;
        for (int row = 0; row < tree.rowCount(); ++row) {
            names += tree.index(row, 0).data(Qt::EditRole).toString();
        }
        return names;
    }

    QTemporaryDir m_folder;
    test::PrivatePostgres m_server;
    QString m_address;
    EventLoopTimers m_timers;
    TextTable m_texts;
    std::unique_ptr<test::KeptStations> m_keeper;
    std::unique_ptr<OperationalMode> m_mode;
    std::unique_ptr<Form_betriebsmodus> m_window;
};

QTEST_MAIN(SharedWindowTest)
#include "shared_window_test.moc"
