// Copies that share are used from many threads at once. These tests say most when they are built
// with ThreadSanitizer.
#include "Throws.h"

#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/CIMValue.h>

#include <thread>

using namespace Pegasus;
using apitest::text;

namespace {

/// Runs `change` on copies of `shared` in several threads and expects what each made of its own.
template <class T, class Change, class Describe>
void expectIndependentCopies(const T& shared, Change change, Describe describe) {
    const std::string before = describe(shared);
    T expected(shared);
    change(expected);
    const std::string after = describe(expected);
    ASSERT_NE(before, after);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 200; ++round) {
                T copy(shared);
                const T untouched(copy);
                EXPECT_EQ(describe(copy), before);
                change(copy);
                EXPECT_EQ(describe(copy), after);
                copy = untouched;
                EXPECT_EQ(describe(copy), before);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(describe(shared), before);
}

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
TEST(Sharing, OfTheKeysOfAPath) {
    const CIMObjectPath shared("//h/n:A.k=1,r=\"B.z=1,y=2\"");
    expectIndependentCopies(
        CIMObjectPath("C"), [&](CIMObjectPath& x) { x.setKeyBindings(shared.getKeyBindings()); },
        [](const CIMObjectPath& x) { return text(x.toString()); });
}

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
