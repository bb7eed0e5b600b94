#include "platform/files.h"
#include "platform/serial_device.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <vector>
// clang-format off
#include <windows.h>
#include <setupapi.h> // needs the one before
// clang-format on

namespace ktr {

namespace {

struct FoundPort
{
    bool isBuiltIn;
    int number;
    QString name;
};

/// The system lists each port by its driver's name for it, "\\Device\\Serial0" and the like for built-in
/// ones.
FoundPort foundPort(const QString &device, const QString &name)
{
    const QLatin1String builtIn("\\Device\\Serial");
    const bool isBuiltIn =
        device.startsWith(builtIn, Qt::CaseInsensitive) &&
        std::all_of(device.begin() + builtIn.size(), device.end(), [](QChar c) { return c.isDigit(); });
    return {isBuiltIn, QStringView(name).mid(3).toInt(), name}; // behind "COM"
}

QString systemPath(const QString &path)
{
    const QLatin1String devices("\\\\.\\"); // without it ten ports and more are out of reach
    return path.startsWith(devices) ? path : devices + path;
}

Status refused(const QString &path, DWORD reason)
{
    const QString text =
        reason == ERROR_ACCESS_DENIED || reason == ERROR_SHARING_VIOLATION
            ? QCoreApplication::translate("Files", "the port is already in use")
        : reason == ERROR_FILE_NOT_FOUND || reason == ERROR_PATH_NOT_FOUND || reason == ERROR_INVALID_NAME
            ? QCoreApplication::translate("Files", "there is no such port")
        : reason == ERROR_INVALID_FUNCTION || reason == ERROR_INVALID_HANDLE
            ? QCoreApplication::translate("Files", "is no serial port")
            : qt_error_string(static_cast<int>(reason));
    return fileFailure(path, text);
}

bool setUp(HANDLE handle)
{
    DCB line = {};
    line.DCBlength = sizeof line;
    if (::GetCommState(handle, &line) == 0) {
        return false;
    }
    line.BaudRate = CBR_9600;
    line.ByteSize = 8;
    line.Parity = NOPARITY;
    line.StopBits = ONESTOPBIT;
    line.fBinary = TRUE;
    line.fParity = FALSE;
    line.fOutxCtsFlow = FALSE;
    line.fOutxDsrFlow = FALSE;
    line.fDsrSensitivity = FALSE;
    line.fOutX = FALSE;
    line.fInX = FALSE;
    line.fNull = FALSE;
    line.fErrorChar = FALSE;
    line.fAbortOnError = FALSE;
    line.fDtrControl = DTR_CONTROL_ENABLE;
    line.fRtsControl = RTS_CONTROL_ENABLE;
    // A read ends as soon as there is something and the line then pauses for a millisecond.
    COMMTIMEOUTS waits = {};
    waits.ReadIntervalTimeout = 1;
    return ::SetCommState(handle, &line) != 0 && ::SetCommTimeouts(handle, &waits) != 0;
}

} // namespace

QStringList serialPorts()
{
    HKEY key = nullptr;
    if (::RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"HARDWARE\\DEVICEMAP\\SERIALCOMM", 0, KEY_READ, &key) !=
        ERROR_SUCCESS) {
        return {};
    }
    std::vector<FoundPort> found;
    for (DWORD i = 0;; ++i) {
        std::array<wchar_t, 256> device{};
        std::array<wchar_t, 256> name{}; // one more than is asked for: a text may come without its zero
        DWORD deviceLength = device.size();
        DWORD nameSize = sizeof name - sizeof(wchar_t);
        DWORD type = REG_NONE;
        const LONG listed = ::RegEnumValueW(key, i, device.data(), &deviceLength, nullptr, &type,
                                            reinterpret_cast<BYTE *>(name.data()), &nameSize);
        if (listed == ERROR_NO_MORE_ITEMS) {
            break;
        }
        if (listed == ERROR_SUCCESS && type == REG_SZ) {
            found.push_back(
                foundPort(QString::fromWCharArray(device.data()), QString::fromWCharArray(name.data())));
        } else if (listed != ERROR_SUCCESS && listed != ERROR_MORE_DATA) {
            break;
        }
    }
    ::RegCloseKey(key);
    std::sort(found.begin(), found.end(), [](const FoundPort &a, const FoundPort &b) {
        return a.isBuiltIn != b.isBuiltIn ? b.isBuiltIn : a.number < b.number;
    });
    QStringList ports;
    std::transform(found.begin(), found.end(), std::back_inserter(ports),
                   [](const FoundPort &port) { return port.name; });
    return ports;
}

/// "USB Serial Port (COM3)" without the port's name.
QString serialAdapter(const QString &port)
{
    constexpr GUID portClass = {0x4d36e978, 0xe325, 0x11ce, {0xbf, 0xc1, 0x08, 0x00, 0x2b, 0xe1, 0x03, 0x18}};
    const HDEVINFO devices = ::SetupDiGetClassDevsW(&portClass, nullptr, nullptr, DIGCF_PRESENT);
    if (devices == INVALID_HANDLE_VALUE) {
        return {};
    }
    const QString behind = QLatin1String(" (") + port + u')';
    QString found;
    SP_DEVINFO_DATA device = {};
    device.cbSize = sizeof device;
    for (DWORD index = 0; found.isEmpty() && ::SetupDiEnumDeviceInfo(devices, index, &device) != 0; ++index) {
        std::array<wchar_t, 256> name{};
        const auto bytes = static_cast<DWORD>(sizeof(wchar_t) * (name.size() - 1));
        if (::SetupDiGetDeviceRegistryPropertyW(devices, &device, SPDRP_FRIENDLYNAME, nullptr,
                                                reinterpret_cast<BYTE *>(name.data()), bytes, nullptr) != 0) {
            const QString text = QString::fromWCharArray(name.data());
            found = text.endsWith(behind) ? text.chopped(behind.size()) : QString();
        }
    }
    ::SetupDiDestroyDeviceInfoList(devices);
    return found;
}

Status openSerialDevice(const QString &path, SerialHandle &handle)
{
    const QString device = systemPath(path);
    // Shared with nobody: the second one to open it is refused.
    const HANDLE opened =
        ::CreateFileW(reinterpret_cast<const wchar_t *>(device.utf16()), GENERIC_READ | GENERIC_WRITE, 0,
                      nullptr, OPEN_EXISTING, FILE_FLAG_OVERLAPPED, nullptr);
    if (opened == INVALID_HANDLE_VALUE) {
        return refused(path, ::GetLastError());
    }
    if (!setUp(opened)) {
        const DWORD reason = ::GetLastError();
        ::CloseHandle(opened);
        return refused(path, reason);
    }
    handle = opened;
    return Status::done();
}

void releaseSerialDevice(SerialHandle) {}

qint64 bytesNotYetSent(SerialHandle handle)
{
    DWORD errors = 0;
    COMSTAT state = {};
    return ::ClearCommError(handle, &errors, &state) != 0 ? static_cast<qint64>(state.cbOutQue) : 0;
}

} // namespace ktr
