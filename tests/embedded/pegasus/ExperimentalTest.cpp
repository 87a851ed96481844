// The members that a provider gets only when it asks for them.
#define PEGASUS_USE_EXPERIMENTAL_INTERFACES

#include "Throws.h"

#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/String.h>

using namespace Pegasus;
using apitest::text;
using apitest::throws;

namespace {

TEST(Experimental, StringsTakeLiterals) {
    String x("a");
    x = "lit";
    x.append("-").append("tail", 2);
    EXPECT_EQ(text(x), "lit-ta");
    x.toUpper();
    EXPECT_EQ(text(x), "LIT-TA");
    EXPECT_EQ(x.find("-T"), 3U);
    EXPECT_TRUE(String::equal(x, "LIT-TA"));
    EXPECT_TRUE(String::equalNoCase(x, "lit-ta"));
    EXPECT_LT(String::compare(x, "M"), 0);
    EXPECT_EQ(text(String(String("a"), "b")), "ab");
    EXPECT_EQ(text(String("a", String("b"))), "ab");
}

TEST(Experimental, NamesTakeLiterals) {
    CIMName name;
    name = "Given";
    EXPECT_TRUE(name.equal("GIVEN"));
    EXPECT_FALSE(name.equal("no name"));
    CIMNamespaceName nameSpace;
    nameSpace = "/root/x";
    EXPECT_TRUE(nameSpace.equal("ROOT/x"));
}

TEST(Experimental, ErrorsCarryInstances) {
    CIMException exception(CIM_ERR_FAILED, "why", CIMInstance(CIMName("A")));
    exception.addError(CIMInstance(CIMName("B")));
    const CIMException copy(exception);
    ASSERT_EQ(copy.getErrorCount(), 2U);
    EXPECT_EQ(text(copy.getError(1).getClassName().getString()), "B");
    EXPECT_TRUE(apitest::throwsOutOfBounds([&] { copy.getError(2); }));
}

TEST(Experimental, DateTimesAreMadeOfFields) {
    const Uint32 wild = CIMDateTime::WILDCARD;
    const struct {
        CIMDateTime value;
        const char* text;
    } cases[] = {
        {CIMDateTime(2024, 2, 29, 12, 34, 56, 123456, 6, 60), "20240229123456.123456+060"},
        {CIMDateTime(2024, 2, 29, 12, 34, 56, 123456, 3, 60), "20240229123456.123***+060"},
        {CIMDateTime(2024, 2, 29, 12, 34, 56, 123456, 0, -60), "20240229123456.******-060"},
        {CIMDateTime(2024, 2, 29, 12, 34, wild, 0, 6, -60), "202402291234**.******-060"},
        {CIMDateTime(2024, 2, wild, 12, 34, 0, 0, 6, -60), "202402********.******-060"},
        {CIMDateTime(1, 2, 3, 4, 5, 6), "00000001020304.000005:000"},
        {CIMDateTime(1, 2, 3, 4, 5, 3), "00000001020304.000***:000"},
        {CIMDateTime(1, 2, 3, wild, 0, 0), "000000010203**.******:000"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(text(c.value.toString()), c.text);
        EXPECT_EQ(c.value.isTimeStamp(), c.text[21] != ':');
    }
}

TEST(Experimental, DateTimesRejectFieldsOutOfRange) {
    const auto rejected = [](auto make, const char* reason) {
        return throws<DateTimeOutOfRangeException>(
            make, std::string("DateTime is out of range : ") + reason);
    };
    CIMDateTime x;
    EXPECT_TRUE(
        rejected([&] { x.setTimeStamp(2024, 2, 30, 0, 0, 0, 0, 6, 0); }, "illegal day number"));
    EXPECT_TRUE(
        rejected([&] { x.setTimeStamp(2024, 0, 1, 0, 0, 0, 0, 6, 0); }, "illegal month number"));
    EXPECT_TRUE(rejected([&] { x.setTimeStamp(10000, 1, 1, 0, 0, 0, 0, 6, 0); },
                         "year is greater than 9999"));
    EXPECT_TRUE(rejected([&] { x.setTimeStamp(2024, 1, 1, 0, 0, 0, 1000000, 6, 0); },
                         "microseconds number must be less than 999999"));
    EXPECT_TRUE(rejected([&] { x.setTimeStamp(2024, 1, 1, 0, 0, 0, 0, 7, 0); },
                         "bad numSignificantMicrosecondDigits (must fall between 0 and 6)"));
    EXPECT_TRUE(
        rejected([&] { x.setTimeStamp(2024, 1, 1, 0, 0, 0, 0, 6, 1000); }, "illegal utcOffset"));
    EXPECT_TRUE(rejected([&] { x.setInterval(100000000, 0, 0, 0, 0, 6); },
                         "illegal days number (must be less than 100000000"));
    EXPECT_TRUE(rejected([&] { x.setInterval(1, 24, 0, 0, 0, 6); }, "illegal hours number "));
    EXPECT_TRUE(rejected([&] { x.setInterval(1, 0, 60, 0, 0, 6); }, "illegal minutes number "));
    EXPECT_TRUE(rejected([&] { x.setInterval(1, 0, 0, 60, 0, 6); }, "illegal seconds number "));
}

} // namespace
