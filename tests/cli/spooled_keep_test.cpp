#include "support/module_process.h"
#include "support/private_postgres.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;
using ktr::test::ModuleProcess;

namespace {

const QString database = u"record"_s;

/// What modules know of a text.
struct Fate
{
    int sent = 0;
    bool isAnswered = false;
};

} // namespace

/// `ktrcli keep` with a record on a server that is away for longer than a keeper's time, and modules that
/// number their texts, and forget each once it was answered.
class SpooledKeepTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        const QString trouble = m_server.start();
        QVERIFY2(trouble.isEmpty(), qPrintable(trouble));
    }

    void whatWasAnsweredIsInTheRecordOnce()
    {
        constexpr int modules = 8;
        const QString address = m_server.makeDatabase(database);
        const QString list = m_folder.filePath(u"fleet.xml"_s);
        ModuleProcess init({u"record"_s, u"init"_s, address}, u"has its tables"_s);
        ModuleProcess fleet({u"simulate"_s, u"--fleet"_s, QString::number(modules), u"--port"_s, u"0"_s,
                             u"--nodes"_s, list, u"--every"_s, u"1"_s, u"--ledger"_s, ledger()});
        ModuleProcess import({u"record"_s, u"import"_s, address, list}, u"added: 8"_s);
        QCOMPARE(import.exitCode(), 0);
        const auto keeper = [&] {
            return std::make_unique<ModuleProcess>(
                QStringList{u"keep"_s, u"--record"_s, address, u"--spool"_s, m_folder.filePath(u"spool"_s)},
                u"watching"_s);
        };
        auto one = keeper();
        auto other = keeper();
        for (const auto *each : {&one, &other}) {
            QVERIFY2((*each)->await(u"watched here: 4\n"_s), qPrintable((*each)->output()));
        }
        QTRY_VERIFY_WITH_TIMEOUT(answered() > modules, 60'000);

        m_server.hang();
        for (const auto *each : {&one, &other}) {
            QVERIFY2((*each)->await(u"away for too long"_s), qPrintable((*each)->output()));
        }
        const int before = answered();
        QTRY_VERIFY_WITH_TIMEOUT(answered() > before + 3 * modules, 60'000);
        ::kill(static_cast<pid_t>(one->id()), SIGKILL);
        one.reset();
        const int then = answered(); // the other goes on
        QTRY_VERIFY_WITH_TIMEOUT(answered() > then + modules, 60'000);
        QVERIFY(other->terminate()); // and is not held up by the server
        QCOMPARE(spools().size(), 2);
        m_server.goOn();

        one = keeper(); // has what both left
        QVERIFY2(one->await(u"watched here: 8\n"_s), qPrintable(one->output()));
        const int back = answered();
        QTRY_VERIFY_WITH_TIMEOUT(answered() > back + modules, 60'000);
        QVERIFY(fleet.terminate());
        QTRY_COMPARE_WITH_TIMEOUT(
            m_server.sql(database, u"SELECT count(*) FROM ktrconfig.request WHERE taken IS NULL"_s), u"0"_s,
            60'000);
        QVERIFY2(one->terminate(), qPrintable(one->output()));
        QCOMPARE(spools(), QStringList());

        const QHash<QString, int> recorded = numbers(
            u"SELECT station.name || '|' || split_part(text, ' --> ', 2), count(*) FROM ktrconfig.event JOIN"
            " ktrconfig.station ON station.id = event.station WHERE kind IN (1, 2) GROUP BY 1"_s);
        const QHash<QString, int> alarms = numbers(
            u"SELECT station.name || '|M,' || text, count(*) FROM ktrconfig.alarm JOIN ktrconfig.station ON"
            " station.id = alarm.station WHERE alarm.kind = 1 GROUP BY 1"_s);
        const QHash<QString, Fate> fates = this->fates();
        int alarming = 0;
        for (const auto [text, fate] : fates.asKeyValueRange()) {
            const int count = recorded.value(text);
            QVERIFY2(count <= fate.sent && (count > 0 || !fate.isAnswered), qPrintable(text));
            if (fate.isAnswered && text.contains(u"|M,"_s)) {
                ++alarming;
                QVERIFY2(alarms.value(text) == 1, qPrintable(text));
            }
        }
        QVERIFY(alarming > 0);
    }

private:
    QString ledger() const { return m_folder.filePath(u"ledger"_s); }

    QHash<QString, Fate> fates() const
    {
        QHash<QString, Fate> fates;
        QFile file(ledger());
        if (!file.open(QIODevice::ReadOnly)) {
            return fates;
        }
        const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
        for (const QString &line : lines.first(lines.size() - 1)) { // the last may not be whole
            const QStringList parts = line.split(u'\t');
            Fate &fate = fates[parts[1] + u'|' + parts[3]];
            fate.sent += parts[2] == u"sent"_s ? 1 : 0;
            fate.isAnswered = fate.isAnswered || parts[2] == u"answered"_s;
        }
        return fates;
    }
    int answered() const
    {
        const QHash<QString, Fate> fates = this->fates();
        return static_cast<int>(std::ranges::count_if(fates, &Fate::isAnswered));
    }
    QStringList spools() const
    {
        return QDir(m_folder.filePath(u"spool"_s)).entryList({u"*.sqlite"_s}, QDir::Files);
    }
    QHash<QString, int> numbers(const QString &statement) const
    {
        QHash<QString, int> numbers;
        const QStringList rows = m_server.sql(database, statement).split(u'\n');
        for (const QString &row : rows) {
            const qsizetype end = row.lastIndexOf(u'|');
            numbers.insert(row.first(end), row.sliced(end + 1).toInt());
        }
        return numbers;
    }

    QTemporaryDir m_folder;
    ktr::test::PrivatePostgres m_server;
};

QTEST_GUILESS_MAIN(SpooledKeepTest)
#include "spooled_keep_test.moc"
