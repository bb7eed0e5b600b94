#pragma once

#include "link/firmware_upload.h"
#include "link/module_session.h"

namespace ktr {

/// Gives a module a new firmware image, after which the module programs itself. While the image is on its way
/// the session sends nothing, so that no answer gets between its bytes.
///
///     module reads an SMS, gets "§88" --delay 1 s--> session quiet, answers drained --> image --> ended
class SelfProgramming : public QObject
{
    Q_OBJECT

public:
    /// From the command that announces the image to its first byte.
    static constexpr Milliseconds delay{1000};

    /// `file` returns the image's path; `line` is the session's. All of them must outlive this.
    SelfProgramming(ModuleSession &session, Transport &line, Timers &timers, UploadPace pace,
                    std::function<QString()> file, QObject *parent = nullptr);

    /// True from the announcement of an image to its last byte.
    bool isRunning() const { return m_delay->isRunning() || m_isDraining || m_upload.isRunning(); }

    /// Sends nothing more; what becomes of a part of an image is up to the module.
    void cancel();

Q_SIGNALS:
    /// The image cannot be sent, for this reason.
    void refused(const QString &reason);
    /// A line for the status bar: the file is shorter or longer than an image.
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
    bool m_isDraining = false;             ///< earlier answers are still leaving the machine
};

} // namespace ktr
