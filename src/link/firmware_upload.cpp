#include "link/firmware_upload.h"

#include "platform/files.h"

#include <QFile>
#include <QFileInfo>
#include <QPointer>

namespace ktr {

Status readFirmware(const QString &path, FirmwareImage &image)
{
    const auto failed = [&path](const QString &reason) { return fileFailure(path, reason); };
    const QFileInfo info(path);
    if (!info.exists()) {
        return failed(FirmwareUpload::tr("there is no such file"));
    }
    QFile file;
    if (Status opened = openToRead(file, path); !opened) {
        return opened;
    }
    image.fileLength = file.size();
    image.bytes = file.read(firmwareImageSize);
    if (file.error() != QFileDevice::NoError) {
        return failed(file.errorString());
    }
    if (image.bytes.isEmpty()) {
        return failed(FirmwareUpload::tr("is empty"));
    }
    constexpr char erased = '\xFF';
    image.bytes.resize(firmwareImageSize, erased);
    return Status::done();
}

FirmwareUpload::FirmwareUpload(Transport &transport, Timers &timers, UploadPace pace, QObject *parent)
    : QObject(parent), m_transport(transport), m_pause(timers.create()), m_pace(pace)
{
    connect(&transport, &Transport::lost, this, &FirmwareUpload::cancel);
}

Status FirmwareUpload::start(const QString &path)
{
    if (m_running) {
        return Status::failed(tr("A firmware upload is already running"));
    }
    if (!m_transport.isOpen()) {
        return Status::failed(tr("No connection to send the firmware over"));
    }
    FirmwareImage image;
    if (Status read = readFirmware(path, image); !read) {
        return read;
    }
    m_image = std::move(image.bytes);
    m_sent = 0;
    m_running = true;
    ++m_run;
    if (image.fileLength > firmwareImageSize) {
        Q_EMIT statusMessage(tr("%1 has %2 bytes; only the first %3 are sent")
                                 .arg(path)
                                 .arg(image.fileLength)
                                 .arg(firmwareImageSize));
    } else if (image.fileLength < firmwareImageSize) {
        Q_EMIT statusMessage(tr("%1 has %2 bytes; it is filled up to %3 with FF")
                                 .arg(path)
                                 .arg(image.fileLength)
                                 .arg(firmwareImageSize));
    }
    Q_EMIT progressed(0, firmwareImageSize);
    sendNext();
    return Status::done();
}

void FirmwareUpload::sendNext()
{
    if (!m_transport.isOpen()) {
        cancel();
        return;
    }
    const QByteArray block = m_image.mid(m_sent, m_pace.blockSize);
    m_sent += block.size();
    m_transport.send(block);
    m_transport.whenDrained([self = QPointer(this), run = m_run] {
        if (self != nullptr && self->m_running && self->m_run == run) {
            self->blockLeft();
        }
    });
}

void FirmwareUpload::blockLeft()
{
    const int run = m_run;
    Q_EMIT progressed(m_sent, firmwareImageSize);
    if (!m_running || m_run != run) {
        return; // cancelled by a receiver of the signal
    }
    if (m_sent == m_image.size()) {
        end(true);
    } else if (m_pace.pause.count() == 0) {
        sendNext();
    } else {
        m_pause->start(m_pace.pause, [this] { sendNext(); });
    }
}

void FirmwareUpload::cancel()
{
    if (m_running) {
        end(false);
    }
}

void FirmwareUpload::end(bool complete)
{
    m_pause->stop();
    m_running = false;
    m_image.clear();
    Q_EMIT ended(complete);
}

} // namespace ktr
