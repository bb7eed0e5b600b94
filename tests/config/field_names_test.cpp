#include "config/field_names.h"
#include "config/fields.h"
#include "lang/load_texts.h"
#include "support/environment.h"
#include "support/random_configuration.h"

#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace ktr;

namespace {

TextTable german()
{
    TextTable texts;
    LoadTexts(texts, u"deutsch"_s, QStringLiteral(KTR_SOURCE_DIR "/data/language.ini"));
    return texts;
}

} // namespace

/// Fields by the names that people give them, and values as people type them.
class FieldNamesTest : public QObject
{
    Q_OBJECT

    FieldNames m_names{{TextTable(), german()}};

    QString keyOf(const QString &name) const
    {
        const FieldNames::Found found = m_names.find(name);
        return found.field == nullptr ? QString() : found.field->key;
    }

private Q_SLOTS:
    void everyFieldIsFoundByItsPlaceAndByItsPathInBothLanguages()
    {
        const QList<NamedField> inGerman = namedFields(german());
        QCOMPARE(inGerman.size(), m_names.fields().size());
        QSet<QString> keys;
        int described = 0;
        Configuration none;
        visitRecords(none, [&]<class Record>(const Group &, Record &, int index) {
            for (const auto &field : fieldsOf<Record>()) {
                described += field.appliesTo(index) ? 1 : 0;
            }
        });
        for (qsizetype i = 0; i < inGerman.size(); ++i) {
            const NamedField &field = m_names.fields()[i];
            keys.insert(field.key);
            QCOMPARE(keyOf(field.key), field.key);
            QCOMPARE(keyOf(QString(field.key).replace(u' ', u'.')), field.key);
            QCOMPARE(keyOf(field.path()), field.key);
            QCOMPARE(keyOf(inGerman[i].path()), field.key);
            QCOMPARE(keyOf(u' ' + inGerman[i].path().toUpper() + u' '), field.key);
        }
        for (const QString &name : m_names.all()) {
            QVERIFY2(!keyOf(name).isEmpty(), qPrintable(name));
        }
        QCOMPARE(keys.size(), described + 2); // the holidays and the whole MAC address are none of a record
    }

    void shortNamesAreTakenWhereTheyAreClear_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("key");
        const auto row = [](const QString &name, const QString &key) {
            QTest::newRow(qPrintable(name)) << name << key;
        };
        row(u"pin"_s, u"PIN"_s);
        row(u"identifier"_s, u"Stationskennung"_s);
        row(u"Stationskennung"_s, u"Stationskennung"_s);
        row(u"address"_s, u"Ethernet IP"_s);
        row(u"MAC"_s, u"Ethernet MAC"_s);
        row(u"number 6"_s, u"GSM-Nummer5"_s);
        row(u"Rufnummer 1"_s, u"GSM-Nummer0"_s);
        row(u"LV 4/Notification"_s, u"Grenzwert3 Alarm"_s);
        row(u"gw 4/meldung"_s, u"Grenzwert3 Alarm"_s);
        row(u"Schaltpunkt 4/Wert"_s, u"Schaltpunkt3 Wert"_s); // as on the page
        row(u"Schaltpunkt4 Wert"_s, u"Schaltpunkt4 Wert"_s);  // as in the file
        row(u"Digitaleingang0 Zaehler"_s, u"Digitaleingang0 Zähler"_s);
        row(u"number 7"_s, QString());
        row(u"Meldung"_s, QString());
        row(u"Schaltpunkt4/Wert"_s, QString()); // which of both?
        row(QString(), QString());
        row(QString(100'000, u'x'), QString());
    }
    void shortNamesAreTakenWhereTheyAreClear()
    {
        QFETCH(QString, name);
        QFETCH(QString, key);
        QCOMPARE(keyOf(name), key);
    }

    void theNearestNamesAreTold()
    {
        QVERIFY(m_names.find(u"GW 4/Meldng"_s).complaint.contains("LV 4/Notification (Grenzwert3 Alarm)"_L1));
        QVERIFY(m_names.find(u"adress"_s).complaint.contains("Ethernet IP"_L1));
        const QString several = m_names.find(u"Meldung"_s).complaint;
        QVERIFY(several.contains("LV 1/"_L1) && several.contains("LV 6/"_L1) &&
                !several.contains("LV 7/"_L1));
    }

    /// What is told of a field can be given to it again.
    void everyFieldTakesWhatItTells()
    {
        const QLocale locale = test::german();
        test::RandomConfiguration random(7);
        for (int round = 0; round < 20; ++round) {
            const Configuration given = random.make(locale);
            Configuration set;
            Configuration again;
            for (const NamedField &field : m_names.fields()) {
                const QString value = fieldValue(given, field.key);
                QVERIFY2(setFieldValue(set, field.key, value, true).isStored, qPrintable(field.key));
                const QString told = fieldValue(set, field.key);
                const FieldSetting repeated = setFieldValue(again, field.key, told, true);
                QVERIFY2(repeated.isStored, qPrintable(field.key));
                QCOMPARE(fieldValue(again, field.key), told);
            }
            QVERIFY(set == again);
            QCOMPARE(set.holidays, given.holidays);
            QCOMPARE(set.switchPoints, given.switchPoints);
            QCOMPARE(set.ethernet, given.ethernet);
            QCOMPARE(set.outputHours, given.outputHours);
        }
    }

    void aFaultyValueIsToldWithItsRangeAndNotStored_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("words");
        QTest::addColumn<bool>("anyway"); // is it stored when that is asked for?
        QTest::newRow("no number") << u"LV 1/Delay"_s << u"soon"_s << u"number from 0"_s << true;
        QTest::newRow("clamped") << u"Grenzwert0 Wiederholungsintervall"_s << u"5000"_s << u"1 to 1440"_s
                                 << true;
        QTest::newRow("unit") << u"Archivierung0 Interval"_s << u"-1"_s << u"minutes"_s << true;
        QTest::newRow("no choice") << u"Grenzwert0 IP"_s << u"19"_s << u"0 to 18"_s << true;
        QTest::newRow("no number for a choice") << u"Grenzwert0 IP"_s << u"DigIn"_s << u"0 to 18"_s << false;
        QTest::newRow("too large to hold") << u"Grenzwert0 MSN"_s << u"256"_s << u"0 to 255"_s << false;
        QTest::newRow("no station type") << u"Stationstyp"_s << u"XYZ"_s << u"choices"_s << false;
        QTest::newRow("box") << u"Digitaleingang0 Invers"_s << u"2"_s << u"yes"_s << false;
        QTest::newRow("address") << u"Ethernet IP"_s << u"10.0.0"_s << u"255"_s << true;
        QTest::newRow("phone number") << u"number 1"_s << u"4.9E+11"_s << u"digits"_s << true;
        QTest::newRow("other maker") << u"MAC"_s << u"00-11-22-01-02-03"_s << u"00-60-A9"_s << false;
        QTest::newRow("five bytes") << u"MAC"_s << u"00-60-A9-01-02"_s << u"six bytes"_s << false;
        QTest::newRow("line break") << u"Stationskennung"_s << u"Werk\n7"_s << u"line break"_s << true;
        QTest::newRow("break behind a number")
            << u"number 1"_s << u"+4917012345678\r\n"_s << u"line break"_s << true;
        QTest::newRow("byte") << u"MAC"_s << u"01-02-0G"_s << u"hexadecimal"_s << true;
        QTest::newRow("date") << u"Feiertage"_s << u"271224, 271301"_s << u"271301"_s << false;
        QTest::newRow("too many dates") << u"Feiertage"_s
                                        << u"270101 270102 270103 270104 270105 270106 270107 270108 270109 "
                                           "270110 270111 270112 270113 270114 270115 270116 270117 270118 "
                                           "270119 270120 270121"_s
                                        << u"20"_s << false;
    }
    void aFaultyValueIsToldWithItsRangeAndNotStored()
    {
        QFETCH(QString, name);
        QFETCH(QString, value);
        QFETCH(QString, words);
        QFETCH(bool, anyway);
        Configuration configuration;
        makeNew(configuration, test::fixedEnvironment());
        const Configuration before = configuration;
        const FieldSetting refused = setFieldValue(configuration, keyOf(name), value);
        QVERIFY2(!refused.isStored && refused.fault.contains(words), qPrintable(refused.fault));
        QVERIFY(configuration == before);
        const FieldSetting forced = setFieldValue(configuration, keyOf(name), value, true);
        QCOMPARE(forced.isStored, anyway);
        QVERIFY(!forced.fault.isEmpty());
        QCOMPARE(configuration != before, anyway);
    }

    void valuesAreTakenAsTheyAreTyped()
    {
        Configuration configuration;
        const auto set = [&](const QString &name, const QString &value) {
            const FieldSetting done = setFieldValue(configuration, keyOf(name), value);
            return done.isStored && done.fault.isEmpty() ? fieldValue(configuration, keyOf(name))
                                                         : done.fault;
        };
        QCOMPARE(set(u"GW 4/Meldung"_s, u"Größe fail"_s), u"Groesse fail"_s);
        QCOMPARE(set(u"number 1"_s, u"4917012345678"_s), u"+4917012345678"_s);
        QCOMPARE(set(u"Digitaleingang0 Invers"_s, u"Ja"_s), u"1"_s);
        QCOMPARE(set(u"Digitaleingang0 Invers"_s, u"off"_s), u"0"_s);
        QCOMPARE(set(u"MAC"_s, u"00:60:a9:0a:0b:0c"_s), u"00-60-A9-0A-0B-0C"_s);
        QCOMPARE(set(u"MAC"_s, u"01-02-03"_s), u"00-60-A9-01-02-03"_s);
        QCOMPARE(set(u"Feiertage"_s, u"271225;271224"_s), u"271225, 271224"_s);
        QCOMPARE(set(u"Feiertage"_s, QString()), QString());
    }
};

QTEST_GUILESS_MAIN(FieldNamesTest)
#include "field_names_test.moc"
