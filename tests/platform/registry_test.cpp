#include "config/holiday_store.h"
#include "lang/text_table.h"
#include "platform/files.h"
#include "platform/registry.h"
#include "platform/settings_store.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QTemporaryDir>
#include <QTest>

#include <thread>

using namespace ktr;
using namespace ktr::MRegistry;

namespace {

const QString user = QStringLiteral("hkey_current_user");
const QString program = QStringLiteral("Software\\Korvane\\KTRconfig");
const QString language = QStringLiteral("Language");

QByteArray contentOf(const QString &path)
{
    QByteArray content;
    const Status read = readFile(path, content, 1 << 20);
    return read ? content : QByteArray("(cannot be read)");
}

} // namespace

class RegistryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_file = m_folder->filePath(QStringLiteral("user/registry.json"));
        setRegistryFile(m_file);
    }

    void rootsGoByTheirNamesWhateverTheCase()
    {
        QCOMPARE(GetRootKey(QStringLiteral("HKEY_Classes_Root")), 0x80000000U);
        QCOMPARE(GetRootKey(QStringLiteral("Current_User")), 0x80000001U);
        QCOMPARE(GetRootKey(QStringLiteral("hkey_local_machine")), 0x80000002U);
        QCOMPARE(GetRootKey(QStringLiteral("users")), 0x80000003U);
        QCOMPARE(GetRootKey(QStringLiteral("current_config")), 0x80000005U);
        QCOMPARE(GetRootKey(QStringLiteral("DYN_DATA")), 0x80000006U);
        for (const char *name : {"", "hkey_", "user", "hkey_hkey_users", "users ", "performance_data"}) {
            QCOMPARE(GetRootKey(QLatin1String(name)), 0U);
        }
    }

    void aTextIsFoundWhateverTheCaseOfItsNames()
    {
        CreateRegistryKey(user, QStringLiteral("software"));
        CreateRegistryKey(user, program);
        SetRegistryString(user, program, language, QStringLiteral("english"));
        SetRegistryString(user, program.toUpper(), language.toUpper(), QStringLiteral("deutsch"));
        QCOMPARE(lastError(), Error::None);
        QCOMPARE(GetRegistryString(QStringLiteral("CURRENT_USER"), program.toLower(), language.toLower()),
                 QStringLiteral("deutsch"));

        const QByteArray content = contentOf(m_file);
        QCOMPARE(content.toLower().count("ktrconfig"), 1); // one key, as it was spelled first
        QVERIFY(content.contains(R"("HKEY_CURRENT_USER\\software\\Korvane\\KTRconfig")"));
        QCOMPARE(content.toLower().count("language"), 1);
    }

    void aKeyIsCreatedWithItsParentsAndNeverEmptied()
    {
        CreateRegistryKey(user, program);
        for (const auto &key : {program, QStringLiteral("Software\\Korvane"), QStringLiteral("Software")}) {
            SetRegistryString(user, key, language, key);
            QCOMPARE(lastError(), Error::None);
        }
        CreateRegistryKey(user, program);
        QCOMPARE(GetRegistryString(user, program, language), program);
        QCOMPARE(GetRegistryString(user, QStringLiteral("Software"), language), QStringLiteral("Software"));
    }

    void whatIsMissingReadsAsEmptyAndIsNotWritten()
    {
        SetRegistryString(user, program, language, QStringLiteral("english"));
        QCOMPARE(lastError(), Error::NotFound);
        QVERIFY(!QFile::exists(m_file));

        CreateRegistryKey(user, program);
        QCOMPARE(GetRegistryString(user, program, language), QString());
        QCOMPARE(lastError(), Error::NotFound);
        QCOMPARE(GetRegistryString(user, program + QStringLiteral("\\Sub"), language), QString());
        QCOMPARE(lastError(), Error::NotFound);

        const QString nobody = QStringLiteral("hkey_nobody");
        CreateRegistryKey(nobody, program);
        QCOMPARE(lastError(), Error::NoRoot);
        SetRegistryString(nobody, program, language, QStringLiteral("english"));
        QCOMPARE(lastError(), Error::NoRoot);
        QCOMPARE(GetRegistryString(nobody, program, language), QString());
        QCOMPARE(lastError(), Error::NoRoot);
    }

    void aTextThatFillsTheBufferReadsAsEmpty()
    {
        CreateRegistryKey(user, program);
        const auto read = [](qsizetype length) {
            SetRegistryString(user, program, language, QString(length, u'x'));
            return GetRegistryString(user, program, language).size();
        };
        QCOMPARE(read(49998), 49998);
        QCOMPARE(lastError(), Error::None);
        for (const qsizetype length : {49999, 50000, 70000}) {
            QCOMPARE(read(length), 0);
            QCOMPARE(lastError(), Error::TooLong);
        }
    }

    void aTextGoesThroughTheCodePageAndEndsAtAZero()
    {
        CreateRegistryKey(user, program);
        SetRegistryString(user, program, language, QStringLiteral("€ für Ωmega\0rest"));
        QCOMPARE(GetRegistryString(user, program, language), QStringLiteral("€ für ?mega"));
    }

    void whatAnotherProgramWritesIsSeenAndKept()
    {
        CreateRegistryKey(user, program);
        const QByteArray written = R"({"hkey_current_user\\software\\korvane\\ktrconfig":
                                       {"language": "deutsch", "Count": 7, "Cut": "a\u0000b"},
                                       "HKEY_USERS\\Other": {"Name": "Ω"}})";
        QVERIFY(replaceFile(m_file, written));
        QCOMPARE(GetRegistryString(user, program, language), QStringLiteral("deutsch"));
        QCOMPARE(GetRegistryString(user, program, QStringLiteral("Count")), QString());
        QCOMPARE(GetRegistryString(user, program, QStringLiteral("Cut")), QStringLiteral("a"));

        SetRegistryString(user, program, language, QStringLiteral("deutsch"));
        QCOMPARE(contentOf(m_file), written); // nothing new, nothing written
        SetRegistryString(user, program, language, QStringLiteral("english"));
        QVERIFY(contentOf(m_file).contains("\"Count\": 7"));
        QVERIFY(contentOf(m_file).contains("\"Name\": \"Ω\""));
    }

    void garbageIsMovedAsideAndNeverOverwritten_data()
    {
        QTest::addColumn<QByteArray>("garbage");
        QTest::newRow("no JSON") << QByteArray("Language=english\n");
        QTest::newRow("cut short") << QByteArray("{\"HKEY_CURRENT_USER\": {\"Lang");
        QTest::newRow("zeros after a power cut") << QByteArray(64, '\0');
        QTest::newRow("no object") << QByteArray("[1, 2]");
        QTest::newRow("a key that is no object") << QByteArray(R"({"HKEY_CURRENT_USER": "text"})");
    }

    void garbageIsMovedAsideAndNeverOverwritten()
    {
        QFETCH(QByteArray, garbage);
        QVERIFY(QDir().mkpath(QFileInfo(m_file).path()));
        for (const auto &aside : {".unreadable", ".unreadable2", ".unreadable3"}) {
            QVERIFY(replaceFile(m_file, garbage + aside));
            QCOMPARE(GetRegistryString(user, program, language), QString());
            QCOMPARE(lastError(), Error::Corrupt);
            SetRegistryString(user, program, language, QStringLiteral("english"));
            QCOMPARE(contentOf(m_file), garbage + aside); // nothing to write, so it may stay

            CreateRegistryKey(user, program);
            SetRegistryString(user, program, language, QStringLiteral("english"));
            QCOMPARE(GetRegistryString(user, program, language), QStringLiteral("english"));
            QCOMPARE(contentOf(m_file + QLatin1String(aside)), garbage + aside);
        }
        QCOMPARE(contentOf(m_file + QStringLiteral(".unreadable")), garbage + ".unreadable");
    }

    void anEmptyFileIsAnEmptyRegistry()
    {
        QVERIFY(QDir().mkpath(QFileInfo(m_file).path()));
        QVERIFY(replaceFile(m_file, QByteArray()));
        CreateRegistryKey(user, program);
        QCOMPARE(lastError(), Error::None);
        QVERIFY(!QFile::exists(m_file + QStringLiteral(".unreadable")));
    }

    void aPlaceThatCannotBeWrittenFailsQuietly_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("below a file") << QStringLiteral("blocked/registry.json");
        QTest::newRow("a folder") << QStringLiteral("folder");
        QTest::newRow("in a write-protected folder") << QStringLiteral("folder/registry.json");
    }

    void aPlaceThatCannotBeWrittenFailsQuietly()
    {
        QFETCH(QString, file);
        const QString folder = m_folder->filePath(QStringLiteral("folder"));
        const QString present = folder + QStringLiteral("/registry.json");
        QVERIFY(replaceFile(m_folder->filePath(QStringLiteral("blocked")), "a file"));
        QVERIFY(QDir().mkdir(folder));
        setRegistryFile(present);
        CreateRegistryKey(user, program);
        SetRegistryString(user, program, language, QStringLiteral("deutsch"));
        QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));
        const bool readable = m_folder->filePath(file) == present;
        if (readable && QFileInfo(folder).isWritable()) {
            QSKIP("This user may write everywhere.");
        }

        setRegistryFile(m_folder->filePath(file));
        CreateRegistryKey(user, program + QStringLiteral("\\Sub"));
        QCOMPARE(lastError(), Error::AccessDenied);
        SetRegistryString(user, program, language, QStringLiteral("english"));
        QCOMPARE(lastError(), Error::AccessDenied);
        QCOMPARE(GetRegistryString(user, program, language),
                 readable ? QStringLiteral("deutsch") : QString());
        HolidayList holidays;
        SettingsStore store;
        QVERIFY(!saveHolidays(holidays, store));
        QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    }

    void aLockThatStaysTakenEndsTheWaitAndReadingGoesOn()
    {
        CreateRegistryKey(user, program);
        SetRegistryString(user, program, language, QStringLiteral("english"));
        QLockFile other(m_file + QStringLiteral(".lock"));
        QVERIFY(other.lock());
        setRegistryFile(m_file, Milliseconds(20));
        SetRegistryString(user, program, language, QStringLiteral("deutsch"));
        QCOMPARE(lastError(), Error::Busy);
        QCOMPARE(GetRegistryString(user, program, language), QStringLiteral("english"));

        other.unlock();
        SetRegistryString(user, program, language, QStringLiteral("deutsch"));
        QCOMPARE(GetRegistryString(user, program, language), QStringLiteral("deutsch"));
    }

    void writersAtTheSameTimeLoseNothing()
    {
        // Nothing but the lock file keeps the threads apart, so they stand for processes as well.
        setRegistryFile(m_file, std::chrono::minutes(1));
        constexpr int writers = 4;
        constexpr int texts = 12;
        const auto section = [](int writer) { return QStringLiteral("Section%1").arg(writer); };
        std::vector<std::thread> threads;
        for (int writer = 0; writer < writers; ++writer) {
            threads.emplace_back([&section, writer] {
                SettingsStore store;
                for (int text = 0; text < texts; ++text) {
                    store.SaveSetting(QStringLiteral("App"), section(writer), QString::number(text),
                                      QString::number(text * text));
                }
            });
        }
        for (std::thread &thread : threads) {
            thread.join();
        }
        const SettingsStore store;
        for (int writer = 0; writer < writers; ++writer) {
            for (int text = 0; text < texts; ++text) {
                QCOMPARE(store.GetSetting(QStringLiteral("App"), section(writer), QString::number(text)),
                         QString::number(text * text));
            }
        }
    }

    void aSettingComesBackAndItsAbsenceGivesTheFallback()
    {
        SettingsStore store;
        const QString application = QStringLiteral("KTR_Config");
        const QString section = QStringLiteral("Startup");
        const QString key = QStringLiteral("filename");
        const QString fallback = QStringLiteral("none");
        QCOMPARE(store.GetSetting(application, section, key, fallback), fallback);
        const QString name = QStringLiteral("/home/Ωmega/ßtation §.xml");
        QVERIFY(store.SaveSetting(application, section, key, name));
        QCOMPARE(store.GetSetting(application, section, key, fallback), name);
        QVERIFY(store.SaveSetting(application, section, key, QString()));
        QCOMPARE(store.GetSetting(application, section, key, fallback), QString()); // stored, and empty
        QVERIFY(contentOf(m_file).contains(
            R"("HKEY_CURRENT_USER\\Software\\Program Settings\\KTR_Config\\Startup")"));
    }

    void aShorterHolidayListReplacesALongerOne()
    {
        SettingsStore store;
        const QDate christmas(2027, 12, 24);
        HolidayList full;
        for (int day = 0; day < HolidayList::capacity; ++day) {
            full.add(christmas.addDays(day));
        }
        HolidayList loaded;
        QVERIFY(saveHolidays(full, store));
        loadHolidays(loaded, store);
        QCOMPARE(loaded.lines(), full.lines());

        HolidayList three;
        for (int day = 0; day < 3; ++day) {
            three.add(christmas.addDays(-day));
        }
        QVERIFY(saveHolidays(three, store));
        loadHolidays(loaded, store);
        QCOMPARE(loaded.lines(), three.lines());
        QCOMPARE(store.GetSetting(QStringLiteral("KTR_Config"), QStringLiteral("Feiertage"),
                                  QStringLiteral("free0")),
                 QStringLiteral("271224\t(24.12.2027)"));
    }

    void theEnglishTextsStandAtTheirNumbers()
    {
        TextTable table;
        int filled = 0;
        for (int number = 0; number <= TextTable::count + 1; ++number) {
            filled += table.text(number).isEmpty() ? 0 : 1;
        }
        QCOMPARE(filled, 175);
        QCOMPARE(table.text(1), QStringLiteral("File"));
        QCOMPARE(table.text(34), QStringLiteral("Scaling "));
        QCOMPARE(table.text(64), QStringLiteral("LV exceeded"));
        QCOMPARE(table.text(65), QStringLiteral("LV exceeded"));
        QCOMPARE(table.text(Text::MaximalHolidays), QStringLiteral("Maximal 20 holidays"));
        QCOMPARE(table.text(Text::MessageTooLong), QStringLiteral("Fatal Error: Message to long."));
        QCOMPARE(table.text(152), QStringLiteral("Faulty Input: Seperate IP with dots."));
        QCOMPARE(table.text(175), QStringLiteral("Open History"));
    }

    void anotherLanguagesTextsGiveWayToTheEnglishOnesOnly()
    {
        TextTable table;
        for (int number = -1; number <= TextTable::count + 1; ++number) {
            table.setText(number, QStringLiteral("Text"));
        }
        QCOMPARE(table.text(0), QString());
        QCOMPARE(table.text(TextTable::count + 1), QString());
        table.fillEnglish();
        QCOMPARE(table.text(175), QStringLiteral("Open History"));
        QCOMPARE(table.text(176), QStringLiteral("Text"));
        QCOMPARE(table.text(200), QStringLiteral("Text"));
    }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_file;
};

QTEST_GUILESS_MAIN(RegistryTest)
#include "registry_test.moc"
