#include "cli/patient_job.h"

#include "cli/console.h"
#include "cli/interruption.h"

#include <QCoreApplication>

#include <algorithm>

namespace ktr::cli {

namespace {

/// Until everything is written or somebody asks for the end.
void waitForReader(PatientOutput &output)
{
    if (Interruption::happened() || output.drain()) {
        return;
    }
    IoThread io;
    const Interruption interruption(io, [] {});
    while (!Interruption::happened() && !output.drain()) {
    }
}

/// What standard error did not get for the reader of standard output, and what that one did not.
void tellRest(const PatientOutput::Rest &rest)
{
    PatientOutput output({}); // it may stand still as well
    printThrough(&output);
    output.put(stderr, rest.errors);
    if (rest.lines > 0) {
        const QString trouble = outputIsGone() ? outputTrouble() : QStringLiteral("the reader stands still");
        complain(QStringLiteral("standard output: %1; lines lost: %2").arg(trouble).arg(rest.lines));
        outputTroubleIsTold();
    }
    printThrough(nullptr);
    output.end();
}

} // namespace

int patiently(const std::function<int()> &job, const PatientJob &options)
{
    PatientOutput output({options.gap, [endsUnread = options.endsUnread](int error) {
                              setOutputGone(error);
                              if (endsUnread) {
                                  QMetaObject::invokeMethod(QCoreApplication::instance(),
                                                            &QCoreApplication::quit, Qt::QueuedConnection);
                              }
                          }});
    printThrough(&output);
    const int code = job();
    printThrough(nullptr);
    if (options.waitsForReader) {
        waitForReader(output);
    }
    const PatientOutput::Rest rest = output.end();
    tellRest(rest);
    return rest.lines > 0 ? std::max(code, failed) : code;
}

} // namespace ktr::cli
