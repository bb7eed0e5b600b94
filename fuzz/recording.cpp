// Any file as a recorded conversation, replayed to a session.

#include "link/module_session.h"
#include "simulator/replay.h"
#include "support/environment.h"
#include "support/manual_timers.h"
#include "support/require.h"
#include "support/silent_line.h"

using namespace ktr;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray log(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    RecordedConversation conversation;
    if (!readConversation(log, conversation)) {
        return 0;
    }
    const auto lines = static_cast<qsizetype>(conversation.lines.size()) + conversation.leftOut;
    fuzz::require(lines <= log.count('\n') + 1, "each line counts once");

    test::ManualTimers timers;
    test::SilentLine line;
    ModuleSession session(line, timers, test::fixedEnvironment());
    Configuration configuration;
    (void)session.open(QStringLiteral("line"));
    session.startTransmission(configuration, size % 2 == 0);

    bool ended = false;
    int differences = 0;
    Replay replay(std::move(conversation), timers,
                  [&line](const QByteArray &bytes) { Q_EMIT line.received(bytes); });
    replay.onDifference([&differences](const QString &) { ++differences; });
    replay.onEnd([&ended] {
        fuzz::require(!ended, "a replay ends once");
        ended = true;
    });
    replay.start();
    for (int i = 0; i < 200 && !ended; ++i) {
        timers.advance(Replay::longestPause);
        if (!line.sent.isEmpty()) {
            replay.receive(std::exchange(line.sent, {}));
        }
    }
    fuzz::require(replay.differences() == differences, "each difference is told");
    return 0;
}
