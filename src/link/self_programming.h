#pragma once

#include "link/firmware_upload.h"
#include "link/module_session.h"

namespace ktr {

/// Gives a module a new firmware image: the session tells that the module was told to expect one, and a delay
/// later the image goes out over the session's line. The session is quiet meanwhile, so that no answer gets
/// among the bytes of the image.
class SelfProgramming : public QObject
{
    Q_OBJECT

public:
    /// Between the command that announces the image and its first byte.
    static constexpr Milliseconds delay{1000};

    /// `file` gives the image's path; `line` is the session's. All of them must outlive this.
    SelfProgramming(ModuleSession &session, Transport &line, Timers &timers, UploadPace pace,
                    std::function<QString()> file, QObject *parent = nullptr);

    /// From the announcement of an image to its end.
    bool isRunning() const { return m_delay->isRunning() || m_isDraining || m_upload.isRunning(); }

    /// Nothing more is sent; the module itself decides what it makes of what it got.
    void cancel();

Q_SIGNALS:
    /// The image is not sent, for this reason.
    void refused(const QString &reason);
    /// The file is not as long as the image, in a line for the user.
    void statusMessage(const QString &line);
    void progressed(qint64 sent, qint64 total);
    /// The upload is over; `complete` when all of it has left the machine.
    void ended(bool complete);

private:
    void begin();
    void upload();

    ModuleSession &m_session;
    std::function<QString()> m_file;
    FirmwareUpload m_upload;
    std::unique_ptr<OneShotTimer> m_delay; ///< Timer_selfProgram
    bool m_isDraining = false;             ///< answers of before are still leaving
};

} // namespace ktr
