#include "platform/files.h"
#include "support/test_files.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace ktr;
using namespace Qt::StringLiterals;
using test::contentOf;
using test::writeFile;

namespace {

constexpr qsizetype replacementSize = 1 << 20;

} // namespace

class FilesTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    QString path(const QString &name) const { return m_folder.filePath(name); }

private Q_SLOTS:
    void aFolderIsRefusedAndAFileIsReplacedWithoutRemains()
    {
        QVERIFY(!replaceFile(m_folder.path(), "x"));
        QVERIFY(!replaceFile(path(u"missing/file"_s), "x"));
        QVERIFY(writeFile(path(u"tür"_s), "the old content"));
        QVERIFY(replaceFile(path(u"tür"_s), "new"));
        QCOMPARE(contentOf(path(u"tür"_s)), "new");
        QCOMPARE(QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList{u"tür"_s});
    }

    void aKillInTheMiddleLeavesAWholeFile()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(u"file"_s);
        for (int round = 0; round < 40; ++round) {
            QProcess process;
            process.start(QCoreApplication::applicationFilePath(), {u"--replace-forever"_s, path});
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

    void aFileBeyondTheLimitIsNotRead()
    {
        QVERIFY(writeFile(path(u"long"_s), QByteArray(11, 'x')));
        QByteArray content;
        QVERIFY(!readFile(path(u"long"_s), content, 10));
        QVERIFY(readFile(path(u"long"_s), content, 11));
        QCOMPARE(content.size(), 11);
    }
};

// Called with "--replace-forever FILE" this program is the one that is killed over it.
int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList words = QCoreApplication::arguments();
    while (words.value(1) == u"--replace-forever"_s) {
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
