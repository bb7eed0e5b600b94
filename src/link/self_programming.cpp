#include "link/self_programming.h"

#include <QPointer>

namespace ktr {

SelfProgramming::SelfProgramming(ModuleSession &session, Transport &line, Timers &timers, UploadPace pace,
                                 std::function<QString()> file, QObject *parent)
    : QObject(parent),
      m_session(session),
      m_file(std::move(file)),
      m_upload(line, timers, pace),
      m_delay(timers.create())
{
    connect(&session, &ModuleSession::firmwareAnnounced, this,
            [this] { m_delay->start(delay, [this] { begin(); }); });
    connect(&line, &Transport::lost, this, &SelfProgramming::cancel);
    connect(&m_upload, &FirmwareUpload::statusMessage, this, &SelfProgramming::statusMessage);
    connect(&m_upload, &FirmwareUpload::progressed, this, &SelfProgramming::progressed);
    connect(&m_upload, &FirmwareUpload::ended, this, [this](bool complete) {
        m_session.setQuiet(false);
        Q_EMIT ended(complete);
    });
}

void SelfProgramming::begin()
{
    m_session.setQuiet(true);
    m_isDraining = true;
    m_session.whenDrained([self = QPointer(this)] {
        if (self != nullptr && std::exchange(self->m_isDraining, false)) {
            self->upload();
        }
    });
}

void SelfProgramming::upload()
{
    if (const Status started = m_upload.start(m_file()); !started) {
        m_session.setQuiet(false);
        Q_EMIT refused(started.message());
    }
}

void SelfProgramming::cancel()
{
    m_delay->stop();
    if (std::exchange(m_isDraining, false)) {
        m_session.setQuiet(false);
    }
    m_upload.cancel();
}

} // namespace ktr
