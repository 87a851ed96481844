// Values of every type, as they are written and as they are read.
#include "Requests.h"

#include "cimxml/Objects.h"
#include "embedding/XmlWriter.h"

#include <Pegasus/Common/CIMDateTime.h>

#include <gtest/gtest.h>

#include <limits>

namespace embedded::cimxml::test {
namespace {

using namespace Pegasus;
using namespace Pegasus::embedding;

template <class T>
Array<T> arrayOf(const T& first, const T& second) {
    Array<T> elements;
    elements.append(first);
    elements.append(second);
    return elements;
}

std::string written(const CIMValue& value) {
    std::string out;
    appendValue(out, value);
    return out;
}

CIMName noSoleKey(const CIMName&) { throw CIMException(CIM_ERR_FAILED, "no class"); }

CIMValue read(const std::string& elements, CIMType type, bool isArray) {
    const Document document("<?xml version=\"1.0\"?><PROPERTY>" + elements + "</PROPERTY>");
    return readValue(document.root(), type, isArray, noSoleKey);
}

std::string readError(const std::string& text, CIMType type) {
    try {
        read("<VALUE>" + text + "</VALUE>", type, false);
        return "read";
    } catch (const CIMException& exception) {
        EXPECT_EQ(exception.getCode(), CIM_ERR_INVALID_PARAMETER);
        return std::string(exception.getMessage().getCString());
    }
}

struct Row {
    CIMValue value;
    std::string xml;
};

std::vector<Row> rows() {
    const CIMDateTime stamp("20200102030405.123456+060");
    const CIMDateTime interval("00000001020304.000005:000");
    const CIMObjectPath path("X.a=1");
    const std::string reference = "<VALUE.REFERENCE>\n<INSTANCENAME CLASSNAME=\"X\">\n"
                                  "<KEYBINDING NAME=\"a\">\n"
                                  "<KEYVALUE VALUETYPE=\"numeric\">1</KEYVALUE>\n"
                                  "</KEYBINDING>\n</INSTANCENAME>\n</VALUE.REFERENCE>\n";
    const auto scalar = [](const std::string& text) { return "<VALUE>" + text + "</VALUE>\n"; };
    const auto pair = [&](const std::string& first, const std::string& second) {
        return "<VALUE.ARRAY>\n" + scalar(first) + scalar(second) + "</VALUE.ARRAY>\n";
    };
    return {
        {CIMValue(Boolean(true)), scalar("TRUE")},
        {CIMValue(Boolean(false)), scalar("FALSE")},
        {CIMValue(Uint8(255)), scalar("255")},
        {CIMValue(Sint8(-128)), scalar("-128")},
        {CIMValue(Uint16(65535)), scalar("65535")},
        {CIMValue(Sint16(-32768)), scalar("-32768")},
        {CIMValue(Uint32(4294967295U)), scalar("4294967295")},
        {CIMValue(Sint32(-2147483647 - 1)), scalar("-2147483648")},
        {CIMValue(std::numeric_limits<Uint64>::max()), scalar("18446744073709551615")},
        {CIMValue(std::numeric_limits<Sint64>::min()), scalar("-9223372036854775808")},
        {CIMValue(Real32(1.5F)), scalar("1.5000000e+00")},
        {CIMValue(Real32(0.1F)), scalar("1.0000000e-01")},
        {CIMValue(Real64(0.1)), scalar("1.0000000000000001e-01")},
        {CIMValue(Real64(1e300)), scalar("1.0000000000000001e+300")},
        {CIMValue(Real64(0)), scalar("0.0000000000000000e+00")},
        {CIMValue(std::numeric_limits<Real64>::infinity()), scalar("inf")},
        {CIMValue(-std::numeric_limits<Real32>::infinity()), scalar("-inf")},
        {CIMValue(std::numeric_limits<Real64>::denorm_min()), scalar("4.9406564584124654e-324")},
        {CIMValue(Char16('A')), scalar("A")},
        {CIMValue(Char16('<')), scalar("&lt;")},
        {CIMValue(Char16(0x20AC)), scalar("\xE2\x82\xAC")},
        {CIMValue(String("a<b>&\"'")), scalar("a&lt;b&gt;&amp;&quot;&apos;")},
        {CIMValue(String()), scalar("")},
        {CIMValue(String(" ]]>\t\r\n")), scalar("&#32;]]&gt;&#9;&#13;&#10;")},
        {CIMValue(String("\xF0\x9F\x98\x80")), scalar("\xF0\x9F\x98\x80")},
        {CIMValue(stamp), scalar("20200102030405.123456+060")},
        {CIMValue(interval), scalar("00000001020304.000005:000")},
        {CIMValue(path), reference},
        {CIMValue(arrayOf<Boolean>(true, false)), pair("TRUE", "FALSE")},
        {CIMValue(arrayOf<Uint8>(0, 9)), pair("0", "9")},
        {CIMValue(arrayOf<Sint8>(0, -9)), pair("0", "-9")},
        {CIMValue(arrayOf<Uint16>(0, 9)), pair("0", "9")},
        {CIMValue(arrayOf<Sint16>(0, -9)), pair("0", "-9")},
        {CIMValue(arrayOf<Uint32>(0, 9)), pair("0", "9")},
        {CIMValue(arrayOf<Sint32>(0, -9)), pair("0", "-9")},
        {CIMValue(arrayOf<Uint64>(0, 9)), pair("0", "9")},
        {CIMValue(arrayOf<Sint64>(0, -9)), pair("0", "-9")},
        {CIMValue(arrayOf<Real32>(0, 2)), pair("0.0000000e+00", "2.0000000e+00")},
        {CIMValue(arrayOf<Real64>(0, 2)), pair("0.0000000000000000e+00", "2.0000000000000000e+00")},
        {CIMValue(arrayOf<Char16>('x', 'y')), pair("x", "y")},
        {CIMValue(arrayOf<String>("", "y")), pair("", "y")},
        {CIMValue(arrayOf<CIMDateTime>(stamp, interval)),
         pair("20200102030405.123456+060", "00000001020304.000005:000")},
        {CIMValue(Array<String>()), "<VALUE.ARRAY>\n</VALUE.ARRAY>\n"},
        {CIMValue(CIMTYPE_STRING, false), ""},
        {CIMValue(CIMTYPE_UINT16, true), ""},
        {CIMValue(CIMTYPE_REFERENCE, false), ""},
    };
}

TEST(Values, AreWrittenAsClientsKnowThem) {
    for (const Row& row : rows())
        EXPECT_EQ(written(row.value), row.xml);
}

TEST(Values, ReadBackAsTheyWere) {
    for (const Row& row : rows()) {
        const CIMValue back = read(row.xml, row.value.getType(), row.value.isArray());
        EXPECT_TRUE(back == row.value) << row.xml;
        EXPECT_EQ(back.getType(), row.value.getType()) << row.xml;
        EXPECT_EQ(back.isArray(), row.value.isArray()) << row.xml;
    }
}

TEST(Values, OfReferenceArraysAreWritten) {
    const std::string one =
        "<VALUE.REFERENCE>\n<INSTANCENAME CLASSNAME=\"X\">\n</INSTANCENAME>\n</VALUE.REFERENCE>\n";
    EXPECT_EQ(written(CIMValue(arrayOf<CIMObjectPath>(CIMObjectPath("X"), CIMObjectPath("X")))),
              "<VALUE.REFARRAY>\n" + one + one + "</VALUE.REFARRAY>\n");
}

TEST(Values, ThatAreObjectsAreWrittenAsQuotedDocuments) {
    CIMInstance inner(CIMName("E"));
    inner.addProperty(CIMProperty(CIMName("x"), CIMValue(String("<"))));
    const std::string quoted = "<VALUE>&lt;INSTANCE CLASSNAME=&quot;E&quot; &gt;&#10;"
                               "&lt;PROPERTY NAME=&quot;x&quot; &#32;TYPE=&quot;string&quot;&gt;"
                               "&#10;&lt;VALUE&gt;&amp;lt;&lt;/VALUE&gt;&#10;&lt;/PROPERTY&gt;"
                               "&#10;&lt;/INSTANCE&gt;&#10;</VALUE>\n";
    EXPECT_EQ(written(CIMValue(inner)), quoted);
    EXPECT_EQ(written(CIMValue(CIMObject(inner))), quoted);
}

TEST(Values, OfNumbersMayBeSpelledInSeveralWays) {
    EXPECT_TRUE(read("<VALUE> +7\n</VALUE>", CIMTYPE_UINT8, false) == CIMValue(Uint8(7)));
    EXPECT_TRUE(read("<VALUE>0xfF</VALUE>", CIMTYPE_UINT8, false) == CIMValue(Uint8(255)));
    EXPECT_TRUE(read("<VALUE>-0X80</VALUE>", CIMTYPE_SINT8, false) == CIMValue(Sint8(-128)));
    EXPECT_TRUE(read("<VALUE>007</VALUE>", CIMTYPE_UINT8, false) == CIMValue(Uint8(7)));
    EXPECT_TRUE(read("<VALUE>+1.5E1</VALUE>", CIMTYPE_REAL32, false) == CIMValue(Real32(15)));
    EXPECT_TRUE(read("<VALUE>-3</VALUE>", CIMTYPE_REAL64, false) == CIMValue(Real64(-3)));
}

TEST(Values, OutsideTheirTypeAreInvalid) {
    const std::pair<CIMType, const char*> wrong[] = {
        {CIMTYPE_BOOLEAN, "yes"},
        {CIMTYPE_BOOLEAN, ""},
        {CIMTYPE_UINT8, "256"},
        {CIMTYPE_UINT8, "-1"},
        {CIMTYPE_UINT8, ""},
        {CIMTYPE_UINT8, "1 2"},
        {CIMTYPE_UINT8, "0x"},
        {CIMTYPE_UINT8, "0x100"},
        {CIMTYPE_UINT8, "0x-1"},
        {CIMTYPE_UINT8, "+-1"},
        {CIMTYPE_UINT8, "--1"},
        {CIMTYPE_UINT8, "1.0"},
        {CIMTYPE_UINT8, "one"},
        {CIMTYPE_SINT8, "-129"},
        {CIMTYPE_SINT8, "128"},
        {CIMTYPE_SINT8, "-0x-1"},
        {CIMTYPE_SINT8, "0x-1"},
        {CIMTYPE_SINT8, "+-1"},
        {CIMTYPE_UINT16, "65536"},
        {CIMTYPE_SINT16, "32768"},
        {CIMTYPE_UINT32, "4294967296"},
        {CIMTYPE_SINT32, "-2147483649"},
        {CIMTYPE_UINT64, "18446744073709551616"},
        {CIMTYPE_SINT64, "9223372036854775808"},
        {CIMTYPE_REAL32, "1e39"},
        {CIMTYPE_REAL64, "1e309"},
        {CIMTYPE_REAL64, "x"},
        {CIMTYPE_REAL64, "+-1"},
        {CIMTYPE_REAL64, ""},
        {CIMTYPE_REAL64, "1.5 m"},
        {CIMTYPE_CHAR16, ""},
        {CIMTYPE_CHAR16, "ab"},
        {CIMTYPE_CHAR16, "\xF0\x9F\x98\x80"},
        {CIMTYPE_DATETIME, ""},
        {CIMTYPE_DATETIME, "yesterday"},
        {CIMTYPE_DATETIME, "20201302030405.123456+060"},
    };
    for (const auto& [type, text] : wrong)
        EXPECT_EQ(readError(text, type),
                  "Invalid " + std::string(cimTypeToString(type)) + " value \"" + text + "\".");
}

TEST(Values, ThatAreNullInAnArrayAreNotSupported) {
    try {
        read("<VALUE.ARRAY><VALUE>1</VALUE><VALUE.NULL/></VALUE.ARRAY>", CIMTYPE_UINT8, true);
        FAIL();
    } catch (const CIMException& exception) {
        EXPECT_EQ(exception.getCode(), CIM_ERR_NOT_SUPPORTED);
        EXPECT_TRUE(exception.getMessage() == "VALUE.NULL in an array is not supported.");
    }
}

} // namespace
} // namespace embedded::cimxml::test
