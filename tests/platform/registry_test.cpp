#include "config/holiday_store.h"
#include "lang/text_table.h"
#include "platform/files.h"
#include "platform/registry.h"
#include "platform/settings_store.h"

#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <QTemporaryDir>
#include <QTest>

#include <thread>

using namespace ktr;
using namespace ktr::MRegistry;

namespace {

const QString user = "hkey_current_user";
const QString program = "Software\\Korvane\\KTRconfig";

QByteArray contentOf(const QString &path)
{
    QByteArray content;
    return readFile(path, content, 1 << 20) ? content : QByteArray("(cannot be read)");
}

const auto store = [](const QString &text) { SetRegistryString(user, program, "Language", text); };
const auto stored = [] { return GetRegistryString(user, program, "Language"); };

} // namespace

class RegistryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_file = m_folder.filePath(QString(QTest::currentTestFunction()) + "/registry.json");
        setRegistryFile(m_file);
    }

    void rootsGoByTheirNamesWhateverTheCase()
    {
        QCOMPARE(GetRootKey("HKEY_Classes_Root"), 0x80000000U);
        QCOMPARE(GetRootKey("current_config"), 0x80000005U);
        QCOMPARE(GetRootKey("DYN_DATA"), 0x80000006U);
        for (const char *name : {"", "hkey_", "user", "hkey_hkey_users", "users ", "performance_data"}) {
            QCOMPARE(GetRootKey(name), 0U);
        }
    }

    void aTextNeedsItsKey()
    {
        CreateRegistryKey("hkey_nobody", program);
        QCOMPARE(lastError(), Error::NoRoot);
        store("english");
        QCOMPARE(lastError(), Error::NotFound);
        QVERIFY(!QFile::exists(m_file));
        CreateRegistryKey(user, program);
        QCOMPARE(stored(), "");
        store("english");
        CreateRegistryKey(user, program); // does not empty it
        QCOMPARE(stored(), "english");
    }

    void aTextGoesThroughTheCodePageUpToItsZeroAndFitsTheBuffer()
    {
        CreateRegistryKey(user, program);
        store(QStringLiteral("€ für Ωmega\0rest"));
        QCOMPARE(stored(), "€ für ?mega");
        store(QString(49998, u'x'));
        QCOMPARE(stored().size(), 49998);
        store(QString(49999, u'x'));
        QCOMPARE(stored(), "");
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

    void aShorterHolidayListReplacesALongerOne()
    {
        SettingsStore settings;
        for (const int days : {HolidayList::capacity, 3, 0}) {
            HolidayList saved;
            HolidayList loaded;
            for (int day = 0; day < days; ++day) {
                saved.add(QDate(2027, 12, 24).addDays(day));
            }
            QVERIFY(saveHolidays(saved, settings));
            loadHolidays(loaded, settings);
            QCOMPARE(loaded.lines(), saved.lines());
        }
        // Stored, and empty, is no absence.
        QCOMPARE(settings.GetSetting("KTR_Config", "Feiertage", "free0", "none"), "");
        QCOMPARE(settings.GetSetting("KTR_Config", "Feiertage", "free20", "none"), "none");
        QVERIFY(contentOf(m_file).contains(R"(USER\\Software\\Program Settings\\KTR_Config\\Feiertage)"));
    }

    void theEnglishTextsStandAtTheirNumbersAndLeaveTheOthersAlone()
    {
        TextTable table;
        table.setText(176, "Text");
        table.fillEnglish();
        QStringList texts;
        for (const int number : {34, 65, 139, 149, 175, 176, 201}) {
            texts += table.text(number);
        }
        QCOMPARE(texts.join(u'|'),
                 "Scaling |LV exceeded|Maximal 20 holidays|Fatal Error: Message to long.|Open History|Text|");
    }

private:
    QTemporaryDir m_folder;
    QString m_file;
};

QTEST_GUILESS_MAIN(RegistryTest)
#include "registry_test.moc"
