#include "app/appearance_setting.h"
#include "app/form_main.h"
#include "link/serial_transport.h"
#include "link/udp_transport.h"
#include "look/program_name.h"
#include "look/style.h"
#include "opmode/station_sockets.h"
#include "platform/serial_device.h"

#include <QApplication>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(QString(ktr::programName));
    QApplication::setQuitOnLastWindowClosed(false); // the main window's end is the program's
    ktr::applyAppearance(application, ktr::appearanceSetting());

    ktr::IoThread io;
    ktr::SerialTransport serial(io);
    ktr::UdpTransport ethernet(io);
    ktr::StationSockets stations(io);
    ktr::EventLoopTimers timers;
    ktr::FormMain window({ktr::systemEnvironment(),
                          timers,
                          serial,
                          ethernet,
                          [] { return ktr::serialPorts(); },
                          {},
                          [&stations] { return stations.createLine(); },
                          [&stations] { return stations.foreignDatagrams(); }});
    const auto end = [] { QCoreApplication::exit(0); };
    QObject::connect(&window, &ktr::FormMain::closed, &application, end, Qt::QueuedConnection);
    QObject::connect(&window, &ktr::FormMain::exitWanted, &application, end);
    window.start(QCoreApplication::arguments().mid(1));
    return QApplication::exec();
}
