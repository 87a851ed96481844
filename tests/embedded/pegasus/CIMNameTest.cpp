#include "Throws.h"

#include <Pegasus/Common/CIMName.h>

using namespace Pegasus;
using apitest::text;
using apitest::throws;

namespace {

const char* const legalNames[] = {"a",
                                  "A1",
                                  "_x",
                                  "\xc2\x80",          // U+0080
                                  "a\xc3\xa4",         // U+00E4
                                  "\xef\xbf\xaf",      // U+FFEF
                                  "\xf0\x9f\x98\x80"}; // a pair of surrogates
const char* const illegalNames[] = {"",    "1a", "a b",  "a-b",         "a.b",
                                    "a:b", "a$", "\x7f", "\xef\xbf\xb0" /* U+FFF0 */};

TEST(CIMName, TakesIdentifiersOnly) {
    for (const char* name : legalNames) {
        EXPECT_TRUE(CIMName::legal(name)) << name;
        EXPECT_EQ(text(CIMName(name).getString()), name);
        EXPECT_EQ(text(CIMName(String(name)).getString()), name);
    }
    for (const char* name : illegalNames) {
        const std::string message = std::string("The CIM name is not valid: ") + name;
        EXPECT_FALSE(CIMName::legal(name)) << name;
        EXPECT_TRUE(throws<InvalidNameException>([&] { CIMName x(name); }, message));
        EXPECT_TRUE(throws<InvalidNameException>([&] { CIMName x{String(name)}; }, message));
        CIMName kept("kept");
        EXPECT_TRUE(throws<InvalidNameException>([&] { kept = String(name); }, message));
        EXPECT_EQ(text(kept.getString()), "kept");
    }
    EXPECT_FALSE(CIMName::legal("a/b"));
    EXPECT_FALSE(CIMName::legal("/a"));
}

TEST(CIMName, IsNullUntilItIsGiven) {
    CIMName name;
    EXPECT_TRUE(name.isNull());
    EXPECT_EQ(text(name.getString()), "");
    name = CIMName("Given");
    EXPECT_FALSE(name.isNull());
    name.clear();
    EXPECT_TRUE(name.isNull());
}

TEST(CIMName, IgnoresCaseAndKeepsIt) {
    EXPECT_EQ(text(CIMName("aBc").getString()), "aBc");
    EXPECT_TRUE(CIMName("aBc") == CIMName("AbC"));
    EXPECT_TRUE(CIMName("aBc") == "ABC");
    EXPECT_TRUE(CIMName("aBc").equal("ABC"));
    EXPECT_TRUE(CIMName("abc") != CIMName("abd"));
    EXPECT_FALSE(CIMName("abc") == CIMName());
    EXPECT_TRUE(CIMName() == CIMName());
}

TEST(CIMNamespaceName, IsMadeOfNamesAndSlashes) {
    for (const char* name : {"root", "root/x", "ROOT/x_1/Y2", "a\xc3\xa4/b"}) {
        EXPECT_TRUE(CIMNamespaceName::legal(name)) << name;
        EXPECT_EQ(text(CIMNamespaceName(name).getString()), name);
    }
    for (const char* element : illegalNames) {
        for (const std::string& name : {std::string(element), "root/" + std::string(element),
                                        std::string(element) + "/root"}) {
            // The empty name with one slash in front of another is a leading slash.
            if (name == "/root")
                continue;
            EXPECT_FALSE(CIMNamespaceName::legal(name.c_str())) << name;
            EXPECT_TRUE(throws<InvalidNamespaceNameException>(
                [&] { CIMNamespaceName x(name.c_str()); }, "invalid CIM namespace name: " + name));
        }
    }
    for (const char* name : {"//root", "root//x", "/", "/root/", "root/"})
        EXPECT_FALSE(CIMNamespaceName::legal(name)) << name;
}

TEST(CIMNamespaceName, DropsALeadingSlash) {
    EXPECT_EQ(text(CIMNamespaceName("/root/x").getString()), "root/x");
    CIMNamespaceName assigned;
    assigned = String("/root");
    EXPECT_EQ(text(assigned.getString()), "root");
}

TEST(CIMNamespaceName, IgnoresCase) {
    EXPECT_TRUE(CIMNamespaceName("root/A") == CIMNamespaceName("/ROOT/a"));
    EXPECT_TRUE(CIMNamespaceName("root/A").equal(CIMNamespaceName("ROOT/a")));
    EXPECT_TRUE(CIMNamespaceName("root/A") != CIMNamespaceName("root"));
    EXPECT_TRUE(CIMNamespaceName() == CIMNamespaceName());
    CIMNamespaceName cleared("root");
    EXPECT_FALSE(cleared.isNull());
    cleared.clear();
    EXPECT_TRUE(cleared.isNull());
}

} // namespace
