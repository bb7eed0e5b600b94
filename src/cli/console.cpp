#include "cli/console.h"

#include "cli/patient_output.h"
#include "platform/service_manager.h"
#include "platform/terminal.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace ktr::cli {

namespace {

std::atomic<int> outputError = 0; ///< why standard output could not be written, the first time
PatientOutput *patientOutput = nullptr;

void keepOutputError(bool written)
{
    if (!written) {
        setOutputGone(errno);
    }
}

void put(std::FILE *stream, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    if (patientOutput != nullptr) {
        patientOutput->put(stream, bytes);
        return;
    }
    const auto size = static_cast<std::size_t>(bytes.size());
    const bool written = std::fwrite(bytes.constData(), 1, size, stream) == size;
    keepOutputError(written || stream != stdout);
}

Progress *shownProgress = nullptr;

} // namespace

void print(const QString &line)
{
    put(stdout, line + u'\n');
}

void logLine(Urgency urgency, const QString &message)
{
    static const bool isJournal = errorsGoToJournal();
    if (shownProgress != nullptr) {
        shownProgress->end();
    }
    showNow(); // where both go to one place, they stand in the order of events
    QString line = message;
    std::ranges::replace_if(
        line, [](QChar c) { return c.category() == QChar::Other_Control; }, u' '); // names from files, too
    put(stderr,
        (isJournal ? QStringLiteral("<%1>").arg(static_cast<int>(urgency)) : QStringLiteral("ktrcli: ")) +
            line + u'\n');
}

void complain(const QString &message)
{
    logLine(Urgency::Error, message);
}

int fail(const QString &message)
{
    complain(message);
    return failed;
}

void printThrough(PatientOutput *output)
{
    showNow();
    patientOutput = output;
}

void setOutputGone(int error)
{
    int none = 0;
    outputError.compare_exchange_strong(none, error);
}

void showNow()
{
    if (patientOutput != nullptr) {
        return;
    }
    keepOutputError(std::fflush(stdout) == 0);
}

bool outputIsGone()
{
    return outputError != 0;
}

QString outputTrouble()
{
    return outputIsGone() ? QString::fromLocal8Bit(std::strerror(outputError.load())) : QString();
}

void outputTroubleIsTold()
{
    outputError = 0;
}

bool flushOutput()
{
    showNow();
    if (outputError == 0 || outputError == EPIPE) { // whoever read it had enough
        return true;
    }
    complain(QLatin1String("standard output: ") + outputTrouble());
    return false;
}

Progress::Progress(int maximum)
    : m_maximum(maximum), m_stream(maximum == unknown ? stderr : stdout), m_onTerminal(isTerminal(m_stream))
{
    shownProgress = this;
}

Progress::~Progress()
{
    end();
    shownProgress = nullptr;
}

void Progress::show(int value, const QString &what)
{
    if (m_maximum == unknown) {
        if (m_onTerminal) {
            put(m_stream, QStringLiteral("\r%1 %2").arg(value).arg(what));
            m_barShown = true;
        }
        return;
    }
    const QString count = QStringLiteral("%1/%2").arg(value, 3).arg(m_maximum);
    if (!m_onTerminal) {
        print(count + QLatin1String("  ") + what);
        showNow();
        return;
    }
    constexpr int barWidth = 30;
    const int full = std::clamp(value * barWidth / std::max(m_maximum, 1), 0, barWidth);
    const QString bar = QString(full, u'#') + QString(barWidth - full, u'.');
    const int space = std::max(0, terminalWidth(stdout) - 1 - barWidth - 4 - static_cast<int>(count.size()));
    put(stdout, QLatin1String("\r[") + bar + QLatin1String("] ") + count + u' ' +
                    what.left(space).leftJustified(space));
    showNow();
    m_barShown = true;
}

void Progress::end()
{
    if (m_barShown) {
        put(m_stream, QStringLiteral("\n"));
        showNow();
        m_barShown = false;
    }
}

} // namespace ktr::cli
