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

/// Lets several threads at once do what `read` answers, anew in each round.
template <class Read>
void expectSameInAllThreads(Read read) {
    for (int round = 0; round < 200; ++round) {
        const auto readOnce = read();
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i)
            threads.emplace_back(readOnce);
        for (std::thread& thread : threads)
            thread.join();
    }
}

TEST(Sharing, OfTextsThatAreShownAsUtf16) {
    expectSameInAllThreads([] {
        return [shared = String("abc")] {
            const String copy(shared);
            EXPECT_EQ(shared.getChar16Data(), copy.getChar16Data());
            EXPECT_EQ(Uint16(copy.getChar16Data()[2]), 'c');
            EXPECT_EQ(text(copy), "abc");
        };
    });
}

TEST(Sharing, OfReferencesThatAreShownAsText) {
    expectSameInAllThreads([] {
        const CIMValue inner(CIMObjectPath("B.r=\"A.k=1\""));
        return [shared = CIMKeyBinding("r", inner)] {
            CIMKeyBinding copy(shared);
            EXPECT_EQ(text(shared.getValue()), "B.r=\"A.k=1\"");
            copy.setName("q");
            EXPECT_EQ(text(copy.getValue()), "B.r=\"A.k=1\"");
            const CIMObjectPath path(String(), CIMNamespaceName(), "C",
                                     Array<CIMKeyBinding>(1, shared));
            EXPECT_EQ(text(path.toString()), "C.r=\"B.r=\\\"A.k=1\\\"\"");
        };
    });
}

} // namespace
