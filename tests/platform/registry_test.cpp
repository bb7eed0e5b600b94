#include "config/holiday_store.h"
#include "lang/text_table.h"
#include "platform/registry.h"
#include "platform/settings_store.h"

#include <QTemporaryDir>
#include <QTest>

using namespace ktr;
using namespace ktr::MRegistry;

namespace {

const QString user = "hkey_current_user";
const QString program = "Software\\Korvane\\KTRconfig";

const auto store = [](const QString &text) { SetRegistryString(user, program, "Language", text); };
const auto stored = [] { return GetRegistryString(user, program, "Language"); };

} // namespace

class RegistryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        setRegistryFile(m_folder.filePath(QString(QTest::currentTestFunction()) + "/registry.json"));
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
        SetRegistryString(user, "Software\\Program Settings\\KTR_Config\\Feiertage", "free0", "there");
        QCOMPARE(settings.GetSetting("KTR_Config", "Feiertage", "free0"), "there");
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
};

QTEST_GUILESS_MAIN(RegistryTest)
#include "registry_test.moc"
