#include "config/document.h"
#include "config/neighbours.h"
#include "platform/files.h"
#include "support/environment.h"
#include "support/test_files.h"

#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace ktr;
using namespace ktr::test;

/// What others wrote into a file is noticed, however alike it looks, and nothing of it is lost.
class ChangedFilesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_document = std::make_unique<Document>(fixedEnvironment());
    }

    void aFileIsChangedWhenItsContentIs()
    {
        saveAs("a.xml", "Werk 1");
        QVERIFY(!m_document->isChangedOnDisk());
        touch(path("a.xml"));
        QVERIFY(!m_document->isChangedOnDisk());
        changeUnseen(path("a.xml"), "Werk 1", "Werk 2");
        QVERIFY(m_document->isChangedOnDisk());
        QString backup;
        QVERIFY(m_document->backUp(backup));
        QVERIFY(contentOf(backup).contains("Werk 2"));
        QVERIFY(m_document->save());
        QVERIFY(!m_document->isChangedOnDisk());

        QVERIFY(m_document->load(path("a.xml")).opened);
        changeUnseen(path("a.xml"), "Werk 1", "Werk 3");
        QVERIFY(m_document->isChangedOnDisk());
    }

    void aFileOfNamesLikewise()
    {
        rename("Pump 1");
        saveAs("a.xml", "Werk 1");
        touch(path("a.names"));
        rename("Pump 2");
        QVERIFY(m_document->save());
        QVERIFY(!QFile::exists(path("a.names~")));
        changeUnseen(path("a.names"), "Pump 2", "Pump 3");
        rename("Pump 4");
        QVERIFY(m_document->save());
        QCOMPARE(contentOf(path("a.names~")), "1=Pump 3;\n");
    }

    void filesThatAreReadAgainLikewise()
    {
        saveAs("own.xml", "Werk 1");
        saveAs("other.xml", "Werk 2");
        Neighbours neighbours;
        const auto neighbour = [&] { return neighbours.of(path("own.xml")).value(0).stationId; };
        QCOMPARE(neighbour(), "Werk 2");
        changeUnseen(path("other.xml"), "Werk 2", "Werk 3");
        QCOMPARE(neighbour(), "Werk 3");
    }

    void whatWasWrittenLongAgoNeedsNoReading()
    {
        const QString file = path("old");
        QVERIFY(writeFile(file, "one"));
        setTime(file, QDateTime::currentDateTime().addDays(-1));
        const FileStamp old{QFileInfo(file)};
        QVERIFY(old.stillHolds(QFileInfo(file)));
        QVERIFY(writeFile(file, "two"));
        QVERIFY(!old.stillHolds(QFileInfo(file)));
        QVERIFY(!FileStamp(QFileInfo(file)).stillHolds(QFileInfo(file)));
        QVERIFY(!FileStamp().stillHolds(QFileInfo(path("missing"))));
        QCOMPARE(markOf(file), markOfContent("two"));
        QCOMPARE(markOf(path("missing")), FileMark());
        QVERIFY(markOfContent("") != FileMark());
    }

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }

    void saveAs(const QString &name, const QString &station)
    {
        m_document->edit([&station](Configuration &c) {
            c.gsm.stationId = station;
            c.ethernet.mac3 = "1A"; // without an address it is nobody's neighbour
        });
        m_document->setFileName(path(name));
        QVERIFY(m_document->save());
    }

    void rename(const QString &name)
    {
        m_document->adjust([&name](Configuration &c) { c.names.channels[0].name = name; });
    }

    static void setTime(const QString &file, const QDateTime &time)
    {
        QFile changed(file);
        QVERIFY(changed.open(QIODevice::ReadWrite));
        QVERIFY(changed.setFileTime(time, QFileDevice::FileModificationTime));
    }

    static void touch(const QString &file) { setTime(file, QDateTime::currentDateTime().addSecs(10)); }

    /// Neither the length nor the time tells.
    static void changeUnseen(const QString &file, const QByteArray &from, const QByteArray &to)
    {
        const QDateTime time = QFileInfo(file).lastModified();
        QByteArray content = contentOf(file);
        QVERIFY(content.contains(from) && from.size() == to.size());
        QVERIFY(writeFile(file, content.replace(from, to)));
        setTime(file, time);
        QCOMPARE(QFileInfo(file).lastModified(), time);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<Document> m_document;
};

QTEST_GUILESS_MAIN(ChangedFilesTest)
#include "changed_files_test.moc"
