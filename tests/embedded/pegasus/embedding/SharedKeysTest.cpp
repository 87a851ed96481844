// Paths sort the keys that they are given where they lie (OpenPegasus, too: there, threads that
// share the keys disturb each other).
#include "Sharing.h"
#include "Throws.h"
#include "embedding/References.h"

#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/Exception.h>

using namespace Pegasus;
using apitest::text;

namespace {

TEST(SharedKeys, MayBeGivenToPathsInSeveralThreads) {
    const CIMObjectPath shared("//h/n:A.k=1,r=\"B.z=1,y=2\"");
    apitest::expectIndependentCopies(
        CIMObjectPath("C"), [&](CIMObjectPath& x) { x.setKeyBindings(shared.getKeyBindings()); },
        [](const CIMObjectPath& x) { return text(x.toString()); });
}

TEST(ReferencedPath, IsWhatTheValueSaysWhetherItIsKeptAsAPathOrAsAText) {
    const CIMObjectPath target("//h/n:A.k=1,r=\"B.z=1\"");
    const CIMKeyBinding kept("K", CIMValue(target));
    const CIMKeyBinding written("K", target.toString(), CIMKeyBinding::REFERENCE);
    EXPECT_EQ(embedding::referencedPath(kept), target);
    EXPECT_EQ(embedding::referencedPath(written), target);
    EXPECT_THROW(embedding::referencedPath(CIMKeyBinding("K", "=", CIMKeyBinding::REFERENCE)),
                 MalformedObjectNameException);
}

} // namespace
