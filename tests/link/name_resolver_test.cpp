#include "link/name_resolver.h"
#include "support/name_server.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <map>

using namespace ktr;

class NameResolverTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_server.emplace(m_context);
        m_resolver.emplace(m_context, NameResolver::Options{m_folder.filePath("hosts"), m_server->address()});
        m_found.clear();
    }
    void cleanup()
    {
        m_resolver.reset();
        m_server.reset();
        m_context.restart();
        m_context.run();
    }

    void namesAreFoundWhereTheyAre()
    {
        QFile hosts(m_folder.filePath("hosts"));
        QVERIFY(hosts.open(QIODevice::WriteOnly));
        hosts.write("# modules\n::1 both\n10.0.0.9\tPump both # here\r\n");
        hosts.close();
        lookUp({"pump", "both", "localhost"});
        QCOMPARE(m_found.size(), 0U); // not from within
        awaitAll(3);
        QCOMPARE(m_server->asked(), 0);
        lookUp({"good.test", "six.test", "unknown.test"});
        awaitAll(6);
        QCOMPARE(m_found["pump"], "10.0.0.9");
        QCOMPARE(m_found["both"], "10.0.0.9");
        QCOMPARE(m_found["localhost"], "127.0.0.1");
        QCOMPARE(m_found["good.test"], test::NameServer::address4);
        QCOMPARE(m_found["six.test"], test::NameServer::address6);
        QCOMPARE(m_found["unknown.test"], "");
    }

    void thousandsOfNamesThatNobodyAnswersForKeepNoneWaiting()
    {
        constexpr int dead = 8'000;
        std::vector<std::string> names;
        for (int i = 0; i < dead; ++i) {
            names.push_back("silent" + std::to_string(i) + ".test");
        }
        names.insert(names.begin() + dead / 2, "good1.test");
        names.emplace_back("good2.test");
        lookUp(names);
        awaitFound("good1.test");
        QVERIFY2(m_server->asked() <= 2 * (dead / 2 + 100), qPrintable(QString::number(m_server->asked())));
        awaitFound("good2.test");
        awaitAll(names.size());
        QCOMPARE(m_found["good1.test"], test::NameServer::address4);
        QCOMPARE(m_found["silent7.test"], "");
        QVERIFY2(m_server->asked() <= 2 * dead + 4, qPrintable(QString::number(m_server->asked())));
        QVERIFY2(m_handlers < 30'000, qPrintable(QString::number(m_handlers)));
        verifyIdle();
    }

    void aLookUpThatIsDroppedIsNotAnsweredAndANewOneIs()
    {
        lookUp({"good1.test", "silent.test"});
        m_lookups.clear();
        lookUp({"good2.test"});
        awaitAll(1);
        QCOMPARE(m_found.begin()->first, "good2.test");
        lookUp({"good3.test", "silent3.test"});
        awaitFound("good3.test");
        m_resolver.reset(); // in the middle of a look-up
        m_context.restart();
        m_server->close();
        m_context.run();
        QCOMPARE(m_found.size(), 2U);
    }

    void aServerThatIsNotThereIsToldWithoutWaitingForIt()
    {
        m_server->close();
        lookUp({"good.test"});
        awaitAll(1);
        QCOMPARE(m_found["good.test"], "");
        verifyIdle();
    }

private:
    void lookUp(const std::vector<std::string> &names)
    {
        for (const std::string &name : names) {
            m_lookups.push_back(m_resolver->lookUp(name, true, [this, name](const auto &address) {
                m_found[name] = address ? address->to_string() : std::string();
            }));
        }
    }
    template <class Condition> void await(const Condition &isMet)
    {
        QElapsedTimer time;
        time.start();
        m_context.restart();
        while (!isMet() && time.elapsed() < 60'000) {
            m_handlers += m_context.run_one_for(std::chrono::seconds(1));
        }
        QVERIFY(isMet());
    }
    void awaitAll(std::size_t count)
    {
        await([&] { return m_found.size() == count; });
    }
    void awaitFound(const std::string &name)
    {
        await([&] { return m_found.contains(name); });
    }
    /// With nothing to look up, nothing is waited for.
    void verifyIdle()
    {
        m_server->close();
        m_context.restart();
        const auto left = m_context.run_for(std::chrono::seconds(60));
        QVERIFY2(left < 100 && m_context.stopped(), qPrintable(QString::number(left)));
    }

    QTemporaryDir m_folder;
    asio::io_context m_context;
    std::optional<test::NameServer> m_server;
    std::optional<NameResolver> m_resolver;
    std::map<std::string, std::string> m_found;
    std::vector<NameResolver::Lookup> m_lookups;
    std::size_t m_handlers = 0;
};

QTEST_GUILESS_MAIN(NameResolverTest)
#include "name_resolver_test.moc"
