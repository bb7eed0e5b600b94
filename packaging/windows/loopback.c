/* For the server of Wine (LD_PRELOAD): on Windows a socket can have any address of 127.0.0.0/8, as on Linux. Wine takes
   those that no interface lists for all addresses, so that a second one at the same port is refused. Where it cannot list
   the interfaces it binds to what it was told. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <ifaddrs.h>
#include <string.h>

int getifaddrs(struct ifaddrs **list)
{
    int (*real)(struct ifaddrs **) = (int (*)(struct ifaddrs **))dlsym(RTLD_NEXT, "getifaddrs");
    if (strncmp(program_invocation_short_name, "wineserver", strlen("wineserver")) == 0 || real == NULL) {
        errno = ENOTSUP;
        return -1;
    }
    return real(list);
}
