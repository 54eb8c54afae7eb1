#include <dlfcn.h>
#include <sys/types.h>

// QProcess starts a child within this process's memory, until it becomes another program. The thread
// sanitizer's own clone continues there as that child, which no longer watches locks, and from then on
// reports every lock of the parent as missing; so this calls the system's.
extern "C" int clone(int (*run)(void*), void* stack, int flags, void* argument, pid_t* parentId, void* tls,
                     pid_t* childId) {
    using Clone = int(int (*)(void*), void*, int, void*, ...);
    auto* const system = reinterpret_cast<Clone*>(::dlsym(::dlopen("libc.so.6", RTLD_LAZY), "clone"));
    return system(run, stack, flags, argument, parentId, tls, childId);
}
