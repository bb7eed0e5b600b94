#include "link/modem_dialogue.h"

namespace ktr {

std::vector<ModuleDialogue::Action> ModemDialogue::lineReceived(const QString &line)
{
    logReceived(line);
    act(Send{line.chopped(1)});
    if (line.contains(QLatin1String("at+cpin"))) {
        act(Caught{});
        sendLogged(QStringLiteral("config"));
    }
    dispatch(line);
    return takeActions();
}

} // namespace ktr
