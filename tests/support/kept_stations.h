#pragma once

#include "opmode/operational_mode.h"
#include "record/record_address.h"
#include "support/environment.h"
#include "support/recorded_line.h"

#include <QTest>

namespace ktr::test {

/// A list that is kept, with modules that say what a test wants, in the time of the event loop.
struct KeptStations
{
    /// `place` is a folder, or the address of a record that keepers share, with the folder in which waits
    /// what its server does not take.
    explicit KeptStations(const QString &place, const QString &spoolFolder = {})
    {
        Environment environment = fixedEnvironment();
        environment.now = &QDateTime::currentDateTimeUtc;
        OperationalMode::Services services{environment, timers, [this] {
                                               auto line = std::make_unique<RecordedLine>();
                                               lines += line.get();
                                               return line;
                                           }};
        services.name = QStringLiteral("keeper");
        services.spoolFolder = spoolFolder;
        mode.emplace(services, StationCaptions{});
        opened = mode->open(isServerAddress(place) ? place : place + QStringLiteral("/nodes.xml"),
                            OperationalMode::Use::Keep);
    }
    void add(const QString &name)
    {
        mode->addStation(name, QStringLiteral("10.0.0.%1").arg(lines.size() + 1));
        mode->setOnline(name, true);
    }
    void say(int station, const QByteArray &sms)
    {
        lines[station]->say("at+cmgs=\"+4917012345\"\r");
        lines[station]->say(sms + '\x1A');
    }

    EventLoopTimers timers;
    QList<RecordedLine *> lines;
    std::optional<OperationalMode> mode;
    Status opened = Status::done();
};

} // namespace ktr::test
