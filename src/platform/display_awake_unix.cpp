#include "platform/display_awake.h"

#include <QProcess>
#include <QStandardPaths>

#include <memory>

namespace ktr {

namespace {

/// A program that holds the display awake while it runs, and ends by itself when its input ends: so also
/// where this program is killed.
std::unique_ptr<QProcess> &holder()
{
    static std::unique_ptr<QProcess> process;
    return process;
}

} // namespace

/// Desktops of today ask the login service whether they may be idle. Where there is none the desktop's own
/// settings decide.
void setDisplayAwake(bool isAwake)
{
    if (holder() != nullptr) {
        constexpr int patienceMs = 500;
        holder()->closeWriteChannel(); // which ends it
        holder()->waitForFinished(patienceMs);
        holder().reset();
    }
    const QString inhibit =
        isAwake ? QStandardPaths::findExecutable(QStringLiteral("systemd-inhibit")) : QString();
    if (inhibit.isEmpty()) {
        return;
    }
    holder() = std::make_unique<QProcess>();
    holder()->setStandardOutputFile(QProcess::nullDevice());
    holder()->setStandardErrorFile(QProcess::nullDevice());
    holder()->start(inhibit, {QStringLiteral("--what=idle"), QStringLiteral("--who=KTRconfig"),
                              QStringLiteral("--why=Stations are shown on a wall"), QStringLiteral("cat")});
}

} // namespace ktr
