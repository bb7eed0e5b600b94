#include "config/configuration_file.h"
#include "config/entry_table.h"
#include "config/field_names.h"
#include "config/fields.h"
#include "link/conversation_log.h"
#include "link/history_export.h"
#include "opmode/keeping/checksum.h"
#include "opmode/keeping/list_replay.h"
#include "opmode/keeping/nodes_file.h"
#include "opmode/lists/nodes_export.h"
#include "opmode/lists/station_import.h"
#include "opmode/request.h"
#include "opmode/station/station.h"
#include "opmode/tree/station_tree.h"
#include "platform/file_lock.h"
#include "platform/profile_file.h"
#include "platform/registry.h"
#include "platform/settings_store.h"
#include "platform/table_file.h"
#include "platform/text_rules.h"
#include "record/json_text.h"
#include "record/record_file.h"
#include "simulator/replay.h"
#include "support/environment.h"
#include "support/manual_timers.h"
#include "support/recorded_line.h"
#include "support/test_files.h"
#include "transmissions/fleet_list.h"
#include "transmissions/fleet_results.h"

#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

using namespace ktr;
using namespace ktr::test;
using namespace Qt::StringLiterals;

namespace {

const QDateTime now(QDate(2026, 11, 15), QTime(14, 5, 35), Qt::UTC);

QString document()
{
    return QString::fromUtf8(contentOf(QStringLiteral(KTR_SOURCE_DIR "/docs/formats.md")));
}

/// The excerpts of docs/formats.md by their names: "as it is", as hexadecimal bytes, or with escapes.
QMap<QString, QByteArray> excerpts()
{
    const QString whole = document();
    static const QRegularExpression block(u"<!-- excerpt: ([a-z-]+)(, [^>]*)? -->\\n```\\n(.*?)```"_s,
                                          QRegularExpression::DotMatchesEverythingOption);
    QMap<QString, QByteArray> result;
    for (const QRegularExpressionMatch &match : block.globalMatch(whole)) {
        QByteArray bytes = match.captured(3).toUtf8();
        if (match.captured(2) == u", hexadecimal") {
            QByteArray digits;
            for (const QByteArray &line : bytes.split('\n')) {
                digits += line.split('#').first();
            }
            bytes = QByteArray::fromHex(digits);
        } else if (match.captured(2).isEmpty()) {
            bytes.replace("\n", "").replace("\\r", "\r").replace("\\n", "\n").replace("\\t", "\t");
            bytes.replace("\\x1A", "\x1A").replace("\\xEF\\xBB\\xBF", "\xEF\xBB\xBF");
        }
        result.insert(match.captured(1), bytes);
    }
    return result;
}

/// Where an excerpt leaves something out, it says "...".
bool isExcerptOf(const QByteArray &excerpt, const QByteArray &whole)
{
    const QStringList parts = QString::fromLatin1(excerpt).split("..."_L1);
    const QString text = QString::fromLatin1(whole);
    qsizetype at = 0;
    for (const QString &part : parts) {
        const qsizetype found = text.indexOf(part, at);
        if (found < 0 || (at == 0 && found > 0)) {
            return false;
        }
        at = found + part.size();
    }
    return !excerpt.isEmpty() && text.endsWith(parts.last());
}

Configuration someConfiguration()
{
    Configuration configuration;
    makeNew(configuration, fixedEnvironment());
    configuration.gsm.pin = u"4739"_s;
    configuration.gsm.stationId = u"PS Mill Lane"_s;
    configuration.limitValues[0].alarm = u"Well > 3 m, \"high\""_s;
    configuration.holidays.add(QDate(2026, 12, 24));
    return configuration;
}

Configuration configurationWithEntries()
{
    Configuration configuration;
    makeNew(configuration, fixedEnvironment());
    configuration.limitValues[0] = {9, u"Well high"_s, u"2.5"_s, u"0.1"_s, u"0"_s, 3, 195, 0, 3, u"30"_s};
    configuration.limitValues[16] = {0, u"Both"_s, u"0"_s, u"0"_s, u"0"_s, 1, 255, 5, 0, u"30"_s};
    configuration.limitValues[17].reference = 5;
    configuration.limitValues[17].repetitionInterval = u"30"_s;
    return configuration;
}

const StationAttributes attributes{true, {u"7:30"_s, 2, u"16:00"_s, 1}, u"192.168.1.20"_s, true};

} // namespace

/// Keeps docs/formats.md true: what it shows is what the writers write and the readers read.
class FormatsTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { qputenv("TZ", "UTC"); }

private Q_SLOTS:
    void whatIsWrittenIsShown_data()
    {
        QTest::addColumn<QByteArray>("made");
        StationTree tree({u"Notifications"_s, u"History"_s, u"IP"_s});
        tree.addStation(u"Mühle"_s);
        for (const QString &text : {u"M,Pump \"1\" fail"_s, u"R,9,12.5"_s, u"H,9,2611151400,9,-3.25"_s}) {
            tree.apply(u"Mühle"_s, interpretStationMessage(u"+4917012345 --> "_s + text), now);
        }
        QTest::newRow("configuration") << writeConfiguration(someConfiguration(), fixedEnvironment());
        QTest::newRow("nodes") << writeNodes(tree.nodes(), [](const QString &) { return attributes; });
        QTest::newRow("log") << log();
        QTest::newRow("archive") << archive();
        QTest::newRow("notifications") << exported(tree, ExportChoice::Kind::Notifications);
        QTest::newRow("history") << exported(tree, ExportChoice::Kind::History);
        QTest::newRow("registry") << registry();
        QTest::newRow("record") << record();
        namespace member = request_members;
        QByteArray asked;
        for (const Request &request : {stationRequest(requests::rename, 3, {{member::name, u"Mühle 2"_s}}),
                                       Request{requests::shelve,
                                               {{member::alarms, QJsonArray{17}},
                                                {member::until, now.toMSecsSinceEpoch() + 3'600'000},
                                                {member::why, u"the pump is being replaced"_s}}}}) {
            asked += request.what.toUtf8() + ' ' + jsonText(request.about).toUtf8() + '\n';
        }
        QTest::newRow("requests") << asked;
        const Configuration entries = configurationWithEntries();
        const TextTable texts;
        QTest::newRow("entries")
            << entryTable(entries, EntryList::LimitValues, {0, 16}, {texts, QLocale::c()}).toUtf8();
        QTest::newRow("entry") << writeClip(clipOf(entries, EntryList::LimitValues, {17}));
        QTest::newRow("attributes") << toJson(attributes).toUtf8();
    }
    void whatIsWrittenIsShown()
    {
        QFETCH(const QByteArray, made);
        const QByteArray shown = m_excerpts.take(QLatin1StringView(QTest::currentDataTag()));
        QVERIFY2(isExcerptOf(shown, made), "the document shows\n" + shown + "\nand what is written is\n" +
                                               made + "\n" + made.toHex(' '));
    }

    void whatIsShownIsRead()
    {
        const QMap<QString, QByteArray> all = excerpts();
        Configuration read;
        const ReadReport report = readConfiguration(QByteArray(all[u"configuration"_s]).replace("...", ""),
                                                    read, fixedEnvironment());
        QVERIFY2(report.document && report.remarks.isEmpty(), qPrintable(report.remarks.join(u'\n')));
        QCOMPARE(read.limitValues[0].alarm, someConfiguration().limitValues[0].alarm);

        // What the text says of masks.
        Configuration masks = configurationWithEntries();
        const TextTable words;
        for (const auto &[mask, cell] : QList<QPair<quint8, QString>>{{195, u"1+2"_s}, {3, u"1+2 (=3)"_s}}) {
            masks.limitValues[0].recipients = mask;
            const QString table = entryTable(masks, EntryList::LimitValues, {0}, {words, QLocale::c()});
            QVERIFY2(table.contains(u'\t' + cell + u'\t'), qPrintable(table));
            QVERIFY2(document().contains(u'`' + cell + u'`'), qPrintable(cell));
        }

        QStringList remarks;
        QStringList keys;
        QVERIFY(
            readNodes(QByteArray(all[u"nodes"_s]).replace("...", ""), remarks, [&](const StoredNode &node) {
                keys += QString::fromStdString(std::string(node.key));
                QVERIFY(node.station == nullptr || *node.station == attributes);
            }));
        QVERIFY(remarks.isEmpty() && keys.contains(u"Mühle/ip/ip9"_s));
        QCOMPARE(stationAttributes(QString::fromUtf8(all[u"attributes"_s])), attributes);

        ProfileFile texts;
        QVERIFY(texts.parse(toWindows1252(QString::fromUtf8(all[u"language"_s]))));
        QCOMPARE(texts.value(u"deutsch"_s, u"Text3"_s, 127), u"Öffnen"_s);
        const QByteArray shipped = contentOf(QStringLiteral(KTR_SOURCE_DIR "/data/language.ini"));
        for (const QByteArray &part : m_excerpts.take(u"language"_s).split('\n')) {
            QVERIFY2(shipped.contains(toWindows1252(QString::fromUtf8(part))), part);
        }

        RecordedConversation conversation;
        QVERIFY(readConversation(all[u"log"_s], conversation));
        QCOMPARE(conversation.lines.size(), 4U);

        QStringList stations;
        const QString list = QString::fromUtf8(m_excerpts.take(u"stations"_s));
        for (const StationImportLine &station :
             readStationImport(list, [](const QString &name) { return name; }).lines) {
            stations += station.name + u'@' + station.address + (station.isUsable ? u""_s : u"?"_s);
        }
        QCOMPARE(stations.join(u' '), u"Mühle@192.168.1.20 Pump; 2@pump2.example.org:49112 Spare@"_s);
        QStringList told;
        const ChannelNames names = readChannelNames(all[u"names"_s], told);
        QVERIFY(told.isEmpty() && writeChannelNames(names) == m_excerpts.take(u"names"_s));
        QCOMPARE(names.of(1).name + names.of(1).unit, u"Pump 1, energykWh"_s);
        QCOMPARE(lockHolderText(m_excerpts.take(u"lock"_s)),
                 u"eva on desk-3, KTRconfig (4711), since 2026-11-15 14:05:35"_s);
    }

    void tablesOfStationsToConfigure()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"t.csv"_s);
        Table table;
        QVERIFY(writeFile(path, m_excerpts.take(u"series"_s)) && readTable(path, table));
        const FieldNames names({TextTable()});
        QStringList keys;
        for (const QString &title : table.titles) {
            const NamedField *const field = names.find(title).field;
            keys += field == nullptr ? QString() : field->key;
        }
        QCOMPARE(keys.join(u' '), u"Stationskennung Ethernet IP PIN GSM-Nummer0"_s);
        QCOMPARE(table.rows[0].cells[3], u"+447700900112"_s);
        QCOMPARE(table.rows[1].cells[0], u"Weir; north"_s);

        QVERIFY(writeFile(path, m_excerpts.take(u"fleet"_s)));
        const FleetEntry entry = readFleetList(path, fixedEnvironment()).entries.value(0);
        QCOMPARE(entry.file, folder.filePath(u"KTR_Mill Lane.xml"_s));
        QCOMPARE(entry.address, u"10.0.0.1"_s);

        const FleetResult result{.station = u"Mill Lane"_s,
                                 .file = u"/stations/KTR_Mill Lane.xml"_s,
                                 .address = u"10.0.0.1"_s,
                                 .verdict = wordOf(TransmissionVerdict::BrokenOff),
                                 .commands = 30,
                                 .seconds = 12.5,
                                 .trouble = u"interrupted"_s,
                                 .step = 31,
                                 .versionBefore = u"2026-11-14 09:30:00"_s,
                                 .transmission = u"f1e2"_s,
                                 .checksum = u"ab"_s};
        QVERIFY(writeResults(path, {result}));
        QVERIFY2(isExcerptOf(m_excerpts.take(u"fleet-results"_s), contentOf(path)), contentOf(path));
        QList<FleetResult> results;
        QVERIFY(readResults(path, results));
        QVERIFY(results.size() == 1 && results[0].step == 31 && results[0].checksum == u"ab"_s);
    }

    /// A line that begins with "<" is a datagram of the module, one with ">" the program's.
    void theDialogueIsHeld()
    {
        struct Owner : StationOwner
        {
            void station_message(const QString &, const QString &text) override { texts += text; }
            void stationChanged(const QString &, StationChange) override {}
            void stationTrouble(const QString &, const QString &) override {}
            QStringList texts;
        } owner;
        ManualTimers time;
        QueuedCallbackTimers timers{time, [&time] { return time.now(); }};
        MLiteTimer registry{timers};
        RecordedLine line;
        cStation station(u"A"_s, line, registry, owner);
        station.setHostAddress(u"10.0.0.7"_s);
        QVERIFY(station.send(u"A*"_s));
        station.connectStation();
        static const QRegularExpression datagram(u"([<>]) ([^<>]*)"_s);
        const QString dialogue = QString::fromUtf8(m_excerpts.take(u"datagrams"_s));
        for (const QRegularExpressionMatch &match : datagram.globalMatch(dialogue)) {
            if (match.captured(1) == u'<') {
                station.DataArrival(match.captured(2).toUtf8());
                continue;
            }
            for (int wait = 0; line.sent.isEmpty() && wait < 250; ++wait) {
                time.advance(Milliseconds(1));
            }
            QVERIFY2(!line.sent.isEmpty(), qPrintable(match.captured(2)));
            QCOMPARE(line.sent.takeFirst(), match.captured(2).toUtf8());
        }
        QCOMPARE(line.sent, QByteArrayList());
        QCOMPARE(owner.texts, QStringList{u"+4917012345 --> M,Pump 1 fail"_s});
        QCOMPARE(station.csq(), u"18,0"_s);
    }

    void cleanupTestCase() { QCOMPARE(m_excerpts.keys(), QStringList()); } ///< each was looked at

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }

    QByteArray log() const
    {
        ConversationLog log;
        (void)log.open(path(u"log"_s));
        for (const QString &line : {u"<---- at+cmgr=1\r"_s, u"----> N,4739,PS Mill Lane,+447700900112\r\n"_s,
                                    u"<---- at+cmgs=\"+IP\"\rOK: N\x1A"_s, u"----> OK\r\n"_s}) {
            log.write(now, u"com "_s + line);
        }
        return contentOf(path(u"log"_s));
    }

    QByteArray archive() const
    {
        HistoryExport().append(path(u"archive.csv"_s),
                               historyCsv(decodeArchiveLine(u"9,2611151400,1,12.5,15,1,-3.25")));
        return contentOf(path(u"archive.csv"_s));
    }

    QByteArray exported(const StationTree &tree, ExportChoice::Kind kind) const
    {
        NodesExport file(tree, {kind, {u"Mühle"_s}, {}, {}, false});
        const QString name = path(u"export.csv"_s);
        return file.open(name) && file.step(1000) && file.isDone() ? contentOf(name) : QByteArray();
    }

    /// The tables and their columns.
    QByteArray record() const
    {
        (void)openRecord(path(u"record.sqlite"_s));
        QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"formats"_s);
        database.setDatabaseName(path(u"record.sqlite"_s));
        QByteArray result;
        if (database.open()) {
            QSqlQuery tables(
                u"SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE 'event\\_%'"
                " ESCAPE '\\' AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\' ORDER BY name"_s,
                database);
            while (tables.next()) {
                const QString table = tables.value(0).toString();
                result += table.toUtf8() + ':';
                QSqlQuery columns(u"SELECT name FROM pragma_table_info('%1')"_s.arg(table), database);
                while (columns.next()) {
                    result += ' ' + columns.value(0).toByteArray();
                }
                result += '\n';
            }
        }
        return result;
    }

    QByteArray registry() const
    {
        MRegistry::setRegistryFile(path(u"registry.json"_s));
        SettingsStore().SaveSetting(u"KTR_Config"_s, u"Window"_s, u"appearance"_s, u"dark"_s);
        return contentOf(path(u"registry.json"_s));
    }

    QTemporaryDir m_folder;
    QMap<QString, QByteArray> m_excerpts = excerpts();
};

QTEST_GUILESS_MAIN(FormatsTest)
#include "formats_test.moc"
