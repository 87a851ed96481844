// The state that all provider objects share. It lives from the load of the library to its unload.
//
// Thread-safety: everything but `_initInProgress` is read and written only with the module mutex
// held. `_initInProgress` is changed only with it held; the trace also reads it without.
#pragma once

#include <Pegasus/Common/String.h>

#include <atomic>

/// The host name in every object path that the module builds.
extern Pegasus::String _hostName;

/// 1 while `initialize` runs; stays 1 after it has failed; else 0.
extern std::atomic<Pegasus::Sint32> _initInProgress;

/// Locks and unlocks the module mutex, which one thread may lock repeatedly.
void _mutex_lock();
void _mutex_unlock();

/// A copy of `_hostName`. To be called with the module mutex held.
Pegasus::String _getHostName();

namespace serverprofile {

/// Bytes of a host name, its NUL included.
constexpr unsigned hostNameCapacity = 256;

/// The host's canonical name as the resolver gave it; empty until it did.
extern char hostNameBuffer[hostNameCapacity];

/// 1 from the start of the host name's look-up until the resolver has answered.
extern Pegasus::Sint32 lookupPending;

/// 1 while the profile catalogue is being built. The init gate does not look at it.
extern Pegasus::Sint32 dataBuildInProgress;

/// Copies the text `from` into `to`, cut to what fits, always terminated.
void copyHostName(char (&to)[hostNameCapacity], const char* from);

/// Holds the module mutex for a scope, or until release().
class ModuleLock {
  public:
    ModuleLock() { _mutex_lock(); }
    ~ModuleLock() { release(); }
    ModuleLock(const ModuleLock&) = delete;
    ModuleLock& operator=(const ModuleLock&) = delete;

    void release() {
        if (_held) {
            _held = false;
            _mutex_unlock();
        }
    }

  private:
    bool _held = true;
};

} // namespace serverprofile
