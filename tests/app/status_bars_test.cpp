#include "app/status_line.h"
#include "opmode/window/message_line.h"
#include "support/cut_off.h"

#include <QPlainTextEdit>
#include <QTest>
#include <QToolButton>

using namespace ktr;
using namespace ktr::test;
using namespace Qt::StringLiterals;

namespace {

const QString &longLine()
{
    static const QString line = u"What came of it is told at some length. "_s.repeated(4).trimmed();
    return line;
}

} // namespace

class StatusBarsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatComesBesideAnEventShortensIt()
    {
        StatusLine status;
        status.resize(1300, 30);
        status.show();
        status.tell(longLine());
        const auto *event = status.findChild<QLabel *>("lbl_event");
        QTRY_COMPARE(event->text(), longLine());
        status.showWaiting("PGMNET=10.0.0.1,255.255.255.0,10.0.0.2");
        status.showNotice("A notice of a few words", {});
        status.showModified(true);
        status.showProgress(3);
        QTRY_VERIFY(event->text().endsWith(u'…')); // only the layout tells it
        QCOMPARE(cutOff(status), QStringList());
        QCOMPARE(event->toolTip(), longLine());
        status.showWaiting({});
        status.showNotice({}, {});
        status.showModified(false);
        status.showProgress(0);
        QTRY_COMPARE(event->text(), longLine());
    }

    void theLatestMessageFollowsItsRoom()
    {
        MessageLine line;
        line.resize(1300, 30);
        line.show();
        line.tell(longLine());
        const auto *latest = line.findChild<QLabel *>("lbl_event");
        QTRY_VERIFY(latest->text().endsWith(longLine()));
        line.resize(300, 30);
        QCOMPARE(cutOff(line), QStringList());
        QVERIFY(latest->text().endsWith(u'…'));
        line.resize(1300, 30);
        QVERIFY(latest->text().endsWith(longLine()));
        line.pin(longLine());
        QTRY_VERIFY(latest->text().endsWith(u'…'));
        QCOMPARE(cutOff(line), QStringList());
    }

    void whatWasGivenUpTellsNothing()
    {
        MessageLine line;
        line.show();
        line.tell({});
        line.tell(" ");
        line.tell("Done");
        auto *list = line.findChild<QToolButton *>("Cmd_messages");
        QTRY_VERIFY(list->isEnabled());
        list->click();
        const QString told = line.findChild<QPlainTextEdit *>("txt_messages")->toPlainText();
        QVERIFY2(told.endsWith("  Done") && !told.contains(u'\n'), qPrintable(told));
    }
};

QTEST_MAIN(StatusBarsTest)
#include "status_bars_test.moc"
