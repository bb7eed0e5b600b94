#include "cli/console.h"

#include "platform/terminal.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace ktr::cli {

namespace {

void put(std::FILE *stream, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stream);
}

Progress *shownProgress = nullptr;

} // namespace

void print(const QString &line)
{
    put(stdout, line + u'\n');
}

void complain(const QString &message)
{
    if (shownProgress != nullptr) {
        shownProgress->end();
    }
    std::fflush(stdout); // where both go to one place, they stand in the order of events
    QString line = message;
    line.replace(u'\r', u' ').replace(u'\n', u' ');
    put(stderr, QLatin1String("ktrcli: ") + line + u'\n');
}

int fail(const QString &message)
{
    complain(message);
    return failed;
}

bool flushOutput()
{
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) {
        return true;
    }
    complain(QLatin1String("standard output: ") + QString::fromLocal8Bit(std::strerror(errno)));
    return false;
}

Progress::Progress(int maximum) : m_maximum(maximum), m_onTerminal(isTerminal(stdout))
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
    const QString count = QStringLiteral("%1/%2").arg(value, 3).arg(m_maximum);
    if (!m_onTerminal) {
        print(count + QLatin1String("  ") + what);
        std::fflush(stdout);
        return;
    }
    constexpr int barWidth = 30;
    const int full = std::clamp(value * barWidth / std::max(m_maximum, 1), 0, barWidth);
    const QString bar = QString(full, u'#') + QString(barWidth - full, u'.');
    const int space = std::max(0, terminalWidth(stdout) - 1 - barWidth - 4 - static_cast<int>(count.size()));
    put(stdout, QLatin1String("\r[") + bar + QLatin1String("] ") + count + u' ' +
                    what.left(space).leftJustified(space));
    std::fflush(stdout);
    m_barShown = true;
}

void Progress::end()
{
    if (m_barShown) {
        put(stdout, QStringLiteral("\n"));
        std::fflush(stdout);
        m_barShown = false;
    }
}

} // namespace ktr::cli
