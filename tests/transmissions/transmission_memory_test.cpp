#include "config/configuration_file.h"
#include "config/fields.h"
#include "link/conversation_log.h"
#include "record/record_address.h"
#include "record/record_care.h"
#include "support/environment.h"
#include "support/private_postgres.h"
#include "support/test_files.h"
#include "transmissions/held_configuration.h"
#include "transmissions/transmission_look.h"
#include "transmissions/transmission_memory.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <thread>

using namespace ktr;
using namespace Qt::StringLiterals;

namespace {

Configuration configuration(const QString &version, const QString &station = u"Plant 1"_s)
{
    Configuration made;
    makeNew(made, test::fixedEnvironment());
    made.versionText = version;
    made.gsm.stationId = station;
    made.gsm.pin = u"4711"_s;
    made.limitValues[3].limit = u"7"_s;
    return made;
}

} // namespace

/// What was transmitted, in a file and in a server's database.
class TransmissionMemoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data()
    {
        QTest::addColumn<bool>("isOnServer");
        QTest::addRow("file") << false;
        if (test::PrivatePostgres::canBe()) {
            QTest::addRow("server") << true;
        }
    }

    void initTestCase()
    {
        if (test::PrivatePostgres::canBe()) {
            const QString trouble = m_server.start();
            QVERIFY2(trouble.isEmpty(), qPrintable(trouble));
        }
    }

    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_count = 0;
        QFETCH_GLOBAL(bool, isOnServer);
        m_place = isOnServer ? m_server.makeDatabase(u"memory%1"_s.arg(++m_databases))
                             : m_folder->filePath(u"data/transmissions.sqlite"_s);
        if (isOnServer) {
            QVERIFY(initRecord(m_place));
        }
    }

    void aTransmissionComesBackAsItWasWritten()
    {
        const QString odd = u"'%_\\ \" ÄÖÜ €\n?$1x"_s;
        RememberedTransmission given = made(configuration(odd, odd), TransmissionVerdict::NotEnded);
        given.row.operatorName = odd;
        given.row.file = odd;
        given.row.versionBefore = QString(u""_s); // told, and empty
        given.row.resumeStep = 0;
        given.steps = {{0, u"V,§"_s, StepOutcome::Confirmed, 1, 5}, {1, odd, StepOutcome::Sent, 1, 6}};
        TransmissionMemory memory(m_place);
        memory.keep(given);
        QVERIFY(memory.flush());
        given.row.verdict = TransmissionVerdict::InPart;
        given.row.ended = given.row.begun + 1;
        given.row.lastStep = 2;
        given.row.resumeStep.reset();
        given.steps[1] = {1, odd, StepOutcome::Unconfirmed, 3, 7};
        given.steps += {2, u"G,1"_s, StepOutcome::Refused, 0, 8};
        memory.keep(given);
        QVERIFY(memory.flush());

        RecordDatabase database;
        QVERIFY(openForTransmissions(database, m_place));
        TransmissionTable table(database);
        QList<TransmissionRow> listed;
        QVERIFY(table.find({}, [&](const TransmissionRow &row) { listed += row; }));
        QCOMPARE(listed.size(), 1);
        std::optional<TransmissionRow> row;
        QList<TransmissionStepRow> steps;
        QVERIFY(table.read(listed.first().id, row, steps));
        given.row.id = listed.first().id;
        const QString sent = given.row.configuration;
        if (isServerAddress(m_place)) { // others read it
            QVERIFY(!row->configuration.contains(u"4711"_s));
            given.row.configuration = withoutPinElement(sent);
        } else {
            QVERIFY(sent.contains(u"<PIN>4711</PIN>"_s));
            QVERIFY(!test::othersMayRead(m_place));
        }
        QVERIFY(row == given.row);
        QVERIFY(steps == given.steps);
        given.row.configuration.clear();
        QVERIFY(listed.first() == given.row);
        QVERIFY(table.read(given.row.id + 1, row, steps) && !row && steps.isEmpty());
    }

    void theListIsChosenFromAndThinnedOut()
    {
        using Verdict = TransmissionVerdict;
        // A: two whole ones and a later failure; B: never whole; C: one, whole and old.
        for (const auto &[station, begun, verdict] :
             {std::tuple{u"A"_s, 1000, Verdict::Whole}, std::tuple{u"A"_s, 2000, Verdict::Whole},
              std::tuple{u"A"_s, 3000, Verdict::BrokenOff}, std::tuple{u"B"_s, 2500, Verdict::Unknown},
              std::tuple{u"C"_s, 500, Verdict::Whole}, std::tuple{u"A"_s, 9000, Verdict::NotEnded}}) {
            write(configuration(station, station), verdict, begun);
        }
        QCOMPARE(begun({}), (QList<qint64>{9000, 3000, 2500, 2000, 1000, 500}));
        QCOMPARE(begun({.station = u"A"_s}), (QList<qint64>{9000, 3000, 2000, 1000}));
        QCOMPARE(begun({.station = u"A"_s, .since = 2000, .limit = 2}), (QList<qint64>{9000, 3000}));
        RecordDatabase database;
        QVERIFY(openForTransmissions(database, m_place));
        qint64 removed = 0;
        QVERIFY(TransmissionTable(database).thin(3001, removed));
        QCOMPARE(removed, 3);
        QCOMPARE(begun({}), (QList<qint64>{9000, 2000, 500}));
        QSqlQuery *steps = database.carriedOut(
            u"SELECT count(*) FROM transmission_step WHERE transmission NOT IN (SELECT id FROM transmission)"_s,
            {});
        QVERIFY(steps != nullptr && steps->next());
        QCOMPARE(steps->value(0).toInt(), 0);
    }

    void aVersionTextProvesWhatOneWholeTransmissionLeft()
    {
        using Proof = HeldConfiguration::Proof;
        const Configuration first = configuration(u"2026-11-01 10:00:00"_s);
        QCOMPARE(held(first.versionText).proof, Proof::None);
        write(first, TransmissionVerdict::Unknown);
        QCOMPARE(held(first.versionText).proof, Proof::InPart);
        const qint64 whole = write(first, TransmissionVerdict::Whole);
        write(first, TransmissionVerdict::BrokenOff); // the same commands once more do no harm
        const HeldConfiguration found = held(first.versionText);
        QCOMPARE(found.proof, Proof::Whole);
        QCOMPARE(found.transmission.id, whole);
        QVERIFY(found.configuration.limitValues[3].limit == u"7"_s);
        QCOMPARE(found.configuration.gsm.pin, isServerAddress(m_place) ? QString() : u"4711"_s);
        QCOMPARE(held(first.versionText, u"Plant 2"_s).proof, Proof::None);
        QCOMPARE(held(first.versionText, {}).stations, QStringList{u"Plant 1"_s});

        // One that began to change the module and did not close it leaves the text and not the content.
        const Configuration second = configuration(u"2026-11-02 10:00:00"_s);
        RememberedTransmission unheard = made(second, TransmissionVerdict::BrokenOff);
        unheard.row.lastStep = 0;
        write(unheard);
        QCOMPARE(held(first.versionText).proof, Proof::Whole);
        RememberedTransmission elsewhere =
            made(configuration(u"x"_s, u"Plant 2"_s), TransmissionVerdict::BrokenOff);
        elsewhere.row.versionBefore = u"another"_s;
        write(elsewhere);
        QCOMPARE(held(first.versionText).proof, Proof::Whole);
        elsewhere.row.uid = u"renamed"_s;
        elsewhere.row.versionBefore = first.versionText; // it was this module, under another identifier
        const qint64 disturbing = write(elsewhere);
        QCOMPARE(held(first.versionText).proof, Proof::InPart);
        QCOMPARE(held(first.versionText).disturbedBy, disturbing);
        write(first, TransmissionVerdict::Whole);
        QCOMPARE(held(first.versionText).proof, Proof::Whole);

        // A resumed one alone proves nothing, nor do two configurations of one stamp.
        RememberedTransmission resumed = made(second, TransmissionVerdict::Whole);
        resumed.row.firstStep = 40;
        write(resumed);
        RememberedTransmission part = made(second, TransmissionVerdict::Whole);
        part.row.basedOn = TransmissionRow::onNothingKnown;
        write(part);
        RememberedTransmission open = made(second, TransmissionVerdict::Whole);
        open.row.lastStep = 40; // without the closing command
        write(open);
        QCOMPARE(held(second.versionText).proof, Proof::InPart);
        Configuration other = first;
        other.limitValues[3].limit = u"9"_s;
        write(other, TransmissionVerdict::BrokenOff);
        QCOMPARE(held(first.versionText).proof, Proof::Ambiguous);

        // The commands tell more than the file.
        const Configuration third = configuration(u"2026-11-03 10:00:00"_s);
        RememberedTransmission typed = made(third, TransmissionVerdict::Whole);
        typed.steps += {2, u"g,1,1,0,30"_s, StepOutcome::Sent, 1, 1};
        write(typed);
        QCOMPARE(held(third.versionText).commands.value(2), u"G,1,1,0,30"_s);
        typed.row.uid += u" again"_s;
        typed.steps.last().command = u"G,1,1,0,"_s;
        write(typed);
        QCOMPARE(held(third.versionText).proof, Proof::Ambiguous);
    }

    void whatOthersOfASeriesWereGivenSpoilsNothing()
    {
        using Proof = HeldConfiguration::Proof;
        const QString version = u"2026-11-01 10:00:00"_s;
        const auto send = [this](const QString &stamp, const QString &station, const QString &line,
                                 TransmissionVerdict verdict, const std::optional<QString> &before = {}) {
            RememberedTransmission given = made(configuration(stamp, station), verdict);
            given.row.line = line;
            given.row.versionBefore = before;
            return write(given);
        };
        send(version, u"Plant 1"_s, u"10.0.0.1"_s, TransmissionVerdict::Whole);
        send(version, u"Plant 2"_s, u"10.0.0.2"_s, TransmissionVerdict::Whole);
        send(u"new"_s, u"Plant 2"_s, u"10.0.0.2"_s, TransmissionVerdict::BrokenOff, version);
        QCOMPARE(held(version).proof, Proof::Whole);
        QCOMPARE(held(version, u"Plant 2"_s).proof, Proof::InPart);
        QVERIFY(held(version, u"Plant 2"_s).isKnown());
        // At an address that is not known as another station's, and at its own, it may be this module.
        for (const QString &line : {u"10.0.0.3"_s, u"10.0.0.1"_s}) {
            const qint64 spoiling =
                send(u"new"_s, u"Plant 2"_s, line, TransmissionVerdict::BrokenOff, version);
            QCOMPARE(held(version).disturbedBy, spoiling);
            send(version, u"Plant 1"_s, u"10.0.0.1"_s, TransmissionVerdict::Whole);
        }
        // After a kill not all may be noted.
        RememberedTransmission killed = made(configuration(u"new"_s), TransmissionVerdict::NotEnded);
        killed.row.lastStep = 0;
        write(killed);
        QVERIFY(held(version).proof == Proof::InPart && !held(version).isKnown()); // over a serial line
    }

    void ofWhatABrokenOneMayHaveLeftAllIsSent()
    {
        const QString version = u"2026-11-01 10:00:00"_s;
        const CommandContext context{true, QLocale::c(), QDateTime::currentDateTimeUtc()};
        RememberedTransmission whole = made(configuration(version), TransmissionVerdict::Whole);
        Configuration first; // as it comes back
        QVERIFY(configurationOf(whole.row, first, test::fixedEnvironment()));
        whole.row.line = u"10.0.0.1"_s;
        const StepCommands given = commandsOf(first, context);
        whole.steps.clear();
        for (int step = steps::first; step <= steps::last; ++step) {
            if (const auto &command = given[static_cast<std::size_t>(step)]) {
                whole.steps += {step, logText(*command), StepOutcome::Confirmed, 1, 1};
            }
        }
        write(whole);
        const Configuration same = held(version).configuration;
        const int none = changesSince(held(version), same, context).commands;
        Configuration other = same;
        other.versionText = u"new"_s;
        other.limitValues[3].limit = u"9"_s;
        RememberedTransmission broken = made(other, TransmissionVerdict::BrokenOff);
        broken.row.line = u"10.0.0.1"_s;
        broken.row.versionBefore = version;
        write(broken);
        QVERIFY(held(version).isKnown());
        const StepSet all = changesSince(held(version), same, context).leftOut;
        QCOMPARE(changesSince(held(version), same, context).commands, none + 1);
        QCOMPARE(changesSince(held(version), other, context).leftOut, all);
        // A command that was sent in between does not stand in its configuration.
        const int another = all.test(2) ? 2 : 3;
        broken.row.uid += u" again"_s;
        broken.steps += {another, u"G,typed"_s, StepOutcome::Unconfirmed, 1, 1};
        write(broken);
        QVERIFY(all.test(static_cast<std::size_t>(another)));
        QCOMPARE(changesSince(held(version), same, context).commands, none + 2);
    }

    void aSingleCommandSpoilsWhatItMayHaveChanged()
    {
        using Proof = HeldConfiguration::Proof;
        const QString version = u"2026-11-01 10:00:00"_s;
        write(configuration(version), TransmissionVerdict::Whole);
        RememberedTransmission elsewhere =
            made(configuration(u"x"_s, u"Plant 2"_s), TransmissionVerdict::Whole);
        elsewhere.row.line = u"10.0.0.7"_s;
        write(elsewhere);
        const auto send = [this](const QString &line, const std::optional<QString> &told) {
            RememberedTransmission single = made(configuration({}, {}), TransmissionVerdict::Alone);
            single.row.line = line;
            single.row.versionBefore = told;
            single.row.lastStep = 1;
            single.row.configuration.clear();
            return write(single);
        };
        send(u"10.0.0.7"_s, {}); // that of the other station, as is known
        send(u"/dev/ttyS0"_s, u"y"_s);
        QCOMPARE(held(version).proof, Proof::Whole);
        const qint64 spoiling = send(u"10.0.0.8"_s, {}); // nobody knows whose that is
        QCOMPARE(held(version).proof, Proof::InPart);
        QCOMPARE(held(version).disturbedBy, spoiling);
        write(configuration(version), TransmissionVerdict::Whole);
        QCOMPARE(held(version).proof, Proof::Whole);
        send(u"10.0.0.7"_s, version);
        QCOMPARE(held(version).proof, Proof::InPart);

        // What is forgotten proves nothing later.
        RecordDatabase database;
        QVERIFY(openForTransmissions(database, m_place));
        qint64 removed = 0;
        QVERIFY(TransmissionTable(database).thin(std::numeric_limits<qint64>::max(), removed));
        QCOMPARE(begun({}).size(), 2); // the newest whole one of each station
        QCOMPARE(held(version).proof, Proof::InPart);
    }

    void onlyWhatIsKnownNotToFitIsAskedAbout()
    {
        const QString older = u"2026-11-01 10:00:00"_s;
        const QString newer = u"2026-11-02 10:00:00"_s;
        const auto misfits = [this](const Configuration &meant, const std::optional<QString> &told,
                                    const QString &line = u"COM1"_s) {
            TransmissionLook look = lookAt(meant, {}, {});
            look.moduleVersion = told;
            look.line = line;
            look.isAddress = line.contains(u'.');
            RecordDatabase database;
            const Status opened = openForTransmissions(database, m_place);
            TransmissionTable table(database);
            return opened ? withMemory(look, table).misfits().size() : -1;
        };
        const Configuration meant = configuration(older);
        QCOMPARE(misfits(meant, {}), 0); // nothing is known
        QCOMPARE(misfits(meant, older), 0);
        QCOMPARE(misfits(meant, u"A1"_s), 0); // no stamp: not known to be newer
        QCOMPARE(misfits(meant, newer), 1);   // the module is ahead of the file
        write(configuration(newer), TransmissionVerdict::BrokenOff);
        QCOMPARE(misfits(meant, {}), 0); // never reached its closing command
        write(configuration(newer), TransmissionVerdict::InPart);
        QCOMPARE(misfits(meant, {}), 1);
        QCOMPARE(misfits(meant, newer), 2);
        QCOMPARE(misfits(configuration(newer), older), 0);
        QCOMPARE(misfits(configuration(u"2026-11-03 10:00:00"_s, u"Plant 2"_s), newer), 1); // another station
        RememberedTransmission far = made(configuration(older, u"Plant 3"_s), TransmissionVerdict::Whole);
        far.row.line = u"10.0.0.7"_s;
        write(far);
        QCOMPARE(misfits(configuration(newer), {}, u"10.0.0.7"_s), 1);
        QCOMPARE(misfits(configuration(newer, u"Plant 3"_s), {}, u"10.0.0.7"_s), 0);
    }

    void aLookTellsWhatIsOverwritten()
    {
        Configuration meant = configuration(u"1"_s);
        meant.sendValues.front().enabled = false;
        TransmissionLook look = lookAt(meant, {}, {});
        QCOMPARE(look.commands, 75);
        QCOMPARE(look.overwritten, (QStringList{u"15 BStZ DOut 1"_s, u"16 BStZ DOut 2"_s}));
        meant.sendValues.front().enabled = true;
        meant.digitalInputs[1].value = u"9"_s;
        for (const std::size_t i : {0U, 2U, 3U}) {
            meant.digitalInputs[i].value.clear();
        }
        look = lookAt(meant, {}, {});
        QCOMPARE(look.commands, 79);
        QCOMPARE(look.overwritten.size(), 7);
        QCOMPARE(look.overwritten.first(), u"2 DigIn 2"_s);
        QVERIFY(look.summary().contains(u"(module: not known)"_s));
    }

    void whatCannotBeWrittenWaitsAndIsTold()
    {
        if (isServerAddress(m_place)) {
            m_server.sql(u"memory%1"_s.arg(m_databases), u"ALTER SCHEMA ktrconfig RENAME TO gone"_s);
        } else { // a file where the folder is to be
            QVERIFY(test::writeFile(m_folder->filePath(u"data"_s), "x"));
        }
        TransmissionMemory memory(m_place);
        QStringList troubles;
        connect(&memory, &TransmissionMemory::troubled, &memory,
                [&](const QString &why) { troubles += why; });
        RememberedTransmission given = made(configuration(u"1"_s), TransmissionVerdict::NotEnded);
        memory.keep(given);
        QTRY_COMPARE(troubles.size(), 1);
        QVERIFY2(troubles.first().startsWith(m_place), qPrintable(troubles.first()));
        given.row.verdict = TransmissionVerdict::Whole;
        memory.keep(given);
        QVERIFY(!memory.flush());
        QCOMPARE(troubles.size(), 1); // once
        if (isServerAddress(m_place)) {
            m_server.sql(u"memory%1"_s.arg(m_databases), u"ALTER SCHEMA gone RENAME TO ktrconfig"_s);
        } else {
            QVERIFY(QFile::remove(m_folder->filePath(u"data"_s)));
        }
        QVERIFY(memory.flush());
        QCOMPARE(troubles.last(), QString());
        QCOMPARE(held(u"1"_s).proof, HeldConfiguration::Proof::Whole);
    }

    void thoseThatBeginAtTheSameTimeAllWrite()
    {
        constexpr int programs = 6;
        std::vector<RememberedTransmission> given;
        for (int i = 0; i < programs; ++i) {
            given.push_back(made(configuration(QString::number(i)), TransmissionVerdict::Whole));
        }
        {
            std::vector<std::jthread> threads;
            for (const RememberedTransmission &each : given) {
                threads.emplace_back([this, &each] {
                    TransmissionMemory memory(m_place);
                    memory.keep(each);
                });
            }
        }
        QCOMPARE(begun({}).size(), programs);
    }

    void aDamagedFileIsReplacedByWhatCanBeReadOfIt()
    {
        if (isServerAddress(m_place)) {
            QSKIP("A server mends its own tables");
        }
        write(configuration(u"1"_s), TransmissionVerdict::Whole);
        QVERIFY(test::writeFile(m_place, "no database at all, and yet some bytes of it"));
        write(configuration(u"2"_s), TransmissionVerdict::Whole);
        QCOMPARE(begun({}).size(), 1);
        QCOMPARE(QDir(m_folder->filePath(u"data"_s)).entryList({u"transmissions (1).sqlite"_s}).size(), 1);
    }

    /// Of several that run at the same time, only what is new of each is written.
    void whatIsWrittenOfATransmissionIsNotWrittenAgainBesideOthers()
    {
        TransmissionMemory memory(m_place);
        std::vector<RememberedTransmission> running{
            made(configuration(u"1"_s), TransmissionVerdict::NotEnded),
            made(configuration(u"2"_s), TransmissionVerdict::NotEnded)};
        const auto keepAll = [&] {
            for (const RememberedTransmission &each : running) {
                memory.keep(each);
            }
            return bool(memory.flush());
        };
        QVERIFY(keepAll());
        const QString seen = u"seen by another"_s;
        {
            RecordDatabase database;
            QVERIFY(openForTransmissions(database, m_place));
            QVERIFY(database.carriedOut(u"UPDATE transmission_step SET command = ?"_s, {seen}) != nullptr);
        }
        for (RememberedTransmission &each : running) {
            each.steps += {1, u"N,1"_s, StepOutcome::Sent, 1, each.row.begun};
        }
        QVERIFY(keepAll());
        RecordDatabase database;
        QVERIFY(openForTransmissions(database, m_place));
        for (qint64 id = 1; id <= 2; ++id) {
            std::optional<TransmissionRow> row;
            QList<TransmissionStepRow> steps;
            QVERIFY(TransmissionTable(database).read(id, row, steps) && steps.size() == 2);
            QCOMPARE(steps[0].command, seen);
            QCOMPARE(steps[1].command, u"N,1"_s);
        }
    }

    void whatAServerCannotBeGivenWaitsInAFileForIt()
    {
        if (!isServerAddress(m_place)) {
            QSKIP("A file is there, or nothing is");
        }
        const QString waiting = m_folder->filePath(u"data/waiting.sqlite"_s);
        QStringList told;
        const auto kept = [&](const QString &place) {
            TransmissionMemory memory(place);
            memory.setWaitingFile(waiting);
            connect(&memory, &TransmissionMemory::postponed, &memory,
                    [&told](const QString &file) { told += file; });
            connect(&memory, &TransmissionMemory::handedOver, &memory,
                    [&told](int count) { told += QString::number(count); });
            memory.keep(made(configuration(QString::number(m_count)), TransmissionVerdict::Whole));
            return bool(memory.flush());
        };
        QVERIFY(!kept(u"postgresql://127.0.0.1:1/nowhere"_s));
        QVERIFY(!kept(u"postgresql://127.0.0.1:1/nowhere"_s));
        QCOMPARE(told, QStringList(2, waiting));
        QVERIFY(kept(m_place));
        QCOMPARE(told.last(), u"2"_s);
        QVERIFY(!QFile::exists(waiting));
        QCOMPARE(begun({}).size(), 3);
        QVERIFY(kept(m_place) && told.size() == 3);
    }

    /// A list does not read the configurations, so it is not told of damage in them; nothing of it may
    /// vanish.
    void whatAListShowedIsThereAfterMending()
    {
        if (isServerAddress(m_place)) {
            QSKIP("A server mends its own tables");
        }
        const QString pad(20'000, u'~'); // takes several pages
        for (const QString &version : {u"1"_s, u"2"_s}) {
            RememberedTransmission large = made(configuration(version), TransmissionVerdict::Whole);
            large.row.configuration += pad;
            write(large);
        }
        constexpr int page = 4096;
        QByteArray content = test::contentOf(m_place);
        int damaged = 0;
        for (qsizetype place = page; place < content.size(); place += page) {
            const QByteArrayView there(content.constData() + place, page);
            if (there.contains("~~~~") && !there.contains("technician")) {
                content.replace(place, page, QByteArray(page, '\x5a'));
                ++damaged;
            }
        }
        QVERIFY(damaged > 0);
        QVERIFY(test::writeFile(m_place, content));
        const QList<qint64> listed = begun({});
        QCOMPARE(listed.size(), 2);
        QCOMPARE(held(u"2"_s).proof, HeldConfiguration::Proof::Failed);
        RecordDatabase database;
        QStringList told;
        QVERIFY(openForTransmissions(database, m_place));
        QVERIFY(mendForTransmissions(database, m_place, told));
        QVERIFY(!told.isEmpty());
        QCOMPARE(begun({}), listed);
        QVERIFY(held(u"2"_s).proof != HeldConfiguration::Proof::Whole); // what it held is not known any more
    }

    /// The file can be opened, and only who reads finds that a part of it is gone.
    void whatCanBeReadOfADamagedFileIsBroughtOverAndTold_data()
    {
        QTest::addColumn<bool>("isReadFirst");
        QTest::newRow("reading") << true;
        QTest::newRow("writing") << false;
    }
    void whatCanBeReadOfADamagedFileIsBroughtOverAndTold()
    {
        if (isServerAddress(m_place)) {
            QSKIP("A server mends its own tables");
        }
        QFETCH(bool, isReadFirst);
        constexpr int written = 60;
        for (int i = 0; i < written; ++i) {
            write(configuration(QString::number(i)), TransmissionVerdict::Whole);
        }
        {
            constexpr qint64 page = 4'096;
            QFile file(m_place);
            QVERIFY(file.open(QIODevice::ReadWrite) && file.size() > 40 * page);
            for (qint64 place = file.size() / page / 2; place < file.size() / page; ++place) {
                QVERIFY(file.seek(place * page) && file.write(QByteArray(page, '\x5a')) == page);
            }
        }
        TransmissionMemory memory(m_place);
        QStringList told;
        connect(&memory, &TransmissionMemory::mended, &memory,
                [&told](const QStringList &lines) { told += lines; });
        int found = 0;
        const auto ask = [&] {
            found = -1;
            memory.ask<int>(
                &memory,
                [](TransmissionTable &table) {
                    int rows = 0;
                    const Status read = table.find(
                        {}, [&rows](const TransmissionRow &) { ++rows; }, true);
                    return read ? rows : -2;
                },
                [](const Status &) { return -2; }, [&found](int rows) { found = rows; });
            QTRY_VERIFY(found != -1);
        };
        if (isReadFirst) {
            ask();
        }
        memory.keep(made(configuration(u"new"_s), TransmissionVerdict::Whole));
        QVERIFY(memory.flush());
        ask();
        QVERIFY2(found > 2 && found < written, qPrintable(QString::number(found)));
        QVERIFY2(!told.isEmpty() && told.first().contains(u"transmissions (1).sqlite"_s),
                 qPrintable(told.join(u'\n')));
        QVERIFY(QFile::exists(m_folder->filePath(u"data/transmissions (1).sqlite"_s)));
    }

    /// As in a service, whose surroundings tell no name.
    void aTransmissionOfAnUnknownUserIsRemembered()
    {
        RememberedTransmission given = made(configuration(u"new"_s), TransmissionVerdict::Whole);
        given.row.user = QString();
        QVERIFY(write(given) > 0);
    }

private:
    RememberedTransmission made(const Configuration &configuration, TransmissionVerdict verdict)
    {
        RememberedTransmission given;
        given.row = {.uid = QString::number(++m_count),
                     .begun = 1'700'000'000'000 + 60'000 * m_count,
                     .user = u"technician"_s,
                     .line = u"/dev/ttyS0"_s,
                     .station = configuration.gsm.stationId,
                     .versionSent = configuration.versionText,
                     .program = programVersion(),
                     .verdict = verdict,
                     .lastStep = verdict == TransmissionVerdict::BrokenOff ? 30 : 78,
                     .hasPin = true,
                     .configuration =
                         QString::fromUtf8(writeConfiguration(configuration, test::fixedEnvironment()))};
        given.steps = {{0, u"V,§"_s, StepOutcome::Sent, 1, given.row.begun}};
        return given;
    }

    /// Gives its number.
    qint64 write(const RememberedTransmission &given)
    {
        TransmissionMemory memory(m_place);
        qint64 number = 0;
        connect(&memory, &TransmissionMemory::kept, &memory,
                [&number](const QString &, qint64 id) { number = id; });
        memory.keep(given);
        return memory.flush() ? number : -1;
    }
    qint64 write(const Configuration &configuration, TransmissionVerdict verdict, qint64 begun = 0)
    {
        RememberedTransmission given = made(configuration, verdict);
        given.row.begun = begun != 0 ? begun : given.row.begun;
        return write(given);
    }

    HeldConfiguration held(const QString &version, const QString &station = u"Plant 1"_s) const
    {
        RecordDatabase database;
        if (const Status opened = openForTransmissions(database, m_place); !opened) {
            return {.proof = HeldConfiguration::Proof::Failed, .status = opened};
        }
        TransmissionTable table(database);
        return whatHolds(table, station, version, test::fixedEnvironment());
    }

    QList<qint64> begun(const TransmissionFilter &filter) const
    {
        QList<qint64> times;
        RecordDatabase database;
        if (openForTransmissions(database, m_place)) {
            (void)TransmissionTable(database).find(
                filter, [&times](const TransmissionRow &row) { times += row.begun; });
        }
        return times;
    }

    test::PrivatePostgres m_server;
    int m_databases = 0;
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_place;
    int m_count = 0;
};

QTEST_GUILESS_MAIN(TransmissionMemoryTest)
#include "transmission_memory_test.moc"
