// Misuse that this library answers with an exception or a definite value, where a provider cannot
// count on more than the promise of the headers.
#include "Throws.h"

#include <Pegasus/Common/AcceptLanguageList.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/ContentLanguageList.h>

#include <limits>
#include <thread>

using namespace Pegasus;
using namespace apitest;

namespace {

TEST(Safety, CloningWhatIsUninitializedThrows) {
    expectAllUninitialized({
        {"CIMQualifier", [] { CIMQualifier().clone(); }},
        {"CIMConstQualifier", [] { CIMConstQualifier().clone(); }},
        {"CIMProperty", [] { CIMProperty().clone(); }},
        {"CIMConstProperty", [] { CIMConstProperty().clone(); }},
        {"CIMParameter", [] { CIMParameter().clone(); }},
        {"CIMConstParameter", [] { CIMConstParameter().clone(); }},
        {"CIMMethod", [] { CIMMethod().clone(); }},
        {"CIMConstMethod", [] { CIMConstMethod().clone(); }},
        {"CIMParamValue", [] { CIMParamValue().clone(); }},
        {"CIMObject", [] { CIMObject().clone(); }},
        {"CIMConstObject", [] { CIMConstObject().clone(); }},
        {"CIMInstance", [] { CIMInstance().clone(); }},
        {"CIMConstInstance", [] { CIMConstInstance().clone(); }},
        {"CIMClass", [] { CIMClass().clone(); }},
        {"CIMConstClass", [] { CIMConstClass().clone(); }},
    });
}

TEST(Safety, AQualifierThatIsNoScalarTrueMarksNothing) {
    for (const CIMValue& value : {CIMValue(CIMTYPE_BOOLEAN, false),
                                  CIMValue(Array<Boolean>(1, true)), CIMValue(String("true"))}) {
        CIMClass cls("Disk");
        cls.addQualifier(CIMQualifier("Association", value));
        cls.addQualifier(CIMQualifier("Abstract", value));
        CIMProperty property("Id", CIMValue(Boolean(true)));
        property.addQualifier(CIMQualifier("Key", value));
        cls.addProperty(property);
        EXPECT_FALSE(cls.isAssociation());
        EXPECT_FALSE(cls.isAbstract());
        EXPECT_FALSE(cls.hasKeys());
    }
}

TEST(Safety, AnInstanceIsNeverIdenticalToAClass) {
    const CIMObject instance(CIMInstance("Disk"));
    const CIMObject cls(CIMClass("Disk"));
    EXPECT_FALSE(instance.identical(cls));
    EXPECT_FALSE(cls.identical(instance));
}

TEST(Safety, LanguageListsHaveNothingBehindTheirLastTag) {
    AcceptLanguageList accepted;
    ContentLanguageList content;
    EXPECT_TRUE(throwsOutOfBounds([&] { accepted.remove(0); }));
    EXPECT_TRUE(throwsOutOfBounds([&] { content.remove(0); }));
}

TEST(Safety, NotANumberIsNoQuality) {
    AcceptLanguageList accepted;
    EXPECT_THROW(accepted.insert(LanguageTag("en"), std::numeric_limits<Real32>::quiet_NaN()),
                 Exception);
}

TEST(Safety, AMovedFromHandleStillSharesItsObject) {
    CIMInstance instance("Disk");
    const CIMInstance moved(std::move(instance));
    EXPECT_FALSE(instance.isUninitialized()); // NOLINT(bugprone-use-after-move)
    EXPECT_TRUE(moved.identical(instance));
}

// Providers build instances of one class in parallel, and may share a property between them.
TEST(Safety, OnePropertyMayEnterAndLeaveInstancesOfManyThreads) {
    CIMProperty property("Version", CIMValue(String("1")));
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 1000; ++round) {
                CIMInstance instance("Disk");
                instance.addProperty(property);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_NO_THROW(property.setName("Revision")) << "in no container any more";
}

} // namespace
