// A run of the operational mode with all that writes files: a record taken up, changes,
// acknowledgements, a file written in the middle of the run and at the end. Says what was kept, a line each,
// so that whoever breaks its file system can tell whether that is true. Argument: the folder.

#include "faults/say.h"
#include "opmode/keeping/checksum.h"
#include "opmode/operational_mode.h"
#include "platform/files.h"
#include "support/environment.h"
#include "support/manual_timers.h"
#include "support/recorded_line.h"
#include "support/test_files.h"

#include <QCoreApplication>

using namespace ktr;
using test::contentOf;
using test::say;

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QString nodes = QString::fromLocal8Bit(argv[1]) + QLatin1String("/nodes.xml");
    test::ManualTimers timers;
    test::RecordedLine *line = nullptr;
    bool wasTold = false;
    OperationalMode mode({test::fixedEnvironment(),
                          timers,
                          [&line] {
                              auto created = std::make_unique<test::RecordedLine>();
                              line = created.get();
                              return created;
                          },
                          [] {},
                          &systemCallbackTimers,
                          [] { return 0; },
                          {1, 0, 15}},
                         {QStringLiteral("Notifications"), QStringLiteral("History"), QStringLiteral("IP")});
    const auto tell = [&](const QString &text) {
        wasTold = true;
        say("told", text);
    };
    QObject::connect(&mode, &OperationalMode::statusMessage, &mode, tell);
    if (!mode.open(nodes, OperationalMode::Use::Keep)) {
        return 1;
    }
    const auto raise = [&](int alarm) {
        line->say("at+cmgs=\"+49\"\r");
        line->say("M,Alarm " + QByteArray::number(alarm) + " fail\x1A");
    };
    const auto keep = [&](int alarm) { say(mode.keepsChanges() ? "kept" : "lost", QString::number(alarm)); };
    const auto acknowledge = [&](int alarm) {
        const QModelIndex entry =
            mode.tree().find(QStringLiteral("S/meldung/+49 --> M,Alarm %1 fail").arg(alarm));
        say(mode.acknowledge({entry}) ? "acknowledged" : "refused", QString::number(alarm));
    };
    for (const int alarm : {1, 2, 3}) {
        raise(alarm);
        keep(alarm);
    }
    acknowledge(1);
    wasTold = false;
    const QByteArray before = contentOf(nodes);
    timers.advance(Milliseconds(60'000)); // the file is written meanwhile
    raise(4);
    while (!wasTold && !mode.unkeptChanges() && contentOf(nodes) == before) {
        timers.advance(RecordWriter::retryDelay); // what the disk refused is tried again
        QCoreApplication::processEvents();
    }
    keep(4);
    say("document", QString::number(checksum(contentOf(nodes))));
    acknowledge(2);
    raise(5);
    keep(5);
    if (const Status closed = mode.close(); !closed) {
        tell(closed.message());
        return 1;
    }
    say("closed", QString());
    return 0;
}
