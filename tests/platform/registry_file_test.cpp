#include "platform/files.h"
#include "platform/registry.h"
#include "platform/settings_store.h"
#include "support/test_files.h"

#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <thread>

using namespace ktr;
using namespace ktr::MRegistry;
using test::contentOf;

namespace {

const QString user = "hkey_current_user";
const QString program = "Software\\Korvane\\KTRconfig";

const auto store = [](const QString &text) { SetRegistryString(user, program, "Language", text); };
const auto stored = [] { return GetRegistryString(user, program, "Language"); };

} // namespace

class RegistryFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_file = m_folder.filePath(QString(QTest::currentTestFunction()) + "/registry.json");
        setRegistryFile(m_file);
    }

    void whatNeedsNoFileMakesNone()
    {
        store("english");
        QVERIFY(!QFile::exists(m_file));
    }

    void whatAnotherProgramWritesIsSeenWhateverTheCaseAndKept()
    {
        CreateRegistryKey(user, program);
        QVERIFY(replaceFile(m_file, R"({"hkey_current_user\\software\\korvane\\ktrconfig":
                                           {"language": "deutsch", "Count": 7}, "Other": {"Name": "Ω"}})"));
        QCOMPARE(stored(), "deutsch");
        store("english");
        const QString content = QString::fromUtf8(contentOf(m_file)).simplified().remove(u' ');
        QCOMPARE(content, R"({"Other":{"Name":"Ω"},"hkey_current_user\\software\\korvane\\ktrconfig":)"
                          R"({"Count":7,"language":"english"}})");
    }

    void garbageIsMovedAsideAndNeverOverwritten()
    {
        QVERIFY(QDir().mkpath(QFileInfo(m_file).path()));
        const QByteArray garbage[] = {"{\"HKEY", QByteArray(64, '\0'), "[1, 2]", "{\"HKEY\": 1}"};
        for (int i = 0; i < 4; ++i) {
            QVERIFY(replaceFile(m_file, garbage[i]));
            store("english");
            QCOMPARE(contentOf(m_file), garbage[i]); // nothing to write, so it may stay
            CreateRegistryKey(user, program);
            QCOMPARE(lastError(), Error::None);
            QCOMPARE(contentOf(m_file + ".unreadable" + (i > 0 ? QString::number(i + 1) : "")), garbage[i]);
        }
        setRegistryFile(m_file + "/below");
        CreateRegistryKey(user, program);
        QCOMPARE(lastError(), Error::AccessDenied);
    }

    void aLockThatStaysTakenEndsTheWait()
    {
        CreateRegistryKey(user, program);
        QLockFile other(m_file + ".lock");
        QVERIFY(other.lock());
        setRegistryFile(m_file, Milliseconds(20));
        store("deutsch");
        QCOMPARE(lastError(), Error::Busy);
    }

    void aPipeInThePlaceOfTheLockHoldsNobodyUp()
    {
        CreateRegistryKey(user, program);
        QVERIFY(checkPlace());
        // Not by a program: the thread sanitizer takes starting one for a fork, behind which it wants no
        // threads.
        for (const QString &name : {m_file + ".lock", m_file + ".lock.rmlock", m_file}) {
            QFile::remove(name);
            QCOMPARE(::mkfifo(QFile::encodeName(name).constData(), 0600), 0);
            store("deutsch");
            QCOMPARE(lastError(), Error::AccessDenied);
            QVERIFY2(checkPlace().message().startsWith(name), qPrintable(checkPlace().message()));
            QVERIFY(QFile::remove(name));
        }
    }

    void writersAtTheSameTimeLoseNothing()
    {
        // Nothing but the lock file keeps the threads apart, so they stand for processes as well.
        setRegistryFile(m_file, std::chrono::minutes(1));
        std::vector<std::jthread> threads;
        for (int writer = 0; writer < 4; ++writer) {
            threads.emplace_back([section = QString::number(writer)] {
                for (int text = 0; text < 12; ++text) {
                    SettingsStore().SaveSetting("App", section, QString::number(text), "kept");
                }
            });
        }
        threads.clear(); // joins them
        QCOMPARE(contentOf(m_file).count("kept"), 4 * 12);
    }

private:
    QTemporaryDir m_folder;
    QString m_file;
};

QTEST_GUILESS_MAIN(RegistryFileTest)
#include "registry_file_test.moc"
