#include "cli/replay.h"

#include "cli/console.h"
#include "cli/interruption.h"
#include "cli/loading.h"
#include "platform/pseudo_terminal.h"
#include "simulator/replay.h"

#include <QCoreApplication>

namespace ktr::cli {

int replay(const QString &logPath, const QString &linkPath)
{
    RecordedConversation conversation;
    if (const Status read = loadLog(logPath, conversation); !read) {
        return fail(read.message());
    }
    if (conversation.leftOut > 0) {
        complain(QStringLiteral("%1: %2 lines are none of the conversation and left out")
                     .arg(logPath)
                     .arg(conversation.leftOut));
    }

    EventLoopTimers timers;
    IoThread io;
    Interruption interruption(io, [] {
        complain(QStringLiteral("interrupted before the end of the log"));
        QCoreApplication::exit(failed);
    });
    PseudoTerminal terminal;
    Replay replay(std::move(conversation), timers, [&](const QByteArray &bytes) {
        if (replay.isAnswered() ||
            terminal.untaken() == 0) { // the first line still lies there for who opens the port
            terminal.write(bytes);
        }
    });
    replay.onDifference([](const QString &difference) {
        print(difference);
        showNow();
    });
    replay.onEnd([&] { QCoreApplication::exit(replay.differences() == 0 ? done : failed); });
    QObject::connect(&terminal, &PseudoTerminal::readyRead, &terminal,
                     [&] { replay.receive(terminal.readAll()); });
    QObject::connect(&terminal, &PseudoTerminal::statusMessage, &terminal, &complain);
    Status opened = terminal.open();
    if (opened) {
        opened = terminal.linkAt(linkPath);
    }
    if (!opened) {
        return fail(opened.message());
    }
    print(QStringLiteral("listening at %1 (%2)").arg(linkPath, terminal.slavePath()));
    showNow();
    replay.start();
    const int code = QCoreApplication::exec();
    print(code == done ? QStringLiteral("as in the log")
                       : QStringLiteral("%1 differences from the log").arg(replay.differences()));
    return code;
}

} // namespace ktr::cli
