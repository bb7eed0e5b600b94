#pragma once

#include <QString>

#include <cstdio>

namespace ktr::cli {

/// Exit codes of ktrcli.
inline constexpr int done = 0;
inline constexpr int failed = 1;
inline constexpr int wrongUsage = 2;
inline constexpr int notKnown = 3; ///< all was sent, but what of it arrived is not known

/// A line on standard output, in UTF-8 whatever the locale.
void print(const QString &line);

/// How much a line matters, by the numbers of the system's log.
enum class Urgency { Error = 3, Warning = 4, Notice = 5, Info = 6 };
/// One line on stderr, beginning "ktrcli: ", or with its urgency where stderr goes to the system's log, which
/// adds the name by itself. A progress bar that stands there ends first.
void logLine(Urgency urgency, const QString &message);
/// The same for an error.
void complain(const QString &message);

/// Complains and returns the exit code of a job that failed.
int fail(const QString &message);

class PatientOutput;
/// From now on output and complaints go there, and appear soon without showNow(); null for the streams again.
void printThrough(PatientOutput *output);

/// Flushes what was printed so far, for a person or program waiting for it.
void showNow();

/// Whether standard output cannot be written any more.
bool outputIsGone();
/// Notes that it cannot, for this reason; from any thread.
void setOutputGone(int error);

/// Why it cannot, in words; empty while it can.
QString outputTrouble();
/// Forgets that: it is told.
void outputTroubleIsTold();

/// False, after a complaint, when not all of the output could be written.
bool flushOutput();

/// How far a transmission has come: a bar that stays in its place on a terminal, plain lines elsewhere. Of a
/// job whose end is not known, a count on stderr, where the results are not; nothing where that is no
/// terminal.
class Progress
{
public:
    static constexpr int unknown = 0;

    explicit Progress(int maximum);
    ~Progress();
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;

    void show(int value, const QString &what);

    /// Leaves the bar's line, so that what follows stands below it.
    void end();

private:
    int m_maximum;
    std::FILE *m_stream;
    bool m_onTerminal;
    bool m_barShown = false;
};

} // namespace ktr::cli
