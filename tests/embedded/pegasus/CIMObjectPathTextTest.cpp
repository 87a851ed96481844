#include "Throws.h"

#include <Pegasus/Common/CIMObjectPath.h>

#include <gtest/gtest.h>

using namespace Pegasus;
using apitest::text;
using apitest::throws;

namespace {

/// Everything a path holds, in a form that tells apart what toString() does not.
std::string parts(const CIMObjectPath& path) {
    const char* const types[] = {"boolean", "string", "numeric", "reference"};
    std::string result = text(path.getHost()) + "|" + text(path.getNameSpace().getString()) + "|" +
                         text(path.getClassName().getString());
    const Array<CIMKeyBinding>& keys = path.getKeyBindings();
    for (Uint32 i = 0; i < keys.size(); ++i)
        result += "|" + text(keys[i].getName().getString()) + "=" + text(keys[i].getValue()) + ":" +
                  types[keys[i].getType()];
    return result;
}

TEST(CIMObjectPathText, IsRead) {
    const struct {
        const char* text;
        const char* parts;
    } cases[] = {
        {"A", "||A"},
        {"A.", "||A"},
        {"A\xc3\xa4.k=1", "||A\xc3\xa4|k=1:numeric"},
        {"ns:A", "|ns|A"},
        {"ns:A.", "|ns|A"},
        {"root/x:A", "|root/x|A"},
        {"/root/x:A", "|root/x|A"},
        {"//h/root/x:A", "h|root/x|A"},
        {"//h.d.e:5988/root:A", "h.d.e:5988|root|A"},
        {"//[::1]:5988/root:A", "[::1]:5988|root|A"},
        {"//h/n:A.k=\"//h\"", "h|n|A|k=//h:string"},
        {"A.k=1,", "||A|k=1:numeric"},
        {"A.k=\"v\",", "||A|k=v:string"},
        {"A.b=2,a=1", "||A|a=1:numeric|b=2:numeric"},
        {"A.k=1,k=1", "||A|k=1:numeric|k=1:numeric"},
        {"A.k=1,K=2", "||A|k=1:numeric|K=2:numeric"},
        {"A.k=TRUE,l=false,m=True,n=fALSE",
         "||A|k=TRUE:boolean|l=FALSE:boolean|m=TRUE:boolean|n=FALSE:boolean"},
        {"A.k=0", "||A|k=0:numeric"},
        {"A.k=-0", "||A|k=-0:numeric"},
        {"A.k=-0x1", "||A|k=-0x1:numeric"},
        {"A.k=0X1f", "||A|k=0X1f:numeric"},
        {"A.k=0xFFFFFFFFFFFFFFFF", "||A|k=0xFFFFFFFFFFFFFFFF:numeric"},
        {"A.k=18446744073709551615", "||A|k=18446744073709551615:numeric"},
        {"A.k=-9223372036854775808", "||A|k=-9223372036854775808:numeric"},
        {"A.k=\"\"", "||A|k=:string"},
        {"A.k=\"1\"", "||A|k=1:string"},
        {"A.k=\"\xc3\xa4\"", "||A|k=\xc3\xa4:string"},
        {"A.k=\"a,b.c:d//\"", "||A|k=a,b.c:d//:string"},
        {"A.k=\"v\\\"\"", "||A|k=v\":string"},
        {"A.k=\"v\\\\\"", "||A|k=v\\:string"},
        {"A.k=\"v\",l=\"w\"", "||A|k=v:string|l=w:string"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(parts(CIMObjectPath(String(c.text))), c.parts) << c.text;
}

TEST(CIMObjectPathText, TakesAQuotedInstancePathForAReference) {
    const struct {
        const char* quoted;
        bool isReference;
    } cases[] = {
        {"X.y=1", true},        {"X.y=1,", true},
        {"X.y=TRUE", true},     {"ns:X.a=1,b=2", true},
        {"//h/ns:X.a=1", true}, {"X.y=\\\"z\\\"", true},
        {"X", false},           {"ns:X", false},
        {"X=", false},          {"=", false},
        {"a=b", false},         {"X.=1", false},
        {"X.y=z", false},       {"X.y=5.5", false},
        {"//h/X.y=1", false},   {"//h h/n:X.y=1", false},
    };
    for (const auto& c : cases) {
        const CIMObjectPath path(String((std::string("A.k=\"") + c.quoted + "\"").c_str()));
        const Array<CIMKeyBinding>& keys = path.getKeyBindings();
        ASSERT_EQ(keys.size(), 1U);
        EXPECT_EQ(keys[0].getType(),
                  c.isReference ? CIMKeyBinding::REFERENCE : CIMKeyBinding::STRING)
            << c.quoted;
    }
}

TEST(CIMObjectPathText, SortsTheKeysOfReferencesToo) {
    const CIMObjectPath path("A.k=\"ns:X.b=2,a=\\\"Y.d=4,c=3\\\"\"");
    EXPECT_EQ(text(path.toString()), "A.k=\"ns:X.a=\\\"Y.c=3,d=4\\\",b=2\"");
}

TEST(CIMObjectPathText, IsRejectedWithTheReason) {
    const struct {
        const char* text;
        const char* reason;
    } cases[] = {
        {"", "class name  not a legal CIM name"},
        {" A", "class name  A not a legal CIM name"},
        {"1A", "class name 1A not a legal CIM name"},
        {"/A", "class name /A not a legal CIM name"},
        {".k=1", "class name  not a legal CIM name"},
        {"ns:", "class name  not a legal CIM name"},
        {"ns:A:b", "class name A:b not a legal CIM name"},
        {"A=@", "class name A=@ not a legal CIM name"},
        {":A", "invalid namespace name"},
        {"1n:A", "invalid namespace name"},
        {"n/:A", "invalid namespace name"},
        {"//h/:A", "invalid namespace name"},
        {"//h//root:A", "invalid namespace name"},
        {"//h/root//x:A", "invalid namespace name"},
        {"//h/A", "host specified, missing namespace"},
        {"//h/n.x:A", "host specified, missing namespace"},
        {"//h", "missing slash after hostname"},
        {"//", "missing slash after hostname"},
        {"///root:A", "invalid hostname"},
        {"//h d/root:A", "invalid hostname"},
        {"A.k", "invalid key-value pair, missing equal sign"},
        {"A.,", "invalid key-value pair, missing equal sign"},
        {"A.k=1,,", "invalid key-value pair, missing equal sign"},
        {"A.=1", "invalid key-value pair, invalid key name:"},
        {"A.k =1", "invalid key-value pair, invalid key name:k "},
        {"A. k=1", "invalid key-value pair, invalid key name: k"},
        {"A.k.l=1", "invalid key-value pair, invalid key name:k.l"},
        {"A.k=\"v\",,l=\"w\"", "invalid key-value pair, invalid key name:,l"},
        {"A.k=\"v", "invalid key-value pair, missing quote in key value"},
        {"A.k=\"v\\", "invalid key-value pair, malformed value"},
        {"A.k=\"v\\n\"", "invalid key-value pair, malformed value"},
        {"A.k=\"v\" ", "invalid key-value pair, next key-value pair has to start with comma"},
        {"A.k=\"v\"x", "invalid key-value pair, next key-value pair has to start with comma"},
        {"A.k=T", "invalid key-value pair, value should be TRUE or FALSE"},
        {"A.k=TRUEX", "invalid key-value pair, value should be TRUE or FALSE"},
        {"A.k=f,", "invalid key-value pair, value should be TRUE or FALSE"},
        {"A.k=", "invalid key-value pair, invalid number value "},
        {"A.k= 1", "invalid key-value pair, invalid number value  1"},
        {"A.k=1 ,b=2", "invalid key-value pair, invalid number value 1 "},
        {"A.k=05", "invalid key-value pair, invalid number value 05"},
        {"A.k=00", "invalid key-value pair, invalid number value 00"},
        {"A.k=+5", "invalid key-value pair, invalid number value +5"},
        {"A.k=1.5", "invalid key-value pair, invalid number value 1.5"},
        {"A.k=1e5", "invalid key-value pair, invalid number value 1e5"},
        {"A.k=101b", "invalid key-value pair, invalid number value 101b"},
        {"A.k=0x", "invalid key-value pair, invalid number value 0x"},
        {"A.k=0xG", "invalid key-value pair, invalid number value 0xG"},
        {"A.k='v'", "invalid key-value pair, invalid number value 'v'"},
        {"A.k=18446744073709551616",
         "invalid key-value pair, invalid number value 18446744073709551616"},
        {"A.k=-", "invalid key-value pair, invalid negative number value -"},
        {"A.k=-05", "invalid key-value pair, invalid negative number value -05"},
        {"A.k=--1", "invalid key-value pair, invalid negative number value --1"},
        {"A.k=-9223372036854775809",
         "invalid key-value pair, invalid negative number value -9223372036854775809"},
    };
    for (const auto& c : cases) {
        const std::string message =
            std::string("malformed object name: ") + c.text + ", reason:\"" + c.reason + "\"";
        EXPECT_TRUE(throws<MalformedObjectNameException>(
            [&] { CIMObjectPath path{String(c.text)}; }, message))
            << c.text;
    }
}

TEST(CIMObjectPathText, LeavesOutWhatIsMissing) {
    EXPECT_EQ(text(CIMObjectPath().toString()), "");
    EXPECT_EQ(text(CIMObjectPath("h", CIMNamespaceName(), CIMName("C")).toString()), "//h/:C");
    EXPECT_EQ(text(CIMObjectPath("h", "n", CIMName("C")).toString()), "//h/n:C");
    EXPECT_EQ(text(CIMObjectPath("", "n", CIMName()).toString()), "n:");
}

TEST(CIMObjectPathText, QuotesStringsAndReferencesAndNothingElse) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding("a", "q\"\\", CIMKeyBinding::STRING));
    keys.append(CIMKeyBinding("b", "TRUE", CIMKeyBinding::BOOLEAN));
    keys.append(CIMKeyBinding("c", "1.5", CIMKeyBinding::NUMERIC));
    keys.append(CIMKeyBinding("r", "root/x:A.z=\"1\",b=\"q\"", CIMKeyBinding::REFERENCE));
    EXPECT_EQ(text(CIMObjectPath("", "root", "C", keys).toString()),
              "root:C.a=\"q\\\"\\\\\",b=TRUE,c=1.5,r=\"root/x:A.b=\\\"q\\\",z=\\\"1\\\"\"");
}

/// A string key whose value reads as a path comes back as a reference: the text does not tell.
TEST(CIMObjectPathText, LosesTheTypeOfStringsThatReadAsPaths) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding("k", "X.y=\"z\"", CIMKeyBinding::STRING));
    const CIMObjectPath path("", CIMNamespaceName(), "A", keys);
    const CIMObjectPath back(path.toString());
    EXPECT_EQ(parts(back), "||A|k=X.y=\"z\":reference");
    EXPECT_FALSE(path == back);
}

/// All texts of up to four of these pieces: what is read is read again from what is written, and
/// equal.
TEST(CIMObjectPathText, RoundTripsWhateverCanBeRead) {
    const char* const pieces[] = {"A", "n:", "//h/", ".k=", "1", "\"", "\\", ",b=", "\"X.y=1"};
    std::vector<std::string> texts{""};
    std::size_t begin = 0;
    for (int length = 1; length <= 4; ++length) {
        const std::size_t end = texts.size();
        for (; begin < end; ++begin)
            for (const char* piece : pieces)
                texts.push_back(texts[begin] + piece);
    }
    std::size_t accepted = 0;
    for (const std::string& given : texts) {
        try {
            const CIMObjectPath path(String(given.c_str()));
            ++accepted;
            const std::string written = text(path.toString());
            const CIMObjectPath again(path.toString());
            ASSERT_TRUE(path == again) << given << " " << written;
            ASSERT_EQ(parts(path), parts(again));
            ASSERT_EQ(text(again.toString()), written);
        } catch (const MalformedObjectNameException& exception) {
            const std::string prefix = "malformed object name: " + given + ", reason:\"";
            ASSERT_EQ(text(exception.getMessage()).substr(0, prefix.size()), prefix);
        }
    }
    EXPECT_EQ(texts.size(), 7381U);
    EXPECT_EQ(accepted, 38U);
}

/// All string values of up to four of these characters survive as keys, also of a path that is
/// itself a key, unless they read as a path.
TEST(CIMObjectPathText, RoundTripsStringValues) {
    const std::string alphabet = "a\"\\=., ";
    std::vector<std::string> values{""};
    for (std::size_t i = 0; i < values.size(); ++i) {
        const std::string value = values[i];
        if (value.size() < 4)
            for (char c : alphabet)
                values.push_back(value + c);
        Array<CIMKeyBinding> inner;
        inner.append(CIMKeyBinding("k", String(value.c_str()), CIMKeyBinding::STRING));
        const CIMObjectPath path("", "n", "A", inner);
        Array<CIMKeyBinding> outer;
        outer.append(CIMKeyBinding("r", path.toString(), CIMKeyBinding::REFERENCE));
        const CIMObjectPath nested("", "n", "B", outer);
        ASSERT_EQ(parts(CIMObjectPath(path.toString())), "|n|A|k=" + value + ":string");
        ASSERT_EQ(parts(CIMObjectPath(nested.toString())),
                  "|n|B|r=" + text(path.toString()) + ":reference");
    }
}

} // namespace
