#include "link/modem_dialogue.h"

#include "link/modem_words.h"

namespace ktr {

std::vector<ModuleDialogue::Action> ModemDialogue::lineReceived(const QString &received)
{
    // Where lines end with CR LF, this line feed belongs to the previous line, which was answered already.
    qsizetype start = 0;
    while (start < received.size() && received[start] == u'\n') {
        ++start;
    }
    const QString line = received.sliced(start);
    logReceived(line);
    act(Send{line.chopped(1)});
    if (line.contains(QLatin1String(modem_words::askPin))) {
        act(Caught{});
        sendLogged(QLatin1String(modem_words::config));
    }
    dispatch(line);
    return takeActions();
}

} // namespace ktr
