#include "cli/console.h"
#include "cli/usage.h"
#include "platform/terminal.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdlib>
#include <system_error>

using namespace ktr::cli;

int main(int argc, char **argv)
{
    // The toolkit's own messages are dropped: errors are reported in this program's words, one line each.
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &message) {
        if (type == QtFatalMsg) {
            std::_Exit(fail(message)); // the toolkit would abort
        }
    });
    ktr::prepareConsole();
    const auto application = applicationFor(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("KTRconfig"));
    int code = failed;
    try {
        code = understand(QCoreApplication::arguments().mid(1)).run();
    } catch (const std::system_error &error) { // no descriptor or thread was left for the start
        code = fail(QString::fromLocal8Bit(error.what()));
    }
    return flushOutput() ? code : std::max(code, failed);
}
