// A handle and its const handle: which becomes which, what either has, which overload takes it.
// Most of it the compiler checks.
#include "Throws.h"

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMParameter.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMQualifier.h>

#include <type_traits>
#include <utility>

using namespace Pegasus;
using namespace apitest;

namespace {

template <class From, class To>
constexpr bool onlyExplicitly =
    std::is_constructible_v<To, From> && !std::is_convertible_v<From, To>;

template <class From, class To>
constexpr bool never = !std::is_constructible_v<To, From> && !std::is_assignable_v<To&, From>;

static_assert(std::is_convertible_v<CIMInstance, CIMObject>);
static_assert(std::is_convertible_v<CIMClass, CIMObject>);
static_assert(std::is_convertible_v<CIMInstance, CIMConstObject>);
static_assert(std::is_convertible_v<CIMClass, CIMConstObject>);
static_assert(std::is_convertible_v<CIMConstInstance, CIMConstObject>);
static_assert(std::is_convertible_v<CIMConstClass, CIMConstObject>);
static_assert(onlyExplicitly<CIMObject, CIMInstance>);
static_assert(onlyExplicitly<CIMObject, CIMClass>);
static_assert(onlyExplicitly<CIMObject, CIMConstInstance>);
static_assert(onlyExplicitly<CIMObject, CIMConstClass>);
static_assert(onlyExplicitly<CIMConstObject, CIMConstInstance>);
static_assert(onlyExplicitly<CIMConstObject, CIMConstClass>);
static_assert(never<CIMConstObject, CIMInstance> && never<CIMConstObject, CIMClass>);
static_assert(never<CIMConstInstance, CIMObject> && never<CIMConstClass, CIMObject>);
static_assert(!std::is_convertible_v<CIMInstance, CIMClass>);
static_assert(!std::is_convertible_v<CIMClass, CIMInstance>);
static_assert(never<CIMInstance, CIMConstClass> && never<CIMClass, CIMConstInstance>);

// Abilities: callable with the handles that have the function.
const auto setsName = [](auto& x) -> decltype(x.setName(CIMName())) {};
const auto setsPath = [](auto& x) -> decltype(x.setPath(CIMObjectPath())) {};
const auto addsQualifier = [](auto& x) -> decltype(void(x.addQualifier(CIMQualifier()))) {};
const auto removesQualifier = [](auto& x) -> decltype(x.removeQualifier(0)) {};
const auto removesProperty = [](auto& x) -> decltype(x.removeProperty(0)) {};
const auto tellsItsKind = [](auto& x) -> decltype(void(x.isClass())) {};
const auto hasText = [](auto& x) -> decltype(void(x.toString())) {};
const auto buildsPath = [](auto& x) -> decltype(void(x.buildPath(CIMConstClass()))) {};
const auto hasMethods = [](auto& x) -> decltype(void(x.getMethodCount())) {};

template <class Handle, class Ability>
constexpr bool has(const Ability&) {
    return std::is_invocable_v<Ability, Handle&>;
}

/// Of the handle, and neither of its const handle nor of a const reference to the handle.
template <class Handle, class ConstHandle, class Ability>
constexpr bool changes(const Ability& ability) {
    return has<Handle>(ability) && !has<ConstHandle>(ability) && !has<const Handle>(ability);
}

static_assert(changes<CIMObject, CIMConstObject>(setsPath));
static_assert(changes<CIMObject, CIMConstObject>(addsQualifier));
static_assert(changes<CIMObject, CIMConstObject>(removesQualifier));
static_assert(changes<CIMObject, CIMConstObject>(removesProperty));
static_assert(changes<CIMInstance, CIMConstInstance>(setsPath));
static_assert(changes<CIMInstance, CIMConstInstance>(addsQualifier));
static_assert(changes<CIMInstance, CIMConstInstance>(removesQualifier));
static_assert(changes<CIMInstance, CIMConstInstance>(removesProperty));
static_assert(changes<CIMClass, CIMConstClass>(setsPath));
static_assert(changes<CIMClass, CIMConstClass>(addsQualifier));
static_assert(changes<CIMClass, CIMConstClass>(removesQualifier));
static_assert(changes<CIMClass, CIMConstClass>(removesProperty));
static_assert(changes<CIMProperty, CIMConstProperty>(setsName));
static_assert(changes<CIMProperty, CIMConstProperty>(addsQualifier));
static_assert(changes<CIMProperty, CIMConstProperty>(removesQualifier));
static_assert(changes<CIMMethod, CIMConstMethod>(setsName));
static_assert(changes<CIMMethod, CIMConstMethod>(addsQualifier));
static_assert(changes<CIMMethod, CIMConstMethod>(removesQualifier));
static_assert(changes<CIMParameter, CIMConstParameter>(setsName));
static_assert(changes<CIMParameter, CIMConstParameter>(addsQualifier));
static_assert(changes<CIMParameter, CIMConstParameter>(removesQualifier));
static_assert(changes<CIMQualifier, CIMConstQualifier>(setsName));

// What classes, instances and objects have in common is not all that one of them has.
static_assert(has<CIMObject>(tellsItsKind) && has<CIMConstObject>(tellsItsKind));
static_assert(has<CIMObject>(hasText) && has<CIMConstObject>(hasText));
static_assert(!has<CIMInstance>(tellsItsKind) && !has<CIMConstInstance>(tellsItsKind));
static_assert(!has<CIMInstance>(hasText) && !has<CIMConstInstance>(hasText));
static_assert(!has<CIMClass>(tellsItsKind) && !has<CIMConstClass>(hasText));
static_assert(has<CIMInstance>(buildsPath) && has<CIMConstInstance>(buildsPath));
static_assert(!has<CIMClass>(buildsPath) && !has<CIMObject>(buildsPath));
static_assert(has<CIMClass>(hasMethods) && has<CIMConstClass>(hasMethods));
static_assert(!has<CIMInstance>(hasMethods) && !has<CIMConstObject>(hasMethods));

/// What x.getQualifier(0) is, and so on.
template <class Handle>
using QualifierOf = decltype(std::declval<Handle&>().getQualifier(0));
template <class Handle>
using PropertyOf = decltype(std::declval<Handle&>().getProperty(0));
template <class Handle>
using MethodOf = decltype(std::declval<Handle&>().getMethod(0));
template <class Handle>
using ParameterOf = decltype(std::declval<Handle&>().getParameter(0));

/// From a handle comes a handle; from a const one, or a const reference to one, a const one.
template <template <class> class Part, class Handle, class ConstHandle, class PartHandle,
          class ConstPartHandle>
constexpr bool handsOut =
    std::is_same_v<Part<Handle>, PartHandle>&& std::is_same_v<Part<const Handle>, ConstPartHandle>&&
        std::is_same_v<Part<ConstHandle>, ConstPartHandle>;

template <class Handle, class ConstHandle>
constexpr bool handsOutQualifiers =
    handsOut<QualifierOf, Handle, ConstHandle, CIMQualifier, CIMConstQualifier>;
template <class Handle, class ConstHandle>
constexpr bool handsOutProperties =
    handsOut<PropertyOf, Handle, ConstHandle, CIMProperty, CIMConstProperty>;

static_assert(handsOutQualifiers<CIMObject, CIMConstObject>);
static_assert(handsOutQualifiers<CIMInstance, CIMConstInstance>);
static_assert(handsOutQualifiers<CIMClass, CIMConstClass>);
static_assert(handsOutQualifiers<CIMProperty, CIMConstProperty>);
static_assert(handsOutQualifiers<CIMMethod, CIMConstMethod>);
static_assert(handsOutQualifiers<CIMParameter, CIMConstParameter>);
static_assert(handsOutProperties<CIMObject, CIMConstObject>);
static_assert(handsOutProperties<CIMInstance, CIMConstInstance>);
static_assert(handsOutProperties<CIMClass, CIMConstClass>);
static_assert(handsOut<MethodOf, CIMClass, CIMConstClass, CIMMethod, CIMConstMethod>);
static_assert(handsOut<ParameterOf, CIMMethod, CIMConstMethod, CIMParameter, CIMConstParameter>);

/// A handle, its const handle, and how one is made that is not uninitialized.
template <class H, class C, class Made>
struct Pair : Made {
    using Handle = H;
    using ConstHandle = C;
};

struct MadeByName {
    template <class Handle>
    static Handle make() {
        return Handle(CIMName("Some"));
    }
};
struct MadeOfInstance {
    template <class Handle>
    static Handle make() {
        return CIMInstance(CIMName("Some"));
    }
};
struct MadeByValue {
    template <class Handle>
    static Handle make() {
        return Handle("Some", CIMValue(Uint32(7)));
    }
};
struct MadeByType {
    template <class Handle>
    static Handle make() {
        return Handle("Some", CIMTYPE_UINT32);
    }
};

template <class P>
class ConstHandle : public testing::Test {};

using Pairs = testing::Types<
    Pair<CIMObject, CIMConstObject, MadeOfInstance>,
    Pair<CIMInstance, CIMConstInstance, MadeByName>, Pair<CIMClass, CIMConstClass, MadeByName>,
    Pair<CIMProperty, CIMConstProperty, MadeByValue>, Pair<CIMMethod, CIMConstMethod, MadeByType>,
    Pair<CIMParameter, CIMConstParameter, MadeByType>,
    Pair<CIMQualifier, CIMConstQualifier, MadeByValue>>;
TYPED_TEST_SUITE(ConstHandle, Pairs, );

TYPED_TEST(ConstHandle, ComesOfAHandleAndNotTheOtherWayRound) {
    using H = typename TypeParam::Handle;
    using C = typename TypeParam::ConstHandle;
    static_assert(std::is_convertible_v<H, C> && std::is_assignable_v<C&, H>);
    static_assert(never<C, H>);
    static_assert(!std::is_base_of_v<H, C> && !std::is_base_of_v<C, H>);
    static_assert(!std::is_convertible_v<H*, C*> && !std::is_convertible_v<C*, H*>);
    static_assert(sizeof(H) == sizeof(C) && !std::is_polymorphic_v<H> && !std::is_polymorphic_v<C>);

    const H handle = TypeParam::template make<H>();
    const C constant = handle;
    EXPECT_TRUE(constant.identical(handle));
    C assigned;
    EXPECT_TRUE(assigned.isUninitialized());
    EXPECT_EQ(&(assigned = handle), &assigned);
    EXPECT_FALSE(assigned.isUninitialized());
    EXPECT_TRUE(handle.identical(assigned));
    assigned = C();
    EXPECT_TRUE(assigned.isUninitialized());
    EXPECT_FALSE(handle.isUninitialized());
}

TYPED_TEST(ConstHandle, IsOverloadedOnWithItsHandle) {
    using H = typename TypeParam::Handle;
    using C = typename TypeParam::ConstHandle;
    struct Taker {
        static int take(const H&) { return 1; }
        static int take(const C&) { return 2; }
        static int takeConst(const C&) { return 3; }
    };
    EXPECT_EQ(Taker::take(H()), 1);
    EXPECT_EQ(Taker::take(C()), 2);
    EXPECT_EQ(Taker::takeConst(H()), 3);
}

TYPED_TEST(ConstHandle, ClonesToAHandleOfItsOwn) {
    using H = typename TypeParam::Handle;
    using C = typename TypeParam::ConstHandle;
    static_assert(std::is_same_v<decltype(std::declval<const C&>().clone()), H>);
    static_assert(std::is_same_v<decltype(std::declval<const H&>().clone()), H>);
    EXPECT_TRUE(TypeParam::template make<C>().clone().identical(TypeParam::template make<H>()));
}

TYPED_TEST(ConstHandle, HasItsReadsAsMembersOfItsOwn) {
    using H = typename TypeParam::Handle;
    using C = typename TypeParam::ConstHandle;
    Boolean (H::*ofHandle)() const = &H::isUninitialized;
    Boolean (C::*ofConstHandle)() const = &C::isUninitialized;
    EXPECT_TRUE((H().*ofHandle)());
    EXPECT_TRUE((C().*ofConstHandle)());
    EXPECT_TRUE(throwsUninitialized([] { static_cast<void>(H().identical(H())); }));
    EXPECT_TRUE(throwsUninitialized([] { static_cast<void>(C().identical(C())); }));
}

template <class P>
class Qualified : public testing::Test {};

using QualifiedPairs = testing::Types<
    Pair<CIMObject, CIMConstObject, MadeOfInstance>,
    Pair<CIMInstance, CIMConstInstance, MadeByName>, Pair<CIMClass, CIMConstClass, MadeByName>,
    Pair<CIMProperty, CIMConstProperty, MadeByValue>, Pair<CIMMethod, CIMConstMethod, MadeByType>,
    Pair<CIMParameter, CIMConstParameter, MadeByType>>;
TYPED_TEST_SUITE(Qualified, QualifiedPairs, );

const CIMValue yes(Boolean(true));

TYPED_TEST(Qualified, FindsItsQualifiersIgnoringCase) {
    auto handle = TypeParam::template make<typename TypeParam::Handle>();
    handle.addQualifier(CIMQualifier("Key", yes)).addQualifier(CIMQualifier("Write", yes));
    EXPECT_EQ(handle.getQualifierCount(), 2U);
    EXPECT_EQ(handle.findQualifier("WRITE"), 1U);
    EXPECT_EQ(handle.findQualifier("Read"), PEG_NOT_FOUND);
    EXPECT_TRUE(
        throws<AlreadyExistsException>([&] { handle.addQualifier(CIMQualifier("KEY", yes)); },
                                       "already exists: qualifier \"KEY\""));
    handle.removeQualifier(0);
    const typename TypeParam::ConstHandle constant = handle;
    EXPECT_EQ(constant.getQualifierCount(), 1U);
    EXPECT_EQ(constant.findQualifier("write"), 0U);
    EXPECT_EQ(text(constant.getQualifier(0).getName().getString()), "Write");
    for (const Uint32 index : {Uint32(1), PEG_NOT_FOUND}) {
        EXPECT_TRUE(throwsOutOfBounds([&] { handle.getQualifier(index); }));
        EXPECT_TRUE(throwsOutOfBounds([&] { constant.getQualifier(index); }));
        EXPECT_TRUE(throwsOutOfBounds([&] { handle.removeQualifier(index); }));
    }
}

TYPED_TEST(Qualified, SharesItsQualifiersAndKeepsTheirNames) {
    CIMQualifier key("Key", yes);
    auto handle = TypeParam::template make<typename TypeParam::Handle>();
    handle.addQualifier(key);
    key.setPropagated(true);
    EXPECT_EQ(handle.getQualifier(0).getPropagated(), 1U);
    EXPECT_TRUE(
        throws<Exception>([&] { key.setName("Write"); },
                          "Attempted to change the name of a qualifier already in a container."));
}

TYPED_TEST(Qualified, HasNoQualifiersWhileItOrTheyAreUninitialized) {
    typename TypeParam::Handle none;
    const auto& constNone = none;
    expectAllUninitialized({
        {"addQualifier", [&] { none.addQualifier(CIMQualifier("Key", yes)); }},
        {"findQualifier", [&] { none.findQualifier("Key"); }},
        {"getQualifier", [&] { none.getQualifier(0); }},
        {"const getQualifier", [&] { constNone.getQualifier(0); }},
        {"removeQualifier", [&] { none.removeQualifier(0); }},
        {"getQualifierCount", [&] { none.getQualifierCount(); }},
        {"addQualifier of none",
         [] {
             TypeParam::template make<typename TypeParam::Handle>().addQualifier(CIMQualifier());
         }},
    });
}

template <class H>
class Element : public testing::Test {};
using Elements = testing::Types<CIMInstance, CIMClass>;
TYPED_TEST_SUITE(Element, Elements, );

TYPED_TEST(Element, TakesPathsOfItsOwnClassAndTheirSpelling) {
    TypeParam element("Disk");
    EXPECT_TRUE(throwsUninitialized([&] { element.setPath(CIMObjectPath()); }));
    EXPECT_TRUE(throwsTypeMismatch([&] { element.setPath(CIMObjectPath("Tape.Id=1")); }));
    CIMObject(element).setPath(CIMObjectPath("//host/root/cimv2:DISK.Id=1"));
    EXPECT_EQ(text(element.getClassName().getString()), "DISK");
    EXPECT_EQ(text(element.getPath().toString()), "//host/root/cimv2:DISK.Id=1");
}

/// `Handle` is for what `some` is, and neither for `other` nor for nothing.
template <class Handle, class ConstHandle>
void expectMadeOnlyFrom(const CIMObject& some, const CIMObject& other) {
    EXPECT_EQ(text(Handle(some).getClassName().getString()), "Disk");
    EXPECT_EQ(text(ConstHandle(some).getClassName().getString()), "Disk");
    EXPECT_EQ(text(ConstHandle(CIMConstObject(some)).getClassName().getString()), "Disk");
    for (const CIMObject& wrong : {other, CIMObject()}) {
        EXPECT_TRUE(throwsDynamicCastFailed([&] { Handle x(wrong); }));
        EXPECT_TRUE(throwsDynamicCastFailed([&] { ConstHandle x(wrong); }));
        EXPECT_TRUE(throwsDynamicCastFailed([&] { ConstHandle x{CIMConstObject(wrong)}; }));
    }
}

TEST(CIMObject, BecomesAgainOnlyWhatItWasMadeFrom) {
    const CIMObject instance(CIMInstance("Disk"));
    const CIMObject cls(CIMClass("Disk"));
    expectMadeOnlyFrom<CIMInstance, CIMConstInstance>(instance, cls);
    expectMadeOnlyFrom<CIMClass, CIMConstClass>(cls, instance);
}

} // namespace
