#include "platform/files.h"
#include "platform/serial_device.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace ktr;

namespace {

constexpr qsizetype replacementSize = 1 << 20;

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArrayLiteral("(none)");
}

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

} // namespace

class FilesTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    QString path(const QString &name) const { return m_folder.filePath(name); }

private Q_SLOTS:
    void aNewFileIsItsOwnersAndAnOldOneKeepsItsPermissions()
    {
        const auto ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
        const auto visible = ownerOnly | QFileDevice::ReadGroup | QFileDevice::ReadOther;
        const auto relevant = visible | QFileDevice::WriteGroup | QFileDevice::WriteOther;
        QVERIFY(replaceFile(path(QStringLiteral("a")), "one"));
        QCOMPARE(QFile::permissions(path(QStringLiteral("a"))) & relevant, ownerOnly);
        QFile::setPermissions(path(QStringLiteral("a")), visible);
        QVERIFY(replaceFile(path(QStringLiteral("a")), "two"));
        QCOMPARE(QFile::permissions(path(QStringLiteral("a"))) & relevant, visible);
        QCOMPARE(contentOf(path(QStringLiteral("a"))), "two");
        QCOMPARE(QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden),
                 QStringList{QStringLiteral("a")});
    }

    void aLinkStaysALinkAndItsTargetIsReplaced()
    {
        write(path(QStringLiteral("target")), "old");
        QVERIFY(QFile::link(path(QStringLiteral("target")), path(QStringLiteral("link"))));
        QVERIFY(replaceFile(path(QStringLiteral("link")), "new"));
        QVERIFY(QFileInfo(path(QStringLiteral("link"))).isSymLink());
        QCOMPARE(contentOf(path(QStringLiteral("target"))), "new");
    }

    void aFailureLeavesTheOldFileAndNoRemains_data()
    {
        QTest::addColumn<QString>("limits");
        // A file size limit stands for a full disk: the write fails in the middle.
        QTest::newRow("full disk") << "trap '' XFSZ; ulimit -f 8;";
        QTest::newRow("no descriptors") << "ulimit -n 3;";
    }
    void aFailureLeavesTheOldFileAndNoRemains()
    {
        QFETCH(QString, limits);
        QTemporaryDir folder;
        const QString file = folder.filePath(QStringLiteral("file"));
        write(file, "the old content");
        QProcess process;
        process.start(QStringLiteral("sh"),
                      {QStringLiteral("-c"), limits + QStringLiteral(" exec \"$0\" --replace \"$1\""),
                       QCoreApplication::applicationFilePath(), file});
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QVERIFY(process.exitCode() != 0);
        QCOMPARE(contentOf(file), "the old content");
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden),
                 QStringList{QStringLiteral("file")});
    }

    void aKillInTheMiddleLeavesAWholeFile()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("file"));
        for (int round = 0; round < 40; ++round) {
            QProcess process;
            process.start(QCoreApplication::applicationFilePath(),
                          {QStringLiteral("--replace-forever"), path});
            // It says a dot for each replacement; the kill falls somewhere behind a number of them.
            QByteArray dots;
            while (dots.size() < round % 7 + 2) {
                QVERIFY(process.waitForReadyRead(60000));
                dots += process.readAllStandardOutput();
            }
            process.kill();
            QVERIFY(process.waitForFinished());
            const QByteArray content = contentOf(path);
            QCOMPARE(content.size(), replacementSize);
            QCOMPARE(content.count(content.front()), replacementSize);
        }
    }

    void whatIsNoFileIsRefusedOrWrittenTo()
    {
        QVERIFY(!replaceFile(m_folder.path(), "x"));
        QVERIFY(!replaceFile(path(QStringLiteral("missing/file")), "x"));
        const Status full = replaceFile(QStringLiteral("/dev/full"), "x");
        QVERIFY(!full);
        QVERIFY(full.message().startsWith(QStringLiteral("/dev/full: ")));
        QVERIFY(replaceFile(QStringLiteral("/dev/null"), "x"));
        QVERIFY(!QFileInfo(QStringLiteral("/dev/null")).isFile());
    }

    void aFileBeyondTheLimitIsNotRead()
    {
        write(path(QStringLiteral("long")), QByteArray(11, 'x'));
        QByteArray content;
        QVERIFY(!readFile(path(QStringLiteral("long")), content, 10));
        QVERIFY(readFile(path(QStringLiteral("long")), content, 11));
        QCOMPARE(content.size(), 11);
    }

    void portsAreListedByKindAndNumberAndOnlyWhereThereIsHardware()
    {
        QVERIFY(QDir(m_folder.path()).mkpath(QStringLiteral("dev")));
        for (const QString name : {"ttyS0", "ttyS1", "ttyUSB10", "ttyUSB2", "ttyACM0", "tty1", "null"}) {
            write(path(QStringLiteral("dev/") + name), "");
        }
        for (const QString name : {"ttyS0", "ttyS1"}) {
            QVERIFY(QDir(m_folder.path()).mkpath(QStringLiteral("class/") + name));
            write(path(QStringLiteral("class/") + name + QStringLiteral("/type")),
                  name == QStringLiteral("ttyS0") ? "0\n" : "4\n");
        }
        const QString dev = path(QStringLiteral("dev"));
        const QStringList expected{dev + QStringLiteral("/ttyUSB2"), dev + QStringLiteral("/ttyUSB10"),
                                   dev + QStringLiteral("/ttyACM0"), dev + QStringLiteral("/ttyS1")};
        QCOMPARE(serialPorts(dev, path(QStringLiteral("class"))), expected);
    }
};

// Called with "--replace FILE" this program is the one that fails to replace a file, with
// "--replace-forever FILE" the one that is killed over it.
int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList words = QCoreApplication::arguments();
    if (words.value(1) == QStringLiteral("--replace")) {
        return replaceFile(words.value(2), QByteArray(replacementSize, 'n')) ? 0 : 1;
    }
    while (words.value(1) == QStringLiteral("--replace-forever")) {
        static char letter = 'a';
        letter = letter == 'a' ? 'b' : 'a';
        if (!replaceFile(words.value(2), QByteArray(replacementSize, letter))) {
            return 1;
        }
        std::fputc('.', stdout);
        std::fflush(stdout);
    }
    FilesTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "files_test.moc"
