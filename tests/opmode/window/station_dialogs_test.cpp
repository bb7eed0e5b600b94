#include "lang/text_table.h"
#include "opmode/operational_mode.h"
#include "opmode/window/add_stations_dialog.h"
#include "opmode/window/export_dialog.h"
#include "platform/files.h"
#include "support/environment.h"
#include "support/manual_timers.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

using namespace ktr;
using namespace ktr::test;

namespace {

class NoLine : public StationLine
{
    Status open(const QString &) override { return Status::done(); }
    void close() override {}
    bool isOpen() const override { return true; }
    void send(const QByteArray &) override {}
};

template <class T> T *child(const QWidget &window, const char *name)
{
    T *found = window.findChild<T *>(QString::fromLatin1(name));
    Q_ASSERT(found != nullptr);
    return found;
}

void click(const QWidget &window, const char *name)
{
    auto *button = child<QAbstractButton>(window, name);
    QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(12, button->height() / 2));
}

} // namespace

class StationDialogsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_mode.reset();
        m_timers = std::make_unique<ManualTimers>();
        m_mode = std::make_unique<OperationalMode>(
            OperationalMode::Services{fixedEnvironment(), *m_timers,
                                      [] { return std::make_unique<NoLine>(); }},
            StationCaptions{"Notifications", "History", "IP"});
        for (const char *name : {"Pump 1", "Pump 2", "Tower"}) {
            m_mode->addStation(name);
            m_mode->tree().apply(name, interpretStationMessage("+49 --> H,1,0911151200,9,1.5"), {});
        }
    }

    void theTickedStationsAreExported()
    {
        const QTemporaryDir folder;
        QString path = folder.filePath("none/out.csv");
        QString proposal;
        ExportDialog dialog(m_mode->tree(), m_texts, {"Pump 1"},
                            {[&](const QString &name, const QString &) {
                                 proposal = name;
                                 return path;
                             },
                             fixedEnvironment().now});
        QSignalSpy told(&dialog, &ExportDialog::statusMessage);
        dialog.show();
        auto *count = child<QLabel>(dialog, "Label_export_count");
        QTRY_COMPARE(count->text(), "Entries: 0");
        QVERIFY(!child<QPushButton>(dialog, "Cmd_export")->isEnabled());
        click(dialog, "Opt_export_kind_1");
        QTRY_COMPARE(count->text(), "Entries: 3");
        click(dialog, "Opt_export_stations_2");
        QTRY_COMPARE(count->text(), "Entries: 0"); // nothing is ticked that the user did not tick
        auto *filter = child<QLineEdit>(dialog, "Text_export_filter");
        QTest::keyClicks(filter, "p 1");
        click(dialog, "Check_export_allShown");
        filter->clear();
        QTest::keyClicks(filter, "tow");
        QCOMPARE(child<QLabel>(dialog, "Label_export_chosen")->text(), "1 chosen, 1 of them not shown");
        click(dialog, "Check_export_allShown");
        QTRY_COMPARE(count->text(), "Entries: 2"); // the one that is not shown stays
        m_mode->tree().apply("Tower", interpretStationMessage("+49 --> H,1,0911151300,9,2.5"), {});
        QTRY_COMPARE(count->text(), "Entries: 3");

        QTest::keyClick(&dialog, Qt::Key_Return);
        QCOMPARE(proposal, "history 2009-11-15.csv");
        auto *problem = child<QLabel>(dialog, "Label_export_problem");
        QTRY_VERIFY(problem->isVisible());
        QVERIFY2(problem->text().contains(path), qPrintable(problem->text()));
        QCOMPARE(told.count(), 1);

        path = folder.filePath("out.csv");
        click(dialog, "Cmd_export");
        QTRY_VERIFY(!dialog.isVisible());
        QCOMPARE(told.count(), 2);
        QByteArray content;
        QVERIFY(readFile(path, content, 1000));
        QCOMPARE(content.count("\r\n"), 4);
        QVERIFY(content.contains("Pump 1;15.11.2009 12:00;9;Analog In 1;1,5\r\n") &&
                !content.contains("Pump 2"));
    }

    void manyStationsAreAddedAtOnce()
    {
        AddStationsDialog dialog(*m_mode, m_texts, {});
        QSignalSpy told(&dialog, &AddStationsDialog::statusMessage);
        dialog.show();
        QVERIFY(!child<QPushButton>(dialog, "Cmd_stationen_add")->isEnabled());
        QTest::keyClicks(child<QPlainTextEdit>(dialog, "Text_stationen"),
                         "Tower;10.0.0.1\rMill;\ra/b;10.0.0.2");
        const auto *table = child<QTableView>(dialog, "tbl_stationen")->model();
        QTRY_COMPARE(table->rowCount(), 3);
        QCOMPARE(table->index(0, 0).data(), "Tower (1)");
        click(dialog, "Check_stationen_online");
        click(dialog, "Cmd_stationen_add");
        QVERIFY(!dialog.isVisible());
        QCOMPARE(told.value(0).value(0), "Stations added: 2; lines left out: 1");
        QCOMPARE(m_mode->attributes("Tower (1)").hostAddress, "10.0.0.1");
        QVERIFY(m_mode->attributes("Tower (1)").online);
        QVERIFY(m_mode->station("Mill") != nullptr && !m_mode->attributes("Mill").online);
    }

private:
    const TextTable m_texts;
    std::unique_ptr<ManualTimers> m_timers;
    std::unique_ptr<OperationalMode> m_mode;
};

QTEST_MAIN(StationDialogsTest)
#include "station_dialogs_test.moc"
