#include "Throws.h"

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>

#include <thread>

using namespace Pegasus;
using namespace apitest;

namespace {

const CIMValue yes(Boolean(true));
const CIMValue one(Uint16(1));

CIMPropertyList listOf(const std::vector<const char*>& names) {
    Array<CIMName> array;
    for (const char* name : names)
        array.append(CIMName(name));
    return CIMPropertyList(array);
}

/// An instance with a qualifier, and two properties with a qualifier and a class origin each.
CIMInstance disk() {
    CIMInstance instance("Disk");
    instance.addQualifier(CIMQualifier("Version", CIMValue(String("1"))));
    for (const char* name : {"Id", "Size"}) {
        CIMProperty property(name, one, 0, CIMName(), "Device");
        property.addQualifier(CIMQualifier("Key", yes));
        instance.addProperty(property);
    }
    return instance;
}

TEST(CIMInstance, BeginsWithItsClassNameAsPath) {
    const CIMInstance instance("Disk");
    EXPECT_EQ(text(instance.getClassName().getString()), "Disk");
    EXPECT_EQ(text(instance.getPath().toString()), "Disk");
    EXPECT_EQ(instance.getPropertyCount(), 0U);
    EXPECT_EQ(instance.getQualifierCount(), 0U);
    EXPECT_TRUE(throwsUninitialized([] { CIMInstance nameless{CIMName()}; }));
}

TEST(CIMInstance, FindsItsPropertiesIgnoringCase) {
    CIMInstance instance("Disk");
    instance.addProperty(CIMProperty("Id", one)).addProperty(CIMProperty("Size", one));
    EXPECT_EQ(instance.getPropertyCount(), 2U);
    EXPECT_EQ(instance.findProperty("SIZE"), 1U);
    EXPECT_EQ(instance.findProperty("Other"), PEG_NOT_FOUND);
    EXPECT_TRUE(throws<AlreadyExistsException>(
        [&] { instance.addProperty(CIMProperty("ID", yes)); }, "already exists: property \"ID\""));
    EXPECT_TRUE(throwsUninitialized([&] { instance.addProperty(CIMProperty()); }));
    EXPECT_EQ(instance.getPropertyCount(), 2U);
    instance.removeProperty(0);
    EXPECT_EQ(instance.findProperty("Size"), 0U);
}

TEST(CIMInstance, FindsEachOfManyProperties) {
    const auto name = [](Uint32 i) { return CIMName(String(("P" + std::to_string(i)).c_str())); };
    const auto lower = [](Uint32 i) { return CIMName(String(("p" + std::to_string(i)).c_str())); };
    constexpr Uint32 many = 100;
    CIMInstance instance(CIMName("Disk"));
    for (Uint32 i = 0; i < many; ++i) {
        instance.addProperty(CIMProperty(name(i), CIMValue(i)));
        EXPECT_THROW(instance.addProperty(CIMProperty(lower(i), CIMValue(i))),
                     AlreadyExistsException);
    }
    const CIMInstance copy = instance.clone();
    instance.removeProperty(10);
    for (Uint32 i = 0; i < many; ++i) {
        EXPECT_EQ(copy.findProperty(lower(i)), i);
        const Uint32 expected = i < 10 ? i : i == 10 ? PEG_NOT_FOUND : i - 1;
        EXPECT_EQ(instance.findProperty(lower(i)), expected);
    }
    instance.addProperty(CIMProperty(lower(10), CIMValue(Uint32(1))));
    EXPECT_EQ(instance.findProperty(name(10)), many - 1);
    EXPECT_EQ(instance.findProperty(name(50)), 49U);
    instance.instanceFilter(true, true, CIMPropertyList(Array<CIMName>(1, name(99))));
    EXPECT_EQ(instance.findProperty(name(99)), 0U);
    EXPECT_EQ(instance.findProperty(name(98)), PEG_NOT_FOUND);
}

TEST(CIMInstance, FindsNoneOfManyQualifiersThatWereFilteredOut) {
    CIMInstance instance("Disk");
    const auto name = [](int number) { return String("q") + std::to_string(number).c_str(); };
    for (int i = 0; i < 40; ++i)
        instance.addQualifier(CIMQualifier(name(i), CIMValue(Uint32(1))));
    instance.instanceFilter(false, true, CIMPropertyList());
    EXPECT_EQ(instance.findQualifier(name(39)), PEG_NOT_FOUND);
    instance.addQualifier(CIMQualifier(name(39), CIMValue(Uint32(1))));
    EXPECT_EQ(instance.findQualifier(name(39)), 0U);
}

TEST(CIMInstance, HasNoPropertyBehindTheLast) {
    CIMInstance instance = disk();
    const CIMInstance& constInstance = instance;
    for (const Uint32 index : {Uint32(2), PEG_NOT_FOUND}) {
        EXPECT_TRUE(throwsOutOfBounds([&] { instance.getProperty(index); }));
        EXPECT_TRUE(throwsOutOfBounds([&] { constInstance.getProperty(index); }));
        EXPECT_TRUE(throwsOutOfBounds([&] { instance.removeProperty(index); }));
    }
}

TEST(CIMInstance, MayHaveAReferenceWithoutAReferenceClass) {
    CIMInstance instance("OnDisk");
    EXPECT_NO_THROW(instance.addProperty(CIMProperty("Disk", CIMValue(CIMTYPE_REFERENCE, false))));
}

TEST(CIMInstance, CopiesShare) {
    CIMInstance original = disk();
    CIMInstance copy(original);
    CIMInstance assigned("Other");
    assigned = original;
    const CIMConstInstance constant(original);
    const CIMObject object(original);

    copy.addProperty(CIMProperty("Added", yes));
    assigned.getProperty(0).setValue(CIMValue(Uint16(7)));
    EXPECT_EQ(original.getPropertyCount(), 3U);
    EXPECT_EQ(constant.getPropertyCount(), 3U);
    EXPECT_EQ(object.getPropertyCount(), 3U);
    EXPECT_EQ(text(original.getProperty(0).getValue().toString()), "7");
    EXPECT_EQ(text(constant.getProperty(0).getValue().toString()), "7");
}

TEST(CIMInstance, SharesThePropertyThatWasAdded) {
    CIMProperty property("Size", one);
    CIMInstance instance("Disk");
    instance.addProperty(property);
    instance.getProperty(0).setValue(CIMValue(Uint16(2)));
    EXPECT_EQ(text(property.getValue().toString()), "2");
    property.setValue(CIMValue(Uint16(3)));
    EXPECT_EQ(text(instance.getProperty(0).getValue().toString()), "3");
}

TEST(CIMInstance, ClonesAreIndependent) {
    CIMInstance original = disk();
    CIMInstance clone = original.clone();
    CIMInstance constantClone = CIMConstInstance(original).clone();
    EXPECT_TRUE(clone.identical(original));
    EXPECT_TRUE(constantClone.identical(original));
    clone.getProperty(0).setValue(CIMValue(Uint16(7)));
    clone.getProperty(0).getQualifier(0).setPropagated(true);
    clone.getQualifier(0).setPropagated(true);
    clone.setPath(CIMObjectPath("Disk.Id=7"));
    EXPECT_EQ(text(original.getProperty(0).getValue().toString()), "1");
    EXPECT_EQ(original.getProperty(0).getQualifier(0).getPropagated(), 0U);
    EXPECT_EQ(original.getQualifier(0).getPropagated(), 0U);
    EXPECT_EQ(text(original.getPath().toString()), "Disk");
    EXPECT_TRUE(constantClone.identical(original));
}

TEST(CIMInstance, IsIdenticalIgnoringTheCaseOfNames) {
    CIMInstance upper("DISK");
    CIMInstance lower("disk");
    EXPECT_TRUE(upper.identical(lower));
    upper.setPath(CIMObjectPath("DISK.ID=1"));
    EXPECT_FALSE(upper.identical(lower));
    lower.setPath(CIMObjectPath("disk.id=1"));
    EXPECT_TRUE(upper.identical(lower));
    upper.addProperty(CIMProperty("ID", one));
    EXPECT_FALSE(upper.identical(lower));
    lower.addProperty(CIMProperty("id", one));
    EXPECT_TRUE(upper.identical(lower));
    upper.addQualifier(CIMQualifier("Version", yes));
    EXPECT_FALSE(upper.identical(lower));
}

TEST(CIMInstance, IsIdenticalOnlyWithItsPropertiesInTheSameOrder) {
    CIMInstance forwards("Disk");
    forwards.addProperty(CIMProperty("a", one)).addProperty(CIMProperty("b", one));
    CIMInstance backwards("Disk");
    backwards.addProperty(CIMProperty("b", one)).addProperty(CIMProperty("a", one));
    EXPECT_FALSE(forwards.identical(backwards));
}

TEST(CIMInstance, IsUninitializedUntilItIsAssigned) {
    CIMInstance none;
    const CIMInstance& constNone = none;
    const CIMInstance some("Disk");
    const CIMProperty property("Size", one);
    expectAllUninitialized({
        {"getClassName", [&] { none.getClassName(); }},
        {"getPath", [&] { none.getPath(); }},
        {"setPath", [&] { none.setPath(CIMObjectPath("Disk")); }},
        {"addProperty", [&] { none.addProperty(property); }},
        {"findProperty", [&] { none.findProperty("Size"); }},
        {"getProperty", [&] { none.getProperty(0); }},
        {"const getProperty", [&] { constNone.getProperty(0); }},
        {"removeProperty", [&] { none.removeProperty(0); }},
        {"getPropertyCount", [&] { none.getPropertyCount(); }},
        {"buildPath", [&] { none.buildPath(CIMClass("Disk")); }},
        {"buildPath for no class", [&] { some.buildPath(CIMClass()); }},
        {"identical", [&] { none.identical(some); }},
        {"instanceFilter", [&] { none.instanceFilter(true, true, CIMPropertyList()); }},
        {"const instance getClassName", [] { CIMConstInstance().getClassName(); }},
        {"const instance getPropertyCount", [] { CIMConstInstance().getPropertyCount(); }},
    });
    EXPECT_TRUE(none.isUninitialized());
    none = some;
    EXPECT_FALSE(none.isUninitialized());
}

TEST(CIMInstanceBuildPath, TakesTheKeysOfTheClassAndTheNameOfTheInstance) {
    CIMClass cls("Disk");
    CIMProperty id("Id", CIMValue(CIMTYPE_STRING, false));
    id.addQualifier(CIMQualifier("Key", yes));
    CIMProperty host("Host", CIMValue(CIMTYPE_REFERENCE, false), 0, "System");
    host.addQualifier(CIMQualifier("KEY", yes));
    cls.addProperty(id).addProperty(CIMProperty("Size", one)).addProperty(host);

    CIMInstance instance("disk");
    EXPECT_TRUE(throws<Exception>([&] { instance.buildPath(cls); }, "no such property: Id"));
    instance.addProperty(CIMProperty("ID", CIMValue(String("sda"))));
    EXPECT_TRUE(throws<Exception>([&] { instance.buildPath(cls); }, "no such property: Host"));
    instance.addProperty(CIMProperty("Host", CIMValue(CIMObjectPath("root:System.Name=\"a\""))));
    instance.setPath(CIMObjectPath("//host/root:disk"));
    EXPECT_EQ(text(instance.buildPath(cls).toString()),
              "disk.Host=\"root:System.Name=\\\"a\\\"\",Id=\"sda\"");
    EXPECT_EQ(text(CIMConstInstance(instance).buildPath(cls).toString()),
              text(instance.buildPath(cls).toString()));
    EXPECT_EQ(text(instance.buildPath(CIMClass("Keyless")).toString()), "disk");
}

TEST(CIMInstanceBuildPath, CannotHaveAnArrayOrANullReferenceAsKey) {
    CIMClass cls("Disk");
    CIMProperty key("Id", CIMValue(CIMTYPE_STRING, false));
    key.addQualifier(CIMQualifier("Key", yes));
    cls.addProperty(key);
    CIMInstance withArray("Disk");
    withArray.addProperty(CIMProperty("Id", CIMValue(Array<String>(1))));
    EXPECT_THROW(withArray.buildPath(cls), TypeMismatchException);
    CIMInstance withNull("Disk");
    withNull.addProperty(CIMProperty("Id", CIMValue(CIMTYPE_REFERENCE, false)));
    EXPECT_THROW(withNull.buildPath(cls), MalformedObjectNameException);
    CIMInstance withNullString("Disk");
    withNullString.addProperty(CIMProperty("Id", CIMValue(CIMTYPE_STRING, false)));
    EXPECT_EQ(text(withNullString.buildPath(cls).toString()), "Disk.Id=\"\"");
}

TEST(CIMInstanceFilter, KeepsAllForANullList) {
    CIMInstance instance = disk();
    instance.instanceFilter(true, true, CIMPropertyList());
    EXPECT_TRUE(instance.identical(disk()));
}

TEST(CIMInstanceFilter, KeepsOnlyWhatTheListNames) {
    CIMInstance instance = disk();
    instance.instanceFilter(true, true, listOf({"SIZE", "Unknown"}));
    ASSERT_EQ(instance.getPropertyCount(), 1U);
    EXPECT_EQ(text(instance.getProperty(0).getName().getString()), "Size");
    EXPECT_EQ(instance.getQualifierCount(), 1U);
    instance.instanceFilter(true, true, listOf({}));
    EXPECT_EQ(instance.getPropertyCount(), 0U);
}

TEST(CIMInstanceFilter, RemovesQualifiersAndClassOriginsThatAreNotWanted) {
    CIMInstance noQualifiers = disk();
    noQualifiers.instanceFilter(false, true, CIMPropertyList());
    EXPECT_EQ(noQualifiers.getQualifierCount(), 0U);
    EXPECT_EQ(noQualifiers.getProperty(1).getQualifierCount(), 0U);
    EXPECT_FALSE(noQualifiers.getProperty(1).getClassOrigin().isNull());

    CIMInstance noOrigins = disk();
    noOrigins.instanceFilter(true, false, CIMPropertyList());
    EXPECT_EQ(noOrigins.getQualifierCount(), 1U);
    EXPECT_EQ(noOrigins.getProperty(1).getQualifierCount(), 1U);
    EXPECT_TRUE(noOrigins.getProperty(1).getClassOrigin().isNull());
}

TEST(CIMInstanceFilter, ReachesEverythingThatSharesTheInstance) {
    CIMInstance instance = disk();
    CIMProperty size = instance.getProperty(1);
    CIMObject object(instance);
    object.instanceFilter(false, false, listOf({"Size"}));
    EXPECT_EQ(instance.getPropertyCount(), 1U);
    EXPECT_EQ(size.getQualifierCount(), 0U);
    instance.instanceFilter(true, true, listOf({}));
    EXPECT_NO_THROW(size.setName("Free")) << "no longer in a container";
}

TEST(CIMObject, IsWhatItWasMadeFrom) {
    const CIMObject instance = CIMInstance("Disk");
    const CIMObject cls = CIMClass("Disk");
    const CIMObject none = CIMInstance();
    EXPECT_TRUE(instance.isInstance());
    EXPECT_FALSE(instance.isClass());
    EXPECT_TRUE(cls.isClass());
    EXPECT_FALSE(cls.isInstance());
    EXPECT_TRUE(none.isUninitialized());
    EXPECT_FALSE(none.isClass());
    EXPECT_FALSE(none.isInstance());
    EXPECT_TRUE(CIMConstObject(CIMConstInstance("Disk")).isInstance());
    EXPECT_TRUE(CIMConstObject(CIMConstClass("Disk")).isClass());
    EXPECT_FALSE(cls.identical(instance));
}

TEST(CIMObject, ReadsAndChangesTheInstanceItWasMadeFrom) {
    CIMInstance instance = disk();
    CIMObject object(instance);
    object.setPath(CIMObjectPath("DISK.Id=1"));
    object.addQualifier(CIMQualifier("Added", yes)).addProperty(CIMProperty("Added", yes));
    object.removeProperty(0);
    object.removeQualifier(0);
    EXPECT_EQ(text(object.getClassName().getString()), "DISK");
    EXPECT_EQ(text(instance.getPath().toString()), "DISK.Id=1");
    EXPECT_EQ(instance.findProperty("Added"), 1U);
    EXPECT_EQ(object.findQualifier("Added"), 0U);
    EXPECT_EQ(object.getQualifierCount(), 1U);
    EXPECT_TRUE(object.identical(instance));
    CIMObject clone = object.clone();
    EXPECT_TRUE(clone.isInstance());
    clone.removeProperty(0);
    EXPECT_EQ(object.getPropertyCount(), 2U);

    const CIMConstObject constant(object);
    EXPECT_EQ(text(constant.getPath().toString()), "DISK.Id=1");
    EXPECT_EQ(constant.findProperty("added"), 1U);
    EXPECT_EQ(text(constant.getProperty(1).getName().getString()), "Added");
    EXPECT_EQ(text(constant.getQualifier(0).getName().getString()), "Added");
    EXPECT_TRUE(constant.clone().identical(object));
}

TEST(CIMObject, IsUninitializedUntilItIsAssigned) {
    CIMObject none;
    const CIMObject& constNone = none;
    expectAllUninitialized({
        {"getClassName", [&] { none.getClassName(); }},
        {"getPath", [&] { none.getPath(); }},
        {"getPropertyCount", [&] { none.getPropertyCount(); }},
        {"findProperty", [&] { none.findProperty("Size"); }},
        {"getProperty", [&] { none.getProperty(0); }},
        {"const getProperty", [&] { constNone.getProperty(0); }},
        {"identical", [&] { none.identical(none); }},
        {"instanceFilter", [&] { none.instanceFilter(true, true, CIMPropertyList()); }},
        {"const object getClassName", [] { CIMConstObject().getClassName(); }},
    });
    none = CIMInstance("Disk");
    EXPECT_FALSE(none.isUninitialized());
}

TEST(ArrayOfInstances, SharesTheInstancesItHolds) {
    const CIMInstance instance = disk();
    Array<CIMInstance> instances;
    instances.append(instance);
    Array<CIMInstance> copy(instances);
    copy[0].addProperty(CIMProperty("Added", yes));
    EXPECT_EQ(instance.getPropertyCount(), 3U);

    Array<CIMObject> objects;
    objects.append(instance);
    EXPECT_TRUE(objects[0].identical(instance));
}

TEST(CIMInstance, MayBeCopiedAndDroppedByManyThreads) {
    const CIMInstance shared = disk();
    const auto copyAndRead = [&] {
        for (int round = 0; round < 1000; ++round) {
            const CIMInstance copy(shared);
            const CIMConstProperty property = copy.getProperty(1);
            const CIMObject object(copy);
            ASSERT_EQ(object.getPropertyCount(), 2U);
            ASSERT_EQ(property.getType(), CIMTYPE_UINT16);
        }
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back(copyAndRead);
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_TRUE(shared.identical(disk()));
}

} // namespace
