#pragma once

#include "link/transport.h"
#include "platform/timers.h"

#include <QByteArray>
#include <QObject>

namespace ktr {

/// The module's program memory: an image is sent with exactly this many bytes.
inline constexpr qsizetype firmwareImageSize = 43'008;

struct FirmwareImage
{
    QByteArray bytes;      ///< firmwareImageSize of them, 0xFF (an erased memory) beyond the file's end
    qint64 fileLength = 0; ///< may be longer than the image: the rest is not sent
};

/// Reads an image; fails when the file is missing, unreadable or empty.
Status readFirmware(const QString &path, FirmwareImage &image);

/// The size of the blocks that an image is sent in, and the pause after each has left the machine.
struct UploadPace
{
    qsizetype blockSize;
    Milliseconds pause;
};
/// A serial port sets the pace itself: some half a second a block at 9600 baud, the line idle for 1% of it.
inline constexpr UploadPace serialPace{512, Milliseconds{0}};
/// A block is a datagram.
inline constexpr UploadPace datagramPace{256, Milliseconds{10}};

/// Sends a firmware image over a line that is open.
class FirmwareUpload : public QObject
{
    Q_OBJECT

public:
    FirmwareUpload(Transport &transport, Timers &timers, UploadPace pace, QObject *parent = nullptr);

    /// Sends the file's image. Nothing is sent when the file cannot be read or is empty, the line is closed
    /// or an upload runs.
    Status start(const QString &path);

    /// Sends nothing more; what becomes of a part of an image is up to the module.
    void cancel();

    bool isRunning() const { return m_running; }

Q_SIGNALS:
    void progressed(qint64 sent, qint64 total);
    /// A line for the status bar: the file is shorter or longer than an image.
    void statusMessage(const QString &line);
    /// The upload is over; `complete` when all of it has left the machine.
    void ended(bool complete);

private:
    void sendNext();
    void blockLeft();
    void end(bool complete);

    Transport &m_transport;
    std::unique_ptr<OneShotTimer> m_pause;
    UploadPace m_pace;
    QByteArray m_image;
    qsizetype m_sent = 0;
    bool m_running = false;
    int m_run = 0; ///< grows with each upload: callbacks of earlier ones are ignored
};

} // namespace ktr
