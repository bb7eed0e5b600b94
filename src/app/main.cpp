#include "app/appearance_setting.h"
#include "app/command_line.h"
#include "app/form_main.h"
#include "config/configuration_file.h"
#include "link/serial_transport.h"
#include "link/udp_transport.h"
#include "look/program_name.h"
#include "look/style.h"
#include "opmode/station/station_sockets.h"
#include "platform/ending_signals.h"
#include "platform/serial_device.h"
#include "platform/terminal.h"

#include <QApplication>
#include <QLocale>

#include <cstdio>
#include <cstdlib>

namespace {

void print(std::FILE *stream, const QString &text)
{
    ktr::borrowConsole();
    ktr::prepareConsole();
    std::fputs(text.toUtf8().constData(), stream);
    std::fflush(stream);
}

/// Does what needs no window and no display. True when that was all there is to do.
bool answerOnTerminal(const ktr::CommandLine &asked)
{
    if (asked.help) {
        print(stdout, ktr::CommandLine::helpText());
    } else if (asked.version) {
        print(stdout, ktr::programName + u' ' + ktr::programVersion() + u'\n');
    } else {
        for (const QString &remark : asked.remarks()) {
            print(stderr, ktr::programName + QLatin1String(": ") + remark + u'\n');
        }
    }
    return asked.help || asked.version;
}

QStringList wordsOf(int argc, char **argv)
{
    QStringList words;
    for (int i = 1; i < argc; ++i) {
        words += QString::fromLocal8Bit(argv[i]);
    }
    return ktr::CommandLine::withoutToolkitOptions(words);
}

/// Without a usable display the toolkit aborts. Say why instead.
void tellWithoutDisplay(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type != QtFatalMsg) {
        print(stderr, message + u'\n');
        return;
    }
    print(stderr,
          ktr::programName + QLatin1String(": no window can be opened. Is DISPLAY or WAYLAND_DISPLAY set? "
                                           "ktrcli works without.\n"));
    std::_Exit(1);
}

void beginTrial(ktr::Services &services, ktr::TrialRun &trial)
{
    const ktr::Status begun = trial.begin();
    services.environment = trial.environment(services.environment);
    services.instanceName = trial.instanceName();
    services.trial = &trial;
    services.trialTrouble = begun ? QString() : begun.message();
    services.ports = [] { return QStringList(); };
    ktr::TrialRun::whenStarterEnds([] { QCoreApplication::exit(0); });
}

ktr::FormMain *openWindow = nullptr;

/// The toolkit calls exit() when the display goes away.
void keepEdits()
{
    if (openWindow != nullptr) {
        openWindow->keepEdits();
    }
}

} // namespace

int main(int argc, char **argv)
{
    if (answerOnTerminal(ktr::CommandLine::parse(wordsOf(argc, argv)))) {
        return 0;
    }
    const QtMessageHandler usual = qInstallMessageHandler(tellWithoutDisplay);
    QApplication application(argc, argv);
    qInstallMessageHandler(usual);
    QApplication::setApplicationName(QString(ktr::programName));
    QGuiApplication::setDesktopFileName(
        QStringLiteral("com.korvane.KTRconfig"));   // whose icon the windows get
    QApplication::setQuitOnLastWindowClosed(false); // the program ends with the main window

    ktr::IoThread io;
    ktr::SerialTransport serial(io);
    ktr::UdpTransport ethernet(io);
    ktr::StationSockets stations(io);
    ktr::EventLoopTimers timers;
    const std::optional<ktr::TrialRun::Request> request = ktr::TrialRun::takeRequest();
    const auto trial = request ? std::make_unique<ktr::TrialRun>(*request, io, timers) : nullptr;
    ktr::applyAppearance(application, ktr::appearanceSetting()); // that of the trial, if it is one
    ktr::Services services{ktr::systemEnvironment(),
                           timers,
                           serial,
                           ethernet,
                           [] { return ktr::serialPorts(); },
                           {},
                           [&stations] { return stations.createLine(); },
                           [&stations] { return stations.foreignDatagrams(); },
                           &io};
    services.welcomes = true;
    services.systemLanguages = QLocale::system().uiLanguages();
    services.trialProgram = QCoreApplication::applicationFilePath();
    if (trial != nullptr) {
        beginTrial(services, *trial);
    }
    ktr::FormMain window(services);
    const auto end = [] { QCoreApplication::exit(0); };
    QObject::connect(&window, &ktr::FormMain::closed, &application, end, Qt::QueuedConnection);
    QObject::connect(&window, &ktr::FormMain::exitWanted, &application, end);
    const ktr::EndingSignals endingSignals([&window] { window.endOnRequest(); });
    const QStringList words = QCoreApplication::arguments().mid(1); // without the toolkit's own
    openWindow = &window;
    std::atexit(keepEdits);
    window.start(words);
    const int code = QApplication::exec();
    openWindow = nullptr;
    return code;
}
