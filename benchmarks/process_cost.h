#pragma once

// What this process costs.

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <unistd.h>

#ifdef __GLIBC__
#include <malloc.h>
#endif

/// Seconds of all threads, without other processes.
inline double processorTime()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) * 1e-9;
}

/// Gives what was freed back to the system, as far as the library can: what is measured next has to ask for
/// its memory as in a process that has just started, whatever was measured before.
inline void releaseFreedMemory()
{
#ifdef __GLIBC__
    ::malloc_trim(0);
#endif
}

/// In bytes, of the whole process.
inline double residentMemory()
{
    long pages = 0;
    std::FILE *file = std::fopen("/proc/self/statm", "r");
    if (file == nullptr || std::fscanf(file, "%*s %ld", &pages) != 1) {
        std::perror("/proc/self/statm");
        std::_Exit(1);
    }
    std::fclose(file);
    return double(pages) * double(::sysconf(_SC_PAGESIZE));
}
