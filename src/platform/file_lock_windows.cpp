#include "platform/file_lock.h"
#include "platform/files.h"

#include <QDir>
#include <QFileInfo>
#include <QThread>

#include <windows.h>

namespace ktr {

namespace {

HANDLE openFile(const QString &path, DWORD access, DWORD share, DWORD how, DWORD flags)
{
    const QString native = QDir::toNativeSeparators(path);
    return ::CreateFileW(reinterpret_cast<const wchar_t *>(native.utf16()), access, share, nullptr, how,
                         flags, nullptr);
}

QByteArray contentOf(const QString &path)
{
    QByteArray record(1024, '\0');
    DWORD size = 0;
    const HANDLE file = openFile(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                 OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL);
    if (file != INVALID_HANDLE_VALUE) {
        if (::ReadFile(file, record.data(), static_cast<DWORD>(record.size()), &size, nullptr) == 0) {
            size = 0;
        }
        ::CloseHandle(file);
    }
    return record.first(static_cast<qsizetype>(size));
}

} // namespace

/// The open file is the lock: nobody else can open it to write, and it is removed when it is closed.
struct FileLock::Held
{
    explicit Held(HANDLE open) : file(open) {}
    ~Held() { ::CloseHandle(file); }
    Q_DISABLE_COPY_MOVE(Held)

    HANDLE file;
};

FileLock::FileLock() = default;
FileLock::~FileLock() = default;

FileLock::Outcome FileLock::take(const QString &path)
{
    release();
    constexpr int tries = 10;
    DWORD error = 0;
    for (int i = 0; i < tries; ++i) {
        const HANDLE file =
            openFile(path, GENERIC_READ | GENERIC_WRITE | DELETE, FILE_SHARE_READ | FILE_SHARE_DELETE,
                     OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_DELETE_ON_CLOSE);
        if (file != INVALID_HANDLE_VALUE) {
            m_held = std::make_unique<Held>(file);
            m_record = lockHolderRecord(qEnvironmentVariable("USERNAME"));
            DWORD written = 0;
            // Without it the others cannot see the holder; the lock works all the same.
            (void)::WriteFile(file, m_record.constData(), static_cast<DWORD>(m_record.size()), &written,
                              nullptr);
            (void)::SetEndOfFile(file);
            return Outcome::Taken;
        }
        error = ::GetLastError();
        if (error == ERROR_SHARING_VIOLATION) {
            m_holder = lockHolderText(contentOf(path));
            return Outcome::Held;
        }
        if (error != ERROR_ACCESS_DENIED && error != ERROR_DELETE_PENDING) {
            break;
        }
        QThread::msleep(10); // the last one is being removed while somebody reads who had it
    }
    m_trouble = fileFailure(path, qt_error_string(static_cast<int>(error)));
    return Outcome::Impossible;
}

/// The file goes with its holder.
std::optional<QByteArray> FileLock::heldBy(const QString &path)
{
    return QFileInfo(path).isFile() ? std::optional(contentOf(path)) : std::nullopt;
}

void FileLock::release()
{
    m_held.reset();
}

} // namespace ktr
