#include "opmode/keeping/list_record.h"
#include "record/record_reader.h"
#include "support/module_process.h"
#include "support/test_files.h"

#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using ktr::test::contentOf;
using ktr::test::ModuleProcess;

/// `ktrcli keep` as a process of its own, with a fleet of virtual modules.
class KeepTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    QString m_list = m_folder.filePath(u"north.xml"_s);
    QStringList m_fleet{u"simulate"_s, u"--fleet"_s, u"3"_s,       u"--port"_s, u"0"_s,
                        u"--nodes"_s,  m_list,       u"--every"_s, u"1"_s};

private Q_SLOTS:
    void aListIsKeptUntilItsEndIsAskedFor()
    {
        ModuleProcess fleet(m_fleet);
        const QByteArray before = contentOf(m_list);
        ModuleProcess keeper({u"keep"_s, m_list}, u"watching; stations: 3, "_s);
        QVERIFY2(keeper.await(u"ktrcli: alarm: "_s), qPrintable(keeper.output()));
        ModuleProcess second({u"keep"_s, m_list}, u"the list is in use by"_s);
        QCOMPARE(second.exitCode(), 1);
        QVERIFY2(keeper.terminate(), qPrintable(keeper.output()));

        QVERIFY(!QFileInfo::exists(m_folder.filePath(u"north.lock"_s)));
        QVERIFY(contentOf(m_list) != before && contentOf(m_list).contains("fail"));
        ktr::RecordReader record(ktr::ListRecord::pathFor(m_list));
        const ktr::AlarmPage alarms = record.findAlarms({}, {}, 100);
        QVERIFY2(alarms.status && !alarms.rows.isEmpty(), qPrintable(alarms.status.message()));
        std::optional<qint64> upto;
        QVERIFY(record.lastListFile({}, upto) && upto.has_value());
    }
};

QTEST_GUILESS_MAIN(KeepTest)
#include "keep_test.moc"
