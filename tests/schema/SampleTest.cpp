// The sample switch has what the provider reads back from other providers.
#include "LoadedSchema.h"

using Pegasus::CIMName;
using Pegasus::CIMObjectPath;

TEST_F(LoadedSchema, HasTheLocalSwitchUnderItsOneKey) {
    for (const auto& nameSpace : {home, interop}) {
        const auto box =
            repository.view()
                .getInstance(nameSpace,
                             CIMObjectPath("ORVEX_PhysicalComputerSystem.Name=\"localswitch\""))
                .instance();
        EXPECT_EQ(value(box, "Name"), "localswitch");
        EXPECT_EQ(value(box, "Dedicated"), "5 ");
    }
}

TEST_F(LoadedSchema, HasTwoVsansAndOneSwitchThatAreWell) {
    for (const auto& nameSpace : {home, interop}) {
        EXPECT_EQ(repository.view().instances(nameSpace, CIMName("ORVEX_Vsan")).size(), 2U);
        EXPECT_EQ(repository.view().instances(nameSpace, CIMName("ORVEX_ComputerSystem")).size(),
                  1U);
        for (const char* className :
             {"ORVEX_Vsan", "ORVEX_ComputerSystem", "ORVEX_PhysicalComputerSystem"}) {
            for (const auto& instance : instancesOf(nameSpace, className)) {
                EXPECT_EQ(value(instance, "CreationClassName"), className);
                EXPECT_EQ(value(instance, "OperationalStatus"), "2 ");
                EXPECT_NE(value(instance, "ElementName"), "");
            }
        }
    }
}
