// Paths sort the keys that they are given where they lie (OpenPegasus, too: there, threads that
// share the keys disturb each other).
#include "Sharing.h"
#include "Throws.h"

#include <Pegasus/Common/CIMObjectPath.h>

using namespace Pegasus;
using apitest::text;

namespace {

TEST(SharedKeys, MayBeGivenToPathsInSeveralThreads) {
    const CIMObjectPath shared("//h/n:A.k=1,r=\"B.z=1,y=2\"");
    apitest::expectIndependentCopies(
        CIMObjectPath("C"), [&](CIMObjectPath& x) { x.setKeyBindings(shared.getKeyBindings()); },
        [](const CIMObjectPath& x) { return text(x.toString()); });
}

} // namespace
