#include "opmode/keeping/checksum.h"
#include "opmode/operational_mode.h"
#include "platform/files.h"
#include "record/record_care.h"
#include "record/record_file.h"
#include "record/record_reader.h"
#include "record/record_writer.h"
#include "support/environment.h"
#include "support/manual_timers.h"
#include "support/recorded_line.h"
#include "support/test_files.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace ktr;
using namespace Qt::StringLiterals;
using test::contentOf;

namespace {

struct Ended
{
    bool wasKilled = false;
    int code = 0;
    QString struck; ///< the call that went wrong and its file; empty: there were not so many calls
    QStringList lines{};
    QString errors{};
};

/// What a start finds in a folder.
struct Found
{
    explicit Found(const QString &folder)
        : mode({test::fixedEnvironment(), timers, [] { return std::make_unique<test::RecordedLine>(); }},
               {u"Notifications"_s, u"History"_s, u"IP"_s})
    {
        QObject::connect(&mode, &OperationalMode::statusMessage, &mode,
                         [this](const QString &line) { told += line; });
        opened = mode.open(folder + u"/nodes.xml"_s, OperationalMode::Use::Keep);
    }
    QModelIndex alarm(const QString &number) const
    {
        return mode.tree().find(u"S/meldung/+49 --> M,Alarm %1 fail"_s.arg(number));
    }
    bool isRed(const QString &number) const
    {
        return alarm(number).data(StationTree::ColourRole).toInt() == StationTree::alarmColour;
    }

    test::ManualTimers timers;
    QStringList told;
    OperationalMode mode;
    Status opened = Status::done();
};

} // namespace

class SavesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = newFolder();
        m_outside = std::make_unique<QTemporaryDir>();
    }

    void aConfigurationIsTheOldOrTheNewOneWhateverFails_data() { kinds(); }
    void aConfigurationIsTheOldOrTheNewOneWhateverFails()
    {
        QFETCH(QString, kind);
        const QString source = m_outside->filePath(u"in.xml"_s);
        const QString saved = m_folder->filePath(u"out.xml"_s);
        QCOMPARE(run(QStringLiteral(KTRCLI), {u"new"_s, source}, {}, 0).code, 0);
        const QStringList words{u"convert"_s, source, saved};
        QCOMPARE(run(QStringLiteral(KTRCLI), words, {}, 0).code, 0);
        // A switch point that was never set starts at the minute of the save.
        const auto withoutTime = [&saved] {
            static const QRegularExpression written(u"(Datum|Zeit|Start)=\"[^\"]*\""_s);
            return QString::fromUtf8(contentOf(saved)).replace(written, QString());
        };
        const QString fresh = withoutTime();
        QVERIFY(!fresh.isEmpty());
        const QByteArray old = "an older one";
        int calls = 0;
        for (Ended ended{.struck = u"-"_s}; !ended.struck.isEmpty(); ++calls) {
            QVERIFY(replaceFile(saved, old));
            ended = run(QStringLiteral(KTRCLI), words, kind, calls + 1);
            const bool isNew = withoutTime() == fresh;
            QVERIFY2(isNew || contentOf(saved) == old, qPrintable(ended.struck));
            QCOMPARE(ended.wasKilled, kind == u"kill"_s && !ended.struck.isEmpty());
            if (!ended.wasKilled) {
                QVERIFY2(isNew == (ended.code == 0), qPrintable(ended.struck));
                QVERIFY2(isNew || ended.errors.contains(saved), qPrintable(ended.errors));
                QCOMPARE(allFiles(), QStringList{u"out.xml"_s});
            }
            QVERIFY(replaceFile(saved, old));
            QCOMPARE(allFiles(), QStringList{u"out.xml"_s}); // nothing of a program that was killed stays
        }
        QVERIFY(calls > 4);
    }

    void theOperationalModeKeepsWhatItSaysItKeptWhateverFails_data() { kinds(); }
    void theOperationalModeKeepsWhatItSaysItKeptWhateverFails()
    {
        QFETCH(QString, kind);
        begin();
        const QByteArray old = contentOf(m_folder->filePath(u"nodes.xml"_s));
        const QByteArray oldRecord = contentOf(m_folder->filePath(u"record.sqlite"_s));
        const Ended whole = run(QStringLiteral(KEPT_RUN), {m_folder->path()}, {}, 0);
        QCOMPARE(whole.code, 0);
        const QByteArray last = contentOf(m_folder->filePath(u"nodes.xml"_s));
        QStringList documents{QString::number(checksum(old)), QString::number(checksum(last))};
        documents += whole.lines.filter(u"document "_s).constFirst().mid(9);

        int call = firstCall(kind);
        for (Ended ended{.struck = u"-"_s}; !ended.struck.isEmpty(); call += callStep()) {
            m_folder = newFolder();
            QVERIFY(replaceFile(m_folder->filePath(u"nodes.xml"_s), old));
            QVERIFY(replaceFile(m_folder->filePath(u"record.sqlite"_s), oldRecord));
            ended = run(QStringLiteral(KEPT_RUN), {m_folder->path()}, kind, call);
            const QByteArray where =
                (u"call %1: "_s.arg(call) + ended.struck + u'\n' + ended.lines.join(u'\n')).toUtf8();
            QVERIFY2(ended.wasKilled == (kind == u"kill"_s && !ended.struck.isEmpty()),
                     where + ended.errors.toUtf8());
            const auto says = [&](const QString &what) { return !ended.lines.filter(what).isEmpty(); };
            const bool isWhole = says(u"closed"_s) && !says(u"lost"_s) && !says(u"refused"_s);
            QVERIFY2(isWhole || ended.wasKilled || says(u"told"_s), where);
            QVERIFY2(!says(u"Unknown error"_s), where);
            const QString content = QString::number(checksum(contentOf(m_folder->filePath(u"nodes.xml"_s))));
            // Where an acknowledgement was refused the documents are others; the start reads them, too.
            QVERIFY2(documents.contains(content) || says(u"refused"_s), where);
            for (int start = 0; start < 2; ++start) {
                Found found(m_folder->path());
                QVERIFY2(found.opened, where);
                // A list that was written without a record is another one to it, or the first.
                const bool isFollowed = says(u"lost"_s) && found.told.size() == 1 &&
                                        (found.told[0].contains(u"edited or replaced"_s) ||
                                         found.told[0].contains(u"no record"_s));
                QVERIFY2(found.told.isEmpty() || ((ended.wasKilled || isFollowed) && start == 0),
                         where + "\nat the start: " + found.told.join(u'\n').toUtf8());
                verifyKept(found, ended.lines, where);
                QVERIFY2(found.mode.close(), where);
            }
            QVERIFY2(allFiles() == QStringList({u"nodes.xml"_s, u"record.sqlite"_s}),
                     allFiles().join(u' ').toUtf8() + where);
        }
        QVERIFY(call > 30);
    }

    void aRecordHoldsWhatWasCommittedWhateverFails_data()
    {
        kinds();
        QTest::newRow("errors") << u"errors"_s; // the commit, and closing the connection after it
    }
    void aRecordHoldsWhatWasCommittedWhateverFails()
    {
        QFETCH(QString, kind);
        int call = firstCall(kind);
        for (Ended ended{.struck = u"-"_s}; !ended.struck.isEmpty(); call += callStep()) {
            m_folder = newFolder();
            const QString path = m_folder->filePath(u"record.db"_s);
            ended = run(QStringLiteral(RECORD_RUN), {path}, kind, call);
            verifyRecord(path, kind, ended, 0);
        }
        QVERIFY(call > 20);
    }

    /// The same while it turns out that the record is damaged, which it is where the writer goes.
    void aDamagedRecordIsMendedWhateverFails_data() { kinds(); }
    void aDamagedRecordIsMendedWhateverFails()
    {
        QFETCH(QString, kind);
        constexpr int old = 400;
        QString path = m_folder->filePath(u"record.db"_s);
        {
            test::ManualTimers timers;
            RecordWriter writer(path, openRecord(path), timers, [](const QString &) {});
            for (int i = 1; i <= old; ++i) {
                writer.add(EventRow{.id = i, .at = i, .text = u"a text of some length, number %1"_s.arg(i)});
            }
        }
        const QByteArray sound = contentOf(path).replace("open0", "open1");
        QByteArray damaged;
        const auto begin = [&] {
            m_folder = newFolder();
            path = m_folder->filePath(u"record.db"_s);
            QVERIFY(test::writeFile(path, sound) && test::writeFile(path + u'2', damaged));
        };
        constexpr qsizetype page = 4096;
        for (qsizetype at = sound.size() - page;; at -= page) {
            QVERIFY(at > page);
            damaged = sound;
            damaged.replace(at, page, QByteArray(page, '\xA5'));
            begin();
            const Ended whole = run(QStringLiteral(RECORD_RUN), {path, path + u'2'}, {}, 0);
            if (!whole.lines.filter(u"mended "_s).isEmpty()) {
                QVERIFY(whole.lines.contains(u"whole "_s));
                break;
            }
        }
        begin();
        QVERIFY(QFile::remove(path) && QFile::rename(path + u'2', path));
        const OpenedRecord mended = openRecord(path);
        QVERIFY(mended.status);
        const qsizetype saved = idsIn(path).size();
        QVERIFY(saved > old / 2);
        const int step = isThorough() ? 1 : 11;
        int call = 1;
        for (Ended ended{.struck = u"-"_s}; !ended.struck.isEmpty(); call += step) {
            begin();
            ended = run(QStringLiteral(RECORD_RUN), {path, path + u'2'}, kind, call);
            verifyRecord(path, kind, ended, saved);
        }
        QVERIFY(call > 40);
    }

    /// A power cut leaves any part of what was written last.
    void aLogThatIsCutAnywhereHoldsAllCommitsBeforeTheCut()
    {
        QString path = m_folder->filePath(u"record.db"_s);
        const Ended ended = run(QStringLiteral(RECORD_RUN), {path, u"kill"_s}, {}, 0);
        QVERIFY(ended.wasKilled);
        const QByteArray database = contentOf(path);
        const QByteArray log = contentOf(path + u"-wal"_s);
        constexpr qsizetype head = 32;
        constexpr qsizetype frame = 24 + 4096; // the number of pages stands in the last one of a commit
        const auto eventsWith = [&](const QByteArray &left) {
            m_folder = newFolder();
            path = m_folder->filePath(u"record.db"_s);
            const bool isThere = test::writeFile(path, database) && test::writeFile(path + u"-wal"_s, left);
            const OpenedRecord found = openRecord(path);
            return isThere && found.status && found.keptAside.isEmpty() ? idsIn(path) : QStringList{u"?"_s};
        };
        QStringList expected;
        qsizetype next = head;
        const auto isEndOfCommit = [&](qsizetype end) {
            return log.mid(end - frame + 4, 4) != QByteArray(4, '\0');
        };
        for (qsizetype cut = 0; cut <= log.size(); cut += 1999) {
            for (; next + frame <= cut; next += frame) {
                if (isEndOfCommit(next + frame)) {
                    expected = eventsWith(log.left(next + frame));
                }
            }
            const QByteArray where = QByteArray::number(cut) + " of " + QByteArray::number(log.size());
            for (const char end : {'\0', '\xA5'}) { // or what stood there before
                QVERIFY2(eventsWith(log.left(cut) + QByteArray(log.size() - cut, end)) == expected, where);
            }
            QVERIFY2(eventsWith(log.left(cut)) == expected, where);
        }
        QCOMPARE(eventsWith(log), QStringList({u"1"_s, u"2"_s, u"3"_s}));
    }

private:
    /// In memory where that can be: thousands of files are waited for until the disk has them.
    static std::unique_ptr<QTemporaryDir> newFolder()
    {
        const QString inMemory = u"/dev/shm"_s;
        const QString place = QFileInfo(inMemory).isWritable() ? inMemory : QDir::tempPath();
        return std::make_unique<QTemporaryDir>(place + u"/saves_test-"_s);
    }

    static QStringList kindNames() { return {u"error"_s, u"full"_s, u"short"_s, u"kill"_s}; }
    static void kinds()
    {
        QTest::addColumn<QString>("kind");
        const QStringList names = kindNames();
        for (const QString &kind : names) {
            QTest::newRow(qPrintable(kind)) << kind;
        }
    }

    /// Every call goes wrong in one of the kinds; KTR_THOROUGH=1 has it go wrong in each.
    static bool isThorough() { return qEnvironmentVariableIsSet("KTR_THOROUGH"); }
    static int callStep() { return isThorough() ? 1 : static_cast<int>(kindNames().size()); }
    static int firstCall(const QString &kind)
    {
        return isThorough() ? 1 : 1 + static_cast<int>(std::max<qsizetype>(kindNames().indexOf(kind), 0));
    }

    /// A list with a station, and a record of a run that never ended.
    void begin()
    {
        {
            Found found(m_folder->path());
            QCOMPARE(found.mode.addStation(u"S"_s, u"10.0.0.7"_s), u"S"_s);
            found.mode.setOnline(u"S"_s, true);
            QVERIFY(found.mode.close());
        }
        Found found(m_folder->path());
        found.mode.addStation(u"T"_s);
        found.mode.removeStation(u"T"_s);
    }

    Ended run(const QString &program, const QStringList &words, const QString &kind, int struckCall)
    {
        const QString report = m_outside->filePath(u"report"_s);
        QFile::remove(report);
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"LD_PRELOAD"_s, QStringLiteral(FAULT_SHIM));
        environment.insert(u"ASAN_OPTIONS"_s, u"verify_asan_link_order=0"_s);
        environment.insert(u"KTR_FAULT_FOLDER"_s, m_folder->path());
        environment.insert(u"KTR_FAULT_REPORT"_s, report);
        environment.insert(u"KTR_FAULT_KIND"_s, kind);
        environment.insert(u"KTR_FAULT_AT"_s, QString::number(struckCall));
        process.setProcessEnvironment(environment);
        process.start(program, words);
        Ended ended;
        if (!process.waitForFinished(60'000)) {
            ended.errors = process.errorString();
            ended.code = -1;
            process.kill();
            process.waitForFinished();
            return ended;
        }
        ended.wasKilled = process.exitStatus() == QProcess::CrashExit;
        ended.code = process.exitCode();
        ended.lines = QString::fromUtf8(process.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
        ended.errors = QString::fromUtf8(process.readAllStandardError());
        ended.struck = QString::fromUtf8(contentOf(report)).trimmed();
        return ended;
    }

    /// The numbers of all events.
    static QStringList idsIn(const QString &path)
    {
        QStringList ids;
        (void)RecordReader(path).eventsAfter(0, [&](const EventRow &row) {
            ids += QString::number(row.id);
            return true;
        });
        return ids;
    }

    /// After a run that added three events to `old` ones and more.
    static void verifyRecord(const QString &path, const QString &kind, const Ended &ended, qsizetype old)
    {
        const QByteArray where = (ended.struck + u'\n' + ended.lines.join(u'\n')).toUtf8();
        QCOMPARE(ended.wasKilled, kind == u"kill"_s && !ended.struck.isEmpty());
        const bool isWhole = ended.lines.contains(u"whole "_s);
        QVERIFY2(isWhole || ended.wasKilled || !ended.lines.filter(u"told "_s).isEmpty(), where);
        QVERIFY2(isWhole || ended.wasKilled || ended.code != 0 || kind == u"full"_s, where); // it goes on
        const OpenedRecord found = openRecord(path);
        QVERIFY2(found.status, found.status.message().toUtf8() + where);
        QVERIFY2(found.keptAside.isEmpty() || old > 0, where);
        const QStringList ids = idsIn(path);
        for (const QString &said : ended.lines.filter(u"kept "_s)) {
            QVERIFY2(ids.contains(said.mid(5)), said.toUtf8() + where);
        }
        QVERIFY2(ids.size() >= old + (isWhole ? 3 : 0), where);
        QVERIFY2(checkRecord(path).faults.isEmpty(), where);
    }

    static void verifyKept(const Found &found, const QStringList &lines, const QByteArray &where)
    {
        for (const QString &line : lines) {
            const QString number = line.section(u' ', 1);
            if (line.startsWith(u"kept "_s)) {
                QVERIFY2(found.alarm(number).isValid(), line.toUtf8() + " at " + where);
            } else if (line.startsWith(u"acknowledged "_s)) {
                QVERIFY2(found.alarm(number).isValid() && !found.isRed(number),
                         line.toUtf8() + " at " + where);
            } else if (line.startsWith(u"refused "_s) && lines.last().startsWith(u"closed"_s)) {
                QVERIFY2(found.isRed(number), line.toUtf8() + " at " + where);
            }
        }
    }

    QStringList allFiles() const
    {
        return QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden | QDir::System);
    }
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QTemporaryDir> m_outside;
};

QTEST_GUILESS_MAIN(SavesTest)
#include "saves_test.moc"
