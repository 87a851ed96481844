#include "common/ModuleState.h"

#include <cstring>
#include <mutex>

PEGASUS_USING_PEGASUS;

String _hostName;
std::atomic<Sint32> _initInProgress{0};

namespace {
// Recursive, as the provider library's own mutex is.
std::recursive_mutex moduleMutex;
} // namespace

void _mutex_lock() { moduleMutex.lock(); }

void _mutex_unlock() { moduleMutex.unlock(); }

String _getHostName() { return _hostName; }

namespace serverprofile {

char hostNameBuffer[hostNameCapacity] = {};
Sint32 lookupPending = 0;
Sint32 dataBuildInProgress = 0;

void copyHostName(char (&to)[hostNameCapacity], const char* from) {
    const std::size_t length = ::strnlen(from, hostNameCapacity - 1);
    std::memmove(to, from, length);
    to[length] = '\0';
}

} // namespace serverprofile
