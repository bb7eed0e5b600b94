#include "platform/append_file.h"
#include "platform/file_lock.h"
#include "platform/files.h"
#include "platform/serial_device.h"
#include "support/test_files.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace ktr;
using namespace Qt::StringLiterals;
using test::contentOf;
using test::writeFile;

namespace {

constexpr qsizetype replacementSize = 1 << 20;

} // namespace

class FilesUnixTest : public QObject
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
        QVERIFY(replaceFile(path(u"a"_s), "one"));
        QCOMPARE(QFile::permissions(path(u"a"_s)) & relevant, ownerOnly);
        QFile::setPermissions(path(u"a"_s), visible);
        QVERIFY(replaceFile(path(u"a"_s), "two"));
        QCOMPARE(QFile::permissions(path(u"a"_s)) & relevant, visible);
        QCOMPARE(contentOf(path(u"a"_s)), "two");
        QCOMPARE(QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList{u"a"_s});
        const mode_t mask = ::umask(027);
        QVERIFY(replaceFile(path(u"b"_s), "one", Readers::AsUsual));
        ::umask(mask);
        QCOMPARE(QFile::permissions(path(u"b"_s)) & relevant, ownerOnly | QFileDevice::ReadGroup);
    }

    void whatAKilledProgramBeganIsRemovedAtTheNextSave()
    {
        QTemporaryDir folder;
        const QStringList others{u".b.ktr-01234567"_s, u".c.backup"_s, u".c.ktr-backups"_s, u".c.xml"_s};
        const QString abandoned = u".c.ktr-89abcdef"_s;
        const QString inUse = u".c.ktr-01234567"_s; // a program is about to replace it
        for (const QString &name : others + QStringList{abandoned, inUse}) {
            QVERIFY(writeFile(folder.filePath(name), "x"));
        }
        QFile open(folder.filePath(inUse));
        QVERIFY(open.open(QIODevice::ReadWrite) && ::flock(open.handle(), LOCK_EX) == 0);
        QVERIFY(replaceFile(folder.filePath(u"c"_s), "new"));
        const auto names = [&folder] {
            const QStringList found = QDir(folder.path()).entryList(QDir::Files | QDir::Hidden);
            return QSet<QString>(found.begin(), found.end());
        };
        QSet<QString> expected(others.begin(), others.end());
        expected += u"c"_s;
        QCOMPARE(names(), expected + QSet{inUse});
        open.close();
        removeAbandoned(folder.filePath(u"c"_s));
        QCOMPARE(names(), expected);
    }

    /// As another program does, through a descriptor of its own.
    void aLockIsHeldByOneAndGoesWithIt()
    {
        QTemporaryDir folder;
        const QString file = folder.filePath(u"a.lock"_s);
        FileLock first;
        FileLock second;
        QVERIFY(writeFile(file, "left by one that was killed"));
        QCOMPARE(first.take(file), FileLock::Outcome::Taken);
        QCOMPARE(second.take(file), FileLock::Outcome::Held);
        QVERIFY(second.holder().contains(QString::number(QCoreApplication::applicationPid())));
        QVERIFY(writeFile(file, "\x1b[31m\n\n"));
        QCOMPARE(second.take(file), FileLock::Outcome::Held); // whatever stands there
        QVERIFY(!second.holder().contains(u'\x1b'));
        first.release();
        QVERIFY(!QFileInfo::exists(file));
        QCOMPARE(second.take(file), FileLock::Outcome::Taken);
        QCOMPARE(first.take(folder.filePath(u"none/a.lock"_s)), FileLock::Outcome::Impossible);
        QVERIFY(first.trouble().message().contains(u"none/a.lock"_s));
    }

    void whatIsNoRegularFileIsRefusedAtOnce()
    {
        QCOMPARE(::mkfifo(QFile::encodeName(path(u"pipe"_s)).constData(), 0600), 0);
        QVERIFY(QFile::link(path(u"pipe"_s), path(u"link to a pipe"_s)));
        QVERIFY(QFile::link(path(u"none"_s), path(u"link to nothing"_s)));
        QVERIFY(checkLockFile(path(u"none"_s)) && !checkLockFile(path(u"link to nothing"_s)));
        for (const QString &name :
             {path(u"pipe"_s), path(u"link to a pipe"_s), u"/dev/zero"_s, m_folder.path()}) {
            QByteArray content;
            QFile file;
            FileLock lock;
            QCOMPARE(lock.take(name), FileLock::Outcome::Impossible);
            for (const Status &status :
                 {readFile(name, content), openToRead(file, name), openOwnersFile(file, name),
                  copyFile(name, path(u"copy"_s)), lock.trouble(), checkLockFile(name)}) {
                QVERIFY2(!status && status.message().startsWith(name), qPrintable(status.message()));
            }
        }
    }

    void aLinkStaysALinkAndItsTargetIsReplaced()
    {
        QVERIFY(writeFile(path(u"target"_s), "old"));
        QVERIFY(QFile::link(path(u"target"_s), path(u"link"_s)));
        QVERIFY(replaceFile(path(u"link"_s), "new"));
        QVERIFY(QFileInfo(path(u"link"_s)).isSymLink());
        QCOMPARE(contentOf(path(u"target"_s)), "new");
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
        const QString file = folder.filePath(u"file"_s);
        QVERIFY(writeFile(file, "the old content"));
        QProcess process;
        process.start(u"sh"_s, {u"-c"_s, limits + u" exec \"$0\" --replace \"$1\""_s,
                                QCoreApplication::applicationFilePath(), file});
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QVERIFY(process.exitCode() != 0);
        QCOMPARE(contentOf(file), "the old content");
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList{u"file"_s});
    }

    void whatCannotBeAppendedIsCutOffAndToldWithItsFile()
    {
        AppendFile file;
        QVERIFY(file.open(path(u"appended"_s), 0) && file.append("one"));
        struct rlimit usual = {};
        ::signal(SIGXFSZ, SIG_IGN);
        QCOMPARE(::getrlimit(RLIMIT_FSIZE, &usual), 0);
        const struct rlimit full = {5, usual.rlim_max};
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &full), 0);
        const Status failed = file.append("two");
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &usual), 0);
        QVERIFY2(!failed && failed.message().startsWith(path(u"appended"_s)), qPrintable(failed.message()));
        QVERIFY(file.append("three"));
        QCOMPARE(contentOf(path(u"appended"_s)), "onethree");
    }

    void aDeviceIsWrittenTo()
    {
        const Status full = replaceFile(u"/dev/full"_s, "x");
        QVERIFY(!full);
        QVERIFY(full.message().startsWith(u"/dev/full: "_s));
        QVERIFY(replaceFile(u"/dev/null"_s, "x"));
        QVERIFY(!QFileInfo(u"/dev/null"_s).isFile());
    }

    void portsAreListedByKindAndNumberAndOnlyWhereThereIsHardware()
    {
        QVERIFY(QDir(m_folder.path()).mkpath(u"dev"_s));
        for (const QString name : {"ttyS0", "ttyS1", "ttyUSB10", "ttyUSB2", "ttyACM0", "tty1", "null"}) {
            QVERIFY(writeFile(path(u"dev/"_s + name), ""));
        }
        for (const QString name : {"ttyS0", "ttyS1"}) {
            QVERIFY(QDir(m_folder.path()).mkpath(u"class/"_s + name));
            QVERIFY(writeFile(path(u"class/"_s + name + u"/type"_s), name == u"ttyS0"_s ? "0\n" : "4\n"));
        }
        const QString dev = path(u"dev"_s);
        const QStringList expected{dev + u"/ttyUSB2"_s, dev + u"/ttyUSB10"_s, dev + u"/ttyACM0"_s,
                                   dev + u"/ttyS1"_s};
        QCOMPARE(serialPorts(dev, path(u"class"_s)), expected);

        // A cable: the port stands two folders below what was plugged in.
        const QString port = path(u"devices/usb1/1-1/1-1:1.0/ttyUSB9"_s);
        QVERIFY(QDir().mkpath(port) && QDir().mkpath(path(u"class/ttyUSB9"_s)));
        QVERIFY(QFile::link(port, path(u"class/ttyUSB9/device"_s)));
        QCOMPARE(serialAdapter(u"/dev/ttyUSB9"_s, path(u"class"_s)), QString());
        QVERIFY(test::writeFile(path(u"devices/usb1/1-1/product"_s), "USB  Cable\n"));
        QCOMPARE(serialAdapter(u"/dev/ttyUSB9"_s, path(u"class"_s)), u"USB Cable"_s);
        QVERIFY(test::writeFile(path(u"devices/usb1/1-1/manufacturer"_s), "Maker\n"));
        QCOMPARE(serialAdapter(u"/dev/ttyUSB9"_s, path(u"class"_s)), u"Maker USB Cable"_s);
        QCOMPARE(serialAdapter(u"/dev/pts/7"_s, path(u"class"_s)), QString());
    }
};

// Called with "--replace FILE" this program is the one that fails to replace a file.
int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList words = QCoreApplication::arguments();
    if (words.value(1) == u"--replace"_s) {
        return replaceFile(words.value(2), QByteArray(replacementSize, 'n')) ? 0 : 1;
    }
    FilesUnixTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "files_unix_test.moc"
