#include "config/edit_history.h"
#include "config/fields.h"
#include "platform/files.h"
#include "support/environment.h"

#include <QTemporaryDir>
#include <QTest>

using namespace ktr;
using namespace ktr::test;

class EditHistoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void changesOfOnePlaceAreOneStepUntilTheGroupEnds()
    {
        type("a");
        type("ab");
        m_history.endGroup();
        type("abc");
        m_history.undo();
        QCOMPARE(author(), "ab");
        m_history.undo();
        QCOMPARE(author(), "");
        QVERIFY(!m_history.canUndo());
        m_history.redo();
        m_history.redo();
        QCOMPARE(author(), "abc");
        QVERIFY(!m_history.canRedo());
    }

    void anotherStationIsLikeTheOneBeforeButForWhatMustDiffer()
    {
        m_document.setFileName(m_folder.filePath("first.xml"));
        m_history.edit({}, [](Configuration &c) {
            c.gsm.stationId = "Werk 7";
            c.gsm.pin = "1234";
            c.ethernet.ip = "192.168.000.007";
            c.ethernet.mac5 = "07";
            c.administrators[0].number = "+491711234567";
            c.limitValues[3].limit = "4.5";
        });
        QVERIFY(m_document.save());
        const Configuration first = m_document.configuration();
        m_history.makeAnother();
        const Configuration &another = m_document.configuration();
        QVERIFY(m_document.isModified() && m_document.fileName().isEmpty() && m_document.source().isEmpty());
        QVERIFY(another.gsm.stationId.isEmpty() && another.gsm.pin.isEmpty() &&
                another.ethernet.ip.isEmpty());
        QVERIFY(macBytes(another.ethernet) != macBytes(first.ethernet));
        Configuration expected = first;
        expected.gsm = another.gsm;
        expected.ethernet = another.ethernet;
        expected.versionText = another.versionText;
        expected.info = another.info;
        QCOMPARE(another, expected);
        m_history.undo();
        QCOMPARE(m_document.configuration(), first);
        QCOMPARE(m_document.fileName(), m_folder.filePath("first.xml"));
        QVERIFY(!m_document.isModified());
    }

    void choosingWhatIsChosenMarksButIsNoStep()
    {
        m_history.edit({"Combo_gsm_type", 0}, [](Configuration &) {});
        QVERIFY(m_document.isModified());
        QVERIFY(!m_history.canUndo());
    }

    void whatDiffersFromTheSavedFileIsModified()
    {
        m_document.setFileName(m_folder.filePath("a.xml"));
        type("saved");
        QVERIFY(m_document.save());
        QVERIFY(!m_document.isModified());
        m_history.undo();
        QVERIFY(m_document.isModified());
        m_history.redo();
        QCOMPARE(author(), "saved");
        QVERIFY(!m_document.isModified());
    }

    void whatAFileHadBeforeItWasReadAnewIsModified()
    {
        const QString file = m_folder.filePath("a.xml");
        m_document.setFileName(file);
        type("mine");
        QVERIFY(m_document.save());
        Configuration theirs = m_document.configuration();
        theirs.info.author = "theirs";
        QVERIFY(writeConfigurationFile(file, theirs, fixedEnvironment()));
        QVERIFY(m_history.load(file).opened);
        QCOMPARE(author(), "theirs");
        m_history.undo();
        QCOMPARE(author(), "mine");
        QVERIFY(m_document.isModified());
        m_history.redo();
        QVERIFY(!m_document.isModified());
    }

    void aRemovalThatIsNoEditComesBackUnmarked()
    {
        m_document.adjust([](Configuration &c) { c.holidays.append("091224\t(24.12.2009)"); });
        m_history.adjust({"lst_swtch_frei", 0}, [](Configuration &c) { c.holidays.clear(); });
        QVERIFY(!m_document.isModified());
        m_history.undo();
        QCOMPARE(m_document.configuration().holidays.lines().size(), 1);
        QVERIFY(!m_document.isModified());
    }

    void aFileThatCannotBeOpenedIsNoStep()
    {
        type("kept");
        QVERIFY(!m_history.load(m_folder.filePath("none.xml")).opened);
        QCOMPARE(author(), "kept");
        // One that is no configuration replaces everything; what stood there comes back.
        const QString garbage = m_folder.filePath("garbage.xml");
        QVERIFY(replaceFile(garbage, "<KTR><PIN>"));
        QVERIFY(!m_history.load(garbage).document);
        QCOMPARE(m_document.fileName(), "");
        QCOMPARE(author(), "");
        m_history.undo();
        QCOMPARE(author(), "kept");
        QVERIFY(m_document.isModified());
    }

    void onlySoManyStepsAreKept()
    {
        for (int i = 0; i < static_cast<int>(EditHistory::longest) + 5; ++i) {
            m_history.endGroup();
            type(QString::number(i));
        }
        while (m_history.canUndo()) {
            m_history.undo();
        }
        QCOMPARE(author(), "4");
    }

    void init()
    {
        m_document.setFileName({});
        m_document.makeNew();
        m_document.setModified(false);
        m_history.clear();
    }

private:
    void type(const QString &text)
    {
        m_history.edit({"txt_info_autor", 0}, [&](Configuration &c) { c.info.author = text; });
    }
    QString author() const { return m_document.configuration().info.author; }

    QTemporaryDir m_folder;
    Document m_document{fixedEnvironment()};
    EditHistory m_history{m_document};
};

QTEST_GUILESS_MAIN(EditHistoryTest)
#include "edit_history_test.moc"
