// The frame that all read operations share.
#pragma once

#include "common/ModuleState.h"
#include "common/Trace.h"
#include "provider/ServerProfileProvider.h"

#include <unistd.h>

template <class Work>
void ServerProfileProvider::serve(const char* name, Handler& handler, Work work) {
    using serverprofile::trace;
    const auto traceFlag = [&](const char* stage) {
        trace("Quil ", name, "(): ", stage, _initInProgress.load());
    };

    traceFlag("Start BEFoRE MUTEX _initInProgress ");
    serverprofile::ModuleLock lock;
    try {
        traceFlag("Start AFTER MUTEX _initInProgress ");
        while (_initInProgress != 0) {
            trace("Quil - enum Test waiting init is ", _initInProgress.load());
            ::sleep(1);
        }
        traceFlag("Start _initInProgress ");
        if (!initFlag)
            initData();
        work();
        handler.complete();
    } catch (const Pegasus::Exception& exception) {
        lock.release();
        trace("Quil ", name, "(): ", "Exception - ", exception.getMessage());
    }
}
