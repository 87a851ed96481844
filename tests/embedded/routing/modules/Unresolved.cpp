// A module that calls a function which no library has: it loads, and fails when it gets there.
#include <Pegasus/Provider/CIMProvider.h>

Pegasus::CIMProvider* madeNowhere();

extern "C" PEGASUS_EXPORT Pegasus::CIMProvider* PegasusCreateProvider(const Pegasus::String&) {
    return madeNowhere();
}
