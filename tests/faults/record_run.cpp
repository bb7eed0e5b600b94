// Keeps a record: opens it, writes events and alarms, tries again what was refused, closes it. Says what the
// disk has, a line each, so that whoever breaks its file system can tell whether that is true. Arguments: the
// file, and another that takes its place once it was opened, or "kill" to die in the end.

#include "faults/say.h"
#include "record/record_writer.h"
#include "support/manual_timers.h"

#include <QCoreApplication>

#include <csignal>

using namespace ktr;
using test::say;

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QString path = QString::fromLocal8Bit(argv[1]);
    const OpenedRecord opened = openRecord(path);
    if (!opened.status) {
        say("told", opened.status.message());
        return 1;
    }
    if (!opened.keptAside.isEmpty()) {
        say("damaged", opened.lost.join(u' '));
    }
    const std::string last = argc > 2 ? argv[2] : "";
    if (!last.empty() && last != "kill") {
        (void)std::rename(argv[2], argv[1]);
    }
    test::ManualTimers timers;
    RecordWriter writer(path, opened, timers, [](const QString &reason) { say("told", reason); });
    writer.setMended([](const OpenedRecord &found) { say("mended", QString::number(found.saved)); });
    for (int i = 0; i < 3; ++i) {
        const qint64 id = writer.nextEventId();
        writer.add(EventRow{.id = id, .at = 1, .text = QStringLiteral("event %1").arg(id)});
        writer.add(AlarmRow{.id = writer.nextAlarmId(), .text = QStringLiteral("alarm"), .first = 1});
        if (writer.flushNow()) {
            say("kept", QString::number(id));
        }
        timers.advance(RecordWriter::restDelay); // texts are put into the index meanwhile
    }
    for (int tries = 0; tries < 8 && !writer.flushNow(); ++tries) {
        timers.advance(RecordWriter::mendDelay);
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents); // a damaged record is being mended
    }
    QCoreApplication::processEvents();
    if (last == "kill") {
        (void)std::raise(SIGKILL);
    }
    say(writer.onDiskCount() == writer.addedCount() ? "whole" : "partial", QString());
    return 0;
}
