// Preloaded before a program (LD_PRELOAD), so that its file system fails and its clock jumps when a test says
// so. Only files under KTR_FAULT_FOLDER are touched. Of the calls that change something there, counted from
// 1, the one of number KTR_FAULT_AT goes wrong, as KTR_FAULT_KIND says:
//
//   error   it fails (EIO)
//   errors  it and the seven after it fail
//   full    the disk is full from then on (ENOSPC)
//   short   a write takes half of the bytes; any other call is not harmed
//   kill    the program ends as by kill -9, before the call
//
// What was struck is written to the file KTR_FAULT_REPORT. KTR_CLOCK_JUMP="MS:BY" sets the wall clock by so
// many milliseconds when the program has run for MS.

#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <string>
#include <sys/mman.h>
#include <sys/time.h>
#include <time.h>
#include <unistd.h>

namespace {

template <class Function> Function *real(const char *name)
{
    return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

const char *setting(const char *name)
{
    const char *value = ::getenv(name);
    return value == nullptr ? "" : value;
}

enum class Harm { None, Error, Full, Short };

bool concerns(const char *path)
{
    static const std::string folder = setting("KTR_FAULT_FOLDER");
    return !folder.empty() && std::strncmp(path, folder.c_str(), folder.size()) == 0;
}

void report(const char *call, const char *path)
{
    static const auto open = real<int(const char *, int, ...)>("open");
    static const auto write = real<ssize_t(int, const void *, std::size_t)>("write");
    const std::string line = std::string(call) + ' ' + path + '\n';
    const int file = open(setting("KTR_FAULT_REPORT"), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    if (file >= 0) {
        (void)!write(file, line.c_str(), line.size());
        ::close(file);
    }
}

/// What happens to a call that changes a file. Several threads may call.
Harm harm(const char *call, const char *path)
{
    static const int struckCall = std::atoi(setting("KTR_FAULT_AT"));
    static const std::string kind = setting("KTR_FAULT_KIND");
    static std::atomic<int> calls = 0;
    if (struckCall == 0 || !concerns(path)) {
        return Harm::None;
    }
    const int number = ++calls;
    const bool isFull = kind == "full";
    const int last = kind == "errors" ? struckCall + 7 : struckCall;
    if (number < struckCall || (number > last && !isFull)) {
        return Harm::None;
    }
    if (number == struckCall) {
        report(call, path);
    }
    if (kind == "kill") {
        ::raise(SIGKILL);
    }
    return isFull ? Harm::Full : kind == "short" ? Harm::Short : Harm::Error;
}

std::string pathOf(int file)
{
    const std::string link = "/proc/self/fd/" + std::to_string(file);
    char path[PATH_MAX];
    const ssize_t size = ::readlink(link.c_str(), path, sizeof path);
    return size < 0 ? std::string() : std::string(path, static_cast<std::size_t>(size));
}

/// Whether a call fails that needs no room, or that does.
bool fails(Harm harm, bool needsRoom)
{
    const bool failed = harm == Harm::Error || (harm == Harm::Full && needsRoom);
    if (failed) {
        errno = harm == Harm::Full ? ENOSPC : EIO;
    }
    return failed;
}

int opened(const char *name, const char *path, int flags, mode_t mode)
{
    if ((flags & O_CREAT) != 0 && ::access(path, F_OK) != 0 && fails(harm("open", path), true)) {
        return -1;
    }
    return real<int(const char *, int, ...)>(name)(path, flags, mode);
}

/// Milliseconds that the wall clock is off by now.
long long clockJump()
{
    static const char *const jump = setting("KTR_CLOCK_JUMP");
    static const auto now = [] {
        timespec time{};
        real<int(clockid_t, timespec *)>("clock_gettime")(CLOCK_MONOTONIC, &time);
        return time.tv_sec * 1000LL + time.tv_nsec / 1'000'000;
    };
    static const long long start = now();
    static const char *const by = std::strchr(jump, ':');
    return by != nullptr && now() - start >= std::atoll(jump) ? std::atoll(by + 1) : 0;
}

} // namespace

extern "C" {

ssize_t write(int file, const void *bytes, std::size_t size)
{
    static const auto next = real<ssize_t(int, const void *, std::size_t)>("write");
    const Harm harmed = file > 2 ? harm("write", pathOf(file).c_str()) : Harm::None;
    if (fails(harmed, true)) {
        return -1;
    }
    return next(file, bytes, harmed == Harm::Short ? (size + 1) / 2 : size);
}

ssize_t pwrite64(int file, const void *bytes, std::size_t size, off64_t place)
{
    static const auto next = real<ssize_t(int, const void *, std::size_t, off64_t)>("pwrite64");
    const Harm harmed = harm("pwrite", pathOf(file).c_str());
    if (fails(harmed, true)) {
        return -1;
    }
    return next(file, bytes, harmed == Harm::Short ? (size + 1) / 2 : size, place);
}

void *mmap64(void *wanted, std::size_t size, int protection, int flags, int file, off64_t place)
{
    static const auto next = real<void *(void *, std::size_t, int, int, int, off64_t)>("mmap64");
    return file >= 0 && fails(harm("mmap", pathOf(file).c_str()), false)
               ? MAP_FAILED
               : next(wanted, size, protection, flags, file, place);
}

int fsync(int file)
{
    return fails(harm("fsync", pathOf(file).c_str()), false) ? -1 : real<int(int)>("fsync")(file);
}

int fdatasync(int file)
{
    return fails(harm("fdatasync", pathOf(file).c_str()), false) ? -1 : real<int(int)>("fdatasync")(file);
}

int ftruncate(int file, off_t size)
{
    return fails(harm("ftruncate", pathOf(file).c_str()), false)
               ? -1
               : real<int(int, off_t)>("ftruncate")(file, size);
}

int ftruncate64(int file, off64_t size)
{
    return fails(harm("ftruncate", pathOf(file).c_str()), false)
               ? -1
               : real<int(int, off64_t)>("ftruncate64")(file, size);
}

int rename(const char *from, const char *to)
{
    return fails(harm("rename", to), false) ? -1 : real<int(const char *, const char *)>("rename")(from, to);
}

int renameat2(int fromFolder, const char *from, int toFolder, const char *to, unsigned flags)
{
    return fails(harm("rename", to), false) ? -1
                                            : real<int(int, const char *, int, const char *, unsigned)>(
                                                  "renameat2")(fromFolder, from, toFolder, to, flags);
}

int unlink(const char *path)
{
    return fails(harm("unlink", path), false) ? -1 : real<int(const char *)>("unlink")(path);
}

int open(const char *path, int flags, ...)
{
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & (O_CREAT | __O_TMPFILE)) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return opened("open", path, flags, mode);
}

int open64(const char *path, int flags, ...)
{
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & (O_CREAT | __O_TMPFILE)) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return opened("open64", path, flags, mode);
}

int clock_gettime(clockid_t clock, timespec *time)
{
    static const auto next = real<int(clockid_t, timespec *)>("clock_gettime");
    const int result = next(clock, time);
    if (clock == CLOCK_REALTIME && result == 0) {
        const long long nanoseconds = time->tv_nsec + clockJump() * 1'000'000;
        constexpr long long aSecond = 1'000'000'000;
        time->tv_sec += static_cast<time_t>(nanoseconds / aSecond) - (nanoseconds % aSecond < 0 ? 1 : 0);
        time->tv_nsec = static_cast<long>((nanoseconds % aSecond + aSecond) % aSecond);
    }
    return result;
}

int gettimeofday(timeval *time, void *)
{
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    time->tv_sec = now.tv_sec;
    time->tv_usec = now.tv_nsec / 1000;
    return 0;
}

} // extern "C"
