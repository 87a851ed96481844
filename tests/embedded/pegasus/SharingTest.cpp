#include "Sharing.h"
#include "Throws.h"

#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/CIMValue.h>

using namespace Pegasus;
using apitest::expectIndependentCopies;
using apitest::text;

namespace {

TEST(Sharing, OfStrings) {
    expectIndependentCopies(
        String("abc"), [](String& x) { x.append(Char16('d')); },
        [](const String& x) { return text(x); });
}

TEST(Sharing, OfArrays) {
    expectIndependentCopies(
        Array<String>(3, String("abc")), [](Array<String>& x) { x[1] = String("new"); },
        [](const Array<String>& x) { return text(CIMValue(x).toString()); });
}

TEST(Sharing, OfPaths) {
    expectIndependentCopies(
        CIMObjectPath("//h/n:A.k=1,r=\"B.z=1,y=2\""),
        [](CIMObjectPath& x) {
            x.setHost("other");
            Array<CIMKeyBinding> keys = x.getKeyBindings();
            keys.append(CIMKeyBinding("a", "1", CIMKeyBinding::NUMERIC));
            x.setKeyBindings(keys);
        },
        [](const CIMObjectPath& x) { return text(x.toString()); });
}

/// Key bindings that are sorted already are only read, so that they may be shared.
TEST(Sharing, OfValues) {
    expectIndependentCopies(
        CIMValue(Array<Uint32>(3, 7)), [](CIMValue& x) { x.set(String("new")); },
        [](const CIMValue& x) { return text(x.toString()); });
}

TEST(Sharing, OfPropertyLists) {
    expectIndependentCopies(
        CIMPropertyList(Array<CIMName>(2, CIMName("a"))), [](CIMPropertyList& x) { x.clear(); },
        [](const CIMPropertyList& x) { return text(x.toString()); });
}

TEST(Sharing, OfExceptions) {
    expectIndependentCopies(
        CIMException(CIM_ERR_FAILED, "why"),
        [](CIMException& x) { x = CIMException(CIM_ERR_NOT_FOUND, "it"); },
        [](const CIMException& x) { return text(x.getMessage()); });
}

} // namespace
