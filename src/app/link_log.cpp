#include "app/link_log.h"

#include <QFileInfo>

namespace ktr {

void LinkLog::write(const QString &line)
{
    const QString &path = m_document.configuration().info.logFile;
    if (path != m_path) {
        m_path = path;
        m_isFailureReported = false;
        m_log.close();
        if (const QFileInfo info(path); info.exists() && !info.isFile()) { // a pipe would wait for its reader
            Q_EMIT statusMessage(tr("%1 is not a file; there is no log").arg(path));
        } else if (const Status opened = m_log.open(path); !opened) {
            m_isFailureReported = true;
            Q_EMIT statusMessage(opened.message());
        }
    }
    m_log.write(m_document.environment().now(), line);
    if (const Status written = m_log.status(); !written && !std::exchange(m_isFailureReported, true)) {
        Q_EMIT statusMessage(tr("The log is incomplete: %1").arg(written.message()));
    }
}

} // namespace ktr
